#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test: the plain build's,
# clang-tidy over the program's sources, the fuzzers over a fixed number of
# runs, the Windows platform layer's tests under Wine, the cross build of the
# Windows program, the wizard's road and the end-to-end suite with it under
# Wine, and the whole suite again under AddressSanitizer and
# UndefinedBehaviorSanitizer. Stops at
# the first failure; the exit code is the result of all of them. Prints how
# long each stage took, also after a failure, so that the time limit of CI
# stays in sight.
set -euo pipefail
source "$(dirname "$0")/scripts/bootstrap.sh"

sanitized="$SUITEDEPLOYER_ROOT/build-sanitize"
started=$SECONDS
stage_times=()

# run_stage NAME COMMAND...: runs the command as one timed stage.
run_stage() {
  local name=$1 start=$SECONDS
  shift
  echo "=== $name"
  current_stage=$name
  "$@"
  stage_times+=("$(format_time "$name" $((SECONDS - start)))")
  current_stage=
}

format_time() {
  printf '  %-26s %3d min %02d s' "$1" $(($2 / 60)) $(($2 % 60))
}

print_stage_times() {
  local status=$?
  echo "=== Stage times"
  printf '%s\n' "${stage_times[@]}"
  python3 "$SUITEDEPLOYER_ROOT/scripts/e2e-counts.py" "$SUITEDEPLOYER_BUILD/ctest-junit.xml" \
    "$SUITEDEPLOYER_ROOT/build-wine-road/wine-e2e.xml" || true
  [ -n "${current_stage:-}" ] && echo "  $current_stage: failed"
  format_time total $((SECONDS - started))
  echo
  return $status
}
trap print_stage_times EXIT

run_stage packages ensure_packages "${BUILD_PACKAGES[@]}" "${FUZZ_PACKAGES[@]}" "${WINE_PACKAGES[@]}" \
  "${TIDY_PACKAGES[@]}"
run_stage build build_project
# Reports of an earlier run must not be counted for this one.
rm -f "$SUITEDEPLOYER_BUILD/ctest-junit.xml" "$SUITEDEPLOYER_ROOT/build-wine-road/wine-e2e.xml"
run_stage tests ctest --test-dir "$SUITEDEPLOYER_BUILD" --output-on-failure -j"$(nproc)" \
  --output-junit "$SUITEDEPLOYER_BUILD/ctest-junit.xml"
run_stage clang-tidy "$SUITEDEPLOYER_ROOT/scripts/tidy.sh"
run_stage fuzzing "$SUITEDEPLOYER_ROOT/scripts/fuzz.sh"
run_stage "Wine tests" "$SUITEDEPLOYER_ROOT/scripts/wine-tests.sh"
run_stage "Windows program" "$SUITEDEPLOYER_ROOT/scripts/build-windows.sh"
run_stage "Windows same bytes" "$SUITEDEPLOYER_ROOT/scripts/windows-same-bytes.sh"
release_folder=$(mktemp -d "${TMPDIR:-/tmp}/suitedeployer-release.XXXXXX")
run_stage "Windows release" bash -c '"$1/scripts/build-windows.sh" --release "$2/release" >"$2/build.log" &&
  "$1/scripts/check-windows-release.sh" "$2/release"' _ "$SUITEDEPLOYER_ROOT" "$release_folder"
rm -rf "$release_folder"
run_stage "Wine road" "$SUITEDEPLOYER_ROOT/scripts/wine-road.sh"
run_stage "Wine end-to-end" "$SUITEDEPLOYER_ROOT/scripts/wine-e2e.sh"
run_stage "sanitizer build" build_project "$sanitized" -DSUITEDEPLOYER_SANITIZE=ON -DSUITEDEPLOYER_BUILD_BENCH=OFF
run_stage "sanitizer tests" ctest --test-dir "$sanitized" --output-on-failure -j"$(nproc)"
