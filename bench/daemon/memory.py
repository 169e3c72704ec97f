# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""What the daemon keeps in memory, by how much there is in the calendars."""
import pathlib

from phone import Phone

# What there is, the megabytes wanted, profiles, files, events in each, whether there is a calendar service as well.
LAYOUTS = [
    ("no events, 1 profile", None, 1, 0, 0, False),
    ("1,000 events in 1,000 files, 10 profiles", 25, 10, 1000, 1, False),
    ("the same beside Evolution Data Server", 25, 10, 1000, 1, True),
    ("100,000 events in one file, 10 profiles", 60, 10, 1, 100_000, False),
    ("100,000 events in 10,000 files, 10 profiles", 60, 10, 10_000, 10, False),
]


def kilobytes(path, name):
    for line in pathlib.Path(path).read_text().splitlines():
        if line.startswith(name + ":"):
            return int(line.split()[1])
    raise RuntimeError(f"{path} has no {name}")


def measure(program):
    rows = []
    for what, wanted, profiles, files, events_each, calendar_service in LAYOUTS:
        with Phone(program, calendar_service=calendar_service) as phone:
            phone.add_profiles(profiles)
            phone.add_events(files, events_each)
            phone.start()
            phone.settle(5)
            process = f"/proc/{phone.daemon.pid}"
            resident, peak = (kilobytes(f"{process}/status", name) / 1024 for name in ("VmRSS", "VmHWM"))
            own, proportional, anonymous = (kilobytes(f"{process}/smaps_rollup", name) / 1024
                                            for name in ("Private_Dirty", "Pss", "Anonymous"))
            rows.append((f"resident memory, {what}", f"under {wanted} MB" if wanted else "-", f"{resident:.1f} MB",
                         f"Pss {proportional:.1f} MB, anonymous {anonymous:.1f} MB, private dirty {own:.1f} MB, "
                         f"peak {peak:.1f} MB"))
    return rows
