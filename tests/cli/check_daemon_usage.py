#!/usr/bin/python3
# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""The daemon's own command line: its help, and what it answers to a wrong one. No bus is needed, and none is there.

usage: check_daemon_usage.py DAEMON
"""
import os
import subprocess
import sys
import unittest

DAEMON = sys.argv.pop(1)


class DaemonUsage(unittest.TestCase):
    def run_daemon(self, *arguments, **environment):
        given = {**os.environ, "LC_ALL": "C.UTF-8", "DBUS_SESSION_BUS_ADDRESS": "unix:path=/nowhere", **environment}
        return subprocess.run([DAEMON, *arguments], env=given, capture_output=True, text=True, timeout=60)

    def test_its_help_has_the_form_of_all_help(self):
        for columns in (80, 40):
            result = self.run_daemon("--help", COLUMNS=str(columns))
            self.assertEqual((result.returncode, result.stderr), (0, ""))
            for text in ("\nUsage: hushmoded [OPTIONS]\n", "\nOptions:\n", "  -v, --verbose", "\nExample:\n  hushmoded "):
                self.assertIn(text, result.stdout)
            long = [line for line in result.stdout.splitlines() if len(line) > columns and len(line.split()) > 2]
            self.assertEqual(long, [])

    def test_its_version_is_one_line(self):
        self.assertRegex(self.run_daemon("--version").stdout, r"^hushmoded \d+\.\d+\.\d+\n$")

    def test_what_is_wrong_is_told_in_one_line(self):
        for arguments, says in ((["--rescu"], "no option --rescu; did you mean --rescue?"),
                                (["--frobnicate"], "no option --frobnicate; see hushmoded --help"),
                                (["--calendars"], "--calendars needs FOLDER"), (["--verbose=3"], "--verbose takes no value"),
                                (["--dry-run"], "--dry-run is only allowed together with --rescue"),
                                (["start"], '"start" is too much'), (["--data", "a", "--data", "b"], "only once"),
                                (["--\x1b[2Jx"], "no option --?[2Jx")):
            with self.subTest(arguments=arguments):
                result = self.run_daemon(*arguments)
                self.assertEqual((result.returncode, result.stdout), (2, ""), result)
                self.assertRegex(result.stderr, r"\Ahushmoded: [^\n]+\n\Z")
                self.assertIn(says, result.stderr)


if __name__ == "__main__":
    unittest.main()
