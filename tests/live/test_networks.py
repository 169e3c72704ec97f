#!/usr/bin/python3
# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""The real daemon with a NetworkManager: a profile of a network is on while the phone is in it.

usage: test_networks.py DAEMON [unittest arguments]
"""
import sys
import time
import unittest

import live_phone
import live_user
from live_phone import LivePhone, kill_service

DAEMON = sys.argv.pop(1)
CALENDARS_CHANGED = "Handling event store changes"


class Networks(unittest.TestCase):
    SECONDS_UNTIL_LEFT = 10

    def setUp(self):
        self.phone = self.enterContext(LivePhone(DAEMON, ("pulse", "networkmanager")))
        self.networks = live_user.Networks(self.phone)
        self.networks.know("Office")
        self.networks.know("Home")
        self.before = live_user.started(self.phone, wifiNetworks="<['Office']>")

    def test_a_network_silences_the_phone_until_ten_seconds_after_it_was_left(self):
        self.networks.join("Office")
        self.phone.until(lambda: live_user.is_quiet(self.phone), "the network's profile")
        self.networks.leave("Office")
        left = time.monotonic()
        self.phone.until(lambda: not live_user.is_quiet(self.phone), "the end of the network's profile")
        self.assertAlmostEqual(time.monotonic() - left, self.SECONDS_UNTIL_LEFT, delta=2)
        self.phone.until_state(self.before)

    def test_a_network_that_is_lost_for_a_moment_was_not_left(self):
        self.networks.join("Office")
        self.phone.until(lambda: live_user.is_quiet(self.phone), "the network's profile")
        self.networks.leave("Office")
        self.phone.until(lambda: "'joined': <true>" not in self.phone.call("ListNetworks"), "the lost network")
        # Something else makes Hush Mode plan anew meanwhile.
        looks = self.phone.said().count(CALENDARS_CHANGED)
        self.phone.meeting(ahead=3600, long=60)
        self.phone.until(lambda: self.phone.said().count(CALENDARS_CHANGED) > looks, "the new meeting to be seen")
        self.networks.join("Office")
        joined = time.monotonic()
        late = joined + self.SECONDS_UNTIL_LEFT + 2
        self.phone.until(lambda: time.monotonic() > late or not live_user.is_quiet(self.phone), "a while")
        self.assertTrue(live_user.is_quiet(self.phone), self.phone.said())
        self.assertNotIn("'on': <false>", self.phone.call("RecentSwitches", "0"))

    def test_from_one_network_to_the_next_the_profiles_change_at_once(self):
        self.phone.add_profile(title="<'At home'>", wifiNetworks="<['Home']>", calendarIdentifiers="<@as []>",
                               ringerVolume="<0.5>", playBackVolume="<0.25>", dnDEnabled="<false>")
        self.networks.join("Office")
        self.phone.until(lambda: live_user.is_quiet(self.phone), "the profile of the one network")
        self.networks.join("Home")
        self.networks.leave("Office")
        self.phone.until(lambda: self.phone.media() == "25%", "the profile of the other", self.SECONDS_UNTIL_LEFT - 2)
        self.assertEqual((self.phone.ringtone(), self.phone.banners()), ("50%", "true"))
        self.assertNotIn("'Meetings'", self.phone.property("Applied"))
        self.networks.leave("Home")
        self.phone.until_state(self.before)

    def test_networkmanager_dies_in_a_network_and_returns_without_it(self):
        self.networks.join("Office")
        self.phone.until(lambda: live_user.is_quiet(self.phone), "the network's profile")
        kill_service(self.phone.services["networkmanager"][-1:])
        self.phone.until(lambda: "networks: rests" in self.phone.said(), "the line about networks")
        self.assertTrue(live_user.is_quiet(self.phone), "the death of a service is no leaving")
        __import__("networkmanager").start(self.phone.session)
        self.phone.until_state(self.before)
        self.assertIn("networks: NetworkManager", self.phone.said().split("networks: rests")[-1])
        again = live_user.Networks(self.phone)
        again.know("Office")
        again.join("Office")
        self.phone.until(lambda: live_user.is_quiet(self.phone), "the network's profile, again")


if __name__ == "__main__":
    live_phone.main()
