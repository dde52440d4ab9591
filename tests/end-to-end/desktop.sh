# Functions for tests of the whole program on a virtual desktop. Sourced by the scenarios, which have their own display
# and session bus.
#
# The environment contains PROGRAM (the demo program), ARTEFACTS (a folder for screenshots) and HOME (an empty folder).
# Scenarios end with `finish`.

set -euo pipefail

mkdir -p "$ARTEFACTS"
trap 'kill $(jobs -p) 2>/dev/null || true' EXIT

screen_width=1280
screen_height=800
panel_height=28

fail() {
  echo "FAILED: $*" >&2
  tail -3 "$HOME/assistive.log" >&2 2>/dev/null || true
  import -window root "$ARTEFACTS/failed-${scenario:-unknown}.png" || true
  exit 1
}

# wait_until SECONDS WHAT COMMAND…: waits until the command succeeds, and fails after SECONDS.
wait_until() {
  local seconds=$1 what=$2 end
  shift 2
  end=$((SECONDS + seconds))
  until "$@" >/dev/null 2>&1; do
    ((SECONDS < end)) || fail "$what: not within $seconds s"
    sleep 0.05
  done
}

source "$(dirname "${BASH_SOURCE[0]}")/../../scripts/demo-preferences.sh"

picture() { import -window root "$ARTEFACTS/$scenario-$1.png"; }

# The scenarios look for readings of this machine.
start_program() {
  "$PROGRAM" intel-notebook &
  program=$!
  wait_until 10 "the item on the bus" item_property Title
  item=$(unique_name "$program_name") || fail "the program has no connection"
}

# The item registers by the unique name of the program's connection, which also owns this name.
program_name=org.kelvinbar.Demo

unique_name() {
  gdbus call --session --dest org.freedesktop.DBus --object-path / --method org.freedesktop.DBus.GetNameOwner "$1" |
    grep -o ':[0-9.]*'
}

item_property() {
  gdbus call --session --dest "$program_name" --object-path /StatusNotifierItem \
    --method org.freedesktop.DBus.Properties.Get org.kde.StatusNotifierItem "$1"
}

label() { item_property XAyatanaLabel | sed "s/^(<'\(.*\)'>,)$/\1/"; }

label_matches() { [[ $(label) =~ $1 ]]; }

registered_items() {
  gdbus call --session --dest org.kde.StatusNotifierWatcher --object-path /StatusNotifierWatcher \
    --method org.freedesktop.DBus.Properties.Get org.kde.StatusNotifierWatcher RegisteredStatusNotifierItems
}

menu_call() {
  gdbus call --session --dest "$program_name" --object-path /StatusMenu --method "com.canonical.dbusmenu.$1" -- "${@:2}"
}

# choose TEXT: chooses the entry of the item's menu whose text begins with TEXT, as a host does.
choose() {
  local id
  id=$(menu_call GetLayout 0 -1 '[]' | grep -oP "<\(\K[0-9]+(?=, \{[^}]*'label': <'$1)") || fail "no entry '$1'"
  menu_call Event "$id" clicked "<''>" 0 >/dev/null
}

# Watchers name an item by its service, some with the path behind it.
is_registered() { registered_items | grep -qE "'$item[/@']"; }

is_not_registered() { ! is_registered; }

bus_has() { gdbus call --session --dest org.freedesktop.DBus --object-path / --method org.freedesktop.DBus.NameHasOwner "$1" | grep -q true; }

panel_window() { xdotool search --onlyvisible --name '^Kelvinbar$' | tail -1; }

panel_is_open() { [[ -n $(panel_window) ]]; }

panel_is_closed() { [[ -z $(panel_window) ]]; }

# panel_geometry: sets X, Y, WIDTH, HEIGHT.
panel_geometry() { eval "$(xdotool getwindowgeometry --shell "$(panel_window)" | grep -E '^(X|Y|WIDTH|HEIGHT)=')"; }

panel_has_size() {
  panel_geometry
  [[ $WIDTH -eq $1 && $HEIGHT -eq $2 ]]
}

# A key goes to the window with the focus, which the window manager gives after it shows the window.
panel_has_focus() { [[ $(xdotool getwindowfocus 2>/dev/null) == "$(panel_window)" ]]; }

click() {
  xdotool mousemove "$1" "$2"
  sleep 0.15
  xdotool mousedown 1
  sleep 0.1 # about as long as a person presses a button
  xdotool mouseup 1
}

finish() {
  kill -TERM "$program"
  local status=0
  wait "$program" || status=$?
  [[ $status -eq 0 ]] || fail "the program ended with status $status"
  echo "passed: $scenario"
}
