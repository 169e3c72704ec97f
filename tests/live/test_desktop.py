#!/usr/bin/python3
# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""The real daemon on a desktop: a question that is answered by a click, and an icon in a panel.

usage: test_desktop.py DAEMON [unittest arguments]
"""
import sys
import unittest

import live_phone
import live_user
from live_phone import LivePhone
from live_screen import Screen

DAEMON = sys.argv.pop(1)
# Where the notification server puts the middles of its buttons, in pixels from the lower right corner of its window.
YES_PLEASE, NO_THANKS = (184, 39), (96, 39)


class VolumeQuestion(unittest.TestCase):
    WINDOW = "Notification"

    def after_the_answer(self, button):
        """Sets the ringtone volume in a meeting and answers; gives the state before the meeting, and after it."""
        with LivePhone(DAEMON, ("pulse", "xvfb", "notificationdaemon")) as phone:
            screen = Screen(phone)
            before = live_user.started(phone)
            phone.meeting(ahead=3, long=15)
            phone.until(lambda: live_user.is_quiet(phone), "the meeting")
            live_user.set_ringtone(phone, "40%")
            left, top, width, height = screen.place_at_rest(self.WINDOW)
            screen.keep("question")
            right, up = button
            screen.click(left + width - right, top + height - up)
            phone.until(lambda: not screen.place_of(self.WINDOW), "the answered question to go")
            self.assertTrue(phone.is_applied(), "the meeting was over before the answer")
            self.assertEqual(phone.ringtone(), "40%")
            phone.until(lambda: "off:" in phone.said(), "the end of the meeting and of its delayed steps")
            return before, phone.state()

    def test_yes_please_keeps_the_volume_after_the_meeting(self):
        before, after = self.after_the_answer(YES_PLEASE)
        self.assertNotEqual(before["ringtone"], "40%")
        self.assertEqual(after, {**before, "ringtone": "40%"})

    def test_no_thanks_gives_the_volume_of_before_back(self):
        before, after = self.after_the_answer(NO_THANKS)
        self.assertEqual(after, before)


class StatusIcon(unittest.TestCase):
    PLACE = "40x32+0+0"
    PIXELS_AT_LEAST = 100  # An icon of 24 x 24.

    def test_is_in_the_panel_during_a_meeting(self):
        with LivePhone(DAEMON, ("pulse", "xvfb", "xfce4panel")) as phone:
            screen = Screen(phone)
            before = live_user.started(phone)
            phone.until(lambda: any(screen.pixels(self.PLACE)), "the panel on the black screen")
            empty = screen.pixels(self.PLACE)
            phone.meeting(ahead=3, long=6)
            phone.until(lambda: self.differences(screen.pixels(self.PLACE), empty) >= self.PIXELS_AT_LEAST, "the icon")
            screen.keep("icon-in-a-meeting")
            self.assertTrue(phone.is_applied())
            self.assertEqual(self.status(phone), "Active")
            phone.until(lambda: screen.pixels(self.PLACE) == empty, "the panel without the icon")
            screen.keep("icon-after-it")
            self.assertEqual(self.status(phone), "Passive")
            phone.until_state(before)

    @staticmethod
    def differences(pixels, others):
        if len(pixels) != len(others):
            raise AssertionError(f"pictures of {len(pixels)} and {len(others)} bytes")
        return sum(pixels[place:place + 3] != others[place:place + 3] for place in range(0, len(pixels), 3))

    @staticmethod
    def status(phone):
        """As the item itself tells it to whoever asks."""
        items = phone.session.run(["gdbus", "call", "--session", "-d", "org.kde.StatusNotifierWatcher", "-o",
                                   "/StatusNotifierWatcher", "-m", "org.freedesktop.DBus.Properties.Get",
                                   "org.kde.StatusNotifierWatcher", "RegisteredStatusNotifierItems"])
        name, path = items.split("'")[1].split("/", 1)
        answer = phone.session.run(["gdbus", "call", "--session", "-d", name, "-o", f"/{path}", "-m",
                                    "org.freedesktop.DBus.Properties.Get", "org.kde.StatusNotifierItem", "Status"])
        return answer.split("'")[1]


if __name__ == "__main__":
    live_phone.main()
