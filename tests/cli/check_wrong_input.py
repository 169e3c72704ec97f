#!/usr/bin/python3
# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""Every place of every command that takes a value, with a value beside it: one line says what was expected and what was
most likely meant, and nothing changes.

usage: check_wrong_input.py PROGRAM [DAEMON]   (with a daemon: in a session of run_with.py)

What a place takes is what the program says of it (hushmode help --json); a new kind of value needs a row here.
"""
import json
import pathlib
import plistlib
import subprocess
import sys
import unittest

from user_phone import UserFolders

PROGRAM = pathlib.Path(sys.argv.pop(1)).resolve()
DAEMON = sys.argv.pop(1) if len(sys.argv) > 1 and not sys.argv[1].startswith("-") else None

# By the word for a value: pairs of a slip and what was meant by it; no near value (None) where nothing can be guessed.
SLIPS = {
    "VOLUME": [("150%", "100%"), ("5", "5%"), ("12.5", "12.5%"), ("5 percent", "5%"), ("-1%", "0%"), ("0.5x", "50%"),
               ("loud", None)],
    "TIMES": [("8-17", "08:00-17:00"), ("8:00 to 17", "08:00-17:00"), ("0800-1700", "08:00-17:00"),
              ("8:00–17:00", "08:00-17:00"), ("8h-17h", "08:00-17:00"), ("25:00-26:00", None), ("morning", None)],
    "TIME": [("24.11.2026", "2026-11-24"), ("2026-1-4 9:30", "2026-01-04T09:30"), ("2026-02-30", "2026-02-28"),
             ("2026/11/24", "2026-11-24"), ("20261124", "2026-11-24"), ("1/2/2026", None), ("soon", None)],
    "DAYS": [("wedd", "wed"), ("mon,tu,wedd", "mon,tue,wed"), ("mon-fri", "mon,tue,wed,thu,fri"),
             ("fri-mon", "fri,sat,sun,mon"), ("weekdays", "mon,tue,wed,thu,fri"), ("weekend", "sat,sun"),
             ("someday", None)],
    "LENGTH": [("90", "90m"), ("2", "2h"), ("2 hours", "2h"), ("1.5h", "90m"), ("2:30", "2h30m"), ("1h 30m", "90m"),
               ("2h30", "2h30m"), ("1 week", None), ("90s", None), ("-5m", "5m"),
               ("0m", "1m"), ("200h", "168h"), ("2d", "48h"), ("while", None)],
    "PROFILE": [("Wrok", "Work"), ("work", "Work"), ("Gardening", None)],
    "CALENDARS": [("Hmoe", "Home"), ("Gardening", None)],
    "ZONE": [("Europe/Berln", "Europe/Berlin"), ("berlin", "Europe/Berlin"), ("Mars/Base", None)],
    "TONE": [("Chime", "texttone:Chime"), ("texttone:chime", "texttone:Chime"), ("rng", "texttone:Ring"),
             ("Foghorn", None)],
    "TITLE": [("", None), (" \t", None), ("Work\nHome", None), ("Wo\x1brk", None), ("x" * 201, None)],
    "on|off": [("onn", "on"), ("of", "off"), ("ON", "on"), ("yse", "yes"), ("x", None)],
    "any|confirmed|tentative": [("confirmd", "confirmed"), ("Tentative", "tentative"), ("busy", None)],
    "count|ignore": [("ignored", "ignore"), ("perhaps", None)],
    "xml|binary": [("xmll", "xml"), ("Binary", "binary"), ("json", None)],
    "COMMAND": [("stauts", "status"), ("frobnicate", None)],
    "FOLDER": [("{folder}/calendras", "{folder}/calendars"), ("{folder}/elsewhere", None)],
    "FILE": [("{folder}/profiels.plist", "{folder}/profiles.plist"),
             ("{folder}/profiles.plst", "{folder}/profiles.plist"), ("{folder}/prizes.plist", None), ("{folder}/gone", None)],
}
# Of places that take more or less than the others of their word.
AT_PLACES = {
    "hushmode explain --at": [("14", "14:00"), ("1420", "14:20"), ("2pmm", None), ("24.11.2026 14:20", "2026-11-24T14:20"),
                              ("2026-11-24", None), ("25:00", None)],
    "hushmode profile add --window": SLIPS["TIMES"] + [("8-5", "08:00-17:00"), ("17-8", "17:00-20:00"), ("17-16", None)],
    "hushmode schedule HOURS": SLIPS["TIMES"] + [("22-6", "22:00-06:00"), ("22:00", None)],
    # Written, not read: any name does.
    "hushmode export FILE": [],
    "hushmode agenda --svg": [],
    # Networks need not be known yet.
    "NETWORKS": [],
    "hushmode agenda --from": [("soon", None), ("25:00", None), ("24.11.2026", "2026-11-24"),
                               ("2026-02-30", "2026-02-28")],
}
# What stands in the places that are not looked at but must be filled.
FILLED = {"PROFILE": "Work", "TITLE": "New", "FILE": "{folder}/profiles.plist", "FOLDER": "{folder}/calendars",
          "TIME": "2026-11-24"}
# What must stand before and behind, where it is not all that is required.
SIMULATED = ["--profiles", "{folder}/profiles.plist", "--calendars", "{folder}/calendars"]
BESIDE = {
    "hushmode schedule NAME": ([], ["22:00-06:00"]),
    "hushmode schedule --days": (["Work", "22:00-06:00"], []),
    "hushmode schedule HOURS": (["Work"], []),
    "hushmode quiet --profile": (["90m"], []),
    "hushmode export NAME": (["-"], []),
    "hushmode simulate --profiles": (SIMULATED[2:], []),
    "hushmode simulate --calendars": (SIMULATED[:2], []),
    "hushmode simulate --from": (SIMULATED, []),
    "hushmode simulate --to": (SIMULATED, []),
    "hushmode simulate --zone": (SIMULATED, []),
}


def number_slips(value):
    least, most = value.get("range", ("0", None))
    slips = [("-1", least), (least + "x", least), ("many", None)]
    return slips + ([("0", least), (str(int(most) + 1), most), ("9" * 30, most)] if most else [])


class WrongInput(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.phone = UserFolders(PROGRAM, on_bus=DAEMON is not None)
        cls.addClassCleanup(cls.phone.end)
        cls.phone.put_calendars("Work", "Home")
        cls.phone.switch(True)
        cls.phone.write_profiles([])
        cls.files = cls.phone.folder / "files"
        (cls.files / "calendars").mkdir(parents=True)
        if DAEMON:
            cls.phone.start_daemon(DAEMON)
        assert cls.phone.run("profile", "add", "Work").returncode == 0
        assert cls.phone.run("export", cls.files / "profiles.plist").returncode == 0
        cls.commands = list(cls.all_in(json.loads(cls.phone.run("help", "--json").stdout)))

    @classmethod
    def all_in(cls, command):
        yield command
        for each in command["commands"]:
            yield from cls.all_in(each)

    def state(self):
        """All that a command could change."""
        return {path: path.read_bytes() for folder in (self.phone.config, self.phone.calendars, self.files)
                for path in sorted(folder.rglob("*")) if path.is_file()}

    def refused(self, *arguments, near):
        before = self.state()
        result = self.phone.run(*arguments)
        self.assertEqual((result.returncode, result.stdout), (2, ""), result)
        self.assertEqual((result.stderr.count("\n"), result.stderr[-1:]), (1, "\n"), result.stderr)
        self.assertTrue(result.stderr.startswith("hushmode: "), result.stderr)
        guess = f'did you mean "{near}"?'
        if near:
            self.assertIn(guess, result.stderr)
        else:
            self.assertNotIn("did you mean", result.stderr)
            self.assertRegex(result.stderr, "expected |needs |see hushmode ")
        self.assertEqual(self.state(), before)

    def slips(self, place, value):
        if place in AT_PLACES or value["word"] in AT_PLACES:
            return AT_PLACES.get(place, AT_PLACES.get(value["word"]))
        if value["word"] == "NUMBER":
            return number_slips(value)
        self.assertIn(value["word"], SLIPS, f"{place}: what is a slip of it?")
        return SLIPS[value["word"]]

    def test_each_place_names_what_was_expected_and_the_nearest(self):
        tried = 0
        for command in self.commands:
            for argument in command["arguments"]:
                if "value" not in argument:
                    continue
                place = f"{command['name']} {argument.get('name') or argument['names'][-1]}"
                for given, near in self.slips(place, argument["value"]):
                    with self.subTest(place=place, given=given):
                        self.refused(*self.words(command, argument, place, given),
                                     near=near and near.replace("{folder}", str(self.files)))
                        tried += 1
        self.assertGreater(tried, 150)

    def words(self, command, argument, place, given):
        """The command line with the value in its place, and with what must be beside it."""
        before, behind = BESIDE.get(place, ([], []))
        words = command["name"].split()[1:] + before
        for each in command["arguments"]:
            if each is argument:
                # Behind "=" or "--", so that one that begins with a dash is a value all the same.
                words += ["--", given] if "name" in each else [f"{each['names'][-1]}={given}"]
            elif each["required"] and place not in BESIDE:
                words += ([] if "name" in each else [each["names"][-1]]) + [FILLED[each["value"]["word"]]]
        return [word.replace("{folder}", str(self.files)) for word in words + behind]


class Answers(unittest.TestCase):
    """Each test starts with no profiles."""

    def setUp(self):
        self.phone = UserFolders(PROGRAM, on_bus=DAEMON is not None)
        self.addCleanup(self.phone.end)
        self.phone.write_profiles([])
        if DAEMON:
            self.phone.start_daemon(DAEMON)

    def done(self, *arguments):
        result = self.phone.run(*arguments)
        self.assertEqual((result.returncode, result.stderr), (0, ""), arguments)
        return result.stdout

    def profiles(self):
        return {each["title"]: each for each in map(json.loads, self.done("profile", "list", "--json").splitlines())}

    def refused(self, *arguments, says, **environment):
        before = self.profiles()
        result = self.phone.run(*arguments, **environment)
        self.assertEqual((result.returncode, result.stdout), (2, ""), result)
        self.assertIn(says, result.stderr)
        self.assertEqual(self.profiles(), before)

    def test_titles_are_trimmed_of_the_blanks_around(self):
        self.assertIn('"Work"', self.done("profile", "add", " Work\t"))
        self.done("profile", "copy", "Work", "At home ")
        self.done("profile", "edit", "Work", "--title", "\u00a0Office")
        self.assertEqual([*self.profiles()], ["Office", "At home"])
        self.refused("profile", "add", " Office", says='"Office"')  # There is one.

    def test_a_title_that_no_profile_may_have_comes_by_no_way(self):
        self.done("profile", "add", "Work")
        for title in ("  ", "a\tb", "x" * 201):
            with self.subTest(title=title):
                self.refused("profile", "add", title, says='"title": expected')
                self.refused("profile", "copy", "Work", title, says='"title": expected')
                self.refused("profile", "edit", "Work", "--title", title, says='"title": expected')
                self.refused("profile", "edit", "Work", "--editor", says='"title": expected', VISUAL="",
                             EDITOR=f"f() {{ printf 'title: %s' '{title}' > \"$1\"; }}; f")
                path = self.phone.folder / "given.plist"
                path.write_bytes(plistlib.dumps([{"title": title}]))
                self.refused("import", path, says='"title": expected')

    @unittest.skipUnless(DAEMON, "with a daemon")
    def test_the_daemon_refuses_such_titles_to_all_programs(self):
        for title in ("", "  ", " Work", "a\nb", "x" * 201):
            result = subprocess.run(
                ["gdbus", "call", "--session", "--dest", "com.quorvel.Hushmode", "--object-path", "/com/quorvel/Hushmode",
                 "--method", "com.quorvel.Hushmode1.AddProfile", f"{{'title': <{json.dumps(title)}>}}"],
                env=self.phone.environment, capture_output=True, text=True)
            with self.subTest(title=title):
                self.assertNotEqual(result.returncode, 0)
                self.assertIn('Error.InvalidArgument: "title": expected', result.stderr)
        self.assertEqual(self.profiles(), {})

    @unittest.skipIf(DAEMON, "with the file as it is found")
    def test_titles_that_are_stored_are_read_whatever_they_are(self):
        titles = [" Work ", "a\nb", "x" * 300]
        self.phone.write_profiles([{"title": title, "identifier": number} for number, title in enumerate(titles, 1)])
        self.assertEqual([*self.profiles()], titles)
        for title in titles:
            self.done("profile", "edit", title, "--icon", "on")
        self.assertEqual([each["showOnStatusBar"] for each in self.profiles().values()], [True] * 3)
        self.assertEqual(len(self.done("profile", "list").splitlines()), 3)

    def test_quiet_hours_are_asked_for_and_what_they_replace_is_told(self):
        self.done("profile", "add", "Night")
        self.refused("schedule", "Night", says="schedule: expected HOURS behind NAME, such as 22:00-06:00")
        for arguments, said in ((["11pm - 7am"], "from 23:00 to 07:00."), (["23:00-07:00"], "from 23:00 to 07:00."),
                                (["22:00-06:00"], "from 22:00 to 06:00; before: 23:00 to 07:00."),
                                (["22:00-06:00", "--days", "mon,tue"],
                                 "from 22:00 to 06:00 (Mon, Tue); before: 22:00 to 06:00."),
                                (["22:00-05:00"], "from 22:00 to 05:00; before: 22:00 to 06:00 (Mon, Tue).")):
            self.assertEqual(self.done("schedule", "Night", *arguments), f'"Night" is quiet {said}\n')
        self.done("schedule", "Night", "--remove")
        self.assertEqual(self.done("schedule", "Night", "22:00-06:00"), '"Night" is quiet from 22:00 to 06:00.\n')


if __name__ == "__main__":
    unittest.main()
