#!/usr/bin/python3
# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""The commands that change and show profiles, as people run them: on the files alone, and through a daemon.

usage: check_profiles.py PROGRAM [DAEMON]   (with a daemon: in a session of run_with.py)
"""
import datetime
import json
import os
import pathlib
import signal
import subprocess
import sys
import time
import unittest

from user_phone import UserFolders

from noon import zone_of_noon  # noqa: E402, found through user_phone

PROGRAM = pathlib.Path(sys.argv.pop(1)).resolve()
DAEMON = sys.argv.pop(1) if len(sys.argv) > 1 and not sys.argv[1].startswith("-") else None


class Commands(unittest.TestCase):
    """Each test starts with no profiles and the calendars Work and Home."""

    def setUp(self):
        self.phone = UserFolders(PROGRAM, on_bus=True, zone=zone_of_noon()) if DAEMON else UserFolders(PROGRAM)
        self.addCleanup(self.phone.end)
        self.folder, self.environment, self.run_program = self.phone.folder, self.phone.environment, self.phone.run
        self.phone.put_calendars("Work", "Home")
        if DAEMON:
            self.phone.write_profiles([])
            self.phone.start_daemon(DAEMON)

    def done(self, *arguments, **environment):
        result = self.run_program(*arguments, **environment)
        self.assertEqual((result.returncode, result.stderr), (0, ""), arguments)
        return result.stdout

    def refused(self, *arguments, code=2, says=(), **environment):
        before = self.profiles()
        result = self.run_program(*arguments, **environment)
        self.assertEqual((result.returncode, result.stdout), (code, ""), result)
        self.assertEqual(result.stderr.count("\n"), 1, result.stderr)
        for text in says:
            self.assertIn(text, result.stderr)
        self.assertEqual(self.profiles(), before)

    def profiles(self):
        lines = self.run_program("profile", "list", "--json").stdout.splitlines()
        return {profile["title"]: profile for profile in map(json.loads, lines)}

    def test_a_profile_is_added_shown_changed_copied_and_removed(self):
        self.done("profile", "add", "Work", "--window", "8am-17:30", "--ringtone", "5%", "--calendars", "Work")
        profile = self.profiles()["Work"]
        self.assertEqual((profile["startTime"], profile["endTime"], profile["allDay"]), ("8:00 AM", "5:30 PM", False))
        self.assertAlmostEqual(profile["ringerVolume"], 0.05, places=6)
        self.assertEqual(profile["calendarIdentifiers"], ["folder:Work"])
        shown = self.done("profile", "show", "Work")
        for text in ("08:00 to 17:30", "5%", "calendars       Work"):
            self.assertIn(text, shown)
        self.done("profile", "edit", "Work", "--media", "0.25", "--title", "Office", "--all-day")
        self.done("profile", "copy", "Office", "Elsewhere")
        self.done("profile", "disable", "Elsewhere")
        profiles = self.profiles()
        self.assertEqual([*profiles], ["Office", "Elsewhere"])
        self.assertTrue(profiles["Office"]["allDay"])
        self.assertEqual(profiles["Elsewhere"]["playBackVolume"], 0.25)
        self.assertEqual((profiles["Office"]["enabled"], profiles["Elsewhere"]["enabled"]), (True, False))
        self.done("profile", "remove", "Office")
        self.done("profile", "enable", "Elsewhere")
        self.assertEqual([each["enabled"] for each in self.profiles().values()], [True])

    def test_times_of_both_clocks_are_understood(self):
        self.done("profile", "add", "P")
        for given, stored in (("00:00-23:59", ("12:00 AM", "11:59 PM")), ("12:00-13:05", ("12:00 PM", "1:05 PM")),
                              ("9 am - 5 pm", ("9:00 AM", "5:00 PM")), ("7.30pm-8.15 PM", ("7:30 PM", "8:15 PM"))):
            self.done("profile", "edit", "P", "--window", given)
            profile = self.profiles()["P"]
            self.assertEqual((profile["startTime"], profile["endTime"]), stored, given)

    def test_wrong_input_changes_nothing_and_says_what_was_expected(self):
        self.done("profile", "add", "Work")
        for arguments, says in (
                (["profile", "edit", "Wrok", "--media", "5%"], ["Wrok", '"Work"']),
                (["profile", "edit", "Work", "--media", "5"], ["--media 5", "5% or 0.05"]),
                (["profile", "edit", "Work", "--media", "loud"], ["loud", "5% or 0.05"]),
                (["profile", "edit", "Work", "--media", "101%"], ["101%"]),
                (["profile", "edit", "Work", "--media", "nan"], ["nan"]),
                (["profile", "edit", "Work", "--media=-1%"], ["-1%"]),
                (["profile", "edit", "Work", "--vibrate", "maybe"], ["on or off"]),
                (["profile", "edit", "Work", "--events", "all"], ["any, confirmed or tentative"]),
                (["profile", "edit", "Work", "--window", "22:00-06:00"], ["hushmode schedule"]),
                (["profile", "edit", "Work", "--window", "8-5"], ["08:00-17:00"]),
                (["profile", "edit", "Work", "--window", "25:00-26:00"], ["08:00-17:00"]),
                (["profile", "edit", "Work", "--window", "13:00 PM-2 PM"], ["08:00-17:00"]),
                (["profile", "edit", "Work", "--calendars", "Wrok"], ["Wrok", '"Work"']),
                (["profile", "edit", "Work", "--title", ""], ["title"]),
                (["profile", "edit", "Work", "--title", "x" * 5000], ["title", "200"]),
                (["profile", "edit", "Work", "--tone", "chime"], ["--tone chime", '"texttone:Chime"']),
                (["profile", "edit", "Work"], ["nothing to change"]),
                (["profile", "add", "Work"], ['"Work"']),
                (["profile", "remove", "Home"], ["Home"]),
                (["profile", "show"], ["NAME"])):
            with self.subTest(arguments=arguments):
                self.refused(*arguments, says=says)

    def test_an_editor_changes_what_it_changes(self):
        self.done("profile", "add", "Work", "--ringtone", "5%")
        self.done("profile", "edit", "Work", "--editor", EDITOR="sed -i 's/^ringtone: 5%/ringtone: 7%/'", VISUAL="")
        self.assertAlmostEqual(self.profiles()["Work"]["ringerVolume"], 0.07, places=6)
        self.assertIn("Nothing was changed", self.done("profile", "edit", "Work", "--editor", EDITOR="true", VISUAL=""))
        self.refused("profile", "edit", "Work", "--editor", EDITOR="sed -i 's/^ringtone:.*/ringtone: x/'", VISUAL="",
                     says=["line ", "--ringtone x", "kept in"])
        self.refused("profile", "edit", "Work", "--editor", EDITOR="sed -i 's/^title:.*/title: /'", VISUAL="",
                     says=["line ", "title", "kept in"])
        self.refused("profile", "edit", "Work", "--editor", EDITOR="false", VISUAL="", code=3, says=["editor"])
        # What somebody wrote is not lost when the editor fails; what nobody wrote is not kept.
        temporary = self.folder / "temporary"
        temporary.mkdir()
        for editor, kept in (("false", 0), ("sh -c 'echo mine >> $0; false'", 1)):
            self.refused("profile", "edit", "Work", "--editor", EDITOR=editor, VISUAL="", TMPDIR=str(temporary),
                         code=3, says=["kept in"] if kept else ["nothing was changed"])
            self.assertEqual([path.read_text().splitlines()[-1] for path in temporary.iterdir()], ["mine"] * kept)

    def own_events(self):
        folder = self.folder / "data/hushmode/calendars/Hush Mode"
        return [path.read_text() for path in sorted(folder.glob("*/*.ics"))]

    def test_quiet_hours_are_events_of_our_own_calendar(self):
        self.done("profile", "add", "Night", "--calendars", "Home")
        self.done("schedule", "Night", "10pm-06:00", "--days", "sun,wed")
        self.done("schedule", "Night", "22:30-06:15", "--days", "mon")  # In the place of the first.
        [event] = self.own_events()
        for line in ("DURATION:PT465M", "RRULE:FREQ=WEEKLY;BYDAY=MO", "T223000"):
            self.assertIn(line, event)
        self.assertEqual(self.profiles()["Night"]["calendarIdentifiers"], ["folder:Home", f"folder:Hush Mode/{self.profiles()['Night']['identifier']}"])
        self.assertEqual(json.loads(self.done("schedule", "--list", "--json")),
                         {"profile": "Night", "hours": "22:30-06:15", "days": "MO"})
        occurrences = self.done("events", "--calendars", self.folder / "data/hushmode/calendars", "--from", "2030-01-01",
                                "--to", "2030-01-31", "--zone", "UTC", "--json").splitlines()
        self.assertEqual([json.loads(line)["start"][:16] for line in occurrences],
                         ["2029-12-31T22:30", "2030-01-07T22:30", "2030-01-14T22:30", "2030-01-21T22:30", "2030-01-28T22:30"])
        self.done("schedule", "Night", "--remove")
        self.assertEqual(self.own_events(), [])
        self.refused("schedule", "Night", "--remove", says=["no quiet hours"])

    def test_quiet_hours_end_by_the_clock_when_it_is_changed(self):
        self.done("on")
        self.done("profile", "add", "Night", "--calendars", "")
        self.done("schedule", "Night", "22:00-06:00", TZ="Europe/Berlin")
        for day, night in (("2027-03-28", 7), ("2027-10-31", 9), ("2027-11-01", 8)):
            shown = self.done("events", "--calendars", self.folder / "data/hushmode/calendars", "--from", day, "--to", day,
                              "--zone", "Europe/Berlin", "--json").splitlines()
            first = json.loads(shown[0])
            start, end = (datetime.datetime.fromisoformat(first[each]) for each in ("start", "end"))
            self.assertEqual((start.hour, end.hour, end - start), (22, 6, datetime.timedelta(hours=night)), day)

    @unittest.skipIf(DAEMON, "without a daemon, which gives each profile a list")
    def test_quiet_hours_take_no_calendar_from_a_profile_that_follows_all(self):
        self.phone.write_profiles([{"identifier": 5, "title": "All", "enabled": True, "allDay": True}])
        self.done("on")
        self.done("schedule", "All", "22:00-06:00")
        self.assertNotIn("calendarIdentifiers", self.profiles()["All"])
        switches = [json.loads(line) for line in self.done("agenda", "--days", "2", "--json").splitlines()]
        self.assertIn('"Quiet hours"', {each["reason"] for each in switches})

    def test_an_edit_leaves_quiet_hours_alone(self):
        self.done("profile", "add", "Night", "--calendars", "Home")
        self.done("profile", "disable", "Night")
        self.assertIn('Enabled "Night".', self.done("schedule", "Night", "22:00-06:00"))
        own = f"folder:Hush Mode/{self.profiles()['Night']['identifier']}"
        self.done("profile", "edit", "Night", "--calendars", "Work", "--title", "Sleep")
        self.assertEqual(self.profiles()["Sleep"]["calendarIdentifiers"], ["folder:Work", own])
        self.assertIn("Sleep  22:00-06:00", self.done("schedule", "--list"))
        [name] = (self.folder / "data/hushmode/calendars/Hush Mode").glob("*/displayname")
        self.assertEqual(name.read_text(), "Sleep\n")
        edited = self.run_program("profile", "edit", "Sleep", "--window", "08:00-12:00")
        self.assertEqual(edited.returncode, 0)
        self.assertIn("only within its window", edited.stderr)
        self.refused("schedule", "Sleep", "22:00-06:00", "--remove", says=["HOURS", "--remove"])
        self.refused("schedule", "--list", "Slep", says=['"Sleep"'])

    def test_who_reads_the_output_may_go_away(self):
        self.done("on")
        for arguments in (["agenda"], ["profile", "list"], ["help", "--json"]):
            with self.subTest(arguments=arguments):
                reader, writer = os.pipe()
                os.close(reader)
                ended = subprocess.run([PROGRAM, *arguments], env=self.environment, stdout=writer, stderr=subprocess.PIPE)
                os.close(writer)
                self.assertEqual((ended.returncode, ended.stderr), (-signal.SIGPIPE, b""))

    def test_quiet_hours_are_those_of_one_profile(self):
        self.done("on")
        self.done("profile", "add", "Night", "--calendars", "Home")
        self.done("schedule", "Night", "00:00-23:59")
        for arguments in (("add", "Day"), ("copy", "Night", "Twin")):
            self.done("profile", *arguments)
        calendars = {title: each["calendarIdentifiers"] for title, each in self.profiles().items()}
        self.assertEqual([len([each for each in calendars[title] if "Hush Mode" in each])
                          for title in ("Night", "Day", "Twin")], [1, 0, 0])
        switches = [json.loads(line) for line in self.done("agenda", "--days", "2", "--json").splitlines()]
        self.assertEqual({each["profile"] for each in switches if each["reason"] == '"Quiet hours"'}, {"Night"})
        self.assertIn("Night", self.done("calendars"))
        self.done("profile", "remove", "Night")
        self.assertEqual(self.own_events(), [])
        self.assertIn("no quiet hours", self.done("schedule", "--list"))

    def test_the_editor_and_other_settings_exclude_each_other(self):
        self.done("profile", "add", "Work", "--icon", "on")
        self.refused("profile", "edit", "Work", "--editor", "--icon", "off", says=["--editor"])
        self.assertTrue(self.profiles()["Work"]["showOnStatusBar"])

    def test_hours_that_are_none_are_refused(self):
        self.done("profile", "add", "Night")
        self.done("profile", "add", "Work", "--window", "08:00-17:00")
        for arguments, says in ((["Night", "22:00"], ["22:00-06:00"]), (["Night", "22:00-22:00"], ["22:00-06:00"]),
                                (["Night", "22:00-06:00", "--days", "someday"], ["mon,tue"]),
                                (["Nihgt", "22:00-06:00"], ['"Night"']),
                                (["Work", "22:00-06:00"], ["--all-day"]), ([], ["--list"])):
            with self.subTest(arguments=arguments):
                self.refused("schedule", *arguments, says=says)
        for length in ("", "90", "0m", "m", "-5m", "200h", "90 minutes"):
            with self.subTest(length=length):
                self.refused("quiet", length, "--profile", "Night")
        self.assertEqual(self.own_events(), [])

    def test_the_agenda_tells_the_switches_to_come(self):
        self.done("on")
        self.done("profile", "add", "Night", "--ringtone", "5%", "--calendars", "Home")
        self.done("schedule", "Night", "00:00-23:59")
        switches = [json.loads(line) for line in self.done("agenda", "--days", "2", "--json").splitlines()]
        self.assertEqual({each["profile"] for each in switches}, {"Night"})
        tomorrow = [each for each in switches if "T00:00:00" in each["time"]]
        self.assertEqual([(each["on"], each["reason"]) for each in tomorrow], [(True, '"Quiet hours"')])
        self.assertIn("Night", self.done("agenda"))
        self.refused("agenda", "--days", "0", says=["--days"])

    def test_on_and_off_are_kept(self):
        for word in ("off", "on"):
            self.done(word)
            settings = (self.folder / "config/hushmode/com.quorvel.hushmode.plist").read_text()
            self.assertIn("<true/>" if word == "on" else "<false/>", settings)

    @unittest.skipIf(DAEMON, "without a daemon")
    def test_without_a_daemon_it_says_how_to_start_one(self):
        for command in ("status", "log", "networks"):
            self.refused(command, code=3, says=["systemctl --user start hushmoded"])
        self.assertIn("systemctl --user start hushmoded", self.done("profile", "add", "Work"))

    @unittest.skipIf(DAEMON, "without a daemon")
    def test_a_file_that_is_no_list_is_named_and_left(self):
        path = self.folder / "config/hushmode/com.quorvel.hushmode.profiles.plist"
        path.parent.mkdir(parents=True)
        path.write_text("nonsense")
        result = self.run_program("profile", "add", "Work")
        self.assertEqual(result.returncode, 2)
        self.assertIn(str(path), result.stderr)
        self.assertEqual(path.read_text(), "nonsense")

    def wait_for_status(self, text):
        deadline = time.monotonic() + 30
        while text not in self.run_program("status").stdout:
            self.assertLess(time.monotonic(), deadline, text)
            time.sleep(0.1)

    @unittest.skipUnless(DAEMON, "with a daemon")
    def test_a_quiet_time_goes_on_and_can_be_ended(self):
        self.done("on")
        self.done("profile", "add", "Night", "--ringtone", "5%", "--calendars", "Home")
        self.refused("quiet", "--end", says=["no quiet time goes on"])
        self.refused("quiet", "5m", "--end", says=["--end"])
        self.assertIn("ends by itself", self.done("quiet", "5m"))
        self.wait_for_status('Night is on for "Quiet for a while"')
        self.wait_for_status("The next switch is planned for 1")
        # What is on already is not yet to come.
        self.assertTrue(self.done("agenda", "--days", "2").startswith("Night is on now.\n"))
        switches = [json.loads(line) for line in self.done("agenda", "--days", "2", "--json").splitlines()]
        self.assertEqual([each["on"] for each in switches], [False])
        self.refused("quiet", "--end", "--profile", "Nihgt", says=['"Night"'])
        self.assertIn('"Night" ends', self.done("quiet", "--end", "--profile", "Night"))
        self.assertEqual(self.own_events(), [])
        self.wait_for_status("Nothing is quiet now.")
        # The wake-up of its end is of no use any more, and is not shown.
        self.wait_for_status("No more switches are planned for today.")
        self.refused("quiet", "--end", says=["no quiet time goes on"])

    @unittest.skipUnless(DAEMON, "with a daemon")
    def test_the_calendar_folder_is_the_daemons(self):
        self.phone.kill_daemon()
        elsewhere = self.folder / "elsewhere"
        self.phone.start_daemon(DAEMON, "--calendars", "elsewhere", cwd=self.folder)
        self.assertEqual(json.loads(self.done("status", "--json"))["CalendarFolder"], str(elsewhere))
        self.done("profile", "add", "Night")
        self.done("schedule", "Night", "22:00-06:00")
        self.assertEqual(len([*elsewhere.glob("Hush Mode/*/hours.ics")]), 1)
        self.assertEqual(self.own_events(), [])
        self.assertIn("Night", self.done("calendars"))

    @unittest.skipUnless(DAEMON, "with a daemon")
    def test_the_daemon_tells_how_it_stands(self):
        self.done("on")
        self.assertIn("Nothing is quiet now.", self.done("status"))
        status = json.loads(self.done("status", "--json"))
        self.assertEqual((status["Version"], status["Enabled"], status["Applied"]), (3, True, []))
        self.assertIn("Work", self.done("calendars"))
        self.assertIn("Nothing was switched", self.done("log"))
        self.done("off")
        self.assertIn("Hush Mode is off", self.done("status"))


if __name__ == "__main__":
    unittest.main()
