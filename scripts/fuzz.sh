#!/usr/bin/env bash
# Builds the libFuzzer targets with clang in build-fuzz/ and runs each of them.
#
#   scripts/fuzz.sh                    What test.sh runs: replays the inputs in
#       fuzz/regressions/ that once broke a target, then fuzzes each target
#       from its checked-in corpus with a fixed seed for a fixed number of runs,
#       so that the same commit always gives the same result and figures.
#   scripts/fuzz.sh --explore SECONDS  Looks for new failures on purpose: each
#       target for that long, with a random seed. What it finds is kept in the
#       scratch folder it names; an input that fails becomes a regression input
#       in fuzz/regressions/<target>/ and a unit test of the code it broke.
set -euo pipefail
source "$(dirname "$0")/bootstrap.sh"

case "${1:-}" in
  "") explore= ;;
  --explore) explore=${2:?"--explore needs the seconds per target"} ;;
  *) echo "Usage: $0 [--explore SECONDS]" >&2; exit 2 ;;
esac
# The fixed mode's runs per target: about a minute for all four on a 2-core machine.
declare -A runs=([answer_encoding]=250000 [hive_reader]=200000 [request_decoding]=500000 [wmic_output]=350000)

fuzz_build="$SUITEDEPLOYER_ROOT/build-fuzz"
ensure_packages "${BUILD_PACKAGES[@]}" "${FUZZ_PACKAGES[@]}"
cmake -S "$SUITEDEPLOYER_ROOT" -B "$fuzz_build" -DCMAKE_CXX_COMPILER=clang++ \
  -DSUITEDEPLOYER_FUZZ=ON -DSUITEDEPLOYER_BUILD_TESTS=OFF -DSUITEDEPLOYER_BUILD_BENCH=OFF >/dev/null
cmake --build "$fuzz_build" -j"$(nproc)"

# New inputs, logs and failing inputs go to a scratch folder, so that the
# checked-in corpus stays as reviewed; it stays after exploring or a failure.
scratch=$(mktemp -d "${TMPDIR:-/tmp}/fuzz.XXXXXX")
trap 'if [ $? -eq 0 ] && [ -z "$explore" ]; then rm -rf "$scratch"; else echo "Inputs and logs: $scratch"; fi' EXIT
# Qt seeds its hashes anew in every process, which could change the paths taken.
export QT_HASH_SEED=0
summary=()
for corpus in "$SUITEDEPLOYER_ROOT"/fuzz/corpus/*/; do
  target=$(basename "$corpus")
  fuzzer="$fuzz_build/fuzz/${target}_fuzzer"
  regressions="$SUITEDEPLOYER_ROOT/fuzz/regressions/$target"
  if [ -d "$regressions" ]; then
    "$fuzzer" "$regressions"/* 2>"$scratch/$target.replay" ||
      { cat "$scratch/$target.replay"; echo "$target: a regression input fails again"; exit 1; }
  fi
  # libFuzzer would take a folder's inputs in the file system's order, which
  # differs between machines: the checked-in ones go by name, and the folder
  # it reads and writes starts empty.
  seeds=$(printf '%s\n' "$corpus"* | LC_ALL=C sort | paste -sd,)
  if [ -n "$explore" ]; then
    mode=(-max_total_time="$explore")
  else
    # Nothing that goes by the clock, and no operands of comparisons in the
    # mutations (-use_cmp=0): some are addresses, which differ from run to run.
    mode=(-seed=1 -runs="${runs[$target]}" -use_cmp=0 -reload=0 -purge_allocator_interval=-1)
  fi
  mkdir "$scratch/$target"
  start=$(date +%s%N)
  "$fuzzer" "${mode[@]}" -seed_inputs="$seeds" -artifact_prefix="$scratch/$target-" \
    -print_final_stats=1 "$scratch/$target" 2>"$scratch/$target.log" ||
    { tail -40 "$scratch/$target.log"; echo "$target: the fuzzer found a failure"; exit 1; }
  tenths=$((($(date +%s%N) - start) / 100000000))
  executed=$(sed -n 's/^stat::number_of_executed_units: *//p' "$scratch/$target.log")
  read -r cov ft units < <(sed -n 's/.*DONE *cov: \([0-9]*\) ft: \([0-9]*\) corp: \([0-9]*\)\/.*/\1 \2 \3/p' \
    "$scratch/$target.log")
  summary+=("$(printf '%-17s %7s runs  cov %4s  ft %5s  corpus %4s units  %3d.%d s' \
    "$target" "$executed" "$cov" "$ft" "$units" $((tenths / 10)) $((tenths % 10)))")
done
echo "Fuzzing clean:"
printf '  %s\n' "${summary[@]}"
