# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""What a test does to the services of the phone: the WiFi of the NetworkManager stand-in, and the sound server."""
import itertools
import os
import pathlib
import select
import signal
import socket
import struct
import subprocess

from gi.repository import Gio, GLib

MANAGER = "org.freedesktop.NetworkManager"
ROOT = "/org/freedesktop/NetworkManager"


class WiFi:
    """One radio, and networks that it joins and leaves."""

    _numbers = itertools.count(100)

    def __init__(self):
        self.bus = Gio.bus_get_sync(Gio.BusType.SYSTEM)
        number = next(self._numbers)
        self.radio = self._mock("AddWiFiDevice", "(ssu)", f"wifi{number}", f"wlan{number}", 30)
        self.joined = None

    def _call(self, path, interface, method, signature, *arguments):
        reply = self.bus.call_sync(MANAGER, path, interface, method, GLib.Variant(signature, arguments), None, 0, -1,
                                   None).unpack()
        return reply[0] if reply else None

    def _mock(self, method, signature, *arguments):
        return self._call(ROOT, "org.freedesktop.DBus.Mock", method, signature, *arguments)

    def add(self, name):
        """A network that the phone knows."""
        settings = {"connection": {"type": GLib.Variant("s", "802-11-wireless"), "id": GLib.Variant("s", name)},
                    "802-11-wireless": {"ssid": GLib.Variant("ay", name.encode()),
                                        "mode": GLib.Variant("s", "infrastructure")}}
        return self._call(f"{ROOT}/Settings", f"{MANAGER}.Settings", "AddConnection", "(a{sa{sv}})", settings)

    def join(self, connection):
        self.joined = self._mock("AddActiveConnection", "(asossu)", [self.radio], connection, "/",
                                 str(next(self._numbers)), 2)

    def leave(self):
        self._mock("RemoveActiveConnection", "(ss)", self.radio, self.joined)


class SoundServer:
    """The one that listens in this session. It can be killed, and started again as it was."""

    _started = []  # They live as long as the test program.

    def __init__(self):
        with socket.socket(socket.AF_UNIX) as client:
            client.connect(os.path.join(os.environ["XDG_RUNTIME_DIR"], "pulse", "native"))
            credentials = client.getsockopt(socket.SOL_SOCKET, socket.SO_PEERCRED, struct.calcsize("3i"))
        self.process = struct.unpack("3i", credentials)[0]
        self.arguments = pathlib.Path(f"/proc/{self.process}/cmdline").read_bytes().decode().split("\0")[:-1]

    def kill(self):
        descriptor = os.pidfd_open(self.process)
        os.kill(self.process, signal.SIGKILL)
        select.select([descriptor], [], [], 30)
        os.close(descriptor)

    def start(self):
        """Starts it again."""
        started = subprocess.Popen(["setpriv", "--pdeathsig", "TERM", *self.arguments], stdin=subprocess.DEVNULL,
                                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self._started.append(started)
        self.process = started.pid
