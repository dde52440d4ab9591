#!/usr/bin/env bash
# Runs every fuzz target for SECONDS each (60 unless told), from the seeds in the repository.
# usage: scripts/fuzz.sh [SECONDS]
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-60}
[[ $seconds =~ ^[0-9]+$ ]] || { echo "usage: scripts/fuzz.sh [SECONDS]" >&2; exit 2; }

scripts/install-dependencies.sh fuzz
cmake --preset fuzz
cmake --build --preset fuzz --target fuzz_replay_text fuzz_value_decoding fuzz_key_listing fuzz_naming_rules

for target in replay_text value_decoding key_listing naming_rules; do
  corpus="build/fuzz/corpus/$target"
  mkdir -p "$corpus"
  echo "== $target: $seconds s"
  "build/fuzz/fuzz/fuzz_$target" -max_total_time="$seconds" -timeout=20 -max_len=8192 -print_funcs=0 -print_pcs=0 \
    -verbosity=0 -artifact_prefix="build/fuzz/finding-$target-" "$corpus" "fuzz/seeds/$target"
done
echo "No findings."
