#!/usr/bin/env bash
# Start-up cost of `SuiteDeployer --background` and of the report (no option)
# against two baselines measured in the same run: /bin/true (process creation
# alone) and a Qt Core program that does nothing. The wmic.exe on the machine
# prints only its header line; the machine has a Photoshop, an Elements and a
# Lightroom for the report to find.
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

run_on_machine "$machine" hyperfine -N --warmup 20 --runs "${RUNS:-300}" \
  --export-json "$machine/startup.json" \
  -n true /bin/true \
  -n minimal-qt-core "$SUITEDEPLOYER_BUILD/bench/minimal_qt_core" \
  -n "SuiteDeployer --background" "$SUITEDEPLOYER_BUILD/src/installer/utils/SuiteDeployer --background" \
  -n "SuiteDeployer (report)" "$SUITEDEPLOYER_BUILD/src/installer/utils/SuiteDeployer"

jq -r '
  (.results | map({(.command): .median}) | add) as $m
  | "medians: " + ([.results[] | "\(.command) \(.median * 1000 * 100 | round / 100) ms"] | join(", ")),
    "median ratios:",
    "  SuiteDeployer --background / true            = \($m["SuiteDeployer --background"] / $m["true"] * 100 | round / 100)",
    "  SuiteDeployer --background / minimal-qt-core = \($m["SuiteDeployer --background"] / $m["minimal-qt-core"] * 100 | round / 100)",
    "  SuiteDeployer (report) / minimal-qt-core     = \($m["SuiteDeployer (report)"] / $m["minimal-qt-core"] * 100 | round / 100)",
    "  minimal-qt-core / true                       = \($m["minimal-qt-core"] / $m["true"] * 100 | round / 100)"
' "$machine/startup.json"
