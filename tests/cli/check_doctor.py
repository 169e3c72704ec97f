#!/usr/bin/python3
# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""hushmode doctor: on files alone, and beside a daemon whose services come and go.

usage: check_doctor.py PROGRAM            without a daemon
       check_doctor.py PROGRAM DAEMON     under tests/services/run_with.py
"""
import json
import os
import pathlib
import shlex
import shutil
import signal
import subprocess
import sys
import time
import unittest

HERE = pathlib.Path(__file__).resolve().parent
sys.path[:0] = [str(HERE), str(HERE.parent / "daemon")]
from user_phone import PROFILES, UserPhone  # noqa: E402

PROGRAM = str(pathlib.Path(sys.argv.pop(1)).resolve())
DAEMON = sys.argv.pop(1) if len(sys.argv) > 1 and not sys.argv[1].startswith("-") else None
if DAEMON:
    from hushmoded import CALENDARS, CONFIG, STATE, Daemon, put_event, wait_until, zone_of_noon
    from phone_services import SoundServer, WiFi

HOUR = 3600
NO_DAEMON = """\
Daemon
  problem  The daemon does not run, so that nothing is switched, and services, networks and the calendars of accounts are not known.
           -> systemctl --user enable --now hushmoded
"""


def tomorrow(clock):
    """Seconds since 1970 of that hour of tomorrow, in UTC."""
    return (int(time.time()) // 86400 + 1) * 86400 + clock * HOUR


def profile(identifier, title, **more):
    return {"identifier": identifier, "title": title, "enabled": True, "allDay": True, "ringerVolume": 0.05,
            "calendarIdentifiers": ["folder:Work"], **more}


@unittest.skipIf(DAEMON, "without a daemon")
class OnFiles(unittest.TestCase):
    def setUp(self):
        self.phone = UserPhone(PROGRAM)
        self.addCleanup(self.phone.end)
        self.phone.put_event("Work", "Interview", tomorrow(10), tomorrow(11))

    def found(self):
        """What is not well, by name; but that there is no daemon, which is always found."""
        result = self.phone.run("doctor", "--json")
        self.assertEqual((result.returncode, result.stderr), (1, ""))
        lines = [json.loads(line) for line in result.stdout.splitlines()]
        self.assertEqual([each["name"] for each in lines if each["area"] == "daemon"][0], "daemon-not-running")
        return {each["name"]: each for each in lines if each["severity"] != "ok" and each["name"] != "daemon-not-running"}

    def test_people_read_what_is_wrong_and_what_to_type(self):
        self.phone.write_profiles([profile(1, "Night", allDay=False, startTime="10:00 PM", endTime="6:00 AM"),
                                   profile(2, "Meetings", enabled=False)])
        result = self.phone.run("doctor")
        self.assertEqual((result.returncode, result.stderr), (1, ""))
        self.assertEqual(result.stdout, NO_DAEMON + """\
  ok       Hush Mode is on.

Profiles
  problem  The window of "Night" never opens, since it ends (6:00 AM) before it starts (10:00 PM).
           -> hushmode profile edit Night --all-day && hushmode schedule Night 22:00-06:00
  note     "Meetings" is disabled.
           -> hushmode profile enable Meetings

Problems: 2. Warnings: 0. Notes: 1.
""")

    def test_a_healthy_profile_is_not_spoken_of(self):
        self.phone.write_profiles([profile(1, "Work")])
        self.assertEqual(self.found(), {})

    def test_remedies_mend_what_was_found(self):
        def fight(first, second):
            return [profile(1, "Work"), profile(2, "Other", **{first: second})]

        for profiles, name in (
                ([profile(1, "Night", allDay=False, startTime="10:00 PM", endTime="6:00 AM")], "window-never-opens"),
                ([profile(1, "It's $5", allDay=False, startTime="8 AM", endTime="8:00 PM")], "window-unreadable"),
                ([profile(1, "Work", allDay=False, startTime="08:00", endTime="8:00 PM")], "window-time-odd"),
                ([profile(1, "Work", calendarIdentifiers=["folder:Work", "folder:Gone"])], "calendar-gone"),
                ([profile(1, "Work", calendarIdentifiers=[])], "follows-nothing"),
                ([profile(1, "Work", applyProfileEventStatus=3)], "wants-cancelled-events"),
                ([profile(1, "Work", applyProfileEventStatus=2)], "status-never-matches"),
                ([profile(1, "Work", allDay=False, startTime="3:00 AM", endTime="4:00 AM")], "never-on"),
                ([profile(1, "Work", enabled=False)], "disabled"),
                ([], "no-profiles"),
                ([profile(1, "Work"), profile(2, "Work")], "title-twice"),
                (fight("ringerVolume", 0.5), "profiles-fight"),
                (fight("playBackVolume", 0.5), "profiles-fight"),
                (fight("vibrate", True), "profiles-fight")):
            with self.subTest(name=name, profiles=profiles):
                self.phone.write_profiles(profiles)
                found = self.found()
                self.assertEqual([*found], [name])
                for command in found[name]["remedy"].split(" && "):
                    done = self.phone.run(*shlex.split(command)[1:])
                    self.assertEqual((done.returncode, done.stderr), (0, ""), command)
                self.assertNotIn(name, self.found())

    def test_all_day_events_that_are_ignored_are_found(self):
        self.phone.put_event("Work", "On call", tomorrow(0), tomorrow(24), all_day=True)
        self.phone.write_profiles([profile(1, "Work", allDayEventsIgnored=True)])
        self.assertEqual([*self.found()], ["all-events-ignored"])
        self.phone.write_profiles([profile(1, "Work", allDayEventsIgnored=False)])
        self.assertEqual([*self.found()], [])

    def test_calendar_files_that_cannot_be_read_are_found(self):
        self.phone.write_profiles([profile(1, "Work")])
        broken = self.phone.calendars / "Work/broken.ics"
        broken.write_text("BEGIN:VCALENDAR\nBEGIN:VEVENT\nUID:x\nDTSTART:nonsense\nEND:VEVENT\nEND:VCALENDAR\n")
        found = self.found()
        self.assertEqual([*found], ["calendar-unreadable"])
        self.assertIn("broken.ics", found["calendar-unreadable"]["text"])

    def test_a_profiles_file_that_cannot_be_read_is_found_and_left(self):
        path = self.phone.config / PROFILES
        path.write_text("nonsense")
        self.assertEqual([*self.found()], ["profiles-unreadable"])
        self.assertEqual(path.read_text(), "nonsense")

    def test_off_is_a_finding(self):
        self.phone.write_profiles([profile(1, "Work")])
        self.phone.switch(False)
        found = self.found()
        self.assertEqual([*found], ["switched-off"])
        self.assertEqual(found["switched-off"]["remedy"], "hushmode on")

    def test_titles_cannot_command_the_terminal(self):
        self.phone.write_profiles([profile(7, "\x1b[2J", enabled=False)])
        told = self.phone.run("doctor").stdout
        self.assertNotIn("\x1b", told)
        self.assertIn("hushmode profile enable 7\n", told)


@unittest.skipUnless(DAEMON, "with a daemon")
class BesideADaemon(unittest.TestCase):
    def setUp(self):
        for folder in (CONFIG, STATE, CALENDARS):
            shutil.rmtree(folder, ignore_errors=True)
        put_event("Interview", time.time() + HOUR, time.time() + 2 * HOUR)
        self.daemon = Daemon(DAEMON)
        self.addCleanup(lambda: self.daemon.end(signal.SIGTERM))
        self.daemon.delete_all()

    def add(self, title="Work", **more):
        calendars = [each["identifier"] for each in self.daemon.call("ListCalendars")]
        self.daemon.add(**{"title": title, "enabled": True, "allDay": True, "calendarIdentifiers": calendars, **more})

    def run_program(self, *arguments):
        return subprocess.run([PROGRAM, *arguments], capture_output=True, text=True, timeout=60,
                              env={**os.environ, "TZ": zone_of_noon()})

    def lines(self, area):
        result = self.run_program("doctor", "--json")
        self.assertEqual(result.stderr, "")
        lines = [json.loads(line) for line in result.stdout.splitlines()]
        wrong = any(each["severity"] in ("warning", "problem") for each in lines)
        self.assertEqual(result.returncode, 1 if wrong else 0)
        return [each for each in lines if each["area"] == area]

    def services(self):
        return {each["service"]: each for each in self.lines("service")}

    def test_the_daemon_is_the_one_that_this_program_was_made_for(self):
        self.add()
        self.assertEqual([(each["name"], each["severity"]) for each in self.lines("daemon")],
                         [("daemon-runs", "ok"), ("enabled", "ok")])
        self.daemon.call("SetEnabled", "(b)", False)
        self.assertEqual([each["name"] for each in self.lines("daemon")], ["daemon-runs", "switched-off"])

    def test_every_service_is_told_of_as_the_daemon_knows_it(self):
        wait_until(lambda: "volumes" in self.daemon.get("Services"), "the volumes")
        known = self.daemon.get("Services")
        services = self.services()
        self.assertEqual(sorted(services), sorted(known))
        for name, (works, detail) in known.items():
            self.assertEqual(services[name]["name"], "service-works" if works else "service-rests", name)
            self.assertEqual(services[name]["text"], detail)
            self.assertEqual(services[name]["remedy"] is None, works, services[name])

    def test_a_sound_server_that_died_is_a_problem_with_a_remedy_until_it_is_back(self):
        works = lambda: self.daemon.get("Services").get("volumes", (False, ""))[0]  # noqa: E731
        wait_until(works, "the volumes")
        self.assertEqual(self.services()["volumes"]["severity"], "ok")
        server = SoundServer()
        server.kill()
        wait_until(lambda: not works(), "the loss of the volumes")
        volumes = self.services()["volumes"]
        self.assertEqual((volumes["severity"], volumes["name"]), ("problem", "service-rests"))
        self.assertIn("systemctl --user start pipewire-pulse", volumes["remedy"])
        told = self.run_program("doctor").stdout
        self.assertIn(volumes["remedy"], told)
        server.start()
        wait_until(works, "the volumes again")
        self.assertEqual(self.services()["volumes"]["severity"], "ok")

    def test_networks_that_the_phone_does_not_know_are_found(self):
        wifi = WiFi()
        wifi.add("Office")
        wait_until(lambda: self.daemon.call("ListNetworks"), "the known network")
        self.add(wifiNetworks=["Ofice"])
        [found] = [each for each in self.lines("profile") if each["name"] == "network-unknown"]
        self.assertEqual(found["remedy"], "hushmode profile edit Work --networks Office")
        self.assertEqual(self.run_program(*shlex.split(found["remedy"])[1:]).returncode, 0)
        self.assertEqual(self.lines("profile"), [])


if __name__ == "__main__":
    unittest.main()
