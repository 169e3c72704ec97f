#!/usr/bin/python3
# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""The real daemon with the services that a phone has: calendars, sleep, tones, the setting of Do Not Disturb.

usage: test_services.py DAEMON [unittest arguments]
"""
import array
import operator
import os
import pathlib
import signal
import subprocess
import sys
import time
import unittest

import live_phone
import live_user
from live_phone import LivePhone

DAEMON = sys.argv.pop(1)
THEME = pathlib.Path("/usr/share/sounds/freedesktop/stereo")


class EvolutionDataServer(unittest.TestCase):
    def setUp(self):
        self.phone = self.enterContext(LivePhone(DAEMON, ("pulse", "eds", "calendar_program")))
        self.calendar = live_user.Calendar(self.phone)
        self.before = live_user.started(self.phone, calendarIdentifiers=f"<['{self.calendar.identifier}']>")
        self.phone.until(lambda: self.calendar.identifier in self.phone.call("ListCalendars"), "the calendar")

    def test_a_meeting_silences_the_phone_from_its_start_to_its_end(self):
        start, end = self.calendar.add(ahead=5, long=4, uid="meeting")
        self.phone.until(lambda: live_user.is_quiet(self.phone), "the meeting")
        self.assertAlmostEqual(time.time(), start.timestamp(), delta=2)
        self.assertFalse(time.time() < start.timestamp(), "it was early")
        self.assertEqual(self.phone.ringtone(), "5%")
        self.phone.until(lambda: self.phone.banners() == "false", "do not disturb")
        self.phone.until_state(self.before)
        self.assertFalse(time.time() < end.timestamp(), "it was early")

    def test_a_meeting_that_is_cancelled_while_it_runs_gives_the_phone_back(self):
        self.calendar.add(ahead=-60, long=3600, uid="meeting")
        self.phone.until(lambda: live_user.is_quiet(self.phone), "the meeting")
        self.calendar.remove("meeting")
        self.phone.until_state(self.before)

    def test_killed_in_a_meeting_the_phone_stays_quiet_to_its_end_and_the_next_one_counts(self):
        _, end = self.calendar.add(ahead=4, long=8, uid="meeting")
        self.phone.until(lambda: live_user.is_quiet(self.phone), "the meeting")
        os.kill(self.calendar.process(), signal.SIGKILL)
        self.phone.until(lambda: time.time() > end.timestamp() or not live_user.is_quiet(self.phone), "the end")
        self.assertGreater(time.time(), end.timestamp())
        self.phone.until_state(self.before)
        self.calendar.add(ahead=4, long=3, uid="next")
        self.phone.until(lambda: live_user.is_quiet(self.phone), "the next meeting")
        self.phone.until_state(self.before)


class Sleep(unittest.TestCase):
    def setUp(self):
        self.phone = self.enterContext(LivePhone(DAEMON, ("pulse", "logind")))
        self.power = live_user.Power(self.phone)

    def test_a_meeting_that_begins_while_the_phone_sleeps_counts_when_it_wakes(self):
        before = live_user.started(self.phone)
        self.phone.until(self.power.is_delayed, "the lock that delays sleep")
        start, _ = self.phone.meeting(ahead=4, long=8)
        self.phone.until(lambda: "'profile'" in self.phone.property("Armed"), "the plan")
        self.power.prepare_for_sleep(True)
        self.phone.until(lambda: not self.power.is_delayed(), "the end of the delay")
        self.phone.daemon.send_signal(signal.SIGSTOP)
        self.phone.until(lambda: time.time() > start.timestamp() + 1, "the start of the meeting")
        self.assertFalse(live_user.is_quiet(self.phone), "nobody sleeps")
        self.phone.daemon.send_signal(signal.SIGCONT)
        self.power.prepare_for_sleep(False)
        self.phone.until(lambda: live_user.is_quiet(self.phone), "the meeting", 5)
        self.phone.until(self.power.is_delayed, "the lock that delays sleep, again")
        self.phone.until_state(before)

    def test_sleep_waits_for_a_switch_that_is_under_way(self):
        before = live_user.started(self.phone, playAlert="<true>")
        self.phone.until(self.power.is_delayed, "the lock that delays sleep")
        self.phone.meeting(ahead=3, long=60)
        self.phone.until(self.phone.is_applied, "the meeting")
        self.power.prepare_for_sleep(True)
        self.assertEqual(self.phone.media(), before["media"], "the tone comes first")
        self.phone.until(lambda: not self.power.is_delayed(), "the end of the delay", 10)
        self.assertTrue(live_user.is_quiet(self.phone), "it slept in the middle of the switch")


class Recording:
    """Hears what a sink plays, at 8000 samples a second."""

    RATE = 8000
    AUDIBLE = 300  # Of 32767.

    def __init__(self, phone, sink):
        self.file = phone.session.folder / f"{sink}.raw"
        with open(self.file, "wb") as file:
            self.process = subprocess.Popen(["parec", "-d", f"{sink}.monitor", "--latency-msec=20",
                                             f"--rate={self.RATE}", "--channels=1", "--format=s16le", "--raw"],
                                            stdout=file, env=phone.session.environment)
        phone.session.processes.append(self.process)
        self.process.log_name = self.file
        phone.until(lambda: self.file.stat().st_size > 0, "the recording")

    def end(self):
        """Answers what was heard, from a little before the first sound on."""
        self.process.terminate()
        self.process.wait()
        data = self.file.read_bytes()
        samples = array.array("h", data[:len(data) // 2 * 2])
        loudest = max(map(abs, samples), default=0)
        if loudest < self.AUDIBLE:
            return array.array("h")
        first = next(place for place, each in enumerate(samples) if abs(each) > loudest / 10)
        return samples[max(0, first - self.RATE // 20):]


def likeness(sound, part):
    """How much the beginning of `sound` is `part`, at the best place: 1 is the same, 0 nothing."""
    best = 0
    for place in range(min(Recording.RATE // 5, max(0, len(sound) - len(part)))):
        window = sound[place:place + len(part)]
        energy = sum(map(operator.mul, window, window)) * sum(map(operator.mul, part, part))
        if energy:
            best = max(best, sum(map(operator.mul, window, part)) / energy ** 0.5)
    return best


class Tones(unittest.TestCase):
    def test_the_tone_of_the_sound_theme_is_heard_at_both_switches(self):
        with LivePhone(DAEMON, ("canberra", "pulse")) as phone:
            live_user.started(phone, playAlert="<true>", alertToneIdentifier="<'texttone:Complete'>")
            self.assertIn("tones: sound theme", phone.said())
            wanted = self.tone_of_the_theme(phone)
            recording = Recording(phone, "spk")
            phone.meeting(ahead=3, long=8)
            phone.until(lambda: live_user.is_quiet(phone), "the meeting")
            self.assert_heard(recording.end(), wanted)
            # Which is quiet now: the tone of the end sounds at the ringtone volume alone.
            phone.session.run(["pactl", "set-sink-volume", "spk", "50%"])
            recording = Recording(phone, "spk")
            phone.until(lambda: not phone.is_applied(), "the end of the meeting")
            phone.until(lambda: "off:" in phone.said(), "the end of the delayed steps")
            self.assert_heard(recording.end(), wanted)

    def assert_heard(self, heard, wanted):
        self.assertGreater(likeness(heard, wanted), 0.9, f"{len(heard)} samples heard")

    @staticmethod
    def tone_of_the_theme(phone):
        """Its first fifth of a second, from another sink."""
        phone.session.run(["pactl", "load-module", "module-null-sink", "sink_name=other"])
        recording = Recording(phone, "other")
        phone.session.run(["paplay", "--device=other", str(THEME / "complete.oga")])
        sound = recording.end()
        return sound[:Recording.RATE // 5]


class Banners(unittest.TestCase):
    SETTING = ["org.gnome.desktop.notifications", "show-banners"]

    def test_are_off_in_a_meeting_and_on_afterwards(self):
        with LivePhone(DAEMON) as phone:
            before = live_user.started(phone)
            self.assertEqual(before["banners"], "true")
            phone.meeting(ahead=3, long=4)
            phone.until(lambda: phone.banners() == "false", "the meeting")
            phone.until_state(before)

    def test_stay_off_where_the_user_had_switched_them_off(self):
        with LivePhone(DAEMON) as phone:
            phone.session.run(["gsettings", "set", *self.SETTING, "false"])
            before = live_user.started(phone)
            self.assertEqual(before["banners"], "false")
            phone.meeting(ahead=3, long=3)
            phone.until(lambda: live_user.is_quiet(phone), "the meeting")
            phone.until(lambda: "off:" in phone.said(), "the end of the meeting, and of its delayed steps")
            self.assertEqual(phone.state(), before)


if __name__ == "__main__":
    live_phone.main()
