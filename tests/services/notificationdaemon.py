# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""A notification server with real buttons on a screen. Needs the service xvfb first."""
PROGRAMS = {"/usr/lib/notification-daemon/notification-daemon": "notification-daemon", "xdotool": "xdotool"}


def start(session):
    session.spawn(["/usr/lib/notification-daemon/notification-daemon"])
    session.wait_for_name("org.freedesktop.Notifications")
