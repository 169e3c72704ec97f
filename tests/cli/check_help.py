#!/usr/bin/python3
# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT
"""Help texts as people read them, and what the program answers to a command line with a mistake.

usage: check_help.py PROGRAM
"""
import json
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

PROGRAM = pathlib.Path(sys.argv[1]).resolve()


class Help(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        holder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(holder.cleanup)
        cls.folder = pathlib.Path(holder.name)
        cls.environment = {**os.environ, "LC_ALL": "C.UTF-8", "LANGUAGE": "", "HOME": holder.name,
                           "XDG_RUNTIME_DIR": holder.name}
        for name in ("DBUS_SESSION_BUS_ADDRESS", "COLUMNS", "XDG_CONFIG_HOME", "XDG_STATE_HOME", "XDG_DATA_HOME"):
            cls.environment.pop(name, None)
        tree = json.loads(cls.run_program("help", "--json").stdout)
        cls.commands = list(cls.all_in(tree))

    @classmethod
    def run_program(cls, *arguments, **environment):
        return subprocess.run([PROGRAM, *arguments], env={**cls.environment, **environment}, capture_output=True,
                              text=True, timeout=60)

    @classmethod
    def all_in(cls, command):
        yield command
        for each in command["commands"]:
            yield from cls.all_in(each)

    def words(self, command):
        return command["name"].split()[1:]

    def refused(self, *arguments, says):
        result = self.run_program(*arguments)
        self.assertEqual((result.returncode, result.stdout), (2, ""), result)
        self.assertEqual(result.stderr.count("\n"), 1, result.stderr)
        self.assertTrue(result.stderr.startswith("hushmode: "), result.stderr)
        for text in says:
            self.assertIn(text, result.stderr)
        self.assertEqual(sorted(self.folder.iterdir()), [])  # Nothing was made.

    def test_every_command_has_help_with_an_example_that_fits(self):
        self.assertGreater(len(self.commands), 20)
        for command in self.commands:
            for columns in (80, 40):
                with self.subTest(command=command["name"], columns=columns):
                    result = self.run_program(*self.words(command), "--help", COLUMNS=str(columns))
                    self.assertEqual((result.returncode, result.stderr), (0, ""))
                    self.assertIn("  hushmode " + " ".join(self.words(command)[:2]), result.stdout)
                    self.assertNotIn("TEXT", result.stdout)
                    lines = result.stdout.splitlines()
                    # A word of its own may be longer than a narrow line: a path, a name.
                    long = [line for line in lines if len(line) > columns and len(line.split()) > 2]
                    self.assertEqual(long, [])

    def test_every_command_stands_under_a_purpose(self):
        program, *_ = self.commands
        help = self.run_program("--help").stdout
        for command in program["commands"]:
            self.assertNotEqual(command["purpose"], "Subcommands", command["name"])
            self.assertIn(f"\n{command['purpose']}:\n", help)

    def test_every_argument_says_what_it_takes(self):
        for command in self.commands:
            for argument in command["arguments"]:
                with self.subTest(command=command["name"], argument=argument.get("name") or argument["names"][-1]):
                    # Give it a type name: apps/usage/ValueKinds.h has those that can be completed.
                    self.assertNotEqual(argument.get("value", {}).get("word"), "TEXT")
                    self.assertTrue("value" in argument or "names" in argument)

    def test_help_and_its_option_say_the_same(self):
        for command in self.commands:
            words = self.words(command)
            self.assertEqual(self.run_program("help", *words).stdout, self.run_program(*words, "--help").stdout)

    def test_values_defaults_and_limits_are_shown(self):
        shown = self.run_program("profile", "edit", "--help").stdout
        for text in ("--vibrate on|off", "--events any|confirmed|tentative", "--ringtone VOLUME"):
            self.assertIn(text, shown)
        self.assertIn("(1 to 366; 1 if not given)", " ".join(self.run_program("agenda", "--help").stdout.split()))
        self.assertIn("(20 if not given)", " ".join(self.run_program("log", "--help").stdout.split()))

    def test_without_a_command_one_line_says_what_is_expected(self):
        self.refused(says=["expected a command", "profile", "status"])

    def test_a_mistyped_command_is_told_with_the_nearest(self):
        for words, near in ((["stauts"], '"status"'), (["profiel"], '"profile"'), (["shedule"], '"schedule"'),
                            (["profile", "lst"], '"list"'), (["profile", "shwo", "Work"], '"show"'),
                            (["edit", "Work"], '"profile edit"'), (["help", "agnda"], '"agenda"')):
            with self.subTest(words=words):
                self.refused(*words, says=["no command", f"did you mean {near}?"])
        self.refused("frobnicate", says=['"frobnicate" is no command', "hushmode --help"])

    def test_a_command_that_there_is_not_has_no_help_either(self):
        for words, says in ((["stauts"], '"status"'), (["nonsense"], "see hushmode --help"),
                            (["profile", "lst"], '"list"'), (["profile", "nonsense"], "see hushmode profile --help"),
                            (["nonsense", "status"], '"nonsense" is no command')):
            for line in ([*words, "--help"], [*words, "-h"], ["help", *words], words):
                with self.subTest(line=line):
                    self.refused(*line, says=["is no command", says])

    def test_every_command_refuses_an_unknown_option(self):
        for command in self.commands:
            words = self.words(command)
            with self.subTest(command=command["name"]):
                self.refused(*words, "--hlep", says=["no option --hlep", "did you mean --help?"])
                self.refused(*words, "--frobnicate", says=["no option --frobnicate", f"{command['name']} --help"])

    def test_every_option_of_every_command_is_near_its_misspelling(self):
        for command in self.commands:
            for argument in command["arguments"]:
                option = next((name for name in argument.get("names", []) if name.startswith("--")), "")
                if len(option) < 7:
                    continue  # Of short ones, others may be nearer.
                with self.subTest(command=command["name"], option=option):
                    self.refused(*self.words(command), option[:-2] + option[-1] + option[-2] + "x", says=[option])

    def test_every_command_refuses_an_option_without_its_value(self):
        for command in self.commands:
            for argument in command["arguments"]:
                if "names" in argument and "value" in argument:
                    option = argument["names"][-1]
                    with self.subTest(command=command["name"], option=option):
                        self.refused(*self.words(command), option, says=[option, "needs"])

    def test_every_command_refuses_a_number_that_is_none(self):
        checked = 0
        for command in self.commands:
            for argument in command["arguments"]:
                if "names" not in argument or argument.get("value", {}).get("word") != "NUMBER":
                    continue
                option = argument["names"][-1]
                numbers = ["x", "-1", "1e99", "99999999999999999999"]
                if "range" in argument["value"]:
                    numbers.append(str(int(argument["value"]["range"][1]) + 1))
                for number in numbers:
                    with self.subTest(command=command["name"], option=option, number=number):
                        self.refused(*self.words(command), option, number, says=[f"{option} {number}", "expected a"])
                        checked += 1
        self.assertGreater(checked, 4)

    def test_every_command_says_what_is_missing(self):
        for command in self.commands:
            required = [each for each in command["arguments"] if each["required"]]
            if command["commands"]:
                with self.subTest(command=command["name"]):
                    self.refused(*self.words(command), says=["expected a command"])
            elif required:
                first = required[0]
                with self.subTest(command=command["name"]):
                    self.refused(*self.words(command), says=[first.get("name") or first["names"][-1], "missing"])

    def test_what_is_too_much_is_refused(self):
        for command in self.commands:
            places = [each for each in command["arguments"] if "name" in each]
            if command["commands"] or any(each["several"] for each in places):
                continue
            with self.subTest(command=command["name"]):
                self.refused(*self.words(command), *["a"] * len(places), "extra", says=['"extra"', "quotation marks"])

    def test_a_flag_takes_no_value(self):
        for command in self.commands:
            for argument in command["arguments"]:
                option = argument.get("names", [""])[-1]
                if option not in ("", "--help") and "value" not in argument:
                    with self.subTest(command=command["name"], option=option):
                        self.refused(*self.words(command), f"{option}=5", says=[f"{option} takes no value"])

    def test_an_option_is_given_once(self):
        self.refused("log", "--limit", "1", "--limit", "2", says=["--limit", "only once"])

    def test_what_is_repeated_to_the_terminal_cannot_command_it(self):
        self.refused("profile", "show", "a\nb\x1b[2J", says=['"a?b?[2J"'])

    def test_options_that_exclude_each_other_are_told(self):
        self.refused("agenda", "--svg", "x.svg", "--json", says=["--svg", "--json", "exclude each other"])

    def test_a_profile_may_be_called_like_a_command(self):
        for title in ("status", "show", "profile"):
            self.refused("profile", "show", title, says=[f'no profile is called "{title}"'])

    def test_help_on_a_full_disk_is_told(self):
        with open("/dev/full", "w") as full:
            result = subprocess.run([PROGRAM, "--help"], stdout=full, stderr=subprocess.PIPE, text=True,
                                    env=self.environment)
        self.assertEqual((result.returncode, result.stderr), (3, "hushmode: the output could not be written\n"))


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0]])
