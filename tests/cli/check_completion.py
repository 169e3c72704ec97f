#!/usr/bin/python3
# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT
"""Completion in real shells: what a TAB makes of a line, with titles that have blanks, quotation marks and dollars.

usage: check_completion.py SHELL PROGRAM SOURCE-FOLDER [DAEMON]   (with a daemon: in a session of run_with.py)

Exit code 77 when the shell is not installed; an error instead when HUSHMODE_SKIP_NOTHING is set.
"""
import os
import pathlib
import subprocess
import sys
import unittest

import shells
from user_phone import UserFolders

SHELL, PROGRAM, SOURCE = sys.argv[1], pathlib.Path(sys.argv[2]).resolve(), pathlib.Path(sys.argv[3]).resolve()
DAEMON = sys.argv[4] if len(sys.argv) > 4 else None
SKIPPED = 77

TITLES = ("Night shift", "Rock 'n' Roll", 'Büro "Süd" $5', "Ärzte!", "a\\b `c`", "100% & <more>; *")
CALENDARS = ("Work", "Home office", "Büro $x")
NETWORKS = ("Café au lait", "Office")

# What is typed, and what the last argument is after a TAB.
CASES = [
    ("prof", "profile"),
    ("profile sh", "show"),
    ("profile edit x --ring", "--ringtone"),
    ("profile show Nig", "Night shift"),
    ("profile show Night\\ s", "Night shift"),
    ('profile show "Nig', "Night shift"),
    ("profile show 'Night s", "Night shift"),
    ("profile show Roc", "Rock 'n' Roll"),
    ('profile show "Rock \'n', "Rock 'n' Roll"),
    ("profile show B", 'Büro "Süd" $5'),
    ('profile show "Büro', 'Büro "Süd" $5'),
    ("profile show 'Büro \"S", 'Büro "Süd" $5'),
    ("profile show Ä", "Ärzte!"),
    ('profile show "Ä', "Ärzte!"),
    ("profile show a", "a\\b `c`"),
    ('profile show "a', "a\\b `c`"),
    ("profile show 100", "100% & <more>; *"),
    ("quiet 5m --profile Nig", "Night shift"),
    ("profile edit x --vibrate of", "off"),
    ("profile edit x --events conf", "confirmed"),
    ("profile edit x --calendars Hom", "Home office"),
    ("profile edit x --tone texttone:Chi", "texttone:Chime"),
    ("profile add x --tone texttone:Cal", "texttone:Calendar Alert"),
    ('profile edit x --calendars "Work, Hom', "Work, Home office"),
    ('profile edit x --calendars "Work,Bü', "Work,Büro $x"),
    ("profile edit x --calendars Work,\\ Hom", "Work, Home office"),
    ("schedule x 22:00-06:00 --days mon,tu", "mon,tue"),
    ("schedule x 22:00-06:00 --days mon,m", "mon,m"),
    ("simulate work", "workday.json"),
    ("simulate --zone Europe/Berl", "Europe/Berlin"),
]
WITH_EQUALS = [("profile edit x --vibrate=of", "--vibrate=off"), ("quiet 5m --profile=Nig", "--profile=Night shift")]
# Lines to which nothing can be added: a title that is new, a number, a mistake.
NOTHING = ["profile add Nig", "agenda --days ", "profile shw Nig", "status extra Nig"]


class Completion(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        phone = UserFolders(PROGRAM, on_bus=DAEMON is not None)
        cls.addClassCleanup(phone.end)
        folder, cls.environment = phone.folder, phone.environment
        cls.environment.update(HOME=str(folder), PATH=f"{folder}/bin:/usr/bin:/bin")
        (folder / "bin").mkdir()
        (folder / "bin/hushmode").symlink_to(PROGRAM)
        (folder / "here").mkdir()
        (folder / "here/workday.json").touch()
        phone.put_calendars(*CALENDARS)
        for title in TITLES:
            cls.run_program("profile", "add", title)
        if DAEMON:
            sys.path.insert(0, str(SOURCE / "tests/daemon"))
            import phone_services
            radio = phone_services.WiFi()
            for name in NETWORKS:
                radio.add(name)
            phone.start_daemon(DAEMON)
        os.chdir(folder / "here")
        cls.shell = shells.SHELLS[SHELL](SOURCE / "packaging/completions", cls.environment)
        cls.addClassCleanup(cls.shell.end)

    @classmethod
    def run_program(cls, *arguments):
        return subprocess.run([PROGRAM, *arguments], env=cls.environment, check=True, capture_output=True,
                              text=True).stdout

    def test_a_tab_completes_commands_options_and_names(self):
        for line, last in CASES:
            with self.subTest(line):
                completed = self.shell.completed(line)
                if SHELL == "fish" and last == "mon,m":
                    self.assertEqual(completed, [])  # Nothing to offer, and so nothing inserted.
                else:
                    self.assertEqual(completed[-1:], [last])

    def test_a_value_stands_behind_an_equals_sign_too(self):
        for line, last in WITH_EQUALS:
            with self.subTest(line):
                self.assertEqual(self.shell.completed(line)[-1:], [last])

    def test_nothing_is_made_up(self):
        for line in NOTHING:
            with self.subTest(line):
                completed = self.shell.completed(line)
                expected = [] if SHELL == "fish" else line.split()
                self.assertEqual(completed, expected)

    @unittest.skipUnless(SHELL == "fish", "the shell that tells what it offers")
    def test_all_commands_are_offered_with_their_meaning(self):
        offered = self.shell.offered("")
        for command in ("profile", "status", "quiet", "help"):
            self.assertIn(command, offered)
        self.assertNotIn("complete", offered)
        self.assertEqual(self.shell.offered("profile edit Work --icon "), ["off", "on"])

    @unittest.skipUnless(DAEMON, "with a daemon")
    def test_a_network_is_completed(self):
        names = self.run_program("complete", "networks").split("\n")[:-1]
        self.assertIn("Café au lait", names)
        self.assertEqual(self.shell.completed("profile edit x --networks Caf")[-1:], ["Café au lait"])
        self.assertEqual(self.shell.completed('profile edit x --networks "Café au lait, Off')[-1:],
                         ["Café au lait, Office"])


if __name__ == "__main__":
    if not shells.is_installed(SHELL):
        if os.environ.get("HUSHMODE_SKIP_NOTHING"):
            sys.exit(f"not installed: {SHELL}")
        print(f"SKIPPED, not installed: {SHELL}")
        sys.exit(SKIPPED)
    unittest.main(argv=[sys.argv[0]])
