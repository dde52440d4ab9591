# shellcheck shell=bash
# Sourced. Runs the rest of the script with an empty home folder, and removes that at the end.
home=$(mktemp -d)
trap 'rm -rf "$home" 2>/dev/null || { sleep 1; rm -rf "$home"; }' EXIT # services of the session bus may still write
# Services started by the session bus inherit these.
export HOME=$home XDG_CONFIG_HOME=$home/config XDG_CACHE_HOME=$home/cache XDG_RUNTIME_DIR=$home/run
export XDG_CURRENT_DESKTOP=Test
export LC_ALL=C.UTF-8 # prints degree signs
unset WAYLAND_DISPLAY SESSION_MANAGER QT_QPA_PLATFORM
mkdir -p "$XDG_CONFIG_HOME/kelvinbar" "$XDG_CACHE_HOME"
mkdir -m 700 "$XDG_RUNTIME_DIR"
source "$(dirname "${BASH_SOURCE[0]}")/demo-preferences.sh"
