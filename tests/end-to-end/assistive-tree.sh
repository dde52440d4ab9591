# The panel as screen readers see it: roles, names, values, descriptions, states and order.
scenario=assistive-tree
source "$(dirname "$0")/desktop.sh"
source "$(dirname "$0")/hosts.sh"
source "$(dirname "$0")/assistive.sh"

preferences 'KelvinbarMenuBarKeys=TC0P'
start_window_manager
start_program
"$PROGRAM" || fail "the second start failed"
wait_until 10 "the panel" panel_is_open
wait_until 2 "its size" panel_has_size 462 690
wait_until 10 "the program among the applications" assistive place "CPU Proximity"
sleep 0.5
assistive list >"$HOME/tree"
cp "$HOME/tree" "$ARTEFACTS/$scenario.txt"

# has ROLE NAME DESCRIPTION STATES: an object matches all of these patterns.
has() {
  awk -F '\t' -v role="$1" -v name="$2" -v description="$3" -v states="$4" '
    $2 ~ "^" role "$" && $3 ~ "^" name "$" && $4 ~ "^" description "$" && $5 ~ "^" states "$" { found = 1 }
    END { exit !found }' "$HOME/tree" || fail "no $1 '$2' with '$3', $4"
}
has heading Kelvinbar '' '.*'
has 'push button' About '' focusable
has list CPU 'Package, cores, diode, PECI and CPU power, 10' ''
has 'list item' 'CPU Proximity, [0-9.]+°' 'Showing this key in the menu bar. sp78 • °C' 'focusable selectable selected'
has 'list item' 'CPU Package, [0-9.]+°' 'sp78 • °C' 'focusable selectable'
has 'push button' 'Hide this property from the list' 'CPU Package' focusable
has 'check box' 'Fast, 1s' 'On: fast 1s sampling. Off: medium 3s sampling.' focusable
has 'check box' 'Dynamic, vertical' 'Keeps the window at the compact standard size.' focusable
has 'push button' 'Decrease height' '' focusable
has label 690 '' '.*'
has 'push button' 'Reset height' '' focusable
has 'push button' 'Increase height' '' focusable
has 'check box' Login 'Enable or disable Kelvinbar as a macOS login item.' focusable
has 'push button' Refresh '' focusable
has 'push button' Copy '' focusable
has 'push button' ShowAll 'Show all hidden properties again' focusable
has 'push button' Quit '' focusable

# Every object that can have focus has a name, and nothing of another state of the panel is visible.
awk -F '\t' '$5 ~ /focusable/ && $3 == "" { print; bad = 1 } END { exit bad }' "$HOME/tree" || fail "an object without a name"
! grep -q 'Scanning' "$HOME/tree" || fail "the panel says that it is scanning"

# The objects are in reading order.
order=$(awk -F '\t' '$2 == "push button" || $2 == "check box" || $2 == "list" { print $3 }' "$HOME/tree" |
  grep -v Hide | tr '\n' '|')
[[ $order == 'About|CPU|GRAPHICS|Fast, 1s|Dynamic, vertical|Decrease height|Reset height|Increase height|Login|Refresh|Copy|ShowAll|Quit|' ]] ||
  fail "the order is $order"

# Assistive tools can press controls, and the descriptions are updated.
assistive press Dynamic
wait_until 3 "the mark" has_state Dynamic checked
describes_dynamic() { assistive list | grep 'Expands only the window height'; }
wait_until 3 "its description" describes_dynamic
assistive press "CPU Package"
wait_until 3 "the pinned row" has_state "CPU Package" selected
finish
