#!/usr/bin/env bash
# Tries the way of docs/fleet.md on loopback: what the systemd service runs, Debian's prometheus-node-exporter, Debian's
# Prometheus, the queries of the dashboard.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-dependencies.sh fleet
cmake --preset release
cmake --build --preset release --target kelvinbar-snapshot
tests/packaging/fleet/PrometheusTest.py "$PWD/build/release/tools/kelvinbar-snapshot" \
  build/release/packaging/linux/fleet/kelvinbar-snapshot.service packaging/linux/fleet/kelvinbar-dashboard.json
