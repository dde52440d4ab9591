#!/usr/bin/env bash
# Builds Kelvinbar and runs it in the tray of the desktop, or on a virtual display if there is none.
# usage: scripts/run.sh                                  the program
#        scripts/run.sh ARGUMENTS OF kelvinbar-snapshot  only a snapshot, on the console
set -euo pipefail
cd "$(dirname "$0")/.."
build=build/release

build() {
  {
    scripts/install-dependencies.sh run "${@:2}"
    cmake --preset release
    # shellcheck disable=SC2086  # several target names
    cmake --build --preset release --target $1
  } >&2
}

has_sensors() {
  local snapshot
  snapshot=$("$build/tools/kelvinbar-snapshot") && [[ $snapshot != *$'\tnative\t'* ]]
}

has_desktop() { [[ -n ${WAYLAND_DISPLAY:-} ]] || { [[ -n ${DISPLAY:-} ]] && ! display_is_dead; }; }

display_is_dead() { command -v xdpyinfo >/dev/null && ! xdpyinfo >/dev/null 2>&1; }

if [[ $# -gt 0 ]]; then
  build kelvinbar-snapshot
  exec "$build/tools/kelvinbar-snapshot" "$@"
fi

programs="kelvinbar kelvinbar-demo kelvinbar-panel kelvinbar-xembed kelvinbar-snapshot"
if has_desktop; then
  build "$programs"
  if has_sensors; then
    echo "Kelvinbar is in the tray. Its panel opens with a click on it."
    exec "$build/app/kelvinbar"
  fi
  echo "This machine has no sensors: a made-up one is in the tray. Its panel opens with a click on it."
  exec "$build/app/kelvinbar-demo"
fi

echo "There is no display: a made-up machine runs on a virtual one." >&2
build "$programs" virtual-display
PROGRAM=$PWD/$build/app/kelvinbar-demo FOLDER=$PWD/build/run exec scripts/virtual-run.sh
