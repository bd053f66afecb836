#!/usr/bin/env bash
# Lines per second of the program's log sink against spdlog's basic_file_sink_mt.
set -euo pipefail
source "$(dirname "$0")/../scripts/bootstrap.sh"
ensure_packages "${BUILD_PACKAGES[@]}"
build_project >/dev/null
"$SUITEDEPLOYER_BUILD/bench/sink_benchmark"
