"""Xfce's panel at the top of the screen, with only a tray, at its right end."""

from driver.desktop import Desktop
from driver.geometry import Rect
from driver.hosts.host import BAR_HEIGHT, Host

LAYOUT = f"""<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-panel" version="1.0">
  <property name="configver" type="int" value="2"/>
  <property name="panels" type="array">
    <value type="int" value="1"/>
    <property name="dark-mode" type="bool" value="true"/>
    <property name="panel-1" type="empty">
      <property name="position" type="string" value="p=6;x=0;y=0"/>
      <property name="length" type="uint" value="100"/>
      <property name="position-locked" type="bool" value="true"/>
      <property name="size" type="uint" value="{BAR_HEIGHT}"/>
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
"""


class XfcePanel(Host):
    def __init__(self, desktop: Desktop, has_window_manager: bool = False) -> None:
        super().__init__(desktop)
        self._has_window_manager = has_window_manager

    @property
    def bar(self) -> Rect:
        return Rect(0, 0, self.desktop.screen.size[0], BAR_HEIGHT)

    def start(self) -> None:
        if not self._has_window_manager:
            self._launch_window_manager()
        super().start()

    def start_bar(self) -> None:
        folder = self.desktop.configuration / "xfce4/xfconf/xfce-perchannel-xml"
        self.desktop.write(folder / "xfce4-panel.xml", LAYOUT)
        self._launch("xfce4-panel", ["xfce4-panel", "--disable-wm-check"])
