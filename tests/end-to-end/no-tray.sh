# A desktop without a tray: starting the program again opens the panel of the first instance.
scenario=no-tray
source "$(dirname "$0")/desktop.sh"
source "$(dirname "$0")/hosts.sh"

preferences 'KelvinbarMenuBarKeys=TC0P' 'KelvinbarSamplingRate=fast'
start_window_manager
start_program
"$PROGRAM" || fail "the second start failed"
wait_until 10 "the panel" panel_is_open
wait_until 2 "its size" panel_has_size 462 690
[[ $((X + WIDTH)) -le $screen_width && $Y -ge 0 ]] || fail "the panel is at $X, $Y"
picture panel
# If the program is started twice at the same time, one instance remains.
wait_until 3 "the focus" panel_has_focus
xdotool key Escape
wait_until 2 "closing by Escape" panel_is_closed
"$PROGRAM" & first=$!
"$PROGRAM" & second=$!
wait $first || fail "the third start failed"
wait $second || fail "the fourth start failed"
wait_until 3 "the panel again" panel_is_open
# Killing the program does not change the preferences.
before=$(cat "$XDG_CONFIG_HOME/kelvinbar/kelvinbar-demo.conf")
kill -KILL "$program"
wait "$program" 2>/dev/null || true
[[ $(cat "$XDG_CONFIG_HOME/kelvinbar/kelvinbar-demo.conf") == "$before" ]] || fail "the preferences changed"
start_program
finish
