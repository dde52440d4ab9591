#!/usr/bin/env bash
# Runs the benchmarks and prints the numbers for docs/performance.md: ratios to the floor measured in the same run, and
# the growth per key. usage: scripts/bench.sh
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-dependencies.sh bench
cmake --workflow --preset bench >&2
build/bench/bench/kelvinbar_bench --benchmark_format=json 2>/dev/null | python3 scripts/bench_report.py
printf '\nA pass over the files of /sys\n'
scripts/bench-sensors.sh 2>/dev/null
printf '\nDiscoveries of generated machines\n'
build/bench/bench/kelvinbar_discovery_bench
printf '\nThe panel\n'
scripts/bench-panel.sh 2>/dev/null
