#!/usr/bin/python3
# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""hushmode explain: on files alone, and beside a daemon that does the same.

usage: check_explain.py PROGRAM [--update]   without a daemon; --update writes the texts for people anew
       check_explain.py PROGRAM DAEMON       under tests/services/run_with.py
"""
import json
import os
import pathlib
import plistlib
import shlex
import shutil
import signal
import subprocess
import sys
import time
import unittest

HERE = pathlib.Path(__file__).resolve().parent
sys.path[:0] = [str(HERE), str(HERE.parent / "daemon")]
from user_phone import UserPhone  # noqa: E402

PROGRAM = str(pathlib.Path(sys.argv.pop(1)).resolve())
UPDATE = "--update" in sys.argv and not sys.argv.remove("--update")
DAEMON = sys.argv.pop(1) if len(sys.argv) > 1 and not sys.argv[1].startswith("-") else None
EXAMPLES = HERE.parents[1] / "examples"
GOLDEN = HERE / "explain.txt"
if DAEMON:
    from hushmoded import CALENDARS, CONFIG, STATE, Daemon, put_event, wait_until, zone_of_noon
    from phone_services import WiFi


@unittest.skipIf(DAEMON, "without a daemon")
class OnFiles(unittest.TestCase):
    def setUp(self):
        self.phone = UserPhone(PROGRAM)
        self.addCleanup(self.phone.end)
        self.profiles = self.phone.use_examples(EXAMPLES)

    def explained(self, name, at, code=None):
        result = self.phone.run("explain", name, "--at", at, "--json")
        self.assertEqual(result.stderr, "")
        answer = json.loads(result.stdout)
        self.assertEqual(result.returncode, 0 if answer["on"] else 1)
        if code is not None:
            self.assertEqual(result.returncode, code, result.stdout)
        return answer

    def change(self, title, **changes):
        for each in self.profiles:
            if each["title"] == title:
                each.update(changes)
        self.phone.write_profiles(self.profiles)

    def test_people_read_each_condition_the_events_and_the_conclusion(self):
        commands = [line[2:] for line in GOLDEN.read_text().splitlines() if line.startswith("$ ")]
        self.assertGreater(len(commands), 5)
        told = ""
        for command in commands:
            result = self.phone.run(*shlex.split(command)[1:])
            told += f"$ {command}\n{result.stdout}{result.stderr}exit {result.returncode}\n\n"
        if UPDATE:
            GOLDEN.write_text(told)
        self.assertEqual(told, GOLDEN.read_text())

    def test_it_agrees_with_what_the_simulation_switches(self):
        """Off a minute before each switch of the example day that turns a profile on, and on at it; and the reverse."""
        # The simulation names the calendars of a folder without the account.
        plain = [{**each, "calendarIdentifiers": [name.removeprefix("folder:") for name in each["calendarIdentifiers"]]}
                 for each in self.profiles]
        bare = self.phone.folder / "bare.plist"
        bare.write_bytes(plistlib.dumps(plain))
        lines = subprocess.run([PROGRAM, "simulate", "--profiles", bare, "--calendars", EXAMPLES / "calendars", "--from",
                                "2026-11-24", "--to", "2026-11-24", "--zone", "Europe/Berlin"], capture_output=True,
                               text=True, check=True).stdout.splitlines()
        switches = [line.split()[:3] for line in lines if line.startswith("  ")]
        self.assertEqual(len(switches), 6, lines)
        for clock, title, word in switches:
            self.assertEqual(self.explained(title, f"2026-11-24 {clock}")["on"], word == "on", (clock, title))
            before = f"{int(clock[:2]) - (clock[3:5] == '00'):02}:{(int(clock[3:5]) - 1) % 60:02}"
            self.assertEqual(self.explained(title, f"2026-11-24 {before}")["on"], word == "off", (before, title))

    def test_programs_get_each_condition_and_each_event_with_its_verdict(self):
        answer = self.explained("Meetings", "2026-11-24 16:10", 1)
        self.assertEqual((answer["profile"], answer["time"], answer["failed"]),
                         ("Meetings", "2026-11-24T16:10:00+01:00", "event"))
        self.assertEqual([(each["condition"], each["holds"]) for each in answer["conditions"]],
                         [("master-switch", True), ("enabled", True), ("window", True), ("network", False),
                          ("event", False)])
        self.assertEqual([(each["title"], each["verdict"]) for each in answer["events"]],
                         [("On call", "all-day-ignored"), ("Interview", "ended"), ("Call with a vendor", "other-status")])
        self.assertEqual((answer["next"]["time"], answer["next"]["event"]["title"]),
                         ("2026-11-25T09:00:00+01:00", "Standup"))
        self.assertEqual(self.explained("Meetings", "2026-11-24 11:30")["events"][2]["verdict"], "cancelled")
        self.assertIsNone(self.explained("Evening", "2026-11-24 16:50", 1)["conditions"][3]["holds"])

    def test_the_first_condition_that_fails_is_named(self):
        at = "2026-11-24 15:00"
        self.assertIsNone(self.explained("Meetings", at, 0)["failed"])
        for changes, failed in (({"calendarIdentifiers": []}, "event"), ({"endTime": "1:00 PM"}, "window"),
                                ({"endTime": "7:00 AM"}, "window"), ({"endTime": "7 AM"}, "window"),
                                ({"enabled": False}, "enabled")):
            self.change("Meetings", **changes)
            self.assertEqual(self.explained("Meetings", at, 1)["failed"], failed, changes)
        self.phone.switch(False)
        self.assertEqual(self.explained("Meetings", at, 1)["failed"], "master-switch")

    def test_the_remedy_is_told_and_works(self):
        self.change("Meetings", startTime="10:00 PM", endTime="6:00 AM")
        told = self.phone.run("explain", "Meetings", "--at", "2026-11-24 23:00")
        [line] = [line for line in told.stdout.splitlines() if "hushmode schedule" in line]
        for command in line.split("For hours over midnight: ")[1].split(" && "):
            done = self.phone.run(*shlex.split(command)[1:])
            self.assertEqual((done.returncode, done.stderr), (0, ""), command)
        self.assertTrue(self.explained("Meetings", "2026-11-24 23:00", 0)["on"])

    def test_wrong_times_and_names_are_told_in_one_line(self):
        for at in ("", "25:00", "noon", "2026-11-24", "2026-13-01 10:00", "14:2"):
            result = self.phone.run("explain", "Meetings", "--at", at)
            self.assertEqual((result.returncode, result.stdout, result.stderr.count("\n")), (2, "", 1), at)
            self.assertIn("expected a time such as 14:20", result.stderr)
        result = self.phone.run("explain", "Meeting")
        self.assertEqual((result.returncode, result.stderr.count("\n")), (2, 1))
        self.assertIn('"Meetings"', result.stderr)

    def test_without_a_daemon_now_says_that_nothing_is_switched(self):
        self.assertIn("systemctl --user start hushmoded", self.phone.run("explain", "Meetings").stdout)

    def test_verbose_adds_what_was_decided_until_then(self):
        early, late = (self.phone.run("explain", "Meetings", "--at", f"2026-11-24 {at}", "--verbose").stdout
                       for at in ("09:00", "14:30"))
        self.assertIn("Trying to schedule events for profile 'Meetings'", early)
        self.assertNotIn("Evening", late)
        self.assertTrue(late.splitlines()[-1].startswith("  14:30:0"), late.splitlines()[-1])
        self.assertFalse([line for line in early.splitlines() if line.startswith("  14:")])

    def test_titles_cannot_command_the_terminal(self):
        begin = 1795525200  # 2026-11-24, 14:00 in Berlin.
        self.phone.put_event("Evil", "\x1b[2JGone", begin, begin + 1800, uid="evil")
        self.change("Meetings", calendarIdentifiers=["folder:Evil"], applyProfileEventStatus=0)
        result = self.phone.run("explain", "Meetings", "--at", "2026-11-24 14:10")
        self.assertEqual(result.returncode, 0, result.stdout)
        self.assertIn("?[2JGone", result.stdout)
        self.assertNotIn("\x1b", result.stdout)


@unittest.skipUnless(DAEMON, "with a daemon")
class BesideADaemon(unittest.TestCase):
    def setUp(self):
        for folder in (CONFIG, STATE, CALENDARS):
            shutil.rmtree(folder, ignore_errors=True)
        put_event("Past", time.time() - 3600, time.time() - 3000, uid="past")
        self.daemon = Daemon(DAEMON)
        self.addCleanup(lambda: self.daemon.end(signal.SIGTERM))
        self.daemon.delete_all()

    def add(self, title="Work", **more):
        calendars = [each["identifier"] for each in self.daemon.call("ListCalendars")]
        return self.daemon.add(**{"title": title, "enabled": True, "allDay": True, "calendarIdentifiers": calendars, **more})

    def run_program(self, *arguments):
        return subprocess.run([PROGRAM, *arguments], capture_output=True, text=True, timeout=60,
                              env={**os.environ, "TZ": zone_of_noon()})

    def explained(self, title="Work"):
        return json.loads(self.run_program("explain", title, "--json").stdout)

    def test_what_is_on_is_what_the_daemon_applies(self):
        self.add()
        answer = self.explained()
        self.assertEqual((answer["on"], answer["daemon"]["on"]), (False, False))
        put_event("Interview", time.time() - 60, time.time() + 600)
        wait_until(self.daemon.applied, "the applied profile")
        answer = self.explained()
        self.assertEqual((answer["on"], answer["daemon"]["on"], answer["daemon"]["reason"]), (True, True, '"Interview"'))
        told = self.run_program("explain", "Work")
        self.assertEqual(told.returncode, 0)
        self.assertIn('The daemon has it on since', told.stdout)
        self.assertIn("What you have set by hand", told.stdout)
        self.assertNotIn("still has it on", told.stdout)
        self.assertIn("screen", self.daemon.get("Degraded"))
        self.assertNotIn("screen", told.stdout, "what the profile does not need is not missed")

    def test_a_profile_that_went_on_later_is_named(self):
        self.add("Work")
        put_event("Interview", time.time() - 60, time.time() + 600)
        wait_until(self.daemon.applied, "the applied profile")
        self.add("Loud")
        wait_until(lambda: len(self.daemon.applied()) == 2, "the second profile")
        self.assertIn("Loud went on later: its volumes and its vibration hold.", self.run_program("explain", "Work").stdout)
        self.assertEqual(self.explained("Work")["daemon"]["appliedLater"], ["Loud"])
        self.assertEqual(self.explained("Loud")["daemon"]["appliedLater"], [])

    def test_the_network_of_now_is_known_and_of_another_time_is_not(self):
        wifi = WiFi()
        office = wifi.add("Office")
        wait_until(lambda: self.daemon.call("ListNetworks"), "the known network")
        self.add("Desk", wifiNetworks=["Office"], calendarIdentifiers=[])
        told = self.run_program("explain", "Desk")
        self.assertEqual(told.returncode, 1)
        self.assertIn("The phone is on none of its networks: Office.", told.stdout)
        wifi.join(office)
        wait_until(self.daemon.applied, "the applied profile")
        told = self.run_program("explain", "Desk")
        self.assertEqual(told.returncode, 0, told.stdout)
        self.assertIn("The phone is on its network Office.", told.stdout)
        later = self.run_program("explain", "Desk", "--at", "23:00")
        self.assertEqual(later.returncode, 1)
        self.assertIn("cannot be known: Office.", later.stdout)
        # Not left yet for the daemon, which gives a network ten seconds to come back.
        wifi.leave()
        wait_until(lambda: not [each for each in self.daemon.call("ListNetworks") if each["joined"]], "the lost network")
        told = self.run_program("explain", "Desk")
        self.assertEqual(told.returncode, 1)
        self.assertIn("The daemon still has it on.", told.stdout)
        self.assertIn("a network counts as left after ten", told.stdout)


if __name__ == "__main__":
    unittest.main()
