#!/usr/bin/env bash
# Installs what is missing, builds, and runs SuiteDeployer as the setup wizard
# does on a throw-away machine with a Photoshop, an Elements and a Lightroom.
set -euo pipefail
source "$(dirname "$0")/scripts/bootstrap.sh"
source "$SUITEDEPLOYER_ROOT/scripts/machine.sh"

ensure_packages "${BUILD_PACKAGES[@]}" jq
build_project

deployer="$SUITEDEPLOYER_BUILD/src/installer/utils/SuiteDeployer"
machine=$(new_machine)
seed_hosts "$machine"
cp /bin/sleep "$machine/bin/Photoshop.exe"
"$machine/bin/Photoshop.exe" 60 &
photoshop=$!
trap 'kill "$photoshop" 2>/dev/null || true' EXIT

# Runs one step as the wizard does and prints its request and decoded answer.
step() {
  echo
  echo "Request: SuiteDeployer ${*:-(no option: the environment report)}"
  local answer
  answer=$(run_on_machine "$machine" env LC_ALL=en_US.UTF-8 "$deployer" "$@" 2>/dev/null)
  echo "Answer on standard output: $answer"
  echo "Decoded answer:"
  printf '%s' "$answer" | base64 -d | jq .
}

echo
echo "Machine: $machine"
echo "  hosts seeded: Photoshop CC 2018, Photoshop Elements 2018, Lightroom Classic CC 7"
echo "  running: Photoshop.exe (no wmic.exe: the process list comes from /proc)"
step
step --background

log=$(ls -1 "$machine/home/.config/Tavrin/Orv Collection/logs/"*.log | tail -n 1)
echo
echo "Log of the last run: $log"
echo "Its last lines:"
tail -n 5 "$log"
echo "The machine stays in place: $machine"
