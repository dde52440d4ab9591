# The program in the tray of Xfce's panel, at the top of the screen.
scenario=xfce
source "$(dirname "$0")/desktop.sh"
source "$(dirname "$0")/hosts.sh"

preferences 'KelvinbarMenuBarKeys=TC0P, F0Ac' 'KelvinbarSamplingRate=fast'
start_window_manager
start_xfce_panel
wait_until 10 "the watcher" bus_has org.kde.StatusNotifierWatcher
start_program
wait_until 5 "the item in the tray" is_registered
wait_until 5 "the label" label_matches '^[0-9.]+°  [0-9]+rpm$'

# The label follows the readings.
before=$(label)
label_changed() { [[ $(label) != "$before" ]]; }
wait_until 5 "another label" label_changed
sleep 1
picture tray

# A click opens the panel below the bar, inside the screen, at its full size.
click "$tray_x" "$tray_y"
wait_until 10 "the panel" panel_is_open
wait_until 2 "its size" panel_has_size 462 690
[[ $Y -ge $panel_height && $Y -le $((panel_height + 2)) ]] || fail "the panel is at y $Y"
[[ $((X + WIDTH)) -le $screen_width ]] || fail "the panel leaves the screen: x $X"
picture panel

# A second click, Escape, and a click outside close it.
click "$tray_x" "$tray_y"
wait_until 2 "closing by a second click" panel_is_closed
sleep 0.3
panel_is_closed || fail "the second click opened the panel again"
click "$tray_x" "$tray_y"
wait_until 2 "opening again" panel_is_open
wait_until 2 "its size again" panel_has_size 462 690
xdotool key Escape
wait_until 2 "closing by Escape" panel_is_closed
click "$tray_x" "$tray_y"
wait_until 2 "opening a third time" panel_is_open
wait_until 2 "its size a third time" panel_has_size 462 690
click 200 600
wait_until 2 "closing by a click elsewhere" panel_is_closed

# After the host has been restarted, the item is registered again.
stop_host
wait_until 10 "the watcher's end" bash -c '! gdbus call --session --dest org.kde.StatusNotifierWatcher --object-path / --method org.freedesktop.DBus.Peer.Ping'
start_xfce_panel
wait_until 10 "the watcher again" bus_has org.kde.StatusNotifierWatcher
wait_until 5 "the item in the new tray" is_registered
wait_until 5 "the label for the new tray" label_matches '^[0-9.]+°  [0-9]+rpm$'

# Starting the program again opens the panel of the first instance, and the second exits.
"$PROGRAM" || fail "the second start failed"
wait_until 2 "the panel by a second start" panel_is_open
xdotool key Escape
wait_until 2 "closing it" panel_is_closed

finish
wait_until 3 "the item's end" is_not_registered
