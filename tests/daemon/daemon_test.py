# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""What the tests of a running hushmoded begin with, under tests/services/run_with.py."""
import shutil
import signal
import time
import unittest

from hushmoded import (CALENDARS, CONFIG, STATE, Daemon, Refused, put_event, set_sink_volume, sink_volume_is,
                       wait_until)

LOUD, QUIET = 0.6, 0.1


class DaemonTest(unittest.TestCase):
    """Each test begins on a phone without profiles and calendars, at a loud volume."""

    program = None  # hushmoded

    def setUp(self):
        for folder in (CONFIG, STATE, CALENDARS):
            shutil.rmtree(folder, ignore_errors=True)
        set_sink_volume(LOUD)
        self.daemon = None

    def tearDown(self):
        if self.daemon and self.daemon.process.poll() is None:
            self.daemon.end(signal.SIGKILL)

    def start(self, *arguments, **options):
        self.daemon = Daemon(self.program, arguments, **options)
        return self.daemon

    def start_with_profile(self, title="Work", **more):
        """A daemon with one profile, for the events of the calendar "work"."""
        put_event("Past", time.time() - 3600, time.time() - 3000, uid="past")
        daemon = self.start()
        daemon.delete_all()
        calendars = [each for each in daemon.call("ListCalendars") if each["identifier"].startswith("folder:")]
        profile = {"title": title, "enabled": True, "allDay": True, "playBackVolume": QUIET, "ringerVolume": QUIET,
                   "calendarIdentifiers": [each["identifier"] for each in calendars], **more}
        daemon.identifier = daemon.add(**profile)
        return daemon

    def go_quiet(self, daemon, seconds=600):
        """Begins an event, and waits until the phone is quiet for it."""
        put_event("Interview", time.time() - 60, time.time() + seconds)
        wait_until(sink_volume_is(QUIET), "the event's volume")
        wait_until(daemon.applied, "the applied profile")

    def refused(self, name, call, *arguments, **options):
        with self.assertRaises(Refused) as context:
            call(*arguments, **options)
        self.assertEqual(context.exception.name, name, context.exception)
        return str(context.exception)
