#!/usr/bin/env bash
# Start-up cost of the report (no option) and of `SuiteDeployer --background`
# against their floors, measured in the same hyperfine run: the floor program
# (application object, command-line parser, the embedded catalogue read and
# parsed), and the same with one child process, the machine's wmic.exe, a
# two-line shell script that prints its header. The machine has a Photoshop,
# an Elements and a Lightroom for the report to find, and LANGUAGE=de_DE.
# Prints the medians and, last, one line per figure for bench/all.sh:
#   figure|baseline|ratio|goal
# SUITEDEPLOYER_PROGRAM measures another build of the tool against the same floor.
set -euo pipefail
source "$(dirname "$0")/../scripts/bootstrap.sh"
source "$SUITEDEPLOYER_ROOT/scripts/machine.sh"

ensure_packages "${BUILD_PACKAGES[@]}" hyperfine jq
build_project >/dev/null

machine=$(new_machine)
trap 'rm -rf "$machine"' EXIT
seed_hosts "$machine"
printf '#!/bin/sh\nprintf "Caption  \\r\\r\\n"\n' >"$machine/bin/wmic.exe"
chmod +x "$machine/bin/wmic.exe"
deployer=${SUITEDEPLOYER_PROGRAM:-$SUITEDEPLOYER_BUILD/src/installer/utils/SuiteDeployer}
floor="$SUITEDEPLOYER_BUILD/bench/floor_program"

run_on_machine "$machine" env LANGUAGE=de_DE hyperfine -N --warmup "${WARMUP:-20}" --runs "${RUNS:-200}" \
  --export-json "$machine/startup.json" \
  -n floor "$floor" \
  -n "floor + child" "$floor --child wmic.exe" \
  -n report "$deployer" \
  -n background "$deployer --background"

jq -r '
  (.results | map({(.command): .median}) | add) as $m
  | "medians: " + ([.results[] | "\(.command) \(.median * 1000 * 100 | round / 100) ms"] | join(", ")),
    "report start-up|floor program|\($m["report"] / $m["floor"] * 100 | round / 100)|<= 1.5",
    "--background start-up|floor program + child|\($m["background"] / $m["floor + child"] * 100 | round / 100)|<= 1.3"
' "$machine/startup.json"
