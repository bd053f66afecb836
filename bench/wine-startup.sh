#!/usr/bin/env bash
# Start-to-exit of the Windows program under Wine, the report (no option) and
# `--background`, against a trivial static mingw-w64 program for the same
# subsystem, in one hyperfine run, in a throw-away prefix whose wineserver
# stays up between the runs. Wine is not Windows, so these figures have no
# goal; a regression of the program shows in them all the same. The exe is
# the one of scripts/build-windows.sh (built when missing), or
# SUITEDEPLOYER_WINDOWS_PROGRAM. Prints the medians and, last, one line per
# figure for bench/all.sh: figure|baseline|ratio|goal
set -euo pipefail
source "$(dirname "$0")/../scripts/bootstrap.sh"

ensure_packages "${BUILD_PACKAGES[@]}" "${WINE_PACKAGES[@]}" hyperfine jq

program=${SUITEDEPLOYER_WINDOWS_PROGRAM:-$SUITEDEPLOYER_ROOT/build-windows/src/installer/utils/SuiteDeployer.exe}
if [ ! -f "$program" ]; then
  "$SUITEDEPLOYER_ROOT/scripts/build-windows.sh" >/dev/null
fi

wine=/usr/lib/wine/wine64
work=$(mktemp -d "${TMPDIR:-/tmp}/wine-startup.XXXXXX")
export WINEPREFIX="$work/prefix" WINESERVER=/usr/lib/wine/wineserver WINEDEBUG=-all HOME="$work/home"
export WINEDLLOVERRIDES="mscoree,mshtml=;winemenubuilder.exe=d"
mkdir -p "$HOME" "$WINEPREFIX"
trap '"$WINESERVER" -k 2>/dev/null || true; rm -rf "$work"' EXIT

printf 'int main() { return 0; }\n' >"$work/trivial.cpp"
x86_64-w64-mingw32-g++-posix -O2 -static -mwindows -o "$work/trivial.exe" "$work/trivial.cpp"

"$WINESERVER" -p
"$wine" wineboot --init >/dev/null 2>&1

cd "$work"
# A run that fails still counts its time; the figures say how many failed, so
# that a rare failure under Wine shows rather than ending the whole table.
hyperfine -N -i --warmup "${WARMUP:-5}" --runs "${RUNS:-40}" --export-json "$work/wine.json" \
  -n "trivial mingw-w64 program" "$wine $work/trivial.exe" \
  -n report "$wine $program" \
  -n background "$wine $program --background"

jq -r '
  (.results | map({(.command): .median}) | add) as $m
  | (.results | map({(.command): ([.exit_codes[] | select(. != 0)] | length)}) | add) as $failed
  | "medians: " + ([.results[] | "\(.command) \(.median * 1000 * 10 | round / 10) ms"] | join(", ")),
    "runs that failed: " + ([.results[] | "\(.command) \($failed[.command]) of \(.exit_codes | length)"] | join(", ")),
    (["report", "background"][] as $c
     | "\(if $c == "report" then "report" else "--background" end) start-up under Wine|trivial mingw-w64 program|"
       + "\($m[$c] / $m["trivial mingw-w64 program"] * 100 | round / 100)|none (Wine)"
       + (if $failed[$c] > 0 then ", \($failed[$c]) runs failed" else "" end))
' "$work/wine.json"
