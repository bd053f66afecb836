#!/usr/bin/env bash
# Checks that the bytes of SuiteDeployer.exe depend on the sources alone, not
# on the folder they were built in: builds the program again from a copy of
# the checkout's files in a folder of another name (with the same cached
# Windows libraries) and compares the two files. Builds the first one with
# scripts/build-windows.sh when build-windows/ holds none. The exit code is
# the result.
set -euo pipefail
source "$(dirname "$0")/bootstrap.sh"

program=build-windows/src/installer/utils/SuiteDeployer.exe
[ -f "$SUITEDEPLOYER_ROOT/$program" ] || "$SUITEDEPLOYER_ROOT/scripts/build-windows.sh"

elsewhere=$(mktemp -d "${TMPDIR:-/tmp}/suitedeployer-elsewhere.XXXXXX")
trap 'rm -rf "$elsewhere"' EXIT
(cd "$SUITEDEPLOYER_ROOT" && git ls-files -z | tar --null -T - -cf -) | tar -xf - -C "$elsewhere"
"$elsewhere/scripts/build-windows.sh" >"$elsewhere/build.log" 2>&1 ||
  { tail -30 "$elsewhere/build.log"; echo "The second build failed"; exit 1; }

sha256sum "$SUITEDEPLOYER_ROOT/$program" "$elsewhere/$program"
# Nor does a folder of this machine stand in it: the checkout's, the copy's or
# the cache's of the Windows libraries, which another machine has elsewhere.
cache_root=${SUITEDEPLOYER_CACHE:-${XDG_CACHE_HOME:-$HOME/.cache}/suitedeployer}
for folder in "$SUITEDEPLOYER_ROOT" "$elsewhere" "$cache_root"; do
  if grep -qF "$folder" "$SUITEDEPLOYER_ROOT/$program"; then
    echo "The program holds the path $folder"
    exit 1
  fi
done
if cmp -s "$SUITEDEPLOYER_ROOT/$program" "$elsewhere/$program"; then
  echo "Same bytes from $SUITEDEPLOYER_ROOT and $elsewhere"
else
  cmp -l "$SUITEDEPLOYER_ROOT/$program" "$elsewhere/$program" | wc -l | xargs echo "Bytes that differ:"
  exit 1
fi
