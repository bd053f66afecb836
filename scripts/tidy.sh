#!/usr/bin/env bash
# The code's habits, checked: every C++ file of the checkout as .clang-format
# writes it, and clang-tidy with the checks of .clang-tidy over the program's
# own sources (src/) as the Linux build compiles them, with the compile
# commands of build/. Any finding fails the run.
# Usage: scripts/tidy.sh [build folder]
set -euo pipefail
source "$(dirname "$0")/bootstrap.sh"
ensure_packages "${TIDY_PACKAGES[@]}"

mapfile -t sources < <(git -C "$SUITEDEPLOYER_ROOT" ls-files '*.cpp' '*.h')
if ! (cd "$SUITEDEPLOYER_ROOT" && clang-format --dry-run -Werror "${sources[@]}"); then
  echo "These files are not formatted as .clang-format says: run clang-format -i on them"
  exit 1
fi
echo "clang-format: ${#sources[@]} files as .clang-format writes them"

build=${1:-$SUITEDEPLOYER_BUILD}
if [ ! -f "$build/compile_commands.json" ]; then
  build_project "$build"
fi
# The program's files only: generated sources and the tests stay out.
mapfile -t files < <(python3 - "$build/compile_commands.json" "$SUITEDEPLOYER_ROOT/src/" <<'PY'
import json, sys
commands, root = sys.argv[1], sys.argv[2]
print("\n".join(sorted({entry["file"] for entry in json.load(open(commands)) if entry["file"].startswith(root)})))
PY
)
echo "clang-tidy over ${#files[@]} files"
run-clang-tidy -quiet -p "$build" -j"$(nproc)" "${files[@]}" 2>&1 | sed 's/\x1b\[[0-9;]*m//g' > "$build/clang-tidy.log" || {
  grep -E 'warning:|error:' "$build/clang-tidy.log" | sort -u
  echo "clang-tidy found the above; the whole output is in $build/clang-tidy.log"
  exit 1
}
echo "clang-tidy: no findings"
