# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""xfce4-panel with nothing but its status icons: a real org.kde.StatusNotifierWatcher. Needs the service xvfb first."""
import pathlib

PROGRAMS = {"xfce4-panel": "xfce4-panel"}
CONFIGURATION = """<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-panel" version="1.0">
  <property name="configver" type="int" value="2"/>
  <property name="panels" type="array"><value type="int" value="1"/>
    <property name="panel-1" type="empty">
      <property name="position" type="string" value="p=6;x=0;y=0"/>
      <property name="position-locked" type="bool" value="true"/>
      <property name="length" type="uint" value="100"/>
      <property name="size" type="uint" value="32"/>
      <property name="icon-size" type="uint" value="24"/>
      <property name="plugin-ids" type="array"><value type="int" value="1"/></property>
    </property>
  </property>
  <property name="plugins" type="empty">
    <property name="plugin-1" type="string" value="systray">
      <property name="hide-new-items" type="bool" value="false"/>
    </property>
  </property>
</channel>
"""


def start(session):
    folder = pathlib.Path(session.environment["XDG_CONFIG_HOME"]) / "xfce4/xfconf/xfce-perchannel-xml"
    folder.mkdir(parents=True)
    (folder / "xfce4-panel.xml").write_text(CONFIGURATION)
    # It paints symbolic icons white whatever the theme is; on a dark one they can be seen.
    session.spawn(["xfce4-panel", "--disable-wm-check"], GTK_THEME="Adwaita:dark")
    session.wait_for_name("org.kde.StatusNotifierWatcher")
