# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""From the start of the process to the name on the bus, which comes after the first plan."""
import pathlib
import statistics
import subprocess
import time

from phone import Phone, milliseconds

ROUNDS = 15


def scheduled(process):
    """Seconds on a processor, and seconds of waiting for one, of all threads."""
    on, waiting = 0, 0
    for task in pathlib.Path(f"/proc/{process}/task").iterdir():
        ran, queued, _ = (task / "schedstat").read_text().split()
        on += int(ran)
        if task.name == str(process):
            waiting = int(queued)
    return on / 1e9, waiting / 1e9


def starts(phone):
    taken, computing, queuing = [], [], []
    for _ in range(ROUNDS):
        taken.append(phone.start())
        on, waiting = scheduled(phone.daemon.pid)
        computing.append(on)
        queuing.append(waiting)
        phone.stop()
    return taken, computing, queuing


def measure(program):
    return measure_with(program, False) + measure_with(program, True)


def measure_with(program, calendar_service):
    loading = []
    for _ in range(ROUNDS):
        began = time.monotonic()
        subprocess.run([program, "--version"], check=True, stdout=subprocess.DEVNULL)
        loading.append(time.monotonic() - began)
    with Phone(program, calendar_service=calendar_service) as phone:
        phone.add_profiles(10)
        phone.start()
        phone.stop()
        empty, _, _ = starts(phone)
        phone.add_events(1000, 1)
        taken, computing, queuing = starts(phone)
    ms = {name: 1000 * statistics.median(values) for name, values in
          (("loading", loading), ("empty", empty), ("computing", computing), ("queuing", queuing))}
    rest = 1000 * statistics.median(max(0, a - b - c) for a, b, c in zip(taken, computing, queuing))
    beside = ", beside Evolution Data Server" if calendar_service else ""
    return [(f"from exec to planned, 1,000 events in 1,000 files, 10 profiles{beside}", "under 150 ms", milliseconds(taken),
             f"{ms['computing']:.0f} ms on a processor, {ms['queuing']:.0f} ms queuing for one, {rest:.0f} ms waiting for "
             f"services and the disk; without events {ms['empty']:.0f} ms; `--version` {ms['loading']:.0f} ms")]
