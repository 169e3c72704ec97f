# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""The phone shell Phosh, unlocked, with the compositor phoc in a window on a screen without a monitor; grim takes its
pictures."""
import pathlib

import xvfb

SCHEMAS = "/usr/share/glib-2.0/schemas"
PROGRAMS = {"Xvfb": "xvfb", "phoc": "phoc", "/usr/libexec/phosh": "phosh", "grim": "grim",
            # Their settings: without them it ends at once.
            f"{SCHEMAS}/org.gnome.settings-daemon.plugins.gschema.xml": "gnome-settings-daemon-common",
            f"{SCHEMAS}/org.gnome.SessionManager.gschema.xml": "gnome-session-bin"}
# A phone's screen, in pixels.
CONFIGURATION = """[core]
xwayland=false
[output:X11-1]
mode = 360x720
scale = 1
"""


def start(session):
    session.need_system_bus()
    # A banner slides in from beyond the edge, where the compositor without a monitor lets nothing move.
    session.run(["gsettings", "set", "org.gnome.desktop.interface", "enable-animations", "false"])
    xvfb.start(session, size="400x760")
    session.environment["XDG_CURRENT_DESKTOP"] = "Phosh:GNOME"
    configuration = session.folder / "phoc.ini"
    configuration.write_text(CONFIGURATION)
    phoc = session.spawn(["phoc", "-C", str(configuration), "-E", "/usr/libexec/phosh --unlocked"],
                         WLR_BACKENDS="x11", WLR_RENDERER="pixman", GSK_RENDERER="cairo", GDK_BACKEND="wayland")
    run = pathlib.Path(session.environment["XDG_RUNTIME_DIR"])
    session.wait_until(lambda: any(run.glob("wayland-*.lock")), "phoc", phoc)
    session.environment["WAYLAND_DISPLAY"] = next(run.glob("wayland-*.lock")).stem
    for name in ("org.gnome.Mutter.DisplayConfig", "org.freedesktop.Notifications"):
        session.wait_for_name(name)
