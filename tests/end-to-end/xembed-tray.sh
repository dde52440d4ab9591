# The program in an XEmbed tray.
scenario=xembed-tray
source "$(dirname "$0")/desktop.sh"
source "$(dirname "$0")/hosts.sh"

preferences 'KelvinbarMenuBarKeys=TC0P' 'KelvinbarSamplingRate=fast'
start_window_manager
trayer --edge top --align left --widthtype pixel --width 30 --heighttype pixel --height 26 --SetDockType true >/dev/null 2>&1 &
sleep 1
start_program
icon_is_embedded() { xwininfo -root -tree | grep -q 'kelvinbar-demo'; }
wait_until 5 "the icon in the tray" icon_is_embedded
sleep 1
picture tray
click 12 12
wait_until 10 "the panel" panel_is_open
wait_until 2 "its size" panel_has_size 462 690
[[ $Y -ge 20 && $Y -le 40 ]] || fail "the panel is at y $Y"
picture panel
xdotool key Escape
wait_until 2 "closing by Escape" panel_is_closed

# The pointer over the icon shows the tooltip, and a right click the menu.
windows() { xwininfo -root -tree | grep -cE '^ {5}0x.*"kelvinbar-demo".* [0-9]{2,}x[0-9]{2,}\+'; }
shows_another_window() { [[ $(windows) -gt $1 ]]; }
shows_no_other_window() { [[ $(windows) -eq $1 ]]; }
xdotool mousemove 600 600
sleep 0.5
before=$(windows)
for x in 40 30 20 14 12; do xdotool mousemove $x 12; done
wait_until 3 "the tooltip" shows_another_window "$before"
picture tooltip
xdotool mousemove 600 600
wait_until 3 "the tooltip's end" shows_no_other_window "$before"
xdotool mousemove 12 12 click 3
wait_until 3 "the menu" shows_another_window "$before"
sleep 0.3
picture menu
xdotool key --delay 100 Down Down Return # the reading, then "Open Kelvinbar"
wait_until 3 "the panel by the menu" panel_is_open
wait_until 3 "the focus" panel_has_focus
xdotool key Escape
wait_until 2 "closing it" panel_is_closed

# The icon moves to a StatusNotifierItem tray as soon as one appears.
start_xfce_panel
wait_until 10 "the watcher" bus_has org.kde.StatusNotifierWatcher
wait_until 5 "the item in the newer tray" is_registered
finish
