#!/usr/bin/env bash
# What the panel costs: opening it in the whole program, on a display of its own beside a tray, and a refresh while it
# is open. usage: scripts/bench-panel.sh
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-dependencies.sh bench desktop
{
  cmake --preset bench
  cmake --build --preset bench --target kelvinbar-demo kelvinbar-panel kelvinbar_panel_opening kelvinbar_panel_refresh_bench
} >&2
build=$PWD/build/bench
home=$(mktemp -d)
trap 'rm -rf "$home" 2>/dev/null || { sleep 1; rm -rf "$home"; }' EXIT
export HOME=$home XDG_CONFIG_HOME=$home/config XDG_RUNTIME_DIR=$home/run XDG_CURRENT_DESKTOP=Test build
mkdir -p "$XDG_CONFIG_HOME/kelvinbar" && mkdir -m 700 "$XDG_RUNTIME_DIR"
printf '[General]\n%s\n' 'KelvinbarMenuBarKeys=TC0P, F0Ac' >"$XDG_CONFIG_HOME/kelvinbar/kelvinbar-demo.conf"

echo "The whole program on the demo machine"
xvfb-run --auto-servernum --server-args="-screen 0 1280x1000x24" dbus-run-session -- bash -euo pipefail <<'EOS' 2>/dev/null
  # A tray, as every desktop with a status area has one.
  screen_width=1280 screen_height=1000 panel_height=28
  source tests/end-to-end/hosts.sh
  start_lxqt_panel
  until gdbus call --session --dest org.kde.StatusNotifierWatcher --object-path / --method org.freedesktop.DBus.Peer.Ping; do
    sleep 0.2
  done >/dev/null
  "$build/bench/kelvinbar_panel_opening" "$build/shell/kelvinbar-demo"
  kill $host
EOS
echo
"$build/bench/kelvinbar_panel_refresh_bench"
