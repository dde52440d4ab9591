#!/usr/bin/env bash
# Runs PROGRAM on a virtual display, opens the panel by starting it a second time, and writes to FOLDER the title in the
# tray, the snapshot copied with the Copy button, and a screenshot of the panel. Called by run.sh.
set -euo pipefail
mkdir -p "$FOLDER"
export PROGRAM FOLDER
source "$(dirname "$0")/empty-home.sh"
preferences 'KelvinbarMenuBarKeys=k10temp-pci-00c3/temp1, amdgpu-pci-0300/fan1'

xvfb-run --auto-servernum --server-args="-screen 0 1280x1000x24" dbus-run-session -- bash -euo pipefail <<'EOS'
  # wait_for SECONDS WHAT COMMAND…
  wait_for() {
    local what=$2 end=$((SECONDS + $1))
    until "${@:3}" >/dev/null 2>&1; do
      ((SECONDS < end)) || { echo "virtual-run.sh: $what did not appear" >&2; exit 1; }
      sleep 0.1
    done
  }
  title() {
    gdbus call --session --dest org.kelvinbar.Demo --object-path /StatusNotifierItem \
      --method org.freedesktop.DBus.Properties.Get org.kde.StatusNotifierItem XAyatanaLabel |
      sed "s/^(<'\(.*\)'>,)$/\1/"
  }
  has_title() { [[ $(title) == *[0-9]* ]]; }
  panel() { xdotool search --onlyvisible --name '^Kelvinbar$' | tail -1; }
  is_open() { [[ $(xdotool getwindowgeometry "$(panel)") == *462x690* ]]; }
  # Copy is the third control from the end.
  copied() { xclip -o -selection clipboard | grep -F 'CPU Tctl'; }

  "$PROGRAM" & program=$!
  trap 'kill $program 2>/dev/null || true' EXIT
  wait_for 10 "the title" has_title
  "$PROGRAM"
  wait_for 5 "the panel" is_open
  sleep 1
  title >"$FOLDER/title.txt"
  import -window "$(panel)" "$FOLDER/panel.png"
  for control in 1 2 3; do xdotool key shift+Tab; done
  xdotool key Return
  wait_for 5 "the snapshot" copied
  xclip -o -selection clipboard >"$FOLDER/snapshot.txt"
EOS
printf '\nThe title in the tray, %s/title.txt:\n%s\n' "$FOLDER" "$(cat "$FOLDER/title.txt")"
printf '\nThe snapshot, %s/snapshot.txt:\n%s\n' "$FOLDER" "$(head -8 "$FOLDER/snapshot.txt")"
printf '… and %d more readings\n' "$(($(wc -l <"$FOLDER/snapshot.txt") - 7))"
printf '\nThe panel: %s/panel.png\n' "$FOLDER"
