# Sourced by scripts/build-windows.sh --release DIR, after the build: puts
# what a release engineer ships beside SuiteDeployer.exe into one folder.
#
#   SuiteDeployer.exe          the program, unsigned (scripts/sign-windows.sh signs it)
#   THIRD-PARTY-NOTICES.txt    the copyright files of the Debian source packages
#                              that went into the exe, with the licence texts
#                              they refer to
#   SuiteDeployer.spdx.json    the bill of materials, SPDX 2.3
#   relink-kit/                the program's objects and its libraries but Qt,
#                              the link command as a script, and how to relink
#   SHA256SUMS                 of every file above
#
# Expects from build-windows.sh: $cache, $sources, $qt_prefix, $packages,
# $qt_version, $boost_version, $target, $compiler, $program.

# Each component that goes into the exe: its name, its Debian source package,
# the binary package whose version and copyright file name it, the SPDX
# licence expression of what the exe takes of it, and, for a library that Qt
# bundles, its folder in Qt's sources.
release_components() {
  cat <<'TABLE'
Qt Core|qtbase-opensource-src|qtbase5-dev|LGPL-3.0-only|
zlib, bundled in Qt Core|qtbase-opensource-src|qtbase5-dev|Zlib|src/3rdparty/zlib
PCRE2, bundled in Qt Core|qtbase-opensource-src|qtbase5-dev|BSD-3-Clause|src/3rdparty/pcre2
Boost.Filesystem and Boost.System|boost1.74|libboost1.74-dev|BSL-1.0|
spdlog|spdlog|libspdlog-dev|MIT|
fmt|fmtlib|libfmt-dev|MIT|
mingw-w64 runtime and its thread library (winpthreads)|mingw-w64|mingw-w64-x86-64-dev|ZPL-2.1 AND MIT AND LicenseRef-Public-Domain|
GCC runtime libraries (libstdc++, libgcc)|gcc-mingw-w64|gcc-mingw-w64-base|GPL-3.0-or-later WITH GCC-exception-3.1|
TABLE
}

# The version that Qt's attribution file gives a bundled library. Not read as
# JSON: Qt's files hold line breaks inside strings.
bundled_version() {
  sed -n 's/^ *"Version": *"\([^"]*\)".*/\1/p' "$sources/qtbase/$1/qt_attribution.json" | head -1
}

# Its licence file, as Qt's attribution file names it.
bundled_licence() {
  local file
  file=$(sed -n 's/^ *"LicenseFile": *"\([^"]*\)".*/\1/p' "$sources/qtbase/$1/qt_attribution.json" | head -1)
  echo "$sources/qtbase/$1/$file"
}

# The copyright file of the source package: the unpacked one for the two that
# were built from source here, the installed one of the binary package else.
copyright_of() {
  local source_package=$1 binary_package=$2
  case $source_package in
    qtbase-opensource-src) echo "$sources/qtbase/debian/copyright" ;;
    boost1.74) echo "$sources/boost/debian/copyright" ;;
    *) echo "/usr/share/doc/$binary_package/copyright" ;;
  esac
}

source_version_of() { dpkg-query -W -f='${source:Version}' "$1"; }

write_notices() {
  local out=$1 name source_package binary_package licence bundled copyright referenced
  {
    echo "SuiteDeployer.exe contains the following libraries. Each is listed with the"
    echo "Debian source package and version it was built from, and that package's"
    echo "copyright file as Debian ships it. The licence texts that these files name"
    echo "by their place on a Debian system follow at the end."
    echo
    echo "Qt Core is linked statically under the GNU Lesser General Public License,"
    echo "version 3. The relink kit that comes with this program holds what is needed"
    echo "to link it again with a changed Qt Core (relink-kit/README.txt)."
    while IFS='|' read -r name source_package binary_package licence bundled; do
      copyright=$(copyright_of "$source_package" "$binary_package")
      echo
      echo "=============================================================================="
      echo "$name"
      echo "Debian source package: $source_package $(source_version_of "$binary_package")"
      [ -z "$bundled" ] || echo "Bundled as $bundled, version $(bundled_version "$bundled")"
      echo "Licence of what the program takes: $licence"
      echo "=============================================================================="
      echo
      if [ -n "$bundled" ]; then
        echo "Its copyright is part of the Qt Core section above. Its licence file:"
        echo
        cat "$(bundled_licence "$bundled")"
      else
        cat "$copyright"
      fi
    done < <(release_components)
    referenced=$(release_components | while IFS='|' read -r _ source_package binary_package _ _; do
      grep -o '/usr/share/common-licenses/[A-Za-z0-9.+-]*' "$(copyright_of "$source_package" "$binary_package")" || true
    done | sed 's/[.]$//' | sort -u)
    for copyright in $referenced; do
      [ -f "$copyright" ] || continue
      echo
      echo "=============================================================================="
      echo "$(basename "$copyright") (as $copyright on a Debian system)"
      echo "=============================================================================="
      echo
      cat "$copyright"
    done
  } >"$out"
}

# SPDX 2.3, with fixed identifiers and no creation time from the clock, so
# that the same build gives the same document.
write_sbom() {
  local out=$1 exe_sha
  exe_sha=$(sha256sum "$program" | cut -d' ' -f1)
  release_components | while IFS='|' read -r name source_package binary_package licence bundled; do
    printf '%s|%s|%s|%s|%s|%s\n' "$name" "$source_package" "$binary_package" "$licence" "$bundled" \
      "$([ -z "$bundled" ] || bundled_version "$bundled")"
  done | python3 -c '
import json, subprocess, sys
exe_sha, version, commit = sys.argv[1:4]
def source_version(package):
    return subprocess.run(["dpkg-query", "-W", "-f=${source:Version}", package],
                          check=True, capture_output=True, text=True).stdout
packages = [{
    "SPDXID": "SPDXRef-SuiteDeployer",
    "name": "SuiteDeployer.exe",
    "versionInfo": version,
    "supplier": "Organization: Tavrin",
    "downloadLocation": "NOASSERTION",
    "filesAnalyzed": False,
    "checksums": [{"algorithm": "SHA256", "checksumValue": exe_sha}],
    "licenseConcluded": "NOASSERTION",
    "licenseDeclared": "NOASSERTION",
    "copyrightText": "Copyright (C) 2026 Tavrin",
}]
relationships = [{"spdxElementId": "SPDXRef-DOCUMENT", "relationshipType": "DESCRIBES",
                  "relatedSpdxElement": "SPDXRef-SuiteDeployer"}]
for number, line in enumerate(sys.stdin, 1):
    name, source_package, binary_package, licence, bundled, bundled_version = line.rstrip("\n").split("|")
    package_version = source_version(binary_package)
    version_text = bundled_version or package_version
    source_text = "Debian source package %s %s" % (source_package, package_version)
    if bundled:
        source_text += ", bundled as " + bundled
    identifier = "SPDXRef-Component-%d" % number
    packages.append({
        "SPDXID": identifier,
        "name": name,
        "versionInfo": version_text,
        "supplier": "Organization: Debian",
        "downloadLocation": "https://deb.debian.org/debian/pool/main/%s/%s/" % (source_package[0], source_package),
        "sourceInfo": source_text,
        "externalRefs": [{"referenceCategory": "PACKAGE-MANAGER", "referenceType": "purl",
                          "referenceLocator": "pkg:deb/debian/%s@%s?arch=source" % (source_package, package_version)}],
        "filesAnalyzed": False,
        "licenseConcluded": licence,
        "licenseDeclared": licence,
        "copyrightText": "See THIRD-PARTY-NOTICES.txt",
    })
    relationships.append({"spdxElementId": "SPDXRef-SuiteDeployer", "relationshipType": "CONTAINS",
                          "relatedSpdxElement": identifier})
document = {
    "spdxVersion": "SPDX-2.3",
    "dataLicense": "CC0-1.0",
    "SPDXID": "SPDXRef-DOCUMENT",
    "name": "SuiteDeployer.exe " + version,
    "documentNamespace": "https://tavrin.example/spdx/SuiteDeployer/%s-%s" % (version, exe_sha),
    "creationInfo": {"created": "2026-01-01T00:00:00Z", "creators": ["Tool: scripts/build-windows.sh"],
                     "comment": "Built from commit " + commit},
    "packages": packages,
    "relationships": relationships,
    "hasExtractedLicensingInfos": [{"licenseId": "LicenseRef-Public-Domain", "name": "Public domain",
        "extractedText": "Parts of the mingw-w64 runtime are in the public domain; see THIRD-PARTY-NOTICES.txt."}],
}
json.dump(document, sys.stdout, indent=2, sort_keys=True)
print()
' "$exe_sha" "$(program_version)" "$(git -C "$SUITEDEPLOYER_ROOT" rev-parse HEAD 2>/dev/null || echo unknown)" >"$out"
}

program_version() {
  sed -n 's/^project(SuiteDeployer VERSION \([0-9.]*\) .*/\1/p' "$SUITEDEPLOYER_ROOT/CMakeLists.txt"
}

# The program's objects and every library of the link but Qt's, and the link
# command that CMake ran, with Qt's libraries taken from a folder named at
# relink time.
write_relink_kit() {
  local kit=$1 build="$SUITEDEPLOYER_ROOT/build-windows/src/installer/utils" qt_lib="$qt_prefix/lib"
  local dir="$build/CMakeFiles/SuiteDeployer.dir" entry name
  mkdir -p "$kit/objects" "$kit/lib"
  cp "$dir/src/frontend/main.cpp.obj" "$dir/SuiteDeployer.rc.res" "$kit/objects/"
  : >"$kit/linkLibs.rsp.in"
  for entry in $(tr -d '"' <"$dir/linkLibs.rsp"); do
    case $entry in
      -*) ;;
      "$qt_lib"/*) entry="@QT_LIB@/$(basename "$entry")" ;;
      /usr/*) ;;
      *)
        name=$(basename "$entry")
        case $entry in /*) cp "$entry" "$kit/lib/$name" ;; *) cp "$build/$entry" "$kit/lib/$name" ;; esac
        entry="@KIT@/lib/$name"
        ;;
    esac
    printf '%s\n' "$entry" >>"$kit/linkLibs.rsp.in"
  done
  # The third line of link.txt is the link itself; its flags stay as they are.
  local link
  link=$(sed -n 3p "$dir/link.txt")
  link=${link//CMakeFiles\/SuiteDeployer.dir\/objects.a/objects.a}
  link=${link//@CMakeFiles\/SuiteDeployer.dir\/linkLibs.rsp/@linkLibs.rsp}
  cat >"$kit/relink.sh" <<SCRIPT
#!/usr/bin/env bash
# Links SuiteDeployer.exe again from this kit, with the Qt Core libraries of
# QT_LIB_DIR (libQt5Core.a, libqtpcre2.a and libqtmain.a of a static Qt 5 for
# $target), into OUT_DIR. Needs Debian's g++-mingw-w64-x86-64-posix; with the
# Qt libraries that went into the shipped exe, the result has its very bytes.
#
#   relink.sh QT_LIB_DIR OUT_DIR
set -euo pipefail
kit=\$(cd "\$(dirname "\$0")" && pwd)
qt=\$(cd "\$1" && pwd)
mkdir -p "\$2"
out=\$(cd "\$2" && pwd)
work=\$(mktemp -d)
trap 'rm -rf "\$work"' EXIT
sed -e "s|@KIT@|\$kit|g" -e "s|@QT_LIB@|\$qt|g" "\$kit/linkLibs.rsp.in" | sed 's/.*/"&"/; s/^"\(-.*\)"$/\1/' | tr '\n' ' ' >"\$work/linkLibs.rsp"
cd "\$work"
$target-ar qc objects.a "\$kit/objects/main.cpp.obj" "\$kit/objects/SuiteDeployer.rc.res"
$link
cp SuiteDeployer.exe "\$out/SuiteDeployer.exe"
SCRIPT
  chmod +x "$kit/relink.sh"
  cat >"$kit/README.txt" <<TEXT
Relinking SuiteDeployer.exe with a changed Qt Core
===================================================

SuiteDeployer.exe links Qt Core $qt_version statically, under the GNU Lesser
General Public License, version 3. This kit lets you link the program again
with a Qt Core of your own:

  objects/        the program's own object files (main.cpp.obj and the
                  compiled resources: manifest and version)
  lib/            every static library of the link but Qt's: the program's
                  libraries, its logging library with spdlog and fmt, and
                  Boost.Filesystem
  linkLibs.rsp.in the libraries in link order; @QT_LIB@ stands for your Qt
  relink.sh       the link command that built the shipped exe

1. Build Qt Core statically for $target with the mingw-w64 compiler of
   Debian 12 (package g++-mingw-w64-x86-64-posix), from Debian's source
   package qtbase-opensource-src or from your changed sources. The flags
   that built the shipped one are in scripts/build-windows.sh of the
   program's sources (build_qt): -static -release -no-gui -no-icu -qt-zlib
   -qt-pcre, and no network, SQL or XML modules.
2. Run  relink.sh /path/to/your/qt/lib /path/to/output
   The folder must hold libQt5Core.a, libqtpcre2.a and libqtmain.a.
3. The output folder then holds SuiteDeployer.exe, linked with your Qt.

With the very Qt Core libraries that went into the shipped exe, relink.sh
gives a file with the same SHA-256; the project's CI checks that.
TEXT
}

make_release() {
  local out=$1
  rm -rf "$out"
  mkdir -p "$out"
  cp "$program" "$out/SuiteDeployer.exe"
  write_notices "$out/THIRD-PARTY-NOTICES.txt"
  write_sbom "$out/SuiteDeployer.spdx.json"
  write_relink_kit "$out/relink-kit"
  (cd "$out" && find . -type f ! -name SHA256SUMS -printf '%P\n' | LC_ALL=C sort | xargs -d '\n' sha256sum >SHA256SUMS)
}
