#!/usr/bin/python3
# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT
"""The manual pages and the completions are those of this program, complete, and well made.

usage: check_manuals.py PROGRAM DAEMON SOURCE-FOLDER
"""
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import unittest

PROGRAM, DAEMON, SOURCE = sys.argv[1], sys.argv[2], pathlib.Path(sys.argv[3]).resolve()
MANUALS = SOURCE / "packaging/man"
ENVIRONMENT = {**os.environ, "LC_ALL": "C.UTF-8", "LANGUAGE": "", "COLUMNS": "100", "MANWIDTH": "200"}


def run(*command, **options):
    return subprocess.run([*map(str, command)], capture_output=True, text=True, env=ENVIRONMENT, timeout=120, **options)


def plain(page):
    return seen((MANUALS / page).read_text())


def seen(source):
    """A page's text without its requests and fonts: what a reader sees, in one line."""
    lines = [line for line in source.splitlines() if not re.match(r"\.(\\\"|TH|nr|ad|nh)", line)]
    text = " ".join(re.sub(r"^\.\w+ ?\d?", "", line) for line in lines)
    text = re.sub(r"\\f.", "", text).replace("\\-", "-").replace("\\&", "").replace("\\e", "\\")
    return " ".join(text.replace('"', " ").split())


def entries_of_commands():
    """What the manual says of each command, by its name."""
    parts = (MANUALS / "hushmode.1").read_text().split(".SH OPTIONS")[0].split(".TP 4\n\\fBhushmode ")[1:]
    return {"hushmode " + seen(part.split("\\fR")[0]): seen(part) for part in parts}


def commands_in(help):
    """The names and options that a help text lists: {heading: [first words]}."""
    sections, heading = {}, ""
    for line in help.splitlines():
        if re.match(r"\S.*:$", line):
            heading = line
        elif match := re.match(r"  (\S.*?)(?:  |$)", line):
            sections.setdefault(heading, []).append(match.group(1))
    return sections


def all_helps(command=()):
    """The help text of each command, by its words, found by reading help texts alone."""
    help = run(PROGRAM, *command, "--help").stdout
    yield command, help
    if "COMMAND" not in help.split("Usage:")[1].splitlines()[0].split():
        return
    for heading, entries in commands_in(help).items():
        if not heading.startswith(("Options", "Example", "Arguments")):
            for entry in entries:
                yield from all_helps((*command, entry))


class Manuals(unittest.TestCase):
    def test_what_is_kept_is_what_the_programs_say(self):
        result = run(sys.executable, SOURCE / "packaging/generate", PROGRAM, DAEMON, "--check")
        self.assertEqual(result.returncode, 0, result.stdout + result.stderr)

    def test_every_command_and_option_of_the_help_is_in_the_manual(self):
        manual = plain("hushmode.1")
        helps = list(all_helps())
        self.assertGreater(len(helps), 20)
        entries = entries_of_commands()
        for command, help in helps:
            name = " ".join(("hushmode", *command))
            options = [option for entry in commands_in(help).get("Options:", []) for option in re.findall(r"--?[\w-]+", entry)]
            self.assertIn("--help", options)
            if "hushmode COMMAND" in help or f"{name} COMMAND" in help:
                part = manual
            else:
                self.assertIn(name, entries)
                part = entries[name]
            for option in options:
                with self.subTest(command=name, option=option):
                    self.assertIn(option, part if option not in ("--help", "-h") else manual)

    def test_every_option_of_the_daemon_is_in_its_manual(self):
        manual = plain("hushmoded.8")
        options = re.findall(r"^ +(?:-\w, ?)?(--[\w-]+)", run(DAEMON, "--help").stdout, re.M)
        self.assertIn("--calendars", options)
        for option in options:
            self.assertIn(option, manual)

    def test_every_key_of_a_profile_is_in_the_manual(self):
        manual = plain("hushmode-profiles.5")
        keys = json.loads(run(PROGRAM, "help", "--json").stdout)["profileKeys"]
        self.assertGreater(len(keys), 15)
        for key in keys:
            self.assertRegex(manual, rf"\b{key}(, \w+)? \(")

    def test_the_version_is_that_of_the_program(self):
        version = run(PROGRAM, "--version").stdout.strip()
        for page in MANUALS.iterdir():
            self.assertRegex(page.read_text(), rf'\.TH \S+ \d "\d\d\d\d-\d\d-\d\d" "Hush Mode {re.escape(version)}"')

    def test_no_reader_of_manuals_complains(self):
        readers = [each for each in (["mandoc", "-T", "lint"], ["man", "--warnings", "-l"]) if shutil.which(each[0])]
        if not readers:
            if os.environ.get("HUSHMODE_SKIP_NOTHING"):
                self.fail("not installed: mandoc, man")
            self.skipTest("not installed: mandoc, man")
        for page in sorted(MANUALS.iterdir()):
            for reader in readers:
                with self.subTest(page=page.name, reader=reader[0]):
                    result = run(*reader, page)
                    self.assertEqual((result.returncode, result.stderr), (0, ""))
                    if reader[0] == "mandoc":
                        self.assertEqual(result.stdout, "")


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0]])
