# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""The phone that a measurement looks at: private folders and buses with every service, and a running hushmoded."""
import datetime
import os
import pathlib
import plistlib
import signal
import statistics
import sys
import time
import zoneinfo

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tests" / "services"))
import run_with  # noqa: E402

class BareSession(run_with.Session):
    """Nothing is started by the bus itself: a phone on which Evolution Data Server is not installed."""

    ACTIVATION = ""


SERVICES = ("pulse", "feedbackd", "networkmanager", "logind", "standin_desktop", "xvfb", "notificationdaemon")
DCONF = "/usr/libexec/dconf-service"
NAME = "com.quorvel.Hushmode"
INTERFACE = "com.quorvel.Hushmode1"
PROFILES = "com.quorvel.hushmode.profiles.plist"
BERLIN = zoneinfo.ZoneInfo("Europe/Berlin")
LIMIT = 60  # Seconds, for what takes a moment when nothing is broken.

CALENDAR_BEGIN = (
    "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//Example//Calendar//EN\r\n"
    "BEGIN:VTIMEZONE\r\nTZID:Europe/Berlin\r\n"
    "BEGIN:DAYLIGHT\r\nTZOFFSETFROM:+0100\r\nTZOFFSETTO:+0200\r\nTZNAME:CEST\r\nDTSTART:19700329T020000\r\n"
    "RRULE:FREQ=YEARLY;BYMONTH=3;BYDAY=-1SU\r\nEND:DAYLIGHT\r\n"
    "BEGIN:STANDARD\r\nTZOFFSETFROM:+0200\r\nTZOFFSETTO:+0100\r\nTZNAME:CET\r\nDTSTART:19701025T030000\r\n"
    "RRULE:FREQ=YEARLY;BYMONTH=10;BYDAY=-1SU\r\nEND:STANDARD\r\nEND:VTIMEZONE\r\n")
CALENDAR_END = "END:VCALENDAR\r\n"


def early_zone():
    """A zone in which it is between 5 and 6 in the morning: the day's events and midnight are hours away."""
    west = (time.gmtime().tm_hour - 5) % 24  # Hours behind UTC.
    return f"Etc/GMT+{west}" if west <= 12 else f"Etc/GMT-{24 - west}"


def local_midnight():
    now = datetime.datetime.now(zoneinfo.ZoneInfo(early_zone()))
    return now.replace(hour=0, minute=0, second=0, microsecond=0)


def ordinary_event(number, midnight):
    """One of many: in the two years around today, between noon and nine; one in ten repeats."""
    start = midnight + datetime.timedelta(days=number % 1461 - 730, hours=12 + number % 9)
    rule = "RRULE:FREQ=DAILY;COUNT=30\r\n" if number % 50 == 0 else (
        "RRULE:FREQ=WEEKLY;INTERVAL=2\r\n" if number % 10 == 0 else "")
    stamp = "%Y%m%dT%H%M%S"
    start = start.astimezone(BERLIN)
    end = start + datetime.timedelta(minutes=30)
    return (f"BEGIN:VEVENT\r\nUID:{number:08}-5d4c-6843-9300-4f918d8e6094@example.org\r\nDTSTAMP:20260101T000000Z\r\n"
            f"CREATED:20260101T000000Z\r\nSUMMARY:Meeting number {number}\r\n"
            f"DTSTART;TZID=Europe/Berlin:{start:{stamp}}\r\nDTEND;TZID=Europe/Berlin:{end:{stamp}}\r\n"
            f"{rule}STATUS:CONFIRMED\r\nTRANSP:OPAQUE\r\nEND:VEVENT\r\n")


def event_at(uid, start, end):
    """From one second to another, since 1970."""
    def utc(seconds):
        return time.strftime("%Y%m%dT%H%M%SZ", time.gmtime(seconds))

    return (f"BEGIN:VEVENT\r\nUID:{uid}\r\nDTSTAMP:{utc(start)}\r\nDTSTART:{utc(start)}\r\nDTEND:{utc(end)}\r\n"
            f"SUMMARY:{uid}\r\nEND:VEVENT\r\n")


def profile(number, calendars=("folder:Work",)):
    return {"identifier": 1700000000 + number, "title": f"Profile {number}", "enabled": True, "allDay": True,
            "ringerVolume": 0.0, "playBackVolume": 0.0, "dnDEnabled": True, "showOnStatusBar": True,
            "allDayEventsIgnored": True, "calendarIdentifiers": list(calendars)}


def missing_programs(services):
    """What is not installed, with the Debian packages that have it."""
    missing = run_with.missing_packages([__import__(name) for name in services])
    if not os.path.exists(DCONF):
        missing[DCONF] = "dconf-service"
    return missing


class Phone:
    """Profiles and calendars are laid out before the daemon is started."""

    def __init__(self, program, services=SERVICES, calendar_service=True):
        missing = missing_programs(services)
        if missing:
            sys.exit(f"not installed: {missing}")
        self.program = program
        self.session = (run_with.Session if calendar_service else BareSession)()
        self.session.environment["TZ"] = early_zone()
        self.session.environment["GSETTINGS_BACKEND"] = "dconf"  # As on a phone: another process writes the settings.
        self.daemon = None
        self.bus = None
        try:
            self.session.spawn([DCONF])
            self.session.wait_for_name("ca.desrt.dconf")
            for name in services:
                __import__(name).start(self.session)
            self.connect()
        except BaseException:
            self.session.end()
            raise

    def __enter__(self):
        return self

    def __exit__(self, *_):
        if self.bus:
            self.bus.close_sync()
        self.session.end()

    def connect(self):
        flags = Gio.DBusConnectionFlags
        self.bus = Gio.DBusConnection.new_for_address_sync(
            self.session.environment["DBUS_SESSION_BUS_ADDRESS"],
            flags.AUTHENTICATION_CLIENT | flags.MESSAGE_BUS_CONNECTION, None, None)

    # --- What the daemon finds ---

    @property
    def calendar(self):
        folder = self.session.folder / "data" / "hushmode" / "calendars" / "Work"
        folder.mkdir(parents=True, exist_ok=True)
        return folder

    def add_file(self, name, *events):
        """As synchronisers do it: by a rename."""
        new = self.calendar / f".{name}.new"
        new.write_text(CALENDAR_BEGIN + "".join(events) + CALENDAR_END)
        new.rename(self.calendar / f"{name}.ics")

    def add_events(self, files, events_each):
        midnight = local_midnight()
        for number in range(files):
            first = number * events_each
            self.add_file(number, *(ordinary_event(each, midnight) for each in range(first, first + events_each)))

    def add_profiles(self, count):
        folder = self.session.folder / "config" / "hushmode"
        folder.mkdir(mode=0o700, exist_ok=True)
        with open(folder / PROFILES, "wb") as file:
            plistlib.dump([profile(number) for number in range(count)], file)

    # --- The daemon ---

    def start(self):
        """Starts it, and answers the seconds from there until its name is on the bus."""
        appeared = []
        watch = self.bus.signal_subscribe(
            "org.freedesktop.DBus", "org.freedesktop.DBus", "NameOwnerChanged", None, NAME, 0,
            lambda *signal: appeared.append(time.monotonic()) if signal[5].unpack()[2] else None)
        self.bus.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "GetId", None,
                           None, 0, -1, None)  # The subscription is there once this is answered.
        began = time.monotonic()
        self.daemon = self.session.spawn([self.program])
        self.until(lambda: appeared or self.daemon.poll() is not None, "the daemon's name")
        self.bus.signal_unsubscribe(watch)
        if not appeared:
            raise RuntimeError(self.log())
        return appeared[0] - began

    def stop(self):
        self.daemon.send_signal(signal.SIGTERM)
        if self.daemon.wait(LIMIT) != 0:
            raise RuntimeError(self.log())

    def log(self):
        return pathlib.Path(self.daemon.log_name).read_text()

    def property(self, name):
        return self.bus.call_sync(NAME, "/com/quorvel/Hushmode", "org.freedesktop.DBus.Properties", "Get",
                                  GLib.Variant("(ss)", (INTERFACE, name)), None, 0, -1, None).unpack()[0]

    def voluntary_switches(self):
        return voluntary_switches(self.daemon.pid)

    def settle(self, seconds=10):
        """Waits until what the start has set in motion has come to rest."""
        deadline = time.monotonic() + LIMIT
        while time.monotonic() < deadline:
            before = self.voluntary_switches()
            time.sleep(seconds)
            if self.voluntary_switches() == before:
                return
        raise RuntimeError(f"the daemon does not come to rest within {LIMIT} seconds: {self.log()}")

    @staticmethod
    def until(condition, what, seconds=LIMIT):
        """Runs the main loop until the condition holds."""
        context = GLib.MainContext.default()
        tick = GLib.timeout_add(100, lambda: True)
        deadline = time.monotonic() + seconds
        try:
            while not condition():
                if time.monotonic() > deadline:
                    raise RuntimeError(f"not within {seconds} seconds: {what}")
                context.iteration(True)
        finally:
            GLib.source_remove(tick)


def voluntary_switches(process):
    """How often all of its threads have gone to sleep so far: as often as they were woken."""
    total = 0
    for thread in os.listdir(f"/proc/{process}/task"):
        status = pathlib.Path(f"/proc/{process}/task/{thread}/status").read_text()
        total += int(status.split("\nvoluntary_ctxt_switches:")[1].split()[0])
    return total


def milliseconds(values):
    """The median, and how far the values lie apart."""
    values = sorted(1000 * value for value in values)
    return (f"median {statistics.median(values):.2f} ms, p95 {values[int(len(values) * 0.95)]:.2f} ms, "
            f"{values[0]:.2f} to {values[-1]:.2f} ms")
