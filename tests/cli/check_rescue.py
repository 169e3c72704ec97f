#!/usr/bin/python3
# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""hushmode rescue on real services: a daemon dies in a meeting, and the phone comes back without one.

usage: check_rescue.py HUSHMODE HUSHMODED [unittest argument...], under tests/services/run_with.py.
"""
import json
import os
import pathlib
import plistlib
import resource
import signal
import subprocess
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "daemon"))
from daemon_test import LOUD, QUIET, DaemonTest  # noqa: E402
from hushmoded import (PROFILES, STATE, read_profiles_file, remove_event, set_sink_volume, sink_volume, sink_volume_is,
                       wait_until)  # noqa: E402

PROGRAM, DaemonTest.program = sys.argv.pop(1), sys.argv.pop(1)
LEDGER = STATE / "com.quorvel.hushmode.ledger.plist"
FEEDBACK = ["org.sigxcpu.feedbackd", "profile"]
BANNERS = ["org.gnome.desktop.notifications", "show-banners"]


def setting(key):
    return subprocess.run(["gsettings", "get", *key], check=True, capture_output=True, text=True).stdout.strip()


def has_setting(key):
    return subprocess.run(["gsettings", "get", *key], capture_output=True).returncode == 0


class Rescue(DaemonTest):
    def tearDown(self):
        super().tearDown()
        self.rescue()  # The sound server keeps the volumes for the next test.

    def in_a_meeting(self):
        """A daemon in a meeting, with Do Not Disturb on where there is one."""
        self.go_quiet(self.start_with_profile(dnDEnabled=True, vibrate=False))

    def die(self):
        self.daemon.end(signal.SIGKILL)
        self.assertTrue(self.ledger())
        self.assertTrue(sink_volume_is(QUIET)(), "a dead daemon puts nothing back")

    def ledger(self):
        with open(LEDGER, "rb") as file:
            return plistlib.load(file)

    def rescue(self, *arguments, **options):
        return subprocess.run([PROGRAM, "rescue", *arguments], capture_output=True, text=True, timeout=60, **options)

    def done(self, *arguments):
        result = self.rescue(*arguments)
        self.assertEqual((result.returncode, result.stderr), (0, ""), result)
        return result.stdout

    def rescue_refused(self, code, *says, **options):
        result = self.rescue(**options)
        self.assertEqual(result.returncode, code, result)
        # Libraries have their say about a full disk as well.
        own = [line for line in result.stderr.splitlines() if line.startswith("hushmode: ")]
        self.assertEqual(len(own), 1, result)
        for text in says:
            self.assertIn(text, own[0])
        return result.stdout

    def test_what_a_dead_daemon_left_quiet_is_loud_again(self):
        banners = has_setting(BANNERS) and setting(BANNERS)
        self.in_a_meeting()
        self.die()
        expected = self.quiet_to_loud()
        self.assertEqual(self.done(), expected + "Everything is as it was.\n")
        self.assertTrue(sink_volume_is(LOUD)())
        if banners:
            self.assertEqual(setting(BANNERS), banners)
        self.assertEqual(self.ledger(), [])
        self.assertEqual([each["applied"] for each in read_profiles_file()], [False])
        self.assertEqual(self.done(), "There is nothing to put back.\n")
        self.assertEqual(self.done("--json"), "")
        # The next daemon goes on as if nothing had been.
        self.start()
        wait_until(sink_volume_is(QUIET), "the event's volume")
        remove_event()
        wait_until(sink_volume_is(LOUD), "the volume as it was")
        self.assertEqual(self.daemon.end(), 0)
        self.assertEqual(self.ledger(), [])

    def quiet_to_loud(self):
        lines = [f"ringtone: {QUIET:.0%} to 100%\n", f"media: {QUIET:.0%} to {LOUD:.0%}\n"]
        values = {each["what"]: each for each in self.json()}
        for what, name in (("vibrateOnRing", "vibrate on ring"), ("vibrateOnSilent", "vibrate on silent")):
            if what in values:
                lines.append(f"{name}: off to on\n")
        if "doNotDisturb" in values:
            lines.append("do not disturb: on to off\n")
        return "".join(lines)

    def json(self):
        before = (LEDGER.read_bytes(), PROFILES.read_bytes(), sink_volume())
        values = [json.loads(line) for line in self.done("--dry-run", "--json").splitlines()]
        self.assertEqual((LEDGER.read_bytes(), PROFILES.read_bytes(), sink_volume()), before)
        return values

    def test_a_dry_run_changes_nothing(self):
        self.in_a_meeting()
        self.die()
        media = next(each for each in self.json() if each["what"] == "media")
        self.assertEqual(media, {"what": "media", "before": QUIET, "wanted": LOUD, "done": False})
        self.assertEqual(self.done("--dry-run"), self.quiet_to_loud() + "Nothing was changed.\n")

    def test_what_the_user_has_set_since_is_theirs(self):
        self.in_a_meeting()
        self.die()
        set_sink_volume(0.3)
        self.assertNotIn("media", self.done())
        self.assertTrue(sink_volume_is(0.3)())
        self.assertEqual(self.ledger(), [])

    def test_a_daemon_that_runs_does_it_itself(self):
        self.in_a_meeting()
        self.assertEqual(self.rescue_refused(1, '"Work"', "hushmode off"), "")
        self.assertTrue(sink_volume_is(QUIET)())
        remove_event()
        wait_until(sink_volume_is(LOUD), "the volume as it was")
        wait_until(lambda: not self.ledger(), "the closed ledger")
        self.assertEqual(self.done(), "There is nothing to put back.\n")

    def test_a_ledger_that_cannot_be_read_is_named(self):
        self.in_a_meeting()
        self.die()
        LEDGER.write_text("nonsense")
        self.rescue_refused(3, str(LEDGER), "Remove that file")
        self.assertEqual(LEDGER.read_text(), "nonsense")
        self.assertTrue(sink_volume_is(QUIET)())
        LEDGER.unlink()
        self.done()
        self.assertTrue(sink_volume_is(LOUD)())

    def test_without_a_sound_server_the_volumes_stay_noted(self):
        self.in_a_meeting()
        self.die()
        away = {**os.environ, "PULSE_SERVER": "unix:/nonexistent"}
        self.rescue_refused(3, "ringtone, media", "try again", env=away)
        self.assertTrue(self.ledger())
        self.assertTrue(sink_volume_is(QUIET)())
        self.done()
        self.assertTrue(sink_volume_is(LOUD)())
        self.assertEqual(self.ledger(), [])

    def test_a_disk_that_takes_nothing_is_said(self):
        self.in_a_meeting()
        self.die()
        before = LEDGER.read_bytes()
        full = lambda: (resource.setrlimit(resource.RLIMIT_FSIZE, (0, 0)), signal.signal(signal.SIGXFSZ, signal.SIG_IGN))
        # Standard output is a pipe, which the limit leaves alone.
        self.rescue_refused(3, str(STATE), "make room", preexec_fn=full)
        self.assertTrue(sink_volume_is(LOUD)(), "heard all the same")
        self.assertEqual(LEDGER.read_bytes(), before)
        self.done()
        self.assertEqual(self.ledger(), [])

    def test_on_a_new_phone_there_is_nothing(self):
        self.assertEqual(self.done(), "There is nothing to put back.\n")
        self.assertFalse(STATE.exists())


if __name__ == "__main__":
    unittest.main()
