#!/usr/bin/env bash
# Runs every benchmark and prints one table of their figures: what is
# measured, the baseline measured in the same run, the ratio and its goal.
# Each benchmark's own output goes to bench-results/<name>.txt beside the
# build, so that the table can be read against the details.
#
#   bench/all.sh                 # everything, about 15 minutes here
#   SIZES="1000 4000 16000" bench/all.sh   # installs without the 64,000-file size
#
# A quiet machine gives steady figures; the table names the load before the
# run.
set -euo pipefail
source "$(dirname "$0")/../scripts/bootstrap.sh"

ensure_packages "${BUILD_PACKAGES[@]}" hyperfine jq python3
build_project >/dev/null

results="$SUITEDEPLOYER_BUILD/bench-results"
mkdir -p "$results"
read -r load _ _ _ _ </proc/loadavg
bench="$SUITEDEPLOYER_ROOT/bench"

# run NAME COMMAND...: the command's output to its file, its figure lines kept.
figures=()
run() {
  local name=$1
  shift
  echo "== $name" >&2
  "$@" >"$results/$name.txt" 2>&1 || {
    echo "$name failed; see $results/$name.txt" >&2
    tail -n 20 "$results/$name.txt" >&2
    exit 1
  }
  mapfile -t -O "${#figures[@]}" figures < <(grep -E '^[^|]+\|[^|]+\|[0-9.]+\|[^|]+$' "$results/$name.txt")
}

run startup "$bench/startup.sh"
run sink "$bench/sink.sh"
# On the disk each run gets a file system of its own: on one that has seen
# deletions in the last minutes, a new inode costs what they left behind
# (docs/performance.md). The disk's file system as it is, at one size, shows
# how much that is today.
run install-disk env FRESH_FS=1 RUNS="${RUNS:-5}" "$bench/install-scale.sh"
run install-disk-as-is env SIZES=16000 RUNS="${RUNS:-5}" "$bench/install-scale.sh"
# Without a journal ext4 keeps freed inodes from reuse for a minute and
# passes over them one by one; with one it doesn't. The same sizes on a fresh
# ext4 with a journal show what that costs the tool as it grows.
run install-disk-journal env FRESH_FS=journal SIZES="1000 16000 64000" "$bench/install-scale.sh"
run install-tmpfs env TMPDIR=/dev/shm "$bench/install-scale.sh"
run wine "$bench/wine-startup.sh"

echo
echo "$(date -u '+%Y-%m-%d %H:%M UTC'), $(git -C "$SUITEDEPLOYER_ROOT" rev-parse --short HEAD), $(nproc) cores, load before: $load"
printf '%s\n' "figure|baseline|ratio|goal" "${figures[@]}" | column -t -s '|' -o ' | '
