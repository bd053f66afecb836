# Sourced by the demonstration and the benchmarks: a throw-away machine in a
# folder. The tool finds every Windows place (registry hives, application data,
# ProgramData, start menu, wmic.exe) through these variables, so nothing
# outside the folder is touched.

new_machine() {
  local machine
  machine=$(mktemp -d "${TMPDIR:-/tmp}/suitedeployer-machine.XXXXXX")
  mkdir -p "$machine"/{home/.config,home/.local/share,etc/xdg,usr/share,ProgramData,bin}
  echo "$machine"
}

# Runs a command with the machine's environment: run_on_machine DIR COMMAND...
run_on_machine() {
  local machine=$1
  shift
  env HOME="$machine/home" \
    XDG_CONFIG_HOME="$machine/home/.config" XDG_DATA_HOME="$machine/home/.local/share" \
    XDG_CONFIG_DIRS="$machine/etc/xdg" XDG_DATA_DIRS="$machine/usr/share" \
    ProgramData="$machine/ProgramData" PATH="$machine/bin:/usr/bin:/bin" \
    "$@"
}
