# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""What the user of a live phone does, and what its services then do: volumes, networks, calendars, sleep."""
import contextlib
import datetime
import pathlib
import re
import subprocess

MANAGER = "org.freedesktop.NetworkManager"
ROOT = "/org/freedesktop/NetworkManager"
MOCK = "org.freedesktop.DBus.Mock"
QUIET_MEDIA = "0%"
EDS_USER = pathlib.Path(__file__).with_name("eds_user.py")


def started(phone, **profile):
    """Starts the daemon with one profile; answers how the phone is then."""
    phone.no_default_profile()
    (phone.calendars / "Work").mkdir(parents=True)
    phone.start()
    phone.add_profile(**profile)
    return phone.state()


def is_quiet(phone):
    return phone.media() == QUIET_MEDIA


@contextlib.contextmanager
def silent_ring(phone):
    """A stream of the role "event", without a sound; answers its number in the sound server."""
    def number():
        streams = phone.session.run(["pactl", "list", "sink-inputs"])
        found = re.search(r"Sink Input #(\d+)\n(?:(?!Sink Input #).*\n)*?\s*media\.role = \"event\"", streams)
        return found and found.group(1)

    with open("/dev/zero", "rb") as silence:
        stream = subprocess.Popen(["pacat", "--raw", "--property=media.role=event"], stdin=silence,
                                  env=phone.session.environment, stderr=subprocess.DEVNULL)
    try:
        yield phone.until(number, "the stream of the role \"event\"")
    finally:
        stream.terminate()
        stream.wait()


def set_ringtone(phone, volume):
    """As with the volume buttons while the phone rings. `volume`: such as "40%"."""
    with silent_ring(phone) as number:
        phone.session.run(["pactl", "set-sink-input-volume", number, volume])


class Calendar:
    """A calendar of Evolution Data Server, and the user who edits it in a program."""

    def __init__(self, phone, name="system-calendar"):
        self.phone, self.name, self.identifier = phone, name, f"evolution:{name}"

    def _do(self, *arguments):
        # Debian's own Python: others lack its modules.
        return self.phone.session.run(["/usr/bin/python3", str(EDS_USER), *arguments])

    def add(self, ahead, long, uid):
        """Answers the start and the end."""
        start = datetime.datetime.now(datetime.timezone.utc).replace(microsecond=0) + datetime.timedelta(seconds=ahead)
        end = start + datetime.timedelta(seconds=long)
        self._do("add", self.name, uid, f"{start:%Y%m%dT%H%M%SZ}", f"{end:%Y%m%dT%H%M%SZ}")
        return start, end

    def remove(self, uid):
        self._do("remove", self.name, uid)

    def process(self):
        """The process that holds the calendars."""
        return int(self._do("process"))


class Networks:
    """The radio of the stand-in for NetworkManager, and networks that it joins and leaves."""

    def __init__(self, phone):
        self.phone, self.known, self.joined = phone, {}, {}
        self.radio = self._mock("AddWiFiDevice", "wifi0", "wlan0", "30")

    def _call(self, path, method, *arguments):
        answer = self.phone.session.run(["gdbus", "call", "--system", "-d", MANAGER, "-o", path, "-m", method,
                                         *arguments])
        found = re.search(r"'([^']*)'", answer)
        return found and found.group(1)

    def _mock(self, method, *arguments):
        return self._call(ROOT, f"{MOCK}.{method}", *arguments)

    def know(self, name):
        """As if the phone had been in that network before."""
        ssid = "[" + ", ".join(f"byte 0x{byte:02x}" for byte in name.encode()) + "]"
        settings = ("{'connection': {'type': <'802-11-wireless'>, 'id': <'" + name + "'>},"
                    " '802-11-wireless': {'ssid': <" + ssid + ">, 'mode': <'infrastructure'>}}")
        self.known[name] = self._call(f"{ROOT}/Settings", f"{MANAGER}.Settings.AddConnection", settings)

    def join(self, name):
        self.joined[name] = self._mock("AddActiveConnection", f"['{self.radio}']", self.known[name], "/", name, "2")

    def leave(self, name):
        self._mock("RemoveActiveConnection", self.radio, self.joined.pop(name))


class Power:
    """The stand-in for logind, which sends the phone to sleep."""

    def __init__(self, phone):
        self.phone = phone

    def _call(self, method, *arguments):
        return self.phone.session.run(["gdbus", "call", "--system", "-d", "org.freedesktop.login1", "-o",
                                       "/org/freedesktop/login1", "-m", method, *arguments])

    def is_delayed(self):
        """Whether Hush Mode would be waited for."""
        return "Hush Mode" in self._call("org.freedesktop.login1.Manager.ListInhibitors")

    def prepare_for_sleep(self, begins):
        self._call(f"{MOCK}.EmitSignal", "org.freedesktop.login1.Manager", "PrepareForSleep", "b",
                   f"[<{'true' if begins else 'false'}>]")
