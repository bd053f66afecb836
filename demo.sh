#!/usr/bin/env bash
# Installs what is missing, builds, and plays the setup wizard with
# SuiteDeployer on a throw-away machine that has a Photoshop, an Elements and a
# Lightroom: the report, the blocking-application probe, the installation of
# all twelve products from a suite root generated from the catalogue, the
# registry records, the uninstallation and the settings reset.
set -euo pipefail
source "$(dirname "$0")/scripts/bootstrap.sh"
source "$SUITEDEPLOYER_ROOT/scripts/machine.sh"

ensure_packages "${BUILD_PACKAGES[@]}" jq
build_project >/dev/null

deployer="$SUITEDEPLOYER_BUILD/src/installer/utils/SuiteDeployer"
catalogue="$SUITEDEPLOYER_ROOT/src/installer/utils/resources/PluginsConfiguration.json"
machine=$(new_machine)
seed_hosts "$machine"
"$SUITEDEPLOYER_BUILD/tests/make_suite_root" "$machine/suite"
cp /bin/sleep "$machine/bin/Photoshop.exe"
"$machine/bin/Photoshop.exe" 60 &
photoshop=$!
trap 'kill "$photoshop" 2>/dev/null || true' EXIT

# Runs one job as the wizard does, from the machine's root folder, and prints
# the request and, where the job has one, the decoded answer.
step() {
  local option=${1:-} request=${2:-}
  echo
  echo "== SuiteDeployer ${option:-(no option: the environment report)}"
  [ -n "$request" ] && printf '%s' "$request" | jq -c . | sed 's/^/   request: /'
  local encoded=()
  [ -n "$request" ] && encoded=("$(printf '%s' "$request" | base64 -w0)")
  answer=$(cd "$machine" && run_on_machine "$machine" env LC_ALL=en_US.UTF-8 "$deployer" ${option:+"$option"} \
    "${encoded[@]}" 2>/dev/null)
  if [ -n "$answer" ]; then
    echo "   answer: $answer"
    printf '%s' "$answer" | base64 -d | jq . | sed 's/^/   /'
  fi
}

# What lies on the machine outside the suite root, one line per file or link.
show_machine() {
  echo "   -- $1"
  (cd "$machine" && find . \( -path ./suite -o -path ./bin -o -path ./home/.config/Tavrin \) -prune -o \
    \( -type f -o -type l \) -print | sort | sed 's/^/   /')
}

echo "Machine: $machine"
step
hosts=$(printf '%s' "$answer" | base64 -d | jq -c .system.hosts)
step --background

products=$(jq -c '[.Defaults[].ProductName]' "$catalogue")
request=$(jq -n --arg root "$machine/suite" --argjson hosts "$hosts" --argjson plugins "$products" \
  '{rootDir: $root, hosts: $hosts, plugins: $plugins, language: 1, version: "4.2.0",
    mixpanelEnabled: true, isUpdate: "false", localAppDataDir: ""}')
step --install "$request"
show_machine "after the installation"
step --config "$request"
show_machine "after the records (the hive files are under etc/xdg and home/.config/winreg)"
step --uninstall '{"keepPreferences": "true"}'
show_machine "after the uninstallation, keeping preferences"
step --resetConfig '{}'
show_machine "after the settings reset"

log=$(ls -1 "$machine/home/.config/Tavrin/Orv Collection/logs/"*.log | tail -n 1)
echo
echo "Log of the last run: $log ($(wc -l <"$log") lines), its last lines:"
tail -n 3 "$log"
echo "The machine stays in place: $machine"
