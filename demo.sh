#!/usr/bin/env bash
# Installs what is missing, builds, and asks SuiteDeployer on a throw-away
# machine which blocking applications run, with a "Photoshop.exe" running there.
set -euo pipefail
source "$(dirname "$0")/scripts/bootstrap.sh"
source "$SUITEDEPLOYER_ROOT/scripts/machine.sh"

ensure_packages "${BUILD_PACKAGES[@]}" jq
build_project

machine=$(new_machine)
cp /bin/sleep "$machine/bin/Photoshop.exe"
"$machine/bin/Photoshop.exe" 60 &
photoshop=$!
trap 'kill "$photoshop" 2>/dev/null || true' EXIT

echo
echo "Machine: $machine (a running Photoshop.exe, no wmic.exe: the process list comes from /proc)"
echo "Request: SuiteDeployer --background"
answer=$(run_on_machine "$machine" "$SUITEDEPLOYER_BUILD/src/installer/utils/SuiteDeployer" --background 2>/dev/null)
echo "Answer on standard output: $answer"
echo "Decoded answer:"
printf '%s' "$answer" | base64 -d | jq .
log=$(ls -1 "$machine/home/.config/Tavrin/Orv Collection/logs/"*.log | tail -n 1)
echo "Log of the run: $log"
echo "Its last lines:"
tail -n 5 "$log"
echo "The machine stays in place: $machine"
