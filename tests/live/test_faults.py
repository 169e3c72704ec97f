#!/usr/bin/python3
# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""The real daemon among services that fail: nothing is lost, and the phone is never left silent.

usage: test_faults.py DAEMON [unittest arguments]
"""
import concurrent.futures
import os
import random
import subprocess
import sys
import time
import unittest

import live_phone
from live_phone import LivePhone

DAEMON = sys.argv.pop(1)
QUIET_MEDIA = "0%"


def ready_phone(services=("pulse",), **profile):
    phone = LivePhone(DAEMON, services)
    phone.no_default_profile()
    (phone.calendars / "Work").mkdir(parents=True)
    phone.start()
    phone.add_profile(**profile)
    return phone


def kills(seed, count):
    """Kills the daemon at random moments around two meetings, starting it again at once; answers what is wrong."""
    chance = random.Random(seed)
    with ready_phone() as phone:
        before = phone.state()
        _, end = phone.meeting(ahead=4, long=5, name="first")
        phone.meeting(ahead=10, long=4, name="second")
        over = time.monotonic() + 15
        killed = 0
        while time.monotonic() < over:
            time.sleep(min(chance.expovariate(count / 13), 3))
            if killed < count:
                phone.kill()
                killed += 1
                phone.start(wait=False)
        while killed < count:
            phone.kill()
            killed += 1
            phone.start(wait=False)
            time.sleep(chance.uniform(0.01, 0.3))
        try:
            phone.until_state(before, 15)
        except AssertionError as error:
            return f"seed {seed}: {error}"
        phone.session.wait_for_name("com.quorvel.Hushmode")
        titles = phone.call("ListProfiles").count("'title': <'Meetings'>")
        return None if titles == 1 else f"seed {seed}: the profile is there {titles} times"


class Faults(unittest.TestCase):
    def test_the_daemon_is_killed_at_fifty_random_moments(self):
        seed = random.SystemRandom().randrange(1 << 30)
        with concurrent.futures.ThreadPoolExecutor(5) as pool:
            faults = [fault for fault in pool.map(lambda n: kills(seed + n, 10), range(5)) if fault]
        self.assertEqual(faults, [])

    def test_the_sound_server_dies_in_a_meeting_and_comes_back(self):
        with ready_phone() as phone:
            before = phone.state()
            phone.meeting(ahead=3, long=12)
            phone.until(lambda: phone.media() == QUIET_MEDIA, "the meeting")
            live_phone.kill_service(phone.services["pulse"])
            phone.until(lambda: "volumes: rests" in phone.said(), "the line about volumes")
            (phone.session.folder / "run" / "pulse" / "native").unlink(missing_ok=True)
            __import__("pulse").start(phone.session)
            phone.until_state(before)
            self.assertIn("volumes: PulseAudio", phone.said().split("volumes: rests")[1])

    def test_the_sound_server_dies_over_the_end_of_a_meeting(self):
        with ready_phone() as phone:
            before = phone.state()
            phone.meeting(ahead=3, long=6)
            phone.until(lambda: phone.media() == QUIET_MEDIA, "the meeting")
            live_phone.kill_service(phone.services["pulse"])
            phone.until(lambda: not phone.is_applied(), "the end of the meeting")
            (phone.session.folder / "run" / "pulse" / "native").unlink(missing_ok=True)
            __import__("pulse").start(phone.session)
            phone.until_state(before)

    def test_a_sound_server_that_comes_late_in_a_meeting_is_as_it_came_afterwards(self):
        with LivePhone(DAEMON, ()) as phone:
            phone.no_default_profile()
            phone.meeting(ahead=-10, long=25)
            phone.start()
            phone.add_profile()
            phone.until(phone.is_applied, "the meeting")
            __import__("pulse").start(phone.session)
            phone.until(lambda: phone.media() == QUIET_MEDIA, "quiet media")
            phone.until(lambda: not phone.is_applied(), "the end of the meeting")
            phone.until(lambda: (phone.ringtone(), phone.media()) == ("100%", "100%"), "the volumes as they came")

    def test_the_session_bus_dies_in_a_meeting(self):
        with ready_phone() as phone:
            before = phone.state()
            phone.meeting(ahead=3, long=60)
            phone.until(lambda: phone.media() == QUIET_MEDIA, "the meeting")
            live_phone.kill_service(phone.session.processes[:1])
            # It ends with a failure, so that it is started again with the next bus; before that all is put back.
            self.assertEqual(phone.daemon.wait(15), 1)
            self.assertEqual(phone.media(), before["media"])
            self.assertEqual(phone.vibrate(), before["vibrate"])

    def test_networkmanager_dies(self):
        with ready_phone(("pulse", "networkmanager")) as phone:
            live_phone.kill_service(phone.services["networkmanager"][-1:])
            phone.until(lambda: "networks: rests" in phone.said(), "the line about networks")
            before = phone.state()
            phone.meeting(ahead=3, long=4)
            phone.until(lambda: phone.media() == QUIET_MEDIA, "the meeting")
            phone.until_state(before)

    def test_a_full_disk_loses_nothing(self):
        with LivePhone(DAEMON) as phone:
            folder = phone.session.folder / "state"
            subprocess.run(["mount", "-t", "tmpfs", "-o", "size=64k,mode=0700", "tmpfs", folder], check=True)
            try:
                phone.no_default_profile()
                (phone.calendars / "Work").mkdir(parents=True)
                phone.start()
                phone.add_profile()
                before = phone.state()
                with open(folder / "filler", "wb", buffering=0) as filler:
                    try:
                        while True:
                            filler.write(b"\0" * 1024)
                    except OSError:
                        pass
                phone.meeting(ahead=3, long=5)
                phone.until(lambda: phone.media() == QUIET_MEDIA, "the meeting")
                self.assertIn("noted on disk", phone.said())
                phone.until_state(before)
                phone.stop()
            finally:
                phone.session.end()
                subprocess.run(["umount", folder], check=False)

    def test_a_read_only_profiles_folder_is_said_and_nothing_is_lost(self):
        with ready_phone() as phone:
            before = phone.state()
            identifier = phone.call("ListProfiles").split("'identifier': <int64 ")[1].split(">")[0]
            subprocess.run(["mount", "--bind", phone.config, phone.config], check=True)
            subprocess.run(["mount", "-o", "remount,ro,bind", phone.config], check=True)
            try:
                said = phone.refusal("UpdateProfile", identifier, "{'title': <'Other'>}")
                self.assertIn("NotSaved", said)
                self.assertIn("'Meetings'", phone.call("ListProfiles"))
                phone.meeting(ahead=3, long=5)
                phone.until(lambda: phone.media() == QUIET_MEDIA, "the meeting")
                phone.until_state(before)
            finally:
                phone.stop()
                subprocess.run(["umount", phone.config], check=True)

    def test_the_calendar_folder_vanishes_and_comes_back(self):
        with ready_phone() as phone:
            before = phone.state()
            aside = phone.calendars.with_name("aside")
            phone.calendars.rename(aside)
            phone.until(lambda: "calendar folder: rests" in phone.said(), "the line about the folder")
            aside.rename(phone.calendars)
            phone.meeting(ahead=6, long=4)
            phone.until(lambda: phone.media() == QUIET_MEDIA, "the meeting")
            phone.until_state(before)

    def test_it_ends_cleanly_in_a_meeting(self):
        with ready_phone() as phone:
            before = phone.state()
            phone.meeting(ahead=3, long=60)
            phone.until(lambda: phone.media() == QUIET_MEDIA, "the meeting")
            self.assertEqual(phone.stop(), 0)
            self.assertEqual(phone.state(), before)


if __name__ == "__main__":
    if os.geteuid() != 0:
        print("SKIPPED: a full disk and a read-only folder need root")
        sys.exit(live_phone.run_with.SKIPPED)
    live_phone.main()
