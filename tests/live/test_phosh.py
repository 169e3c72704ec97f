#!/usr/bin/python3
# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""The real daemon on a real phone shell, Phosh: in a meeting no banner of a notification is shown, after it they are.

usage: test_phosh.py DAEMON [unittest arguments]    set HUSHMODE_PICTURES to a folder to keep the pictures
"""
import os
import re
import subprocess
import sys
import time
import unittest

import live_phone
import live_user
from live_phone import LivePhone

DAEMON = sys.argv.pop(1)
BANNER = "0,36 360x96"  # Its place, below the bar with the clock.


class Shell:
    def __init__(self, phone):
        self.phone = phone

    def picture(self, *options):
        return subprocess.run(["grim", *options, "-"], env=self.phone.session.environment, check=True,
                              capture_output=True).stdout

    def banner_place(self):
        return self.picture("-t", "ppm", "-g", BANNER)

    def at_rest(self):
        """What the place of the banner shows once it stays the same, and is not just black."""
        seen = []

        def stays():
            seen.append(self.banner_place())
            return len(set(seen[-10:])) == 1 and len(seen) >= 10 and len(set(seen[-1][20:])) > 1

        self.phone.until(stays, "the shell at rest")
        return seen[-1]

    def keep(self, name):
        if "HUSHMODE_PICTURES" in os.environ:
            with open(os.path.join(os.environ["HUSHMODE_PICTURES"], f"{name}.png"), "wb") as file:
                file.write(self.picture())

    def _call(self, method, *arguments):
        return self.phone.session.run(["gdbus", "call", "--session", "-d", "org.freedesktop.Notifications", "-o",
                                       "/org/freedesktop/Notifications", "-m",
                                       f"org.freedesktop.Notifications.{method}", *arguments])

    def notify(self, title, text):
        """As a program does; answers the shell's number."""
        answer = self._call("Notify", "Post", "0", "mail-unread", title, text, "[]", "{}", "int32 -1")
        return re.search(r"uint32 (\d+)", answer).group(1)

    def close(self, number):
        self._call("CloseNotification", number)


class Banners(unittest.TestCase):
    def test_are_not_shown_in_a_meeting_and_are_shown_after_it(self):
        with LivePhone(DAEMON, ("pulse", "phosh")) as phone:
            shell = Shell(phone)
            before = live_user.started(phone)
            empty = shell.at_rest()

            asked = time.monotonic()
            number = shell.notify("Lunch?", "At one, as always.")
            phone.until(lambda: shell.banner_place() != empty, "the first banner")
            usual = time.monotonic() - asked
            shell.close(number)
            phone.until(lambda: shell.banner_place() == empty, "the first banner to go")

            phone.meeting(ahead=3, long=15)
            phone.until(lambda: phone.banners() == "false", "the meeting")
            number = shell.notify("Are you there?", "The printer is on fire again.")
            late = time.monotonic() + max(3, 10 * usual)
            phone.until(lambda: time.monotonic() > late or shell.banner_place() != empty, "a banner that is late")
            self.assertEqual(shell.banner_place(), empty, "a banner was shown in the meeting")
            self.assertTrue(phone.is_applied(), "the meeting was over")
            shell.keep("phosh-in-a-meeting")

            phone.until_state(before)
            self.assertEqual(shell.banner_place(), empty)
            shell.notify("Never mind", "It is out.")
            phone.until(lambda: shell.banner_place() != empty, "the banner after the meeting")
            shell.at_rest()
            shell.keep("phosh-after-it")


if __name__ == "__main__":
    live_phone.main()
