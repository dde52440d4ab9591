# Every control of the panel, with pointer and keyboard, in the tray of Xfce's panel.
scenario=panel
source "$(dirname "$0")/desktop.sh"
source "$(dirname "$0")/hosts.sh"
source "$(dirname "$0")/assistive.sh"

preference() { grep "^$1=" "$XDG_CONFIG_HOME/kelvinbar/kelvinbar-demo.conf" | cut -d= -f2-; }
prefers() { [[ $(preference "$1") == "$2" ]]; }
shows() { assistive place "$1"; }
hides() { ! shows "$1"; }

preferences 'KelvinbarMenuBarKeys=TC0P'
start_window_manager
start_xfce_panel
wait_until 10 "the watcher" bus_has org.kde.StatusNotifierWatcher
start_program
wait_until 5 "the item in the tray" is_registered
click "$tray_x" "$tray_y"
wait_until 10 "the panel" panel_is_open
wait_until 2 "its size" panel_has_size 462 690
wait_until 10 "the program among the applications" shows "CPU Proximity"
picture open

# A double-click pins a reading, another one unpins it. A single click and two slow clicks do nothing.
one='^[0-9.]+°$'
two='^[0-9.]+°  [0-9.]+°$'
wait_until 3 "one reading in the tray" label_matches "$one"
double_click "Core 2"
wait_until 3 "two readings in the tray" label_matches "$two"
wait_until 3 "the mark of the row" has_state "Core 2" selected
picture pinned
double_click "Core 2"
wait_until 3 "one reading in the tray again" label_matches "$one"
press_pointer_at "Core 3"
sleep 0.8
press_pointer_at "Core 3"
sleep 0.8
label_matches "$one" || fail "two slow clicks pinned a reading"

# The button hides a row, and ShowAll shows all hidden rows again.
hide_row "Core 3"
wait_until 3 "the row's end" hides "Core 3"
prefers KelvinbarHiddenKeys TC3C || fail "hidden: $(preference KelvinbarHiddenKeys)"
picture hidden
press_pointer_at ShowAll
wait_until 3 "the row again" shows "Core 3"
picture shown-again

# The height changes in steps, between both limits.
press_pointer_at "Decrease height"
wait_until 3 "a lower panel" panel_has_size 462 610
press_pointer_at "Decrease height"
wait_until 3 "the lowest panel" panel_has_size 462 560
press_pointer_at "Decrease height"
sleep 0.5
panel_has_size 462 560 || fail "the panel is $HEIGHT high"
picture lowest
# The height of the screen, less the bar, the line that it may draw below itself, and 80.
panel_is_highest() {
  panel_geometry
  [[ $WIDTH -eq 462 && $HEIGHT -ge $((screen_height - panel_height - 82)) && $HEIGHT -le $((screen_height - panel_height - 80)) ]]
}
for step in 1 2 3 4 5 6 7 8 9; do press_pointer_at "Increase height"; done
wait_until 3 "the highest panel" panel_is_highest
wait_until 3 "the number" shows 1400
prefers KelvinbarManualPopoverHeight 1400 || fail "height: $(preference KelvinbarManualPopoverHeight)"
picture highest
press_pointer_at "Reset height"
wait_until 3 "the standard height" panel_has_size 462 690

# Both check boxes, on and off.
press_pointer_at Fast
wait_until 3 "the mark" has_state Fast checked
prefers KelvinbarSamplingRate fast || fail "rate: $(preference KelvinbarSamplingRate)"
picture fast
press_pointer_at Dynamic
wait_until 3 "the mark" has_state Dynamic checked
wait_until 3 "the dynamic height" panel_is_highest
picture dynamic
press_pointer_at Dynamic
wait_until 3 "no mark" has_not_state Dynamic checked
press_pointer_at Fast
wait_until 3 "no mark" has_not_state Fast checked
prefers KelvinbarSamplingRate medium || fail "rate: $(preference KelvinbarSamplingRate)"

# The login item.
press_pointer_at Login
wait_until 3 "the mark" has_state Login checked
autostart=$XDG_CONFIG_HOME/autostart/org.kelvinbar.Demo.desktop
grep -q "^Exec=.*kelvinbar-demo.*intel-notebook" "$autostart" || fail "nothing starts at login"
picture login
press_pointer_at Login
wait_until 3 "no mark" has_not_state Login checked

# Another program can paste the copied snapshot.
press_pointer_at Copy
pasted() { xclip -o -selection clipboard; }
wait_until 3 "a snapshot" bash -c "xclip -o -selection clipboard | grep -q 'CPU Proximity'"
pasted | head -1 | grep -q '^Kelvinbar' || fail "pasted: $(pasted | head -1)"
[[ $(pasted | grep -c "$(printf '\t')") -ge 50 ]] || fail "the snapshot is short"
pasted >"$ARTEFACTS/$scenario-pasted.txt"
picture copied

# About opens and closes without the panel.
press_pointer_at About
about="Menu bar sensor reader for Hackintosh, AMD SMCAMDProcessor, Intel Macs and Apple Silicon Macs."
wait_until 3 "About" shows "$about"
picture about
xdotool key Escape
wait_until 3 "About's end" hides "$about"
panel_is_open || fail "Escape closed the panel under About"
xdotool key Escape
wait_until 3 "the panel's end" panel_is_closed
click "$tray_x" "$tray_y"
wait_until 3 "the panel once more" panel_is_open
wait_until 3 "its rows" shows "Core 1"

# About closes with the panel.
press_pointer_at About
wait_until 3 "About" shows "$about"
click 200 600
wait_until 3 "the panel's end" panel_is_closed
click "$tray_x" "$tray_y"
wait_until 3 "the panel again" panel_is_open
wait_until 3 "its rows" shows "Core 1"
hides "$about" || fail "About is still open"

# From the item's menu: "Open" never closes, "About" opens both, and "Copy" does not need the panel.
click 200 600
wait_until 3 "the panel's end" panel_is_closed
printf nothing | xclip -i -selection clipboard
choose Copy
wait_until 3 "a snapshot by the menu" bash -c "xclip -o -selection clipboard | grep -q 'CPU Proximity'"
panel_is_closed || fail "Copy opened the panel"
choose "Open Kelvinbar"
wait_until 3 "the panel by the menu" panel_is_open
choose "Open Kelvinbar"
choose "CPU Proximity"
sleep 0.5
panel_is_open || fail "Open closed the panel"
click 200 600
wait_until 3 "the panel's end" panel_is_closed
choose About
wait_until 3 "About by the menu" shows "$about"
picture about-by-menu
xdotool key Escape
wait_until 3 "About's end" hides "$about"
panel_is_open || fail "Escape closed the panel under About"
xdotool key Escape
wait_until 3 "the panel's end" panel_is_closed
click "$tray_x" "$tray_y"
wait_until 3 "the panel once more" panel_is_open
wait_until 3 "its rows" shows "Core 1"

# With the keyboard only: to the list, down, pin, hide, close.
xdotool key Tab Tab Home Down Down
wait_until 3 "the third row" has_state "Core 0" focused
xdotool key space
wait_until 3 "two readings in the tray" label_matches "$two"
xdotool key Delete
wait_until 3 "one reading in the tray" label_matches "$one"
wait_until 3 "the next row" has_state "Core 1" focused
picture keyboard
xdotool key Tab Tab Tab Tab Tab Tab
wait_until 3 "the sixth control below the list" has_state Login focused
xdotool key Escape
wait_until 3 "closing by Escape" panel_is_closed

# The row is still hidden when the panel is opened again.
click "$tray_x" "$tray_y"
wait_until 3 "the panel again" panel_is_open
wait_until 3 "its rows" shows "Core 1"
hides "Core 0" || fail "the hidden row is back"

press_pointer_at Quit
status=0
wait "$program" || status=$?
[[ $status -eq 0 ]] || fail "the program ended with status $status"
wait_until 3 "the item's end" is_not_registered
picture quit
echo "passed: $scenario"
