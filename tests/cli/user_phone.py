# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""A phone's user as the command line meets them: private folders, profiles, and calendars in files."""
import os
import pathlib
import plistlib
import shutil
import subprocess
import sys
import tempfile

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "support"))
from calendar_text import calendar_text  # noqa: E402

PROFILES = "com.quorvel.hushmode.profiles.plist"
SETTINGS = "com.quorvel.hushmode.plist"


class UserFolders:
    """Empty folders of a user's own, a neutral language and a time zone. On no bus, or, with `on_bus`, on that of the
    test's session. `end` leaves nothing behind."""

    def __init__(self, program, *, on_bus=False, zone="Europe/Berlin"):
        self.program = program
        # Short: a socket's path may have 107 characters.
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="hm-"))
        self.config, self.calendars = self.folder / "config/hushmode", self.folder / "data/hushmode/calendars"
        self.calendars.mkdir(parents=True)
        self.environment = dict(os.environ, TZ=zone, LANG="C.UTF-8", LC_ALL="C.UTF-8")
        for name in ("config", "state", "data", "cache"):
            self.environment[f"XDG_{name.upper()}_HOME"] = str(self.folder / name)
        if not on_bus:
            self.environment.pop("DBUS_SESSION_BUS_ADDRESS", None)
            self.environment["XDG_RUNTIME_DIR"] = str(self.folder)
        self.daemon = None

    def end(self):
        """Also of the daemon, which must not have died before."""
        try:
            if self.daemon:
                self.daemon.terminate()
                code = self.daemon.wait(15)
                assert code == 0, f"the daemon ended with {code}"
        finally:
            shutil.rmtree(self.folder)

    def start_daemon(self, daemon, *arguments, **options):
        """Starts a daemon for this user and waits until it is on the bus."""
        self.daemon = subprocess.Popen([daemon, *arguments], env=self.environment, stderr=subprocess.DEVNULL, **options)
        subprocess.run(["gdbus", "wait", "--session", "--timeout", "30", "com.quorvel.Hushmode"], check=True,
                       env=self.environment)

    def kill_daemon(self):
        self.daemon.kill()
        self.daemon.wait()
        self.daemon = None
        owned = ["gdbus", "call", "--session", "--dest", "org.freedesktop.DBus", "--object-path", "/org/freedesktop/DBus",
                 "--method", "org.freedesktop.DBus.NameHasOwner", "com.quorvel.Hushmode"]
        while "true" in subprocess.run(owned, check=True, env=self.environment, capture_output=True, text=True).stdout:
            pass  # The bus is about to see that its connection is closed.

    def switch(self, on):
        self._configure(SETTINGS, plistlib.dumps({"com.quorvel.hushmode.enabled": on}))

    def write_profiles(self, profiles):
        self._configure(PROFILES, plistlib.dumps(profiles, fmt=plistlib.FMT_BINARY))

    def _configure(self, name, content):
        self.config.mkdir(mode=0o700, parents=True, exist_ok=True)
        (self.config / name).write_bytes(content)

    def put_event(self, calendar, title, start, end, *, uid="one", all_day=False):
        """As calendar_text has it, in a calendar that is made if need be."""
        (self.calendars / calendar).mkdir(exist_ok=True)
        (self.calendars / calendar / f"{uid}.ics").write_text(
            calendar_text(title, start, end, uid=uid, all_day=all_day))

    def put_calendars(self, *names):
        """Calendars in which all is long past."""
        for each in names:
            self.put_event(each, "Past", 1704067200, 1704070800)

    def run(self, *arguments, **environment):
        return subprocess.run([self.program, *map(str, arguments)], env={**self.environment, **environment},
                              capture_output=True, text=True, timeout=60)


class UserPhone(UserFolders):
    """Hush Mode is on, without a profile, a bus and a daemon."""

    def __init__(self, program):
        super().__init__(program)
        self.switch(True)
        self.write_profiles([])

    def use_examples(self, examples):
        """The calendars and profiles of the example day, as they lie in the user's own folders."""
        shutil.copytree(examples / "calendars", self.calendars, dirs_exist_ok=True)
        profiles = plistlib.loads((examples / "profiles.plist").read_bytes())
        for each in profiles:
            each["calendarIdentifiers"] = ["folder:" + name for name in each["calendarIdentifiers"]]
        self.write_profiles(profiles)
        return profiles
