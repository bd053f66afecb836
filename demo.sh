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

# Every file and link on the machine but the demo's own tools and logs.
machine_files() {
  (cd "$machine" && find . \( -path ./bin -o -path ./home/.config/Tavrin \) -prune -o \( -type f -o -type l \) -print |
    sed 's|^\./||' | sort)
}

# What the last step added and removed, counted by the folder it lies in.
show_changes() {
  local after
  after=$(machine_files)
  summarize() { awk -F/ -v sign="$1" '{ n = NF > 4 ? 4 : NF - 1; p = $1; for (i = 2; i <= n; i++) p = p "/" $i;
    count[p]++ } END { for (p in count) printf "   %s %4d  %s/\n", sign, count[p], p }' | sort -k3; }
  echo "   changes on the machine:"
  comm -13 <(printf '%s\n' "$before") <(printf '%s\n' "$after") | grep . | summarize + || true
  comm -23 <(printf '%s\n' "$before") <(printf '%s\n' "$after") | grep . | summarize - || true
  before=$after
}

echo "Machine: $machine"
before=$(machine_files)
step
hosts=$(printf '%s' "$answer" | base64 -d | jq -c .system.hosts)
step --background

products=$(jq -c '[.Defaults[].ProductName]' "$catalogue")
request=$(jq -n --arg root "$machine/suite" --argjson hosts "$hosts" --argjson plugins "$products" \
  '{rootDir: $root, hosts: $hosts, plugins: $plugins, language: 1, version: "4.2.0",
    mixpanelEnabled: true, isUpdate: "false", localAppDataDir: ""}')
step --install "$request"
show_changes
step --config "$request"
show_changes
echo "   the machine's hive file now:"
awk 'NF { print "     " $0 }' "$machine/etc/xdg/winreg/HKEY_LOCAL_MACHINE.reg"
step --uninstall '{"keepPreferences": "true"}'
show_changes
step --resetConfig '{}'
show_changes
echo "   left on the machine outside the suite root:"
machine_files | grep -v '^suite/' | sed 's/^/     /'

log=$(ls -1 "$machine/home/.config/Tavrin/Orv Collection/logs/"*.log | tail -n 1)
echo
echo "Log of the last run: $log ($(wc -l <"$log") lines), its last lines:"
tail -n 3 "$log"
echo "The machine stays in place: $machine"
