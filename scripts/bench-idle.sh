#!/usr/bin/env bash
# Measures the program with a closed panel: six pinned readings at fast sampling on the demo machine, in real time,
# compared with a Qt program that does nothing. usage: scripts/bench-idle.sh [SECONDS]
set -euo pipefail
cd "$(dirname "$0")/.."
export seconds=${1:-60}
scripts/install-dependencies.sh bench desktop
{
  cmake --preset bench
  cmake --build --preset bench --target kelvinbar-demo kelvinbar-panel kelvinbar_bare_qt_program
} >&2
export build="$PWD/build/bench"
source scripts/empty-home.sh

xvfb-run --auto-servernum dbus-run-session -- bash -euo pipefail <<'EOS' 2>/dev/null
  source scripts/demo-preferences.sh
  # Voluntary context switches: how often the thread woke up.
  wakeups() { awk '/^voluntary/ { sum += $2 } END { print sum }' "$@"; }
  cpu_ticks() { awk '{ print $14 + $15 }' "/proc/$1/stat"; }

  # measure NAME COMMAND…: measures a program for $seconds after it has become idle.
  measure() {
    local name=$1 pid main workers cpu
    shift
    "$@" &
    pid=$!
    sleep 8
    main=$(wakeups "/proc/$pid/task/$pid/status")
    workers=$(wakeups /proc/$pid/task/*/status)
    cpu=$(cpu_ticks $pid)
    sleep "$seconds"
    main=$(($(wakeups "/proc/$pid/task/$pid/status") - main))
    workers=$(($(wakeups /proc/$pid/task/*/status) - workers - main))
    cpu=$(($(cpu_ticks $pid) - cpu))
    awk -v name="$name" -v rss="$(awk '/VmRSS/ { print $2 }' /proc/$pid/status)" -v cpu=$cpu -v main=$main \
      -v others=$workers -v s="$seconds" -v hz="$(getconf CLK_TCK)" 'BEGIN {
        printf "%-34s %8.1f %14.0f %12.2f %14.2f\n", name, rss / 1024, cpu * 1000 / hz * 60 / s, main / s, others / s }'
    kill $pid && wait $pid || true
  }

  printf '%-34s %8s %14s %12s %14s\n' "panel closed" "RSS MiB" "CPU ms/minute" "main wakes/s" "others wakes/s"
  measure "a Qt program that does nothing" "$build/bench/kelvinbar_bare_qt_program"
  preferences KelvinbarSamplingRate=fast
  measure "nothing pinned" "$build/app/kelvinbar-demo" intel-notebook
  preferences 'KelvinbarMenuBarKeys=TC0P, F0Ac, PC0R, TC0C, TC1C, TG0D' KelvinbarSamplingRate=fast
  measure "six pinned, fast, no tray" "$build/app/kelvinbar-demo" intel-notebook
  export XDG_CURRENT_DESKTOP=MATE
  measure "the same where labels are shown" "$build/app/kelvinbar-demo" intel-notebook
EOS
