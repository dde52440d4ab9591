# Functions that find the program's controls through the accessibility interface. Sourced by the scenarios.

export QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1

assistive() { /usr/bin/python3 "$(dirname "${BASH_SOURCE[0]}")/assistive.py" "$@" 2>>"$HOME/assistive.log"; }

has_state() { [[ " $(assistive states "$1") " == *" $2 "* ]]; }
has_not_state() { local states; states=$(assistive states "$1") && [[ " $states " != *" $2 "* ]]; }

point_at() {
  local place
  place=$(assistive place "$1") || fail "nothing is called '$1'"
  # shellcheck disable=SC2086 — two numbers
  xdotool mousemove $place
  sleep 0.1
}

press_pointer_at() {
  point_at "$1"
  xdotool click 1
}

double_click() {
  point_at "$1"
  xdotool click --repeat 2 --delay 80 1
  sleep 0.6 # a following click must not count as the third
}

# hide_row NAME: presses the button at the right end of the row.
hide_row() {
  local place
  place=$(assistive place "$1") || fail "nothing is called '$1'"
  panel_geometry
  xdotool mousemove $((X + WIDTH - 39)) "${place#* }"
  sleep 0.1
  xdotool click 1
}
