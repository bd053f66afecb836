#!/usr/bin/env bash
# Builds the libFuzzer targets with clang in build-fuzz/, replays the inputs
# that once broke them, then fuzzes each one for a short while from its
# checked-in seed corpus. Usage: scripts/fuzz.sh [seconds per target, default 15]
set -euo pipefail
source "$(dirname "$0")/bootstrap.sh"

seconds=${1:-15}
fuzz_build="$SUITEDEPLOYER_ROOT/build-fuzz"
ensure_packages "${BUILD_PACKAGES[@]}" "${FUZZ_PACKAGES[@]}"
cmake -S "$SUITEDEPLOYER_ROOT" -B "$fuzz_build" -DCMAKE_CXX_COMPILER=clang++ \
  -DSUITEDEPLOYER_FUZZ=ON -DSUITEDEPLOYER_BUILD_TESTS=OFF -DSUITEDEPLOYER_BUILD_BENCH=OFF >/dev/null
cmake --build "$fuzz_build" -j"$(nproc)"

# New inputs go to a scratch folder so that the checked-in corpus stays as reviewed.
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
summary=()
for corpus in "$SUITEDEPLOYER_ROOT"/fuzz/corpus/*/; do
  target=$(basename "$corpus")
  fuzzer="$fuzz_build/fuzz/${target}_fuzzer"
  regressions="$SUITEDEPLOYER_ROOT/fuzz/regressions/$target"
  if [ -d "$regressions" ]; then
    "$fuzzer" "$regressions"/* 2>"$scratch/$target.replay" ||
      { cat "$scratch/$target.replay"; echo "$target: a regression input fails again"; exit 1; }
  fi
  mkdir -p "$scratch/$target"
  "$fuzzer" "$scratch/$target" "$corpus" -max_total_time="$seconds" \
    -artifact_prefix="$scratch/$target-" -print_final_stats=1 2>"$scratch/$target.log" ||
    { tail -40 "$scratch/$target.log"; echo "$target: the fuzzer found a failure"; exit 1; }
  runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$scratch/$target.log")
  speed=$(sed -n 's/^stat::average_exec_per_sec: *//p' "$scratch/$target.log")
  summary+=("$(printf '%-18s %10s runs in %ss, %7s per second' "$target" "$runs" "$seconds" "$speed")")
done
echo "Fuzzing clean:"
printf '  %s\n' "${summary[@]}"
