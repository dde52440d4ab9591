# shellcheck shell=bash
# Sourced. preferences LINE …: writes the preferences of kelvinbar-demo.
preferences() { printf '[General]\n%s\n' "$@" >"$XDG_CONFIG_HOME/kelvinbar/kelvinbar-demo.conf"; }
