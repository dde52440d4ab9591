#!/usr/bin/env bash
# Reads a generated /sys of 200 channels with Kelvinbar, with libsensors, and with plain reads, all in one run. Prints
# processor time and system calls per pass, and the time of a discovery. usage: scripts/bench-sensors.sh [CHANNELS]
set -euo pipefail
cd "$(dirname "$0")/.."
channels=${1:-200}
scripts/install-dependencies.sh bench
{
  cmake --preset bench
  cmake --build --preset bench --target kelvinbar_sensor_bench
} >&2
export program="$PWD/build/bench/bench/kelvinbar_sensor_bench" channels

# Mounts the tree over /sys, for this process only: libsensors cannot read another place.
own_mounts=(unshare --mount)
[[ $(id -u) -eq 0 ]] || own_mounts=(unshare --user --map-root-user --mount)
"${own_mounts[@]}" bash -euo pipefail <<'EOS'
  mount -t tmpfs none /sys/class
  mkdir /sys/class/hwmon
  "$program" /sys/class/hwmon tree "$channels"

  # The calls of ten passes, without those of starting the program.
  calls() {
    local passes file count=()
    file=$(mktemp)
    for passes in 0 10; do
      strace -f -c -o "$file" "$program" read "$1" "$passes" >/dev/null
      count+=("$(awk '$NF == "total" { print $4 }' "$file")")
    done
    rm "$file"
    echo $(((count[1] - count[0]) / 10))
  }

  printf '%12s %8s %16s %20s\n' reader values "CPU a pass (ns)" "system calls a pass"
  declare -A times
  for reader in floor libsensors kelvinbar discovery; do
    passes=2000
    [[ $reader != discovery ]] || passes=20
    # The median of five.
    line=$(for _ in 1 2 3 4 5; do "$program" read "$reader" "$passes"; done | sort -k4n | sed -n 3p)
    read -r _ values _ times[$reader] _ <<<"$line"
    printf '%12s %8d %16d %20d\n' "$reader" "$values" "${times[$reader]}" "$(calls "$reader")"
  done
  for peer in floor libsensors; do
    awk -v ours="${times[kelvinbar]}" -v peer="${times[$peer]}" -v name="$peer" \
      'BEGIN { printf "CPU of a pass, times that of %s: %.2f\n", name, ours / peer }'
  done
EOS
