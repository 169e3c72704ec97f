# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""A phone's user as the command line meets them, without a daemon: private folders, profiles, and calendars in files."""
import os
import pathlib
import plistlib
import shutil
import subprocess
import tempfile
import time

PROFILES = "com.quorvel.hushmode.profiles.plist"
SETTINGS = "com.quorvel.hushmode.plist"


class UserPhone:
    """Berlin's time, a neutral language, no bus; Hush Mode is on."""

    def __init__(self, program):
        self.program = program
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="hm-"))
        self.config, self.calendars = self.folder / "config/hushmode", self.folder / "data/hushmode/calendars"
        self.config.mkdir(parents=True)
        self.calendars.mkdir(parents=True)
        self.environment = dict(os.environ, XDG_CONFIG_HOME=str(self.folder / "config"), TZ="Europe/Berlin",
                                XDG_STATE_HOME=str(self.folder / "state"), XDG_DATA_HOME=str(self.folder / "data"),
                                XDG_CACHE_HOME=str(self.folder / "cache"), XDG_RUNTIME_DIR=str(self.folder),
                                LANG="C.UTF-8", LC_ALL="C.UTF-8")
        self.environment.pop("DBUS_SESSION_BUS_ADDRESS", None)
        self.switch(True)
        self.write_profiles([])

    def end(self):
        shutil.rmtree(self.folder)

    def switch(self, on):
        (self.config / SETTINGS).write_bytes(plistlib.dumps({"com.quorvel.hushmode.enabled": on}))

    def write_profiles(self, profiles):
        (self.config / PROFILES).write_bytes(plistlib.dumps(profiles, fmt=plistlib.FMT_BINARY))

    def use_examples(self, examples):
        """The calendars and profiles of the example day, as they lie in the user's own folders."""
        shutil.copytree(examples / "calendars", self.calendars, dirs_exist_ok=True)
        profiles = plistlib.loads((examples / "profiles.plist").read_bytes())
        for each in profiles:
            each["calendarIdentifiers"] = ["folder:" + name for name in each["calendarIdentifiers"]]
        self.write_profiles(profiles)
        return profiles

    def put_event(self, calendar, title, start, end, *, uid="one", all_day=False):
        """Times in seconds since 1970; of an all-day event the days in UTC, the last one not included."""
        def utc(seconds, form="%Y%m%dT%H%M%SZ"):
            return time.strftime(form, time.gmtime(seconds))

        key, form = (";VALUE=DATE:", "%Y%m%d") if all_day else (":", "%Y%m%dT%H%M%SZ")
        lines = ["BEGIN:VCALENDAR", "VERSION:2.0", "PRODID:test", "BEGIN:VEVENT", f"UID:{uid}", f"SUMMARY:{title}",
                 f"DTSTAMP:{utc(start)}", f"DTSTART{key}{utc(start, form)}", f"DTEND{key}{utc(end, form)}", "END:VEVENT",
                 "END:VCALENDAR", ""]
        (self.calendars / calendar).mkdir(exist_ok=True)
        (self.calendars / calendar / f"{uid}.ics").write_text("\r\n".join(lines))

    def run(self, *arguments, **environment):
        return subprocess.run([self.program, *map(str, arguments)], env={**self.environment, **environment},
                              capture_output=True, text=True, timeout=60)
