# Panels of real desktops, with only a tray at the right end. Sourced by the scenarios.

start_window_manager() {
  xfwm4 --compositor=off >/dev/null 2>&1 &
  sleep 0.5
}

# Xfce's panel at the top of the screen.
start_xfce_panel() {
  local folder=$XDG_CONFIG_HOME/xfce4/xfconf/xfce-perchannel-xml
  mkdir -p "$folder"
  cat >"$folder/xfce4-panel.xml" <<'XML'
<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-panel" version="1.0">
  <property name="configver" type="int" value="2"/>
  <property name="panels" type="array">
    <value type="int" value="1"/>
    <property name="panel-1" type="empty">
      <property name="position" type="string" value="p=6;x=0;y=0"/>
      <property name="length" type="uint" value="100"/>
      <property name="position-locked" type="bool" value="true"/>
      <property name="size" type="uint" value="28"/>
      <property name="plugin-ids" type="array">
        <value type="int" value="1"/>
        <value type="int" value="2"/>
      </property>
    </property>
  </property>
  <property name="plugins" type="empty">
    <property name="plugin-1" type="string" value="separator">
      <property name="expand" type="bool" value="true"/>
      <property name="style" type="uint" value="0"/>
    </property>
    <property name="plugin-2" type="string" value="systray">
      <property name="square-icons" type="bool" value="true"/>
    </property>
  </property>
</channel>
XML
  xfce4-panel --disable-wm-check >"$HOME/panel.log" 2>&1 &
  host=$!
  tray_x=$((screen_width - 14))
  tray_y=14
}

# LXQt's panel at the bottom of the screen.
start_lxqt_panel() {
  mkdir -p "$XDG_CONFIG_HOME/lxqt"
  cat >"$XDG_CONFIG_HOME/lxqt/panel.conf" <<INI
panels=panel1
[panel1]
plugins=spacer, statusnotifier
position=Bottom
panelSize=$panel_height
width=100
width-percent=true
[spacer]
type=spacer
expandable=true
[statusnotifier]
type=statusnotifier
INI
  lxqt-panel >"$HOME/panel.log" 2>&1 &
  host=$!
  tray_x=$((screen_width - 16))
  tray_y=$((screen_height - 14))
}

stop_host() {
  kill "$host" 2>/dev/null || true
  wait "$host" 2>/dev/null || true
  pkill -P $$ -f wrapper-2.0 || true
}
