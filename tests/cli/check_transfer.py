#!/usr/bin/env python3
# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""hushmode export and import: profiles as property lists, in the file and, with HUSHMODED, through a daemon.

usage: check_transfer.py HUSHMODE [HUSHMODED] [unittest argument...]; with HUSHMODED under tests/services/run_with.py.
"""
import json
import os
import pathlib
import plistlib
import pty
import re
import resource
import signal
import subprocess
import sys
import unittest

from user_phone import PROFILES, UserFolders

PROGRAM = pathlib.Path(sys.argv.pop(1)).resolve()
DAEMON = sys.argv.pop(1) if len(sys.argv) > 1 and not sys.argv[1].startswith("-") else None
WORK = {"title": "Work", "enabled": True, "allDay": True, "ringerVolume": 0.05, "playBackVolume": 0.1,
        "calendarIdentifiers": ["folder:Work"], "wifiNetworks": ["Office"]}
NIGHT = {"title": "Night", "enabled": False, "allDay": False, "startTime": "8:00 PM", "endTime": "11:30 PM",
         "dnDEnabled": True, "calendarIdentifiers": []}


class Transfer(unittest.TestCase):
    """Each test starts with the profile Work and the calendar Work."""

    def setUp(self):
        self.phone = UserFolders(PROGRAM, on_bus=DAEMON is not None)
        self.addCleanup(self.phone.end)
        self.folder, self.environment = self.phone.folder, self.phone.environment
        (self.phone.calendars / "Work").mkdir()
        self.file = self.phone.config / PROFILES
        self.phone.write_profiles([{"identifier": 1700000000, "applied": False, **WORK}])
        if DAEMON:
            # For the test that lets its disk become full.
            ignore = lambda: signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
            self.phone.start_daemon(DAEMON, preexec_fn=ignore)

    def run_program(self, *arguments, **options):
        return subprocess.run([PROGRAM, *map(str, arguments)], env=self.environment, capture_output=True, **options)

    def done(self, *arguments, notes=(), **options):
        result = self.run_program(*arguments, **options)
        self.assertEqual(result.returncode, 0, result)
        lines = result.stderr.decode().splitlines()
        self.assertEqual(len(lines), len(notes), lines)
        for line, note in zip(lines, notes):
            self.assertIn(note, line)
        return result.stdout.decode()

    def refused(self, *arguments, code=2, says=(), **options):
        before = self.file.read_bytes()
        result = self.run_program(*arguments, **options)
        self.assertEqual((result.returncode, result.stdout), (code, b""), result)
        line = result.stderr.decode()
        self.assertEqual(line.count("\n"), 1, line)
        for text in says:
            self.assertIn(text, line)
        self.assertEqual(self.file.read_bytes(), before)

    def list(self, *profiles, name="list.plist", binary=False):
        path = self.folder / name
        path.write_bytes(plistlib.dumps(list(profiles), fmt=plistlib.FMT_BINARY if binary else plistlib.FMT_XML))
        return path

    def profiles(self):
        lines = self.done("profile", "list", "--json").splitlines()
        return {profile["title"]: profile for profile in map(json.loads, lines)}

    # Export

    def test_an_export_can_be_simulated_on_the_calendar_folder(self):
        self.phone.put_event("Work", "Standup", 1795510800, 1795514400)  # 2026-11-24, 10:00 to 11:00 in Berlin.
        self.done("export", self.folder / "out.plist")
        shown = self.done("simulate", "--profiles", self.folder / "out.plist", "--calendars", self.phone.calendars,
                          "--from", "2026-11-24", "--zone", "Europe/Berlin")
        self.assertRegex(shown, r'10:00:00  Work  on   "Standup" +ringtone 80% to 5%')

    def test_an_export_is_a_property_list_in_either_encoding(self):
        self.done("profile", "add", "Night", "--window", "20:00-21:00")
        exported = plistlib.loads(self.run_program("export").stdout)
        self.assertEqual([each["title"] for each in exported], ["Work", "Night"])
        for each in exported:
            self.assertFalse({"applied", "updatedDate"} & set(each))
        self.assertEqual(exported[0]["ringerVolume"], float(self.profiles()["Work"]["ringerVolume"]))
        path = self.folder / "out.plist"
        path.write_text("what was there before")
        path.chmod(0o640)
        self.assertEqual(self.done("export", path, "Night", "--format", "binary"), f"Wrote 1 profile to {path}.\n")
        self.assertTrue(path.read_bytes().startswith(b"bplist00"))
        self.assertEqual(plistlib.loads(path.read_bytes()), [exported[1]])
        self.assertEqual(path.stat().st_mode & 0o777, 0o640)
        self.assertEqual([each.name for each in self.folder.glob("*hushmode-*")], [])
        self.assertEqual(plistlib.loads(self.run_program("export", "-", "Work", "--format", "binary").stdout),
                         exported[:1])

    def test_what_cannot_be_written_is_refused(self):
        for arguments, says in ((["Work"], ["is a profile", "hushmode export FILE"]),
                                (["-", "Wrok"], ['"Work"']),
                                ([self.folder / "none/list.plist"], ["there is no folder"]),
                                ([self.folder], ["expected a file"]), (["/dev/null"], ["expected a file"]),
                                (["-", "--format", "json"], ["xml", "binary"])):
            with self.subTest(arguments=arguments):
                self.refused("export", *arguments, says=says)
        self.assertTrue(pathlib.Path("/dev/null").is_char_device())

    def test_a_terminal_gets_no_binary(self):
        master, terminal = pty.openpty()
        result = subprocess.run([PROGRAM, "export", "--format", "binary"], env=self.environment, stdout=terminal,
                                stderr=subprocess.PIPE)
        os.close(terminal)
        os.close(master)
        self.assertEqual(result.returncode, 2)
        self.assertIn(b"hushmode export FILE --format binary", result.stderr)

    # Import

    def test_what_is_exported_is_imported_without_a_change(self):
        for form in ("xml", "binary"):
            before = self.file.read_bytes()
            path = self.folder / form
            self.done("export", path, "--format", form)
            self.assertEqual(self.done("import", path), "Unchanged: Work\nThere is nothing to change.\n")
            self.assertEqual(self.file.read_bytes(), before)

    def test_an_import_adds_and_changes_by_title(self):
        path = self.list({**WORK, "identifier": 5, "applied": True, "playBackVolume": 1, "allDay": False,
                          "startTime": "8:00 AM", "endTime": "5:00 PM"}, NIGHT, binary=True)
        before = self.file.read_bytes()
        preview = self.done("import", "--dry-run", path)
        self.assertEqual(self.file.read_bytes(), before)
        self.assertIn("Changed: Work\n  ", preview)
        self.assertIn("  media             100% (was 10%)\n", preview)
        self.assertIn("  window            08:00 to 17:00 (was all day)\n", preview)
        self.assertEqual(preview.count("window"), 2)
        self.assertNotIn("ringtone", preview)
        self.assertIn("Added: Night\n  window            20:00 to 23:30\n  calendars         none\n  enabled           off\n", preview)
        self.assertTrue(preview.endswith("Nothing was changed; without --dry-run it will be.\n"))
        done = self.done("import", path)
        self.assertTrue(done.startswith(preview[:preview.rindex("Nothing was")]), done)
        profiles = self.profiles()
        self.assertEqual([*profiles], ["Work", "Night"])
        self.assertEqual((profiles["Work"]["identifier"], profiles["Work"]["applied"]), (1700000000, False))
        self.assertEqual((profiles["Work"]["playBackVolume"], profiles["Work"]["allDay"]), (1, False))
        self.assertEqual(profiles["Work"]["wifiNetworks"], ["Office"])
        self.assertTrue(profiles["Night"]["dnDEnabled"])
        self.assertEqual(self.done("import", path).count("Unchanged"), 2)

    def test_a_setting_that_is_not_named_stays(self):
        self.done("import", self.list({"title": "Work", "vibrate": True}))
        work = self.profiles()["Work"]
        self.assertTrue(work["vibrate"])
        self.assertAlmostEqual(work["playBackVolume"], 0.1, places=6)

    def test_replace_removes_the_others(self):
        self.done("profile", "add", "Old")
        done = self.done("import", "--replace", self.list(NIGHT))
        self.assertEqual([line for line in done.splitlines() if line.startswith("Removed")],
                         ["Removed: Work", "Removed: Old"])
        self.assertEqual([*self.profiles()], ["Night"])

    def test_json_has_every_setting_before_and_after(self):
        path = self.list({"title": "Work", "playBackVolume": 0.5}, NIGHT)
        lines = [json.loads(line) for line in self.done("import", path, "--replace", "--json").splitlines()]
        self.assertEqual([(each["title"], each["change"]) for each in lines], [("Work", "changed"), ("Night", "added")])
        self.assertEqual([*lines[0]["settings"]], ["playBackVolume"])
        media = lines[0]["settings"]["playBackVolume"]
        self.assertAlmostEqual(media["before"], 0.1, places=6)
        self.assertEqual(media["after"], 0.5)
        self.assertEqual(lines[1]["settings"]["startTime"], {"before": None, "after": "8:00 PM"})

    def test_standard_input_is_a_file_too(self):
        self.done("import", "-", input=plistlib.dumps([NIGHT]))
        self.assertIn("Night", self.profiles())

    def test_one_wrong_value_imports_nothing(self):
        for wrong, says in (({**NIGHT, "ringerVolume": 1.5}, ["Night", "ringerVolume", "0.0 to 1.0"]),
                            ({**NIGHT, "startTime": "20:00"}, ["Night", "startTime", "8:00 AM"]),
                            ({**NIGHT, "enabled": "yes"}, ["Night", "enabled", "true or false"]),
                            ({**NIGHT, "title": ""}, ["title"]), ({"enabled": True}, ["profile 2", "title"]),
                            ("Night", ["entry 2", "expected a profile"]),
                            ({"title": "Work"}, ["two profiles", "Work"])):
            with self.subTest(says=says):
                self.refused("import", self.list({**WORK, "playBackVolume": 0.9}, wrong),
                             says=[str(self.folder / "list.plist"), *says])
        nonsense = self.folder / "nonsense"
        for content, says in ((b"nonsense", ["nonsense"]), (b"", ["nonsense"]),
                              (plistlib.dumps({"title": "Work"}), ["expected a list of profiles"]),
                              (plistlib.dumps([WORK])[:-20], ["nonsense"])):
            with self.subTest(content=content):
                nonsense.write_bytes(content)
                self.refused("import", nonsense, says=says)
        self.refused("import", self.folder / "none", says=["none", "No such file"])
        self.refused("import", self.folder, says=["Is a directory"])
        self.refused("import", says=["FILE"])

    def test_an_unknown_key_is_told_and_where_possible_kept(self):
        path = self.list({**WORK, "ringervolume": 0.5, "fromTheFuture": 7})
        told = ['"fromTheFuture" means nothing', '"ringervolume" means nothing; did you mean "ringerVolume"?']
        shown = self.done("import", path, notes=told)
        if DAEMON:
            self.assertIn("Unchanged: Work", shown)
            return
        self.assertIn("  fromTheFuture     7 (was none)\n", shown)
        self.assertEqual(self.profiles()["Work"]["fromTheFuture"], 7)
        exported = plistlib.loads(self.run_program("export").stdout)
        self.assertEqual(exported[0]["fromTheFuture"], 7)

    @unittest.skipUnless(DAEMON, "only the daemon knows all calendars")
    def test_a_calendar_that_is_elsewhere_is_told(self):
        self.done("import", self.list({**NIGHT, "calendarIdentifiers": ["other:1"]}),
                  notes=['"other:1", which this phone does not have'])

    @unittest.skipUnless(DAEMON, "in the file it is one change")
    def test_what_was_done_before_a_failure_is_told(self):
        self.done("profile", "edit", "Work", "--media", "20%")  # From now on every key is in the file.
        room = int(self.file.stat().st_size * 2.5)
        resource.prlimit(self.phone.daemon.pid, resource.RLIMIT_FSIZE, (room, room))
        result = self.run_program("import", self.list(*({**NIGHT, "title": each} for each in "ABC")))
        self.assertEqual((result.returncode, result.stdout), (3, b""), result)
        told = re.fullmatch("hushmode: ([BC]): .*; before that were done: (.*); the rest was not\n", result.stderr.decode())
        self.assertTrue(told, result.stderr)
        done = told[2].split(", ")
        self.assertEqual(done, [each for each in "ABC" if each < told[1]])
        self.assertEqual([*self.profiles()], ["Work", *done])

    @unittest.skipIf(DAEMON, "the daemon has the lock")
    def test_what_cannot_be_saved_is_not_half_there(self):
        def refuse_to_write():
            signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
            resource.setrlimit(resource.RLIMIT_FSIZE, (100, 100))

        (self.folder / "state/hushmode").mkdir(parents=True)
        self.refused("import", self.list(NIGHT, {**WORK, "playBackVolume": 0.9}), code=3, says=["profiles.plist"],
                     preexec_fn=refuse_to_write)
        self.refused("export", self.folder / "out.plist", code=3, says=["out.plist"], preexec_fn=refuse_to_write)
        self.assertFalse((self.folder / "out.plist").exists())


if __name__ == "__main__":
    unittest.main()
