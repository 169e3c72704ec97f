#!/usr/bin/python3
# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""Runs the program as people do, and looks at what it prints and how it exits.

usage: check_commands.py PROGRAM SOURCE-FOLDER
"""
import json
import os
import pathlib
import plistlib
import subprocess
import sys
import tempfile
import unittest

PROGRAM, SOURCE = sys.argv[1], pathlib.Path(sys.argv[2]).resolve()
EXAMPLES = SOURCE / "examples"
CALENDARS = str(EXAMPLES / "calendars")
PROFILES = str(EXAMPLES / "profiles.plist")
DAY = ["--from", "2026-11-24", "--to", "2026-11-24", "--zone", "Europe/Berlin"]


def run(*arguments, **options):
    return subprocess.run([PROGRAM, *map(str, arguments)], capture_output=True, text=True, timeout=60, **options)


class TemporaryFolder(unittest.TestCase):
    def setUp(self):
        self.holder = tempfile.TemporaryDirectory()
        self.folder = pathlib.Path(self.holder.name)
        self.addCleanup(self.holder.cleanup)

    def write(self, name, content):
        path = self.folder / name
        path.write_bytes(content if isinstance(content, bytes) else content.encode())
        return path


class Simulate(TemporaryFolder):
    def test_the_example_day_shows_each_switch_to_the_second(self):
        result = run("simulate", EXAMPLES / "workday.json")
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        self.assertEqual(result.stdout, (SOURCE / "tests/cli/workday.txt").read_text())

    def test_no_colour_codes_go_into_a_pipe(self):
        self.assertNotIn("\x1b", run("simulate", EXAMPLES / "workday.json").stdout)

    def test_verbose_adds_the_decisions(self):
        result = run("simulate", EXAMPLES / "workday.json", "--verbose")
        self.assertIn("**** Trying to schedule events for profile 'Meetings'", result.stdout)
        self.assertIn("Meetings  on   \"Interview\"", result.stdout)

    def test_without_the_host_the_bare_library_shows(self):
        result = run("simulate", EXAMPLES / "workday.json", "--no-host")
        # A network that is left is left at once.
        expected = (SOURCE / "tests/cli/workday.txt").read_text().replace("18:10:10", "18:10:00")
        self.assertEqual(result.stdout, expected)

    def test_json_is_the_whole_record_and_the_same_every_time(self):
        first, second = (run("simulate", EXAMPLES / "workday.json", "--json").stdout for _ in range(2))
        self.assertEqual(first, second)
        lines = [json.loads(line) for line in first.splitlines()]
        kinds = {line["kind"] for line in lines}
        self.assertLessEqual({"log", "effect", "defaults", "file", "darwin", "timer", "perform", "table", "phone"}, kinds)
        self.assertTrue(all(line["time"].startswith("2026-11-24T") for line in lines))
        armed = [line for line in lines if line["kind"] == "timer" and line["operation"] == "arm"]
        self.assertTrue(all(line["userInfo"] == {"HostLook": True} or line["userInfo"]["ProfileIdentifier"] in (1788249600, 1788249700)
                            for line in armed))

    def test_profiles_and_calendars_alone_make_a_simulation(self):
        result = run("simulate", "--profiles", PROFILES, "--calendars", CALENDARS, *DAY)
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        self.assertIn('"Interview" ended', result.stdout)
        self.assertNotIn("City Library", result.stdout)

    def test_binary_profiles_are_read_too(self):
        binary = self.write("binary.plist", plistlib.dumps(plistlib.loads(pathlib.Path(PROFILES).read_bytes()),
                                                           fmt=plistlib.FMT_BINARY))
        xml = run("simulate", "--profiles", PROFILES, "--calendars", CALENDARS, *DAY)
        self.assertEqual(run("simulate", "--profiles", binary, "--calendars", CALENDARS, *DAY).stdout, xml.stdout)

    def test_nothing_is_written_to_the_profiles_file(self):
        copy = self.write("profiles.plist", pathlib.Path(PROFILES).read_bytes())
        before = copy.read_bytes(), os.stat(copy).st_mtime_ns
        run("simulate", "--profiles", copy, "--calendars", CALENDARS, *DAY)
        self.assertEqual((copy.read_bytes(), os.stat(copy).st_mtime_ns), before)
        self.assertEqual(os.listdir(self.folder), ["profiles.plist"])

    def test_a_time_without_colon_is_told_by_profile_and_the_others_go_on(self):
        profiles = plistlib.loads(pathlib.Path(PROFILES).read_bytes())
        broken = dict(profiles[0], identifier=5, title="Broken", startTime="8 AM")
        path = self.write("profiles.plist", plistlib.dumps([broken] + profiles))
        result = run("simulate", "--profiles", path, "--calendars", CALENDARS, *DAY)
        self.assertEqual(result.returncode, 0)
        self.assertEqual(result.stderr.count("\n"), 1, result.stderr)
        self.assertIn('profile "Broken"', result.stderr)
        self.assertIn('"8 AM" has no ":"', result.stderr)
        self.assertIn("Interview", result.stdout)

    def test_a_whole_year_ends(self):
        result = run("simulate", "--profiles", PROFILES, "--calendars", CALENDARS, "--from", "2026-01-01", "--to",
                     "2026-12-31", "--zone", "Europe/Berlin")
        self.assertEqual(result.returncode, 0)
        self.assertIn("Thursday, 31 December 2026", result.stdout)

    def test_a_full_disk_is_said(self):
        with open("/dev/full", "w") as full:
            result = subprocess.run([PROGRAM, "simulate", str(EXAMPLES / "workday.json")], stdout=full,
                                    stderr=subprocess.PIPE, text=True)
        self.assertEqual((result.returncode, result.stderr), (3, "hushmode: the output could not be written\n"))


class Events(TemporaryFolder):
    def test_people_see_the_occurrences_of_a_day(self):
        result = run("events", "--calendars", CALENDARS, *DAY)
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        self.assertEqual(result.stdout, (SOURCE / "tests/cli/events.txt").read_text())

    def test_programs_get_one_object_a_line(self):
        result = run("events", "--calendars", CALENDARS, *DAY, "--json")
        events = [json.loads(line) for line in result.stdout.splitlines()]
        self.assertEqual([(e["uid"], e["status"], e["allDay"]) for e in events],
                         [("oncall@example.org", "none", True), ("standup@example.org", "confirmed", False),
                          ("budget@example.org", "cancelled", False), ("interview@example.org", "confirmed", False),
                          ("vendor@example.org", "tentative", False), ("choir@example.org", "none", False)])
        self.assertEqual(events[3], {"calendar": "Work/meetings", "uid": "interview@example.org", "title": "Interview",
                                     "status": "confirmed", "start": "2026-11-24T14:30:00+01:00",
                                     "end": "2026-11-24T15:30:00+01:00", "allDay": False})

    def test_a_broken_file_is_named_and_the_others_are_read(self):
        self.write("broken.ics", "BEGIN:VCALENDAR\nBEGIN:VEVENT\nUID:x\nDTSTART:nonsense\nEND:VEVENT\nEND:VCALENDAR\n")
        self.write("good.ics", "BEGIN:VCALENDAR\r\nBEGIN:VEVENT\r\nUID:y\r\nSUMMARY:Tea\r\nDTSTART:20261124T100000Z\r\n"
                               "DTEND:20261124T110000Z\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n")
        result = run("events", "--calendars", self.folder, *DAY)
        self.assertEqual(result.returncode, 0)
        self.assertIn("broken.ics", result.stderr)
        self.assertIn("Tea", result.stdout)

    def test_titles_cannot_command_the_terminal(self):
        self.write("evil.ics", b"BEGIN:VCALENDAR\r\nBEGIN:VEVENT\r\nUID:y\r\nSUMMARY:\x1b[2Jgone\r\n"
                               b"DTSTART:20261124T100000Z\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n")
        self.assertNotIn("\x1b", run("events", "--calendars", self.folder, *DAY).stdout)


class WrongInput(TemporaryFolder):
    """One line on standard error that names the file and the place and says what was expected; exit 2; nothing else."""

    def refused(self, *arguments, says):
        result = run(*arguments)
        self.assertEqual(result.returncode, 2, (arguments, result.stderr))
        self.assertEqual(result.stdout, "", arguments)
        self.assertEqual(result.stderr.count("\n"), 1, result.stderr)
        for part in says:
            self.assertIn(part, result.stderr)

    def scenario(self, **changes):
        content = {"zone": "UTC", "from": "2026-11-24", "profiles": [], "calendars": []}
        content.update(changes)
        return self.write("scenario.json", json.dumps(content))

    def test_options(self):
        cases = [
            ([], ["expected a command", "profile"]),
            (["simulate", "--jsno"], ["--jsno"]),
            (["simulat"], ['"simulate"']),
            (["simulate"], ["scenario file", "--profiles", "--calendars"]),
            (["simulate", "--profiles", PROFILES], ["--calendars"]),
            (["simulate", "nowhere.json"], ["nowhere.json", "No such file"]),
            (["simulate", self.folder], [str(self.folder), "folder"]),
            (["simulate", "--profiles", "nowhere.plist", "--calendars", CALENDARS], ["nowhere.plist", "no such file"]),
            (["simulate", "--profiles", PROFILES, "--calendars", "nowhere"], ["nowhere", "iCalendar"]),
            (["simulate", "--profiles", PROFILES, "--calendars", PROFILES], [PROFILES, "folder"]),
            (["simulate", "--profiles", PROFILES, "--calendars", CALENDARS, "--from", "yesterday"],
             ["from", "yesterday", "2024-05-14"]),
            (["simulate", "--profiles", PROFILES, "--calendars", CALENDARS, "--from", "2026-02-30"], ["2026-02-30"]),
            (["simulate", "--profiles", PROFILES, "--calendars", CALENDARS, "--from", "2026-03-01", "--to", "2026-02-01"],
             ["before"]),
            (["simulate", "--profiles", PROFILES, "--calendars", CALENDARS, "--zone", "Mars/Base"], ["Mars/Base"]),
            (["events", "--calendars", CALENDARS, "--from", "2026-11-24"], ["--to"]),
            (["events", "--calendars", "nowhere", *DAY], ["nowhere"]),
        ]
        for arguments, says in cases:
            with self.subTest(arguments=arguments):
                self.refused(*arguments, says=says)

    def test_profiles_files(self):
        cases = {
            "empty": b"",
            "text": b"these are not profiles",
            "half": pathlib.Path(PROFILES).read_bytes()[:700],
            "dictionary": plistlib.dumps({"title": "Work"}),
            "random": bytes((i * 7919 + 13) % 256 for i in range(5000)),
            "deep": b'<plist version="1.0">' + b"<array>" * 10000 + b"</array>" * 10000 + b"</plist>",
        }
        for name, content in cases.items():
            with self.subTest(name):
                path = self.write(name + ".plist", content)
                self.refused("simulate", "--profiles", path, "--calendars", CALENDARS, *DAY, says=[str(path)])

    def test_a_huge_profiles_file(self):
        path = self.folder / "huge.plist"
        with open(path, "wb") as file:
            file.truncate(100_000_000)
        self.refused("simulate", "--profiles", path, "--calendars", CALENDARS, *DAY, says=[str(path)])

    def test_scenario_files(self):
        cases = [
            ("{", ["not JSON"]),
            ("[]", ["expected an object"]),
            ({"zome": "UTC"}, ['"zome"', '"zone"']),
            ({"zone": 7}, ["zone", "expected a text"]),
            ({"zone": "Nowhere"}, ["Nowhere"]),
            ({"from": "soon"}, ["soon"]),
            ({"profiles": 5}, ["profiles", "expected a list"]),
            ({"profiles": [{"title": None}]}, ["profiles[0].title"]),
            ({"phone": {"ringtone": 80}}, ["phone.ringtone", "from 0.0 to 1.0"]),
            ({"phone": {"faults": [{"class": "TLAlarm"}]}}, ["phone.faults[0].class", "TLAlarm"]),
            ({"calendars": [{"identifier": "a", "events": [{"uid": "1", "start": "10:00", "end": "09:00"}]}]},
             ["calendars[0].events[0].end", "before"]),
            ({"steps": [{"at": "09:00", "do": "jion", "network": "x"}]}, ["steps[0].do", '"join"']),
            ({"steps": [{"at": "9", "do": "plan"}]}, ["steps[0].at"]),
            ({"steps": [{"at": "09:00", "do": "join"}]}, ["steps[0]", '"network"']),
            ({"steps": [{"at": "09:00", "do": "removeEvent", "uid": "missing"}]}, ["steps[0]"]),
            ({"steps": [{"at": "09:00", "do": "answer", "button": 0}]}, ["steps[0]"]),
            ({"calendars": CALENDARS, "steps": [{"at": "09:00", "do": "removeEvent", "uid": "x"}]}, ["steps[0]", "folder"]),
        ]
        for change, says in cases:
            with self.subTest(change=change):
                path = self.write("scenario.json", change) if isinstance(change, str) else self.scenario(**change)
                self.refused("simulate", path, says=["scenario.json", *says])

    def test_odd_scenario_files(self):
        for name, content in {"empty": b"", "random": bytes(range(256)) * 10, "deep": b"[" * 100000}.items():
            with self.subTest(name):
                self.refused("simulate", self.write(name + ".json", content), says=[name])


class Help(unittest.TestCase):
    def test_every_command_has_help_with_an_example(self):
        for command in ("simulate", "events"):
            result = run(command, "--help")
            self.assertEqual(result.returncode, 0)
            self.assertIn(f"  hushmode {command} ", result.stdout)
        self.assertIn("Exit codes", run("--help").stdout)

    def test_version(self):
        self.assertRegex(run("--version").stdout, r"^\d+\.\d+\.\d+\n$")


unittest.main(argv=[sys.argv[0]])
