#!/usr/bin/env bash
# Runs the benchmarks and prints what docs/performance.md reports: ratios to the floor measured in the same
# run, and the growth per key. usage: scripts/bench.sh
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-dependencies.sh bench
{
  cmake --preset bench
  cmake --build --preset bench
} >&2
build/bench/bench/kelvinbar_bench --benchmark_format=json 2>/dev/null | awk '
  # Google Benchmark writes each member of its JSON on a line of its own.
  { gsub(/[",]/, "") }
  $1 == "name:" { name = $2; sub(/\/iterations:.*/, "", name) }
  $1 == "cpu_time:" { time[name] = $2 }
  $1 == "memoryGrowthKiB:" { memory = $2 }
  $1 == "threadGrowth:" { threads = $2 }
  function pass(title, ours, floor, sizes, count, i, size, above, perKey, first) {
    printf "%s\n  %8s %12s %12s %9s %14s %10s\n", title, "keys", "pass (ns)", "floor (ns)", "ratio", "ns/key above", "growth"
    count = split(sizes, list, " ")
    for (i = 1; i <= count; i++) {
      size = list[i]
      perKey = time[ours "/" size] / size
      if (size == 512) first = perKey
      above = (time[ours "/" size] - time[floor "/" size]) / size
      printf "  %8d %12.0f %12.0f %9.1f %14.0f %10s\n", size, time[ours "/" size], time[floor "/" size],
        time[ours "/" size] / time[floor "/" size], above, first ? sprintf("%.2f", perKey / first) : "-"
    }
    print ""
  }
  function one(title, name) { printf "  %-48s %10.1f ns\n", title, time[name] }
  END {
    pass("A pass with discovery (growth: time per key against 512 keys)", "loadReadingsWithDiscovery",
         "driverCallsWithDiscovery", "64 512 1000 2048 8192")
    pass("A pass between discoveries", "loadReadings", "driverCalls", "64 512 1000")
    print "Steps"
    one("menu-bar-only pass of six keys", "loadPinnedReadings")
    one("catalogue: key of the table", "tableHit")
    one("catalogue: key named by a rule", "ruleHit")
    one("catalogue: key that nothing names", "miss")
    one("decoding one value", "decodeValue")
    one("normalising one value", "normalizeOneValue")
    one("number as text", "numberText")
    one("number as text by printf (peer)", "numberTextByPrintf")
    printf "  %-48s %10.1f ns\n", "sorting, per reading at 1000", time["sortReadings/1000"] / 1000
    printf "\n100000 refreshes of 300 keys: memory grew by %d KiB, threads by %d\n", memory, threads
  }'
printf '\nA pass over the files of /sys\n'
scripts/bench-sensors.sh 2>/dev/null
printf '\nThe panel\n'
scripts/bench-panel.sh 2>/dev/null
