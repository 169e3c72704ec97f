#!/usr/bin/python3
# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""What the phone's user does in a calendar program: changes a calendar of Evolution Data Server.

usage: eds_user.py add CALENDAR UID START END    START and END as in iCalendar, in UTC: 20260102T030405Z
       eds_user.py remove CALENDAR UID
       eds_user.py process                       prints the process that holds the calendars
"""
import sys

import gi

gi.require_version("ECal", "2.0")
gi.require_version("EDataServer", "1.2")
gi.require_version("ICalGLib", "3.0")
from gi.repository import ECal, EDataServer, Gio, GLib, ICalGLib  # noqa: E402  (versions come first)

AT_ONCE = 0xFFFFFFFF  # Not to wait until the calendar is online: a local one never is.
FACTORY = "org.gnome.evolution.dataserver.Calendar8"


def calendar(uid):
    registry = EDataServer.SourceRegistry.new_sync(None)
    source = registry.ref_source(uid)
    if source is None:
        sys.exit(f"there is no calendar {uid}")
    return ECal.Client.connect_sync(source, ECal.ClientSourceType.EVENTS, AT_ONCE, None)


def add(name, uid, start, end):
    text = "\r\n".join(["BEGIN:VEVENT", f"UID:{uid}", f"DTSTAMP:{start}", f"DTSTART:{start}", f"DTEND:{end}",
                        f"SUMMARY:{uid}", "END:VEVENT", ""])
    calendar(name).create_object_sync(ICalGLib.Component.new_from_string(text), ECal.OperationFlags.NONE, None)


def remove(name, uid):
    calendar(name).remove_object_sync(uid, None, ECal.ObjModType.ALL, ECal.OperationFlags.NONE, None)


def process():
    bus = Gio.bus_get_sync(Gio.BusType.SESSION)
    print(bus.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                        "GetConnectionUnixProcessID", GLib.Variant("(s)", (FACTORY,)), None, 0, -1, None).unpack()[0])


if __name__ == "__main__":
    if len(sys.argv) < 2 or sys.argv[1] not in ("add", "remove", "process"):
        sys.exit(__doc__)
    {"add": add, "remove": remove, "process": process}[sys.argv[1]](*sys.argv[2:])
