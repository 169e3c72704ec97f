# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""A phone of its own for a test of the real daemon: private folders and buses, a sound server, a calendar folder."""
import datetime
import json
import os
import pathlib
import re
import signal
import subprocess
import sys
import time
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
for each in ("services", "support"):
    sys.path.insert(0, str(ROOT / "tests" / each))
import run_with  # noqa: E402
from calendar_text import calendar_text  # noqa: E402

OBJECT = ["-d", "com.quorvel.Hushmode", "-o", "/com/quorvel/Hushmode"]
INTERFACE = "com.quorvel.Hushmode1"
MEETINGS = {"title": "<'Meetings'>", "enabled": "<true>", "allDay": "<true>", "allDayEventsIgnored": "<true>",
            "ringerVolume": "<0.05>", "playBackVolume": "<0.0>", "vibrate": "<false>", "dnDEnabled": "<true>",
            "showOnStatusBar": "<true>", "calendarIdentifiers": "<['folder:Work']>"}
EMPTY_LIST = '<?xml version="1.0" encoding="UTF-8"?>\n<plist version="1.0"><array/></plist>\n'


class LivePhone:
    def __init__(self, daemon, services=("pulse",)):
        sys.path.insert(0, str(ROOT / "tests" / "services"))
        modules = [__import__(name) for name in services]
        missing = run_with.missing_packages(modules)
        if missing:
            if os.environ.get("HUSHMODE_SKIP_NOTHING"):
                raise RuntimeError(f"not installed: {missing}")
            raise unittest.SkipTest(f"not installed: {missing}")
        self.program = daemon
        self.session = run_with.Session()
        self.daemon = None
        self.log = open(self.session.folder / "daemon.log", "w+b")
        self.services = {}
        try:
            for name, module in zip(services, modules):
                first = len(self.session.processes)
                module.start(self.session)
                self.services[name] = self.session.processes[first:]
        except BaseException:
            self.__exit__()
            raise

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.log.close()
        self.session.end()

    @property
    def config(self):
        return self.session.folder / "config" / "hushmode"

    @property
    def state_folder(self):
        return self.session.folder / "state" / "hushmode"

    @property
    def calendars(self):
        return self.session.folder / "data" / "hushmode" / "calendars"

    # --- The daemon ---

    def start(self, wait=True, **environment):
        # As installed: the icon beside the data.
        data = self.session.folder / "share" / "hushmode"
        if not data.parent.exists():
            data.parent.mkdir()
            (data.parent / "icons").symlink_to(ROOT / "packaging" / "icons")
        self.daemon = subprocess.Popen([self.program, "--verbose", "--data", data], stderr=self.log,
                                       stdin=subprocess.DEVNULL, env={**self.session.environment, **environment})
        self.daemon.log_name = self.log.name
        self.session.processes.append(self.daemon)
        if wait:
            self.session.wait_for_name("com.quorvel.Hushmode")
        return self.daemon

    def kill(self):
        self.daemon.kill()
        self.daemon.wait()

    def stop(self):
        """As the session manager would; answers the exit code."""
        self.daemon.terminate()
        return self.daemon.wait(15)

    def said(self):
        return pathlib.Path(self.log.name).read_text(errors="replace")

    def call(self, method, *arguments):
        return self.session.run(["gdbus", "call", "--session", *OBJECT, "-m", f"{INTERFACE}.{method}", *arguments])

    def refusal(self, method, *arguments):
        """The text of the error that a call ends with."""
        result = subprocess.run(["gdbus", "call", "--session", *OBJECT, "-m", f"{INTERFACE}.{method}", *arguments],
                                env=self.session.environment, capture_output=True, text=True)
        if result.returncode == 0:
            raise AssertionError(f"{method} was not refused: {result.stdout}")
        return result.stderr

    def property(self, name):
        return self.session.run(["gdbus", "call", "--session", *OBJECT, "-m", "org.freedesktop.DBus.Properties.Get",
                                 INTERFACE, name])

    def is_applied(self):
        return "'title'" in self.property("Applied")

    def add_profile(self, **changes):
        profile = {**MEETINGS, **changes}
        text = "{" + ", ".join(f"'{key}': {value}" for key, value in profile.items()) + "}"
        return int(re.search(r"\d+", self.call("AddProfile", text).replace("int64", "")).group())

    def no_default_profile(self):
        self.config.mkdir(mode=0o700, parents=True, exist_ok=True)
        (self.config / "com.quorvel.hushmode.profiles.plist").write_text(EMPTY_LIST)

    # --- The calendar ---

    def meeting(self, ahead, long, name="meeting", calendar="Work"):
        start = datetime.datetime.now(datetime.timezone.utc).replace(microsecond=0) + datetime.timedelta(seconds=ahead)
        end = start + datetime.timedelta(seconds=long)
        folder = self.calendars / calendar
        folder.mkdir(parents=True, exist_ok=True)
        temporary = folder / f".{name}.tmp"
        temporary.write_text(calendar_text(name, start.timestamp(), end.timestamp(), uid=name))
        temporary.rename(folder / f"{name}.ics")
        return start, end

    # --- What there is to see, asked of the services themselves ---

    def ringtone(self):
        """The sound server applies it to every stream of the role "event": ask it about a silent one."""
        with open("/dev/zero", "rb") as silence:
            stream = subprocess.Popen(["pacat", "--raw", "--property=media.role=event"], stdin=silence,
                                      env=self.session.environment, stderr=subprocess.DEVNULL)
        try:
            return self.until(lambda: self.stream_volume(), "the stream of the role \"event\"")
        finally:
            stream.terminate()
            stream.wait()

    def stream_volume(self):
        streams = self.session.run(["pactl", "list", "sink-inputs"])
        volume = re.search(r"Volume:.*?(\d+)%", streams)
        return f"{volume.group(1)}%" if volume and 'media.role = "event"' in streams else None

    def media(self):
        return re.search(r"(\d+)%", self.session.run(["pactl", "get-sink-volume", "spk"])).group(0)

    def vibrate(self):
        text = (self.state_folder / "com.apple.springboard.plist").read_text()
        return dict(re.findall(r"<key>(ring|silent)-vibrate</key>\s*<(true|false)/>", text))

    def banners(self):
        return self.session.run(["gsettings", "get", "org.gnome.desktop.notifications", "show-banners"]).strip()

    def state(self):
        return {"ringtone": self.ringtone(), "media": self.media(), "vibrate": self.vibrate(),
                "banners": self.banners()}

    def until(self, condition, what, seconds=30):
        """Waits for the first true answer of `condition`, and answers it."""
        deadline = time.monotonic() + seconds
        while True:
            answer = condition()
            if answer:
                return answer
            if time.monotonic() > deadline:
                raise AssertionError(f"not within {seconds} s: {what}; the daemon said:\n{self.said()[-3000:]}")
            time.sleep(0.02)

    def until_state(self, wanted, seconds=30):
        last = {}

        def reached():
            last.update(self.state())
            return last == wanted

        try:
            self.until(reached, "the state", seconds)
        except AssertionError as error:
            raise AssertionError(f"wanted {json.dumps(wanted)}, found {json.dumps(last)}; {error}") from None


def kill_service(processes):
    for process in processes:
        os.kill(process.pid, signal.SIGKILL)
        process.wait()


def main():
    """Runs the tests of the program's file. Ends with 77 when one was skipped, and none failed."""
    result = unittest.main(module="__main__", verbosity=2, exit=False).result
    sys.exit(1 if not result.wasSuccessful() else run_with.SKIPPED if result.skipped else 0)
