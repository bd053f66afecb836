#!/usr/bin/env bash
# Grows a suite root written by make_suite_root to a given number of files and
# prints how many it holds then (a root that holds more is left as it is):
#   grow-suite-root.sh ROOT FILES
# The extra files follow a fixed mix, so that roots of different sizes differ
# in scale only:
#   24 %  *.8bf plug-ins, half in bin/plugins (the current generation, linked
#         into the host folder of each of its products) and half in the folders
#         of the older products;
#   24 %  files inside the module trees Bracketon 2/Bracketon2.lrplugin and
#         bin/lrplugins/PluginParam.lrplugin (copied whole into Lightroom);
#   26 %  *.jpg sample pictures in pictures/ and its language folders;
#   25 %  files in appData/ trees;
#    1 %  *.exe helpers, half below bin and half in the older products' folders.
# Every file holds a short text that names it, as the generated ones do. Names
# are unique, so no link or copy meets one of the same name. Plug-ins and
# pictures lie flat in their folders; the module and application data trees
# have folders of at most 100 files.
set -euo pipefail

root=${1:?usage: grow-suite-root.sh ROOT FILES}
target=${2:?usage: grow-suite-root.sh ROOT FILES}
[ -d "$root/bin/plugins" ] || { echo "not a suite root: $root" >&2; exit 1; }

base=$(find "$root" -type f | wc -l)
extra=$((target - base))
if [ "$extra" -le 0 ]; then
  echo "$base"
  exit 0
fi

plugins=$((extra * 24 / 100))
modules=$((extra * 24 / 100))
pictures=$((extra * 26 / 100))
executables=$((extra / 100))
appdata=$((extra - plugins - modules - pictures - executables))

old_products=("Bracketon 2" "Grainwick 2" "Tintara 4" "Quietar 2" "Graymere 2" "Lumbrio 2" "Rectilo" "Acutara 3")

# spread COUNT PREFIX SUFFIX DIR...: COUNT files named PREFIX<n>SUFFIX, dealt
# round the folders given in turn.
spread() {
  local count=$1 prefix=$2 suffix=$3
  shift 3
  local dirs=("$@") i dir name
  mkdir -p "${dirs[@]}"
  for ((i = 0; i < count; i++)); do
    dir=${dirs[i % ${#dirs[@]}]}
    printf -v name "%s%05d%s" "$prefix" "$i" "$suffix"
    printf 'contents of %s\n' "$name" >"$dir/$name"
  done
}

# tree COUNT TOP SUFFIX SUBFOLDER...: COUNT files below TOP, in the subfolders
# given, each filled up to 100 files before the next numbered one is opened.
tree() {
  local count=$1 top=$2 suffix=$3
  shift 3
  local subfolders=("$@") i=0 batch sub dir
  local batches=$(((count + 99) / 100))
  for ((batch = 0; batch < batches; batch++)); do
    sub=${subfolders[batch % ${#subfolders[@]}]}
    printf -v dir "%s/%s/%03d" "$top" "$sub" "$((batch / ${#subfolders[@]}))"
    mkdir -p "$dir"
    local n
    for ((n = 0; n < 100 && i < count; n++, i++)); do
      printf 'contents of %s\n' "item$i$suffix" >"$dir/item$i$suffix"
    done
  done
}

# The plug-ins.
current=$((plugins / 2))
spread "$current" "Orv Extra " ".8bf" "$root/bin/plugins"
old_dirs=()
for product in "${old_products[@]}"; do old_dirs+=("$root/$product"); done
spread "$((plugins - current))" "Legacy Extra " ".8bf" "${old_dirs[@]}"

# The module trees.
half=$((modules / 2))
tree "$half" "$root/Bracketon 2/Bracketon2.lrplugin" ".lua" "Resources" "Locale" "Scripts"
tree "$((modules - half))" "$root/bin/lrplugins/PluginParam.lrplugin" ".lua" "Resources" "Locale" "Scripts"

# The sample pictures, flat: the neutral ones directly in pictures/ (its
# subfolders are languages) and those of the language folders.
spread "$pictures" "Sample " ".jpg" "$root/pictures" "$root/pictures/1031" "$root/pictures/1031/Details" \
  "$root/pictures/1033" "$root/pictures/1041"

# The application data.
tree "$appdata" "$root/appData" ".dat" "Presets" "Profiles" "Licenses" "Cache"

# The helpers.
below_bin=$((executables / 2))
spread "$below_bin" "Orv Helper " ".exe" "$root/bin" "$root/bin/plugins"
spread "$((executables - below_bin))" "Legacy Helper " ".exe" "${old_dirs[@]}"

find "$root" -type f | wc -l
