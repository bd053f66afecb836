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

# What a Photoshop, a Photoshop Elements and a Lightroom leave on a machine:
# their keys in the machine's registry hive (with folders inside the machine)
# and Lightroom's preferences in the user's roaming folder.
seed_hosts() {
  local machine=$1
  mkdir -p "$machine/etc/xdg/winreg" "$machine/home/.config/Adobe/Lightroom/Preferences"
  cat >"$machine/etc/xdg/winreg/HKEY_LOCAL_MACHINE.reg" <<HIVE
Windows Registry Editor Version 5.00

[HKEY_LOCAL_MACHINE\\SOFTWARE\\Adobe\\Photoshop\\120.0]
"ApplicationPath"="$machine/Program Files/Adobe/Adobe Photoshop CC 2018/"

[HKEY_LOCAL_MACHINE\\SOFTWARE\\Adobe\\Photoshop Elements\\16\\PluginPath]
@="$machine/Program Files/Adobe/Photoshop Elements 2018/Plug-Ins"

[HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion]
"CommonFilesDir"="$machine/Program Files/Common Files"
HIVE
  : >"$machine/home/.config/Adobe/Lightroom/Preferences/Lightroom Classic CC 7 Preferences.agprefs"
}
