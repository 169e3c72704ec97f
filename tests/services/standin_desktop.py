# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""Stand-ins for what a desktop's shell offers: a place for status icons, and the display's power."""
import stand_in

PROGRAMS = stand_in.PROGRAMS


def start(session):
    stand_in.start(session, "icons", "org.kde.StatusNotifierWatcher")
    stand_in.start(session, "display", "org.gnome.Mutter.DisplayConfig")
