#!/usr/bin/env bash
# Runs one scenario on a display and a session bus of its own, for a user whose home is empty.
# usage: run.sh SCENARIO PROGRAM ARTEFACTS
set -euo pipefail
folder=$(cd "$(dirname "$0")" && pwd)
home=$(mktemp -d)
trap 'rm -rf "$home" 2>/dev/null || { sleep 1; rm -rf "$home"; }' EXIT # services of the bus may still write
# Services that the bus starts take these from it.
export PROGRAM=$2 ARTEFACTS=$3 HOME=$home
export XDG_CONFIG_HOME=$home/config XDG_CACHE_HOME=$home/cache XDG_RUNTIME_DIR=$home/run XDG_CURRENT_DESKTOP=Test
export LC_ALL=C.UTF-8 # in which a degree sign is printed as one
unset WAYLAND_DISPLAY SESSION_MANAGER
mkdir -p "$XDG_CONFIG_HOME" "$XDG_CACHE_HOME"
mkdir -m 700 "$XDG_RUNTIME_DIR"
timeout 120 xvfb-run --auto-servernum --server-args="-screen 0 1280x800x24" \
  dbus-run-session -- bash "$folder/$1.sh"
