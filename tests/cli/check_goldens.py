#!/usr/bin/python3
# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""What people see: the output of commands as it was looked at and found good, in tests/cli/goldens/.

usage: check_goldens.py HUSHMODE SOURCE-FOLDER [HUSHMODED] [--update]

With HUSHMODED (under tests/services/run_with.py) those that need the daemon, else the others. --update writes what is
printed now in the place of what was: look at the difference before it is committed.
"""
import difflib
import pathlib
import plistlib
import re
import shlex
import subprocess
import sys
import time

from user_phone import UserFolders

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "support"))
from noon import zone_of_noon  # noqa: E402

UPDATE = "--update" in sys.argv
PROGRAM, SOURCE, *DAEMON = [pathlib.Path(each).resolve() for each in sys.argv[1:] if each != "--update"]
if DAEMON:
    sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "daemon"))
    from phone_services import WiFi
GOLDENS = SOURCE / "tests/cli/goldens"
SPAN = "--from 2026-11-24 --to 2026-11-24 --zone Europe/Berlin"

# File -> commands, in order; each goes on with what those before it left. HERE is the test's folder.
ALONE = {
    "profile-list": ["profile list", "profile disable Night", "profile list"],
    "profile-show": ["profile show Work", "profile show Night"],
    "calendars": ["calendars"],
    "schedule-list": ["schedule --list", "schedule Night 22:00-06:00 --days mon,sun", "schedule --list",
                      "schedule Night --remove"],
    "agenda": ["on", "profile enable Night", "schedule Night 22:00-06:00", "agenda --days 2", "schedule Night --remove"],
    "simulate": ["simulate examples/workday.json"],
    "events": [f"events --calendars examples/calendars {SPAN}", "events --calendars examples/calendars --from 2020-01-01 "
               "--to 2020-01-01"],
    "import": ["import HERE/other.plist --dry-run", "import HERE/other.plist --dry-run --replace",
               "import HERE/same.plist", "import HERE/wrong.plist", "import HERE/none.plist"],
    "export": ["export HERE/out.plist Work", "export Work", "export - Wrok"],
    "rescue": ["rescue", "rescue --dry-run"],
    "wrong": ["staus", "profile edit Wrok --media 5%", "profile edit Work --media loud", "profile edit Work --meda 5%",
              "profile edit Work --window 22:00-06:00", "profile edit Work --calendars Hoem", "profile show", "quiet 90",
              "schedule Night 22:00", "agenda --days 0", "simulate HERE/none.json"],
    "no-daemon": ["status", "log", "networks", "off"],
}
WITH_DAEMON = {
    "agenda-daemon": ["agenda"],
    "status": ["status", "off", "status"],
    "log": ["log"],
    "networks": ["networks"],
    "rescue-daemon": ["on", "WAIT", "rescue"],
}
# What differs from day to day and from phone to phone.
VARYING = [(r"(Mon|Tues|Wednes|Thurs|Fri|Satur|Sun)day, \d{1,2} \w+ \d{4}", "DAY"), (r".* rests: .*\n", "")]
TIMES = [(r"\b\d{2}:\d{2}(:\d{2})?\b", "TIME")]


class Phone:
    """The profiles Work and Night, the calendars Work and Home; with a daemon, in a meeting of Work."""

    def __init__(self):
        self.user = UserFolders(PROGRAM, on_bus=bool(DAEMON), zone=zone_of_noon())
        self.folder = self.user.folder
        self.user.put_calendars("Work", "Home")
        if DAEMON:
            self.user.put_event("Work", "Interview", time.time() - 600, time.time() + 600)
        work = {"identifier": 1700000000, "title": "Work", "enabled": True, "allDay": False, "startTime": "12:00 AM",
                "endTime": "11:59 PM", "ringerVolume": 0.05, "playBackVolume": 0.1, "vibrate": True,
                "calendarIdentifiers": ["folder:Work"], "wifiNetworks": ["Office"]}
        night = {"identifier": 1700000001, "title": "Night", "enabled": True, "allDay": True, "dnDEnabled": True,
                 "calendarIdentifiers": ["folder:Home"]}
        self.user.write_profiles([work, night])
        self.write("same.plist", [work])
        self.write("other.plist", [{**work, "allDay": True, "playBackVolume": 0.25, "wifiNetworks": []},
                                   {"title": "Cinema", "enabled": True, "dnDEnabled": True, "ringervolume": 0.1}])
        self.write("wrong.plist", [work, {**night, "ringerVolume": 12}])
        if DAEMON:
            wifi = WiFi()
            wifi.add("Office")
            wifi.join(wifi.add("Home"))
            self.user.start_daemon(DAEMON[0])
            self.wait_for_switch()

    def write(self, name, profiles):
        (self.folder / name).write_bytes(plistlib.dumps(profiles))

    def wait_for_switch(self):
        """Until the last switch, to on, has come to rest."""
        deadline = time.monotonic() + 30
        while '"on":true' not in (self.run(["log", "--json", "--limit", "1"]).stdout or ""):
            assert time.monotonic() < deadline, "the profile did not go on"
            time.sleep(0.1)

    def run(self, words):
        return subprocess.run([PROGRAM, *words], env=self.user.environment, cwd=SOURCE, capture_output=True, text=True)

    def shown(self, command):
        if command == "WAIT":
            self.wait_for_switch()
            return ""
        result = self.run(shlex.split(command.replace("HERE", str(self.folder))))
        text = f"$ hushmode {command}\n{result.stdout}"
        text += "".join(f"! {line}\n" for line in result.stderr.splitlines())
        if result.returncode != 0:
            text += f"(exit code {result.returncode})\n"
        return text.replace(str(self.folder), "HERE") + "\n"


def main():
    phone = Phone()
    faults = 0
    try:
        for name, commands in (WITH_DAEMON if DAEMON else ALONE).items():
            text = "".join(map(phone.shown, commands))
            for pattern, word in VARYING + (TIMES if DAEMON else []):
                text = re.sub(pattern, word, text)
            path = GOLDENS / f"{name}.txt"
            if UPDATE:
                GOLDENS.mkdir(exist_ok=True)
                path.write_text(text)
                continue
            expected = path.read_text() if path.exists() else ""
            if text != expected:
                faults += 1
                sys.stdout.writelines(difflib.unified_diff(expected.splitlines(True), text.splitlines(True),
                                                           str(path), "now"))
    finally:
        phone.user.end()
    known = {f"{name}.txt" for name in {**ALONE, **WITH_DAEMON}}
    for path in GOLDENS.glob("*"):
        if path.name not in known:
            faults += 1
            print(f"{path}: no command prints this")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
