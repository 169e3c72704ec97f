# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""A running hushmoded, as a test sees it: its process, its log, its bus interface and its files."""
import calendar
import os
import pathlib
import plistlib
import signal
import subprocess
import sys
import time

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "support"))
from calendar_text import calendar_text  # noqa: E402
from noon import zone_of_noon  # noqa: E402

NAME = "com.quorvel.Hushmode"
PATH = "/com/quorvel/Hushmode"
INTERFACE = "com.quorvel.Hushmode1"
LIMIT = 30  # Seconds, for what happens at once when nothing is broken; every wait ends with what it waits for.

CONFIG = pathlib.Path(os.environ["XDG_CONFIG_HOME"]) / "hushmode"
STATE = pathlib.Path(os.environ["XDG_STATE_HOME"]) / "hushmode"
CALENDARS = pathlib.Path(os.environ["HOME"]) / "calendars"
PROFILES = CONFIG / "com.quorvel.hushmode.profiles.plist"
SETTINGS = CONFIG / "com.quorvel.hushmode.plist"


def wait_until(condition, what):
    """Runs the main loop until the condition holds, and answers what it then is."""
    context = GLib.MainContext.default()
    tick = GLib.timeout_add(20, lambda: True)
    deadline = time.monotonic() + LIMIT
    try:
        while not (result := condition()):
            assert time.monotonic() < deadline, f"not within {LIMIT} seconds: {what}"
            context.iteration(True)
        return result
    finally:
        GLib.source_remove(tick)


def put_event(title, start, end, calendar_name="work", uid="one"):
    """Writes a calendar with this one event into the folder. As sync programs do it: by a rename."""
    folder = CALENDARS / calendar_name
    folder.mkdir(parents=True, exist_ok=True)
    new = folder / f".{uid}.new"
    new.write_text(calendar_text(title, start, end, uid=uid))
    new.rename(folder / f"{uid}.ics")


def put_service_event(title, start, end):
    """The same in the personal calendar of Evolution Data Server, which reads it when it first opens that calendar."""
    folder = pathlib.Path(os.environ["XDG_DATA_HOME"]) / "evolution" / "calendar" / "system"
    folder.mkdir(parents=True, exist_ok=True)
    (folder / "calendar.ics").write_text(calendar_text(title, start, end))


def remove_event(calendar_name="work", uid="one"):
    (CALENDARS / calendar_name / f"{uid}.ics").unlink()


def whole_seconds_from_now(seconds):
    return calendar.timegm(time.gmtime(time.time() + seconds))


def sink_volume():
    """The speaker's volume, 0.0 to 1.0."""
    output = subprocess.run(["pactl", "get-sink-volume", "spk"], check=True, capture_output=True, text=True).stdout
    return int(output.split("%")[0].split()[-1]) / 100


def set_sink_volume(volume):
    subprocess.run(["pactl", "set-sink-volume", "spk", f"{round(volume * 100)}%"], check=True)


def sink_volume_is(volume):
    return lambda: abs(sink_volume() - volume) < 0.011


class Refused(Exception):
    """An error of the interface: its short name and text."""

    def __init__(self, error):
        remote = Gio.dbus_error_get_remote_error(error) or ""
        Gio.dbus_error_strip_remote_error(error)
        super().__init__(error.message)
        self.remote = remote
        self.name = remote.rsplit(".", 1)[-1]


class Daemon:
    """hushmoded, started by the test and waited for until it owns its name."""

    def __init__(self, program, arguments=(), wait=True, **environment):
        self.bus = Gio.bus_get_sync(Gio.BusType.SESSION)
        self.signals = []
        self.log_path = pathlib.Path(os.environ["HUSHMODE_SESSION_FOLDER"]) / f"hushmoded-{time.monotonic_ns()}.log"
        with open(self.log_path, "wb") as log:
            self.process = subprocess.Popen([program, "--calendars", str(CALENDARS), *arguments], stdout=log, stderr=log,
                                            env={**os.environ, "TZ": zone_of_noon(), **environment})
        self.subscription = self.bus.signal_subscribe(None, None, None, PATH, None, 0, self._heard)
        if wait:
            wait_until(lambda: self.owner() or self.process.poll() is not None, "the bus name")
            assert self.process.poll() is None, self.log()

    def _heard(self, _bus, _sender, _path, interface, name, arguments):
        if interface in (INTERFACE, "org.freedesktop.DBus.Properties"):
            self.signals.append((name, arguments.unpack()))

    def _ask_bus(self, method, arguments=None):
        return self.bus.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", method,
                                  arguments, None, 0, -1, None).unpack()[0]

    def owner(self):
        try:
            return self._ask_bus("GetNameOwner", GLib.Variant("(s)", (NAME,)))
        except GLib.Error:
            return None

    def names(self, prefix):
        """The names on the session bus that begin like this."""
        return [name for name in self._ask_bus("ListNames") if name.startswith(prefix)]

    def kill_owner(self, name):
        """Kills the process that owns a name; it may be gone already."""
        try:
            os.kill(self._ask_bus("GetConnectionUnixProcessID", GLib.Variant("(s)", (name,))), signal.SIGKILL)
        except (GLib.Error, ProcessLookupError):
            pass

    def log(self):
        return self.log_path.read_text(errors="replace")

    def call(self, method, signature="()", *arguments, interface=INTERFACE):
        try:
            reply = self.bus.call_sync(NAME, PATH, interface, method, GLib.Variant(signature, arguments), None,
                                       Gio.DBusCallFlags.NO_AUTO_START, LIMIT * 1000, None)
        except GLib.Error as error:
            raise Refused(error) from None
        values = reply.unpack()
        return values[0] if len(values) == 1 else values

    def get(self, name):
        return self.call("Get", "(ss)", INTERFACE, name, interface="org.freedesktop.DBus.Properties")

    def profiles(self):
        return {each["title"]: each for each in self.call("ListProfiles")}

    def add(self, **profile):
        return self.call("AddProfile", "(a{sv})", {key: variant(value) for key, value in profile.items()})

    def update(self, identifier, **changes):
        self.call("UpdateProfile", "(xa{sv})", identifier, {key: variant(value) for key, value in changes.items()})

    def delete_all(self):
        for each in self.call("ListProfiles"):
            self.call("DeleteProfile", "(x)", each["identifier"])

    def applied(self):
        return [each["title"] for each in self.get("Applied")]

    def end(self, how=signal.SIGTERM):
        """Ends it and answers its exit code."""
        if self.process.poll() is None:
            self.process.send_signal(how)
        wait_until(lambda: self.process.poll() is not None, "the end of hushmoded")
        self.bus.signal_unsubscribe(self.subscription)
        wait_until(lambda: self.owner() is None, "the end of the bus name")
        return self.process.returncode


def variant(value):
    if isinstance(value, GLib.Variant):
        return value
    if isinstance(value, bool):
        return GLib.Variant("b", value)
    if isinstance(value, int):
        return GLib.Variant("x", value)
    if isinstance(value, float):
        return GLib.Variant("d", value)
    if isinstance(value, str):
        return GLib.Variant("s", value)
    return GLib.Variant("as", value)


def read_profiles_file():
    with open(PROFILES, "rb") as file:
        return plistlib.load(file)


def write_profiles_file(profiles):
    """As an editor does it: a new file, moved over the old one."""
    new = PROFILES.with_suffix(".new")
    with open(new, "wb") as file:
        plistlib.dump(profiles, file)
    new.rename(PROFILES)
