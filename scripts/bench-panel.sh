#!/usr/bin/env bash
# Measures opening the panel of the whole program, on a virtual display with a tray, and a refresh while it is open.
# usage: scripts/bench-panel.sh
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-dependencies.sh bench desktop
{
  cmake --preset bench
  cmake --build --preset bench --target kelvinbar-demo kelvinbar-panel kelvinbar_panel_opening kelvinbar_panel_refresh_bench
} >&2
build=$PWD/build/bench
export build
source scripts/empty-home.sh
preferences 'KelvinbarMenuBarKeys=TC0P, F0Ac'

echo "The whole program on the demo machine"
xvfb-run --auto-servernum --server-args="-screen 0 1280x1000x24" dbus-run-session -- bash -euo pipefail <<'EOS' 2>/dev/null
  # Desktops have a window manager and a tray, so the benchmark has them too.
  xfwm4 --compositor=off &
  manager=$!
  mkdir -p "$XDG_CONFIG_HOME/lxqt"
  cat >"$XDG_CONFIG_HOME/lxqt/panel.conf" <<'INI'
panels=panel1
[panel1]
plugins=spacer, statusnotifier
position=Bottom
panelSize=28
width=100
width-percent=true
[spacer]
type=spacer
expandable=true
[statusnotifier]
type=statusnotifier
INI
  lxqt-panel &
  host=$!
  until gdbus call --session --dest org.kde.StatusNotifierWatcher --object-path / --method org.freedesktop.DBus.Peer.Ping; do
    sleep 0.2
  done >/dev/null
  xdotool mousemove 1270 5 # where the status item would be
  "$build/bench/kelvinbar_panel_opening" "$build/app/kelvinbar-demo" intel-notebook
  kill $host $manager
EOS
echo
"$build/bench/kelvinbar_panel_refresh_bench"
