#!/usr/bin/env bash
# Signs a Windows program with Authenticode through osslsigncode (Debian's
# package), into a copy: the unsigned file stays as it is.
#
#   scripts/sign-windows.sh EXE [SIGNED]      (SIGNED defaults to EXE.signed)
#
#   SUITEDEPLOYER_SIGN_PKCS12     the certificate and its key, a PKCS#12 file
#   SUITEDEPLOYER_SIGN_PASSWORD   that file's password
#   SUITEDEPLOYER_TIMESTAMP_URL   an RFC 3161 time-stamp server (optional);
#                                 without one the signature holds only while
#                                 the certificate is valid
#
# The password goes to osslsigncode through a file that only this user can
# read, never on a command line that other users of the machine may see.
set -euo pipefail
source "$(dirname "$0")/bootstrap.sh"

exe=${1:?usage: $0 EXE [SIGNED]}
signed=${2:-$exe.signed}
: "${SUITEDEPLOYER_SIGN_PKCS12:?name the PKCS#12 file in SUITEDEPLOYER_SIGN_PKCS12}"
: "${SUITEDEPLOYER_SIGN_PASSWORD?set SUITEDEPLOYER_SIGN_PASSWORD, empty for none}"
ensure_packages osslsigncode

password=$(mktemp)
trap 'rm -f "$password"' EXIT
chmod 600 "$password"
printf '%s' "$SUITEDEPLOYER_SIGN_PASSWORD" >"$password"
timestamp=()
[ -n "${SUITEDEPLOYER_TIMESTAMP_URL:-}" ] && timestamp=(-ts "$SUITEDEPLOYER_TIMESTAMP_URL")
rm -f "$signed"
osslsigncode sign -pkcs12 "$SUITEDEPLOYER_SIGN_PKCS12" -readpass "$password" -h sha256 \
  -n "Orv Collection" "${timestamp[@]}" -in "$exe" -out "$signed" >/dev/null
echo "$signed"
