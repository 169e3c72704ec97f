#!/usr/bin/python3
# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""The command line in a real terminal: its colours and its width, Ctrl-C at all moments, and a window that closes.

usage: check_terminal.py PROGRAM SOURCE-FOLDER LOCALES [DAEMON] [unittest argument...]; LOCALES: the build's folder of catalogues. With a
daemon in a session of run_with.py: what needs one. Exit code 77 when tmux is not installed; an error instead when
HUSHMODE_SKIP_NOTHING is set.
"""
import json
import os
import pathlib
import plistlib
import random
import shutil
import signal
import subprocess
import sys
import time
import unittest

from terminal_window import Process, TerminalWindow, wait_until
from user_phone import PROFILES, UserPhone

PROGRAM, SOURCE, LOCALES = (pathlib.Path(each).resolve() for each in sys.argv[1:4])
DAEMON = sys.argv.pop(4) if len(sys.argv) > 4 and "/" in sys.argv[4] else None
SKIPPED = 77
WIDTHS = (40, 80, 120)
DAY = "--from 2026-11-24"
NO_DISK, UNWRITTEN = 3, "hushmode: the output could not be written\n"
INTERRUPTED = 128 + signal.SIGINT
# Outlives the terminal, to write how the program ended, which does not.
WATCH_END = """#!/usr/bin/python3
import pathlib, signal, subprocess, sys
signal.signal(signal.SIGHUP, signal.SIG_IGN)
ended = subprocess.run(sys.argv[2:], preexec_fn=lambda: signal.signal(signal.SIGHUP, signal.SIG_DFL))
pathlib.Path(sys.argv[1]).write_text(str(ended.returncode))
"""
GREEN_ON = "\x1b[32mon"


class TerminalTest(unittest.TestCase):
    """The example day's profiles and calendars, and `hushmode` on the path."""

    def setUp(self):
        self.phone = UserPhone(PROGRAM)
        self.addCleanup(self.phone.end)
        self.phone.use_examples(SOURCE / "examples")
        self.folder = self.phone.folder
        for name in ("bin", "tmp", "work"):
            (self.folder / name).mkdir()
        (self.folder / "bin/hushmode").symlink_to(PROGRAM)
        self.environment = {**self.phone.environment, "PATH": f"{self.folder}/bin:{os.environ['PATH']}",
                            "TMPDIR": str(self.folder / "tmp"), "HUSHMODE_LOCALE": str(LOCALES)}
        if DAEMON:
            self.environment["DBUS_SESSION_BUS_ADDRESS"] = os.environ["DBUS_SESSION_BUS_ADDRESS"]
            self.environment["XDG_RUNTIME_DIR"] = os.environ["XDG_RUNTIME_DIR"]
            self.phone.environment = self.environment
            self.start_daemon()

    def start_daemon(self):
        self.messages = self.folder / "messages"
        with self.messages.open("w") as stream:
            self.daemon = subprocess.Popen([DAEMON], env=self.environment, stderr=stream)
        self.addCleanup(lambda: self.assertEqual(self.daemon.wait(15), 0))
        self.addCleanup(self.daemon.terminate)
        subprocess.run(["gdbus", "wait", "--session", "--timeout", "30", "com.quorvel.Hushmode"], check=True)

    def window(self, columns=80):
        window = TerminalWindow(self.environment, columns)
        self.addCleanup(window.end)
        window.run(f"cd {self.folder}/work")
        return window

    def files(self):
        """What lies in the user's folders and among the temporary files; the lock stays for the next one."""
        return {path.relative_to(self.folder): path.read_bytes()
                for name in ("config", "state", "cache", "data", "tmp", "work")
                for path in (self.folder / name).rglob("*") if path.is_file() and path.name != "lock"}

    def assert_usable(self, window):
        code, lines = window.run("hushmode --version")
        self.assertEqual((code, len(lines)), (0, 1), lines)


@unittest.skipIf(DAEMON, "looks the same with one")
class Looks(TerminalTest):
    def printed(self, command):
        code, lines = self.window(columns=120).run(command, escapes=True)
        self.assertEqual(code, 0, lines)
        text = "\n".join(lines)
        self.assertIn("Interview", text)
        return text

    def test_on_is_green_where_people_look(self):
        self.assertIn(GREEN_ON, self.printed(f"hushmode agenda {DAY}"))

    def test_no_colours_where_they_are_not_wanted(self):
        for command in (f"NO_COLOR=1 hushmode agenda {DAY}", f"TERM=dumb hushmode agenda {DAY}",
                        f"hushmode agenda {DAY} | cat -v"):
            with self.subTest(command=command):
                text = self.printed(command)
                self.assertNotIn("\x1b", text)
                self.assertNotIn("^[", text)

    def assert_fits(self, command, columns, *texts):
        code, lines = self.window(columns).run(command)
        self.assertEqual(code, 0, lines)
        self.assertGreater(len(lines), 5, lines)
        for text in texts:
            self.assertIn(text, "\n".join(lines))
        self.assertEqual([line for line in lines if len(line) > columns], [], f"{command} at {columns} columns")
        return lines

    def test_the_help_is_as_wide_as_the_terminal(self):
        for columns in WIDTHS:
            with self.subTest(columns=columns):
                lines = self.assert_fits("hushmode --help", columns, "Usage: hushmode", "schedule")
                self.assertGreater(max(map(len, lines)), min(columns, 80) * 3 // 4)

    def test_the_picture_is_as_wide_as_the_terminal(self):
        widest = [max(map(len, self.assert_fits(f"hushmode agenda {DAY} --picture", columns, "Meetings")))
                  for columns in WIDTHS]
        self.assertEqual(widest, sorted(set(widest)), "each is wider than the one before")

    def test_an_explanation_is_whole_in_all_widths(self):
        told = []
        for columns in WIDTHS:
            code, lines = self.window(columns).run('hushmode explain Meetings --at "2026-11-24 14:40"')
            self.assertEqual(code, 0, lines)
            told.append(lines)
        self.assertIn("Interview", "\n".join(told[0]))
        self.assertEqual([told[0]] * len(WIDTHS), told)

    def test_the_picture_in_another_language(self):
        locale = self.folder / "de_DE.UTF-8"
        # A warning is no failure: the exit code of a locale that was written with warnings is 1.
        subprocess.run(["localedef", "--no-archive", "-i", "de_DE", "-f", "UTF-8", locale], capture_output=True)
        self.assertTrue((locale / "LC_TIME").exists(), "the package locales is missing")
        self.environment["LOCPATH"] = str(self.folder)
        self.assert_fits(f"LC_ALL=de_DE.UTF-8 hushmode agenda {DAY} --picture", 40, "November", "Dienstag")


class CtrlC(TerminalTest):
    @unittest.skipIf(DAEMON, "needs none")
    def test_while_a_simulation_tells_its_progress(self):
        profiles = plistlib.loads((self.phone.config / PROFILES).read_bytes())
        many = [{**each, "identifier": each["identifier"] + 1000 * i, "title": f"{each['title']} {i}"}
                for i in range(100) for each in profiles]
        (self.folder / "many.plist").write_bytes(plistlib.dumps(many))
        before, window = self.files(), self.window()
        window.type(f"hushmode simulate --profiles ../many.plist --calendars {self.phone.calendars} "
                    "--from 2026-01-01 --to 2035-12-31 --zone Europe/Berlin >/dev/null")
        window.wait_for("simulated up to 20")
        self.assertEqual(window.interrupt(), INTERRUPTED)
        self.assertEqual(self.files(), before)
        self.assert_usable(window)

    def test_in_the_editor(self):
        editor = self.folder / "editor.sh"
        editor.write_text("#!/bin/sh\necho \"editing $1\"\nexec sleep 1000\n")
        editor.chmod(0o755)
        before, window = self.files(), self.window()
        window.type(f"VISUAL={editor} hushmode profile edit Meetings --editor")
        window.wait_for(f"editing {self.folder}/tmp/")
        code = window.interrupt()
        told = window.screen()
        after = {path: content for path, content in self.files().items() if str(self.folder / path) not in
                 told.rpartition("editing ")[2].partition("\n")[2]}
        self.assertEqual(sorted(set(after) - set(before)), [], "left behind, and not told")
        self.assertEqual({path: after.get(path) for path in before}, before)
        self.assertEqual(code, INTERRUPTED)
        self.assert_usable(window)

    def test_in_the_editor_that_has_ended_badly(self):
        before, window = self.files(), self.window()
        code, lines = window.run("VISUAL=false hushmode profile edit Meetings --editor")
        self.assertEqual((code, len(lines)), (3, 1), lines)
        self.assertEqual(self.files(), before)

    def test_before_standard_input_has_ended(self):
        before, window = self.files(), self.window()
        window.type("hushmode import -")
        reader = window.program("hushmode")
        window.type("<plist>")
        wait_until(lambda: reader.state() == "S", "the program to wait for input")
        self.assertEqual(window.interrupt(), INTERRUPTED)
        self.assertEqual(self.files(), before)
        self.assert_usable(window)


@unittest.skipIf(DAEMON, "the daemon reads the calendars")
class CtrlCInCalendars(TerminalTest):
    """2,000 files that nobody has read yet."""

    def setUp(self):
        super().setUp()
        (self.phone.calendars / "Many").mkdir()
        for i in range(2000):
            events = [f"BEGIN:VEVENT\r\nUID:{i}-{j}\r\nDTSTAMP:20260101T000000Z\r\nSUMMARY:Event {i}-{j}\r\n"
                      f"DTSTART:2026{j + 1:02}{i % 28 + 1:02}T{i % 24:02}0000Z\r\nDURATION:PT5M\r\nEND:VEVENT\r\n"
                      for j in range(12)]
            (self.phone.calendars / f"Many/{i}.ics").write_text(
                "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:test\r\n" + "".join(events) + "END:VCALENDAR\r\n")
        self.cache = self.folder / "cache/hushmode"
        self.command = ["agenda", *DAY.split(), "--json"]
        first, cached = (self.phone.run(*self.command) for _ in range(2))
        self.assertEqual((first.returncode, first.stderr), (0, ""))
        self.assertIn("Interview", first.stdout)
        self.assertEqual(cached.stdout, first.stdout)
        self.expected = first.stdout
        self.forget()

    def forget(self):
        shutil.rmtree(self.cache)

    def assert_next_is_right(self):
        result = self.phone.run(*self.command)
        self.assertEqual((result.returncode, result.stderr, result.stdout), (0, "", self.expected))
        self.assertEqual([path.name for path in self.cache.iterdir()], ["calendars.cache"])

    def test_in_a_terminal(self):
        before, window = self.files(), self.window()
        window.type("hushmode " + " ".join(self.command))
        reader = window.program("hushmode")
        wait_until(lambda: (reader.bytes_read() or 1e9) > 2_000_000, "calendars that are read")
        self.assertEqual(window.interrupt(), INTERRUPTED)
        self.assertEqual(self.files(), before)
        self.assert_usable(window)
        self.assert_next_is_right()

    def interrupt_when(self, moment):
        """Whether the program was still there at the moment."""
        process = subprocess.Popen([PROGRAM, *self.command], env=self.phone.environment, stdout=subprocess.PIPE)
        shown = Process(process.pid)
        while shown.state() not in ("Z", "gone") and not moment(shown):
            pass
        process.send_signal(signal.SIGINT)
        process.communicate()
        self.assertIn(process.returncode, (0, -signal.SIGINT))
        return process.returncode == -signal.SIGINT

    def test_at_all_moments_of_the_reading(self):
        total = sum(path.stat().st_size for path in self.phone.calendars.rglob("*.ics"))
        hits = 0
        for part in (0.1, 0.5, 0.9, 1.0):
            hits += self.interrupt_when(lambda reader: (reader.bytes_read() or 0) > part * total)
            self.assert_next_is_right()
            self.forget()
        self.assertGreaterEqual(hits, 2)

    def test_while_the_cache_is_written(self):
        hits = 0
        for _ in range(5):
            hits += self.interrupt_when(lambda _: self.cache.exists() and any(self.cache.iterdir()))
            self.assert_next_is_right()
            self.forget()
        self.assertGreaterEqual(hits, 1)


class InterruptedImport(TerminalTest):
    def test_the_profiles_are_the_old_or_the_new(self):
        old = plistlib.loads((self.phone.config / PROFILES).read_bytes())
        new = [{"title": f"New {i}", "enabled": False, "ringerVolume": 0.25} for i in range(40)]
        for name, profiles in (("old", old), ("new", new)):
            (self.folder / f"{name}.plist").write_bytes(plistlib.dumps(profiles))

        def titles():
            shown = self.phone.run("profile", "list", "--json")
            self.assertEqual((shown.returncode, shown.stderr), (0, ""))
            return sorted(json.loads(line)["title"] for line in shown.stdout.splitlines())

        def take(name):
            return subprocess.Popen([PROGRAM, "import", self.folder / f"{name}.plist", "--replace"],
                                    env=self.phone.environment, stdout=subprocess.DEVNULL)

        both = {name: sorted(each["title"] for each in profiles) for name, profiles in (("old", old), ("new", new))}
        self.assertEqual(titles(), both["old"])
        start = time.monotonic()
        self.assertEqual(take("new").wait(60), 0)
        took = time.monotonic() - start
        self.assertEqual(titles(), both["new"])
        moments, seen = random.Random(), {"old": 0, "new": 0}
        for i in range(20):
            self.assertEqual(take("old").wait(60), 0)
            process = take("new")
            try:
                process.wait(took * (i + moments.random()) / 18)
            except subprocess.TimeoutExpired:
                os.kill(process.pid, signal.SIGINT)
            self.assertIn(process.wait(60), (0, -signal.SIGINT))
            now = titles()
            self.assertIn(now, both.values())
            seen[next(name for name in both if both[name] == now)] += 1
            self.assertEqual([path for path in self.files() if path.name.endswith(".new")], [])
        self.assertTrue(seen["old"] and seen["new"], seen)


class ClosedWindow(TerminalTest):
    def assert_quiet_end(self, command):
        watch = self.folder / "bin/watch-end"
        watch.write_text(WATCH_END)
        watch.chmod(0o755)
        window = self.window()
        window.type(f"ulimit -c unlimited; watch-end ../code hushmode {command} 2>../errors", enter=False)
        window.press("C-s")  # From here on, the terminal shows nothing: whoever prints there waits.
        window.press("Enter")
        writer = window.program("hushmode")
        wait_until(lambda: writer.state() == "S", "the program to wait for the terminal")
        window.close()
        wait_until(lambda: writer.state() == "gone", "the end of the program")
        ended = wait_until(lambda: (self.folder / "code").exists() and (self.folder / "code").read_text(), "its code")
        # Its output may fail before it is told that the terminal is gone.
        told = (self.folder / "errors").read_text()
        self.assertIn((int(ended), told), [(-signal.SIGHUP, ""), (-signal.SIGHUP, UNWRITTEN), (NO_DISK, UNWRITTEN)])
        self.assertEqual([*(self.folder / "work").iterdir()], [], "no crash file")

    @unittest.skipIf(DAEMON, "without one")
    def test_during_the_agenda(self):
        self.assert_quiet_end(f"agenda {DAY} --days 30")

    @unittest.skipUnless(DAEMON, "the daemon has the log")
    def test_during_the_log(self):
        before = self.messages.read_text()
        self.assert_quiet_end("log")
        self.assertEqual(self.messages.read_text(), before)
        self.assertIsNone(self.daemon.poll())


if shutil.which("tmux") is None:
    print("tmux is not installed")
    sys.exit(1 if os.environ.get("HUSHMODE_SKIP_NOTHING") else SKIPPED)
if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[4:]])
