# shellcheck shell=bash
# Sourced: the rest of the script runs for a user whose home is empty, and goes when it ends.
home=$(mktemp -d)
trap 'rm -rf "$home" 2>/dev/null || { sleep 1; rm -rf "$home"; }' EXIT # services of a bus may still write
# Services that the bus starts take these from it.
export HOME=$home XDG_CONFIG_HOME=$home/config XDG_CACHE_HOME=$home/cache XDG_RUNTIME_DIR=$home/run
export XDG_CURRENT_DESKTOP=Test
export LC_ALL=C.UTF-8 # in which a degree sign is printed as one
unset WAYLAND_DISPLAY SESSION_MANAGER QT_QPA_PLATFORM
mkdir -p "$XDG_CONFIG_HOME/kelvinbar" "$XDG_CACHE_HOME"
mkdir -m 700 "$XDG_RUNTIME_DIR"
source "$(dirname "${BASH_SOURCE[0]}")/demo-preferences.sh"
