# Each tray is started and ended five times, killed every other time. The item comes back each time.
scenario=host-restarts
source "$(dirname "$0")/desktop.sh"
source "$(dirname "$0")/hosts.sh"

no_watcher() { ! bus_has org.kde.StatusNotifierWatcher; }

preferences 'KelvinbarMenuBarKeys=TC0P' 'KelvinbarSamplingRate=fast'
start_window_manager
start_program
for start_panel in start_xfce_panel start_lxqt_panel; do
  for restart in 1 2 3 4 5; do
    "$start_panel"
    wait_until 10 "the watcher, $start_panel $restart" bus_has org.kde.StatusNotifierWatcher
    wait_until 5 "the item, $start_panel $restart" is_registered
    sleep 1
    is_registered || fail "the item was lost, $start_panel $restart"
    picture "$start_panel-$restart"
    if ((restart % 2)); then kill -KILL "$host"; fi
    stop_host
    wait_until 10 "the watcher's end, $start_panel $restart" no_watcher
  done
done
finish
