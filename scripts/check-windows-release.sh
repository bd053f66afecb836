#!/usr/bin/env bash
# Checks a release folder that scripts/build-windows.sh --release made:
#   - the relink kit links the very exe again (same SHA-256) with the Qt Core
#     libraries that went into it;
#   - the bill of materials is valid SPDX JSON that names every component,
#     with the exe's SHA-256;
#   - the notices name every component's source package;
#   - SHA256SUMS holds;
#   - a copy signed with a throw-away self-signed certificate passes
#     osslsigncode verify against that certificate, and differs from the
#     unsigned exe only by the signature: its certificate table, the header's
#     entry for it and the header's checksum.
#
#   scripts/check-windows-release.sh DIR [QT_LIB_DIR]
#
# QT_LIB_DIR defaults to the Qt libraries that build-windows/ was built with.
set -euo pipefail
source "$(dirname "$0")/bootstrap.sh"
ensure_packages osslsigncode openssl python3

release=$(cd "${1:?usage: $0 DIR [QT_LIB_DIR]}" && pwd)
qt_lib=${2:-$(cat "$SUITEDEPLOYER_ROOT/build-windows/windows-libraries")/qt/lib}
work=$(mktemp -d "${TMPDIR:-/tmp}/suitedeployer-release-check.XXXXXX")
trap 'rm -rf "$work"' EXIT
exe="$release/SuiteDeployer.exe"

(cd "$release" && sha256sum --quiet -c SHA256SUMS)
echo "SHA256SUMS: holds"

"$release/relink-kit/relink.sh" "$qt_lib" "$work/relinked"
sha256sum "$exe" "$work/relinked/SuiteDeployer.exe"
cmp "$exe" "$work/relinked/SuiteDeployer.exe"
echo "relink: the same SHA-256"

python3 - "$release" <<'PYTHON'
import hashlib, json, sys
release = sys.argv[1]
document = json.load(open(release + "/SuiteDeployer.spdx.json"))
assert document["spdxVersion"] == "SPDX-2.3", document["spdxVersion"]
packages = {package["SPDXID"]: package for package in document["packages"]}
exe = packages["SPDXRef-SuiteDeployer"]
digest = hashlib.sha256(open(release + "/SuiteDeployer.exe", "rb").read()).hexdigest()
assert exe["checksums"] == [{"algorithm": "SHA256", "checksumValue": digest}], exe["checksums"]
expected = {"qtbase-opensource-src", "boost1.74", "spdlog", "fmtlib", "mingw-w64", "gcc-mingw-w64"}
found = {package["sourceInfo"].split()[3] for package in packages.values() if "sourceInfo" in package}
assert found == expected, found
for package in packages.values():
    assert package["versionInfo"] and package["licenseDeclared"], package
contained = {r["relatedSpdxElement"] for r in document["relationships"] if r["relationshipType"] == "CONTAINS"}
assert contained == set(packages) - {"SPDXRef-SuiteDeployer"}, contained
notices = open(release + "/THIRD-PARTY-NOTICES.txt", encoding="utf-8", errors="replace").read()
for source in expected:
    assert "Debian source package: " + source + " " in notices, source
assert "GNU LESSER GENERAL PUBLIC LICENSE" in notices and "Version 3" in notices
print("bill of materials: %d components, the exe's SHA-256; notices: every source package" % (len(packages) - 1))
PYTHON

openssl req -x509 -newkey rsa:2048 -nodes -days 2 -subj "/CN=Orv Collection test signer" \
  -keyout "$work/key.pem" -out "$work/certificate.pem" 2>/dev/null
openssl pkcs12 -export -inkey "$work/key.pem" -in "$work/certificate.pem" -out "$work/signer.p12" \
  -passout pass:throw-away
cp "$exe" "$work/unsigned-before.exe"
SUITEDEPLOYER_SIGN_PKCS12="$work/signer.p12" SUITEDEPLOYER_SIGN_PASSWORD=throw-away \
  "$SUITEDEPLOYER_ROOT/scripts/sign-windows.sh" "$exe" "$work/signed.exe" >/dev/null
cmp "$exe" "$work/unsigned-before.exe"
osslsigncode verify -CAfile "$work/certificate.pem" -in "$work/signed.exe" >"$work/verify.log" 2>&1 ||
  { cat "$work/verify.log"; exit 1; }
echo "signature: verified against the throw-away certificate"

python3 - "$exe" "$work/signed.exe" <<'PYTHON'
import struct, sys
unsigned = open(sys.argv[1], "rb").read()
signed = open(sys.argv[2], "rb").read()
header = struct.unpack_from("<I", unsigned, 0x3C)[0]
optional = header + 24
assert struct.unpack_from("<H", unsigned, optional)[0] == 0x20B, "not a PE32+ file"
checksum = optional + 64
security_entry = optional + 112 + 4 * 8
table, size = struct.unpack_from("<II", signed, security_entry)
assert struct.unpack_from("<II", unsigned, security_entry) == (0, 0), "the unsigned exe holds a signature"
assert table >= len(unsigned) and table + size == len(signed), (table, size, len(unsigned), len(signed))
def masked(data):
    data = bytearray(data[:len(unsigned)])
    data[checksum:checksum + 4] = b"\0" * 4
    data[security_entry:security_entry + 8] = b"\0" * 8
    return bytes(data)
assert masked(signed) == masked(unsigned), "the signed copy differs beyond its signature"
assert set(signed[len(unsigned):table]) <= {0}, "more than padding before the signature"
print("signed copy: the unsigned bytes, plus %d bytes of signature" % (len(signed) - len(unsigned)))
PYTHON
