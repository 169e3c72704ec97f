# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""From a calendar file saved to the new plan, as the daemon tells it on the bus."""
import time

from phone import INTERFACE, Phone, event_at, milliseconds

ROUNDS = 15
PAUSE = 2.5  # The library gathers changes for this long.


def measure(program):
    with Phone(program) as phone:
        phone.add_profiles(10)
        phone.add_events(1000, 1)
        phone.start()
        phone.settle(5)
        told, start = [], None

        def changed(*signal):
            armed = signal[5].unpack()[1].get("Armed", [])
            if any(each["date"] == start for each in armed):
                told.append(time.monotonic())

        phone.bus.signal_subscribe(None, "org.freedesktop.DBus.Properties", "PropertiesChanged",
                                   "/com/quorvel/Hushmode", INTERFACE, 0, changed)
        taken = []
        for number in range(ROUNDS):
            told.clear()
            # Each is sooner than all that are there.
            start = int(time.time()) + 4000 - 60 * number
            began = time.monotonic()
            phone.add_file("next", event_at("next", start, start + 30))
            phone.until(lambda: told, "the new plan")
            taken.append(told[0] - began - PAUSE)
            phone.until(lambda: time.monotonic() > began + PAUSE + 1.5, "its rest")
    return [("from a calendar file saved to re-planned, 1,000 events, 10 profiles", "2.5 s and under 50 ms",
             f"2.5 s and {milliseconds(taken)}", "2.5 s is how long changes are gathered")]
