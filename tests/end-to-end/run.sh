#!/usr/bin/env bash
# Runs one scenario on its own display and session bus, with an empty home folder.
# usage: run.sh SCENARIO PROGRAM ARTEFACTS
set -euo pipefail
folder=$(cd "$(dirname "$0")" && pwd)
export PROGRAM=$2 ARTEFACTS=$3
source "$folder/../../scripts/empty-home.sh"
timeout 120 xvfb-run --auto-servernum --server-args="-screen 0 1280x800x24" \
  dbus-run-session -- bash "$folder/$1.sh"
