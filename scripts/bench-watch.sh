#!/usr/bin/env bash
# Measures kelvinbar-snapshot --watch: six of the channels of a generated /sys, read and printed every second, in real
# time. Prints the share of a core. usage: scripts/bench-watch.sh [SECONDS]
set -euo pipefail
cd "$(dirname "$0")/.."
export seconds=${1:-60}
scripts/install-dependencies.sh bench
{
  cmake --preset bench
  cmake --build --preset bench --target kelvinbar_sensor_bench kelvinbar-snapshot
} >&2
export build="$PWD/build/bench"

# Mounts the tree over /sys, for this process only.
own_mounts=(unshare --mount)
[[ $(id -u) -eq 0 ]] || own_mounts=(unshare --user --map-root-user --mount)
"${own_mounts[@]}" bash -euo pipefail <<'EOS'
  mount -t tmpfs none /sys/class
  mkdir /sys/class/hwmon
  "$build/bench/kelvinbar_sensor_bench" /sys/class/hwmon tree 200
  mapfile -t keys < <("$build/tools/kelvinbar-snapshot" --format csv | sed -n '2,7s/,.*//p')
  # Nanoseconds that the threads of the process have run for.
  processor_time() { cat "/proc/$1"/task/*/schedstat | awk '{ sum += $1 } END { print sum }'; }

  for format in jsonl csv table; do
    "$build/tools/kelvinbar-snapshot" --watch 1 --format "$format" --key "${keys[@]}" >/dev/null &
    pid=$!
    sleep 2
    before=$(processor_time $pid)
    sleep "$seconds"
    after=$(processor_time $pid)
    kill $pid && wait $pid
    awk -v format="$format" -v keys="${#keys[@]}" -v time=$((after - before)) -v s="$seconds" \
      'BEGIN { printf "%-6s %d keys a second: %.3f %% of a core\n", format, keys, time / s / 1e7 }'
  done
EOS
