#!/usr/bin/python3
# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""What hushmoded must not come to cost, however fast the machine is: bench/daemon/measure.py has the numbers themselves.

usage: test_numbers.py HUSHMODED [unittest argument...]
"""
import pathlib
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "bench" / "daemon"))
import phone as bench  # noqa: E402
from memory import kilobytes  # noqa: E402

PROGRAM = None
SERVICES = ("pulse",)
EVENTS = 20_000
BYTES_AN_EVENT = 500  # In memory; some 350 were measured.


class Numbers(unittest.TestCase):
    def started(self, events, calendar_service=False):
        """A phone whose daemon has come to rest with that many events in one file."""
        phone = bench.Phone(PROGRAM, SERVICES, calendar_service)
        self.addCleanup(phone.__exit__)
        phone.add_profiles(1)
        phone.add_events(1, events)
        phone.start()
        phone.until(lambda: "calendar service" in phone.property("Services"), "the news of the calendar service")
        phone.settle(2)
        return phone

    @staticmethod
    def loaded(phone):
        return pathlib.Path(f"/proc/{phone.daemon.pid}/maps").read_text()

    def test_the_calendar_service_s_library_is_loaded_only_where_that_service_is(self):
        phone = self.started(1)
        self.assertEqual(phone.property("Services")["calendar service"],
                         (False, "Evolution Data Server: not installed"))
        self.assertNotIn("libecal", self.loaded(phone))
        self.assertNotIn("libcamel", self.loaded(phone))

        __import__("eds")
        if bench.run_with.missing_packages([sys.modules["eds"]]):
            self.skipTest("not installed: Evolution Data Server")
        phone = self.started(1, calendar_service=True)
        self.assertTrue(phone.property("Services")["calendar service"][0], phone.log())
        self.assertIn("libecal", self.loaded(phone))

    def test_an_event_takes_less_than_half_a_kilobyte(self):
        few, many = self.started(1), self.started(EVENTS)
        if "libasan" in self.loaded(few):
            self.skipTest("sanitizers take memory of their own")
        sizes = [1024 * kilobytes(f"/proc/{each.daemon.pid}/smaps_rollup", "Anonymous") for each in (few, many)]
        self.assertLess((sizes[1] - sizes[0]) / EVENTS, BYTES_AN_EVENT, sizes)


if __name__ == "__main__":
    PROGRAM = sys.argv.pop(1)
    missing = bench.missing_programs(SERVICES)
    if missing:
        print(f"SKIPPED, not installed: {missing}")
        sys.exit(bench.run_with.SKIPPED)
    unittest.main(verbosity=1)
