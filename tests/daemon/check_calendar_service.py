#!/usr/bin/python3
# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""hushmoded with the events of Evolution Data Server, which a session starts once.

usage: check_calendar_service.py HUSHMODED [unittest argument...], under tests/services/run_with.py.
"""
import pathlib
import signal
import sys
import time
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
from daemon_test import LOUD, QUIET, DaemonTest  # noqa: E402
from hushmoded import Daemon, put_service_event, sink_volume, sink_volume_is, wait_until  # noqa: E402

CALENDAR = "evolution:system-calendar"


class CalendarService(DaemonTest):
    def test_started_again_in_an_event_of_the_calendar_service_it_stays_quiet(self):
        put_service_event("Interview", time.time() - 60, time.time() + 600)
        daemon = self.start_with_profile()
        wait_until(lambda: CALENDAR in [each["identifier"] for each in daemon.call("ListCalendars")], "the calendar")
        daemon.update(daemon.identifier, calendarIdentifiers=[CALENDAR])
        wait_until(sink_volume_is(QUIET), "the event's volume")
        wait_until(lambda: [(each["profile"], each["on"]) for each in daemon.call("RecentSwitches", "(u)", 1)] ==
                   [("Work", True)], "the switch")
        for _ in range(2):
            daemon.end(signal.SIGKILL)
            daemon = self.start()
            self.assertEqual(daemon.applied(), ["Work"])
            self.assertAlmostEqual(sink_volume(), QUIET, delta=0.011)
            self.assertEqual(daemon.call("RecentSwitches", "(u)", 0), [])
        self.assertEqual(daemon.end(), 0)
        self.assertAlmostEqual(sink_volume(), LOUD, delta=0.011)

    def test_it_may_end_at_any_moment_while_the_calendar_service_opens(self):
        put_service_event("Interview", time.time() - 60, time.time() + 600)
        self.start().end()
        for step in range(16):
            with self.subTest(step=step):
                for name in self.daemon.names("org.gnome.evolution.dataserver."):
                    self.daemon.kill_owner(name)
                self.daemon = Daemon(self.program, wait=False)
                wait_until(lambda: "networks: " in self.daemon.log(), "a daemon that works")
                moment = time.monotonic() + 0.08 * step
                wait_until(lambda: time.monotonic() > moment, "the moment")
                self.assertEqual(self.daemon.end(), 0, self.daemon.log())


if __name__ == "__main__":
    DaemonTest.program = sys.argv.pop(1)
    unittest.main(verbosity=1)
