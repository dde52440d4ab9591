# The program in the tray of LXQt's panel, at the bottom of the screen.
scenario=lxqt
source "$(dirname "$0")/desktop.sh"
source "$(dirname "$0")/hosts.sh"

preferences 'KelvinbarMenuBarKeys=TC0P' 'KelvinbarSamplingRate=fast'
start_window_manager
# The program starts before the tray.
start_program
start_lxqt_panel
wait_until 10 "the watcher" bus_has org.kde.StatusNotifierWatcher
wait_until 5 "the item in the tray" is_registered
sleep 2
picture tray

click "$tray_x" "$tray_y"
wait_until 10 "the panel" panel_is_open
wait_until 2 "its size" panel_has_size 462 690
bottom=$((Y + HEIGHT))
[[ $bottom -le $((screen_height - panel_height)) ]] || fail "the panel reaches down to $bottom"
[[ $bottom -ge $((screen_height - panel_height - 2)) ]] || fail "the panel floats at $bottom"
picture panel
click "$tray_x" "$tray_y"
wait_until 2 "closing by a second click" panel_is_closed
finish
