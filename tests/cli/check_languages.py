#!/usr/bin/python3
# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""Runs the program in German, and looks whether German comes out: no sentence of its English self, the clock and the
calendar of the language, and whole numbers and plurals as they are spoken. JSON is the same in all languages.

usage: check_languages.py PROGRAM SOURCE-FOLDER LOCALES [DAEMON]; LOCALES: the build's folder of catalogues. With a
daemon, in a session of run_with.py: what it says. Locales are made of their sources (the package "locales"), in a
private folder.
"""
import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

PROGRAM, SOURCE, LOCALES = sys.argv[1], pathlib.Path(sys.argv[2]).resolve(), sys.argv[3]
DAEMON = sys.argv[4] if len(sys.argv) > 4 else None
WORKDAY = SOURCE / "examples" / "workday.json"
HOLDER = tempfile.TemporaryDirectory()
FOLDER = pathlib.Path(HOLDER.name)
BUS = os.environ["DBUS_SESSION_BUS_ADDRESS"] if DAEMON else "unix:path=/nonexistent"


def make_locale(name):
    # A warning is no failure: the exit code of a locale that was written with warnings is 1.
    subprocess.run(["localedef", "--no-archive", "-i", name, "-f", "UTF-8", FOLDER / f"{name}.UTF-8"],
                   capture_output=True)
    if not (FOLDER / f"{name}.UTF-8" / "LC_TIME").exists():
        sys.exit(f"the locale {name} could not be made: the package locales is missing")


def environment(language):
    home = FOLDER / "home"
    return {"PATH": os.environ["PATH"], "HOME": str(home), "XDG_CONFIG_HOME": str(home / "config"),
            "XDG_STATE_HOME": str(home / "state"), "XDG_DATA_HOME": str(home / "data"),
            "XDG_CACHE_HOME": str(home / "cache"), "XDG_RUNTIME_DIR": str(home), "TZ": "Europe/Berlin",
            "DBUS_SESSION_BUS_ADDRESS": BUS, "LOCPATH": str(FOLDER), "LC_ALL": language,
            "HUSHMODE_LOCALE": LOCALES, "COLUMNS": "100", "LSAN_OPTIONS": os.environ.get("LSAN_OPTIONS", "")}


def run(language, *arguments):
    return subprocess.run([PROGRAM, *map(str, arguments)], env=environment(language), capture_output=True, text=True,
                          timeout=60)


def german(*arguments):
    return run("de_DE.UTF-8", *arguments)


def commands():
    listed = json.loads(run("C.UTF-8", "help", "--json").stdout)

    def names(each):
        yield each["name"].split()[1:]
        for inner in each.get("commands", []):
            yield from names(inner)

    return list(names(listed))


def sentences(text):
    """The lines of a text that are made of words: neither examples nor lists of names."""
    lines = [line.strip() for line in text.splitlines()
             if not line.startswith("  hushmode") and not re.fullmatch(r" *--[\w-]+ [\w|]+", line)]
    return {line for line in lines if len(re.findall(r"\b[A-Za-z]{2,}\b", line)) >= 3}


@unittest.skipIf(DAEMON, "needs no daemon")
class German(unittest.TestCase):
    def says(self, result, code, *texts):
        self.assertEqual(result.returncode, code, result.stderr)
        for text in texts:
            self.assertIn(text, result.stdout + result.stderr)

    def test_no_sentence_of_any_help_is_left_in_english(self):
        every = commands()
        self.assertGreater(len(every), 20)
        for command in every:
            english, translated = run("C.UTF-8", *command, "--help"), german(*command, "--help")
            self.assertEqual((english.returncode, translated.returncode), (0, 0), command)
            self.assertIn(" ".join(["hushmode", *command]), english.stdout)
            self.assertEqual(sentences(english.stdout) & sentences(translated.stdout), set(), command)
            self.assertIn("Aufruf:", translated.stdout)

    def test_the_example_day(self):
        result = german("simulate", WORKDAY)
        self.says(result, 0, "Dienstag, 24. November 2026",
                  "09:30:00  Meetings  an   „Standup (later today)“",
                  "Klingelton 80\u00a0% auf 6\u00a0%, Medien 50\u00a0% auf 0\u00a0%, Symbol sichtbar",
                  "„Interview“ zu Ende", "Netz City Library verlassen", "Nicht stören an", "8 Umschaltungen.")
        self.assertNotIn("switch", result.stdout)

    def test_one_and_many(self):
        parts = ["simulate", "--profiles", SOURCE / "examples" / "profiles.plist", "--calendars",
                 SOURCE / "examples" / "calendars", "--zone", "Europe/Berlin", "--from", "2026-11-24"]
        self.says(german(*parts, "--to", "2026-11-24T09:40"), 0, "\n1 Umschaltung.")
        self.says(german(*parts, "--to", "2026-11-24T09:00"), 0, "Keine Umschaltungen.")

    def test_events(self):
        calendars = SOURCE / "examples" / "calendars"
        day = ["--from", "2026-11-24", "--to", "2026-11-24", "--zone", "Europe/Berlin"]
        result = german("events", "--calendars", calendars, *day)
        self.says(result, 0, "Dienstag, 24. November 2026", "ganztägig", "09:30 bis 09:45", "(abgesagt)", "(vorläufig)")
        self.says(german("events", "--calendars", FOLDER / "none", *day), 2, "erwartet wird ein Ordner")

    def test_profiles(self):
        self.says(german("profile", "add", "Arbeit", "--window", "08:00-17:00", "--ringtone", "5%"), 0,
                  "„Arbeit“ angelegt.")
        self.says(german("profile", "show", "Arbeit"), 0, "08:00 bis 17:00", "5\u00a0%")
        self.says(german("profile", "show", "Arbeid"), 2, "kein Profil heißt „Arbeid“; gemeint „Arbeit“?")
        self.says(german("profile", "edit", "Arbeit", "--ringtone", "laut"), 2, "erwartet wird eine Lautstärke")
        self.says(german("profile", "remove", "Arbeit"), 0, "„Arbeit“ gelöscht.")

    def test_days_have_their_names(self):
        self.says(german("profile", "add", "Nacht", "--all-day"), 0)
        for days in ("mo,di", "mon,tue", "Montag,Dienstag"):
            result = german("schedule", "Nacht", "22:00-06:00", "--days", days)
            self.assertEqual(result.returncode, 0, result.stderr)
            self.says(german("schedule", "--list"), 0, "Mo, Di")
        self.assertEqual(json.loads(german("schedule", "--list", "--json").stdout)["days"], "MO,TU")
        self.says(german("schedule", "Nacht", "--remove"), 0)
        self.says(german("profile", "remove", "Nacht"), 0)

    def test_mistakes(self):
        self.says(german("stautus"), 2, "„stautus“ ist kein Befehl; gemeint „status“?")
        self.says(german("quiet", "lange"), 2, "erwartet wird eine Dauer")
        self.says(german("profile", "list", "--jsno"), 2, "die Option --jsno gibt es nicht")
        self.says(german("simulate", "keine.json"), 2, "erwartet wird eine Szenariodatei (JSON)")
        self.says(german("simulate", WORKDAY, "--from", "gestern"), 2, "from gestern: erwartet wird 2024-05-14")
        self.says(german("status"), 3, "Dienst")

    def test_json_is_the_same_in_all_languages(self):
        for arguments in (["simulate", WORKDAY, "--json"],
                          ["events", "--calendars", SOURCE / "examples" / "calendars", "--from", "2026-11-24", "--to",
                           "2026-11-24", "--zone", "Europe/Berlin", "--json"]):
            self.assertEqual(german(*arguments).stdout, run("C.UTF-8", *arguments).stdout)


@unittest.skipIf(DAEMON, "needs no daemon")
class Clocks(unittest.TestCase):
    def test_twelve_hours_where_people_have_them(self):
        day = run("en_US.UTF-8", "simulate", WORKDAY).stdout
        self.assertIn("  02:30:00 PM  Meetings  on   \"Interview\"", day)
        self.assertIn("Tuesday, 24 November 2026", day)

    def test_weeks_begin_where_people_begin_them(self):
        self.assertEqual(run("C.UTF-8", "profile", "add", "Week", "--all-day").returncode, 0)
        self.assertEqual(run("C.UTF-8", "schedule", "Week", "22:00-06:00", "--days", "mon,sun").returncode, 0)
        self.assertIn("Week  10:00 PM-06:00 AM  Sun, Mon\n", run("en_US.UTF-8", "schedule", "--list").stdout)
        self.assertIn("Week  22:00-06:00  Mo, So\n", run("de_DE.UTF-8", "schedule", "--list").stdout)
        self.assertEqual(run("C.UTF-8", "schedule", "Week", "--remove").returncode, 0)
        self.assertEqual(run("C.UTF-8", "profile", "remove", "Week").returncode, 0)

    def test_the_language_of_the_words_and_of_the_clock_are_apart(self):
        mixed = {**environment("C.UTF-8"), "LC_ALL": "", "LANG": "en_US.UTF-8", "LC_TIME": "de_DE.UTF-8"}
        day = subprocess.run([PROGRAM, "simulate", str(WORKDAY)], env=mixed, capture_output=True, text=True).stdout
        self.assertIn("Dienstag, 24 November 2026", day)
        self.assertIn("  14:30:00  Meetings  on ", day)


@unittest.skipUnless(DAEMON, "needs a daemon")
class GermanDaemon(unittest.TestCase):
    """A daemon in German, and the program in German and in English."""

    def setUp(self):
        self.messages = FOLDER / "messages"
        (FOLDER / "home/data/hushmode/calendars/Arbeit").mkdir(parents=True)
        with self.messages.open("w") as stream:
            self.daemon = subprocess.Popen([DAEMON, "--data", SOURCE / "packaging" / "hushmode"],
                                           env=environment("de_DE.UTF-8"), stderr=stream)
        self.addCleanup(self.daemon.wait)
        self.addCleanup(self.daemon.terminate)
        self.monitor = subprocess.Popen(["gdbus", "monitor", "--session", "--dest", "com.quorvel.Hushmode"],
                                        env=environment("C.UTF-8"), stdout=subprocess.PIPE, text=True)
        self.addCleanup(self.monitor.stdout.close)
        self.addCleanup(self.monitor.wait)
        self.addCleanup(self.monitor.terminate)
        subprocess.run(["gdbus", "wait", "--session", "--timeout", "30", "com.quorvel.Hushmode"], check=True,
                       env=environment("C.UTF-8"))

    def wait_for_a_switch(self):
        return next(line for line in self.monitor.stdout if ".Switched " in line)

    def test_what_it_says_and_what_is_said_of_it(self):
        self.assertIn("Jetzt ist nichts still.", german("status").stdout)
        self.assertIn("Profil  ", german("profile", "list").stdout)  # The first, which the daemon makes.
        added = german("profile", "add", "Ruhe", "--ringtone", "5%")
        self.assertEqual(added.returncode, 0, added.stderr)
        quiet = german("quiet", "5m", "--profile", "Ruhe")
        self.assertIn("„Ruhe“ geht in wenigen Sekunden an", quiet.stdout, quiet.stderr)
        signal = self.wait_for_a_switch()
        self.assertIn("'reason': <'„Eine Weile Ruhe“'>", signal)
        self.assertIn("'cause': <'event'>", signal)
        self.assertIn("'about': <'Eine Weile Ruhe'>", signal)
        self.assertIn("Ruhe ist an für „Eine Weile Ruhe“, bis ", german("status").stdout)
        self.assertIn('Ruhe is on for "Eine Weile Ruhe", until ', run("C.UTF-8", "status").stdout)
        applied = json.loads(german("status", "--json").stdout)["Applied"]
        self.assertEqual([(each["title"], each["cause"]) for each in applied], [("Ruhe", "event")])
        german("off")
        self.assertIn("'cause': <'off'>", self.wait_for_a_switch())
        self.assertIn("Hush Mode ausgeschaltet", german("log").stdout)
        self.assertIn("Hush Mode switched off", run("C.UTF-8", "log").stdout)
        refused = subprocess.run(["gdbus", "call", "--session", "--dest", "com.quorvel.Hushmode", "--object-path",
                                  "/com/quorvel/Hushmode", "--method", "com.quorvel.Hushmode1.DeleteProfile", "7"],
                                 env=environment("C.UTF-8"), capture_output=True, text=True)
        self.assertIn("UnknownProfile: kein Profil hat die Kennung 7", refused.stderr)
        said = self.messages.read_text()
        self.assertIn("bereit: ", said)
        self.assertIn("Profil „Ruhe“ an: ", said)


for name in ("de_DE", "en_US"):
    make_locale(name)
unittest.main(argv=sys.argv[:1])
