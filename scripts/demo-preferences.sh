# shellcheck shell=bash
# Sourced. preferences LINE …: what the demo finds.
preferences() { printf '[General]\n%s\n' "$@" >"$XDG_CONFIG_HOME/kelvinbar/kelvinbar-demo.conf"; }
