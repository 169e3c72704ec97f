# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""From an event's second to the volume: the daemon's sink, and beside it one that a bare timer sets."""
import os
import pathlib
import statistics
import subprocess
import tempfile
import time

from phone import Phone, event_at, milliseconds

PERIOD = 2  # An event of one second every two seconds.
MEMORY = "/dev/shm"


def measure(program, programs, count):
    rows = measure_in(tempfile.gettempdir(), "files on the disk", program, programs, count)
    return rows + measure_in(MEMORY, "files in memory", program, programs, count)


def replace_durably(folder):
    """What keeps a file through a loss of power; answers the seconds that it took."""
    began = time.monotonic()
    with open(folder / "new", "wb") as file:
        file.write(bytes(1000))
        file.flush()
        os.fsync(file.fileno())
    os.rename(folder / "new", folder / "old")
    descriptor = os.open(folder, os.O_RDONLY | os.O_DIRECTORY)
    os.fsync(descriptor)
    os.close(descriptor)
    return time.monotonic() - began


def replacements_until(folder, process):
    """One each second, half a second away from the switches."""
    taken = []
    while process.poll() is None:
        time.sleep(0.5 + (-time.time()) % 1 if time.time() % 1 > 0.5 else 0.5 - time.time() % 1)
        taken.append(replace_durably(folder))
    return taken


def measure_in(folder, where, program, programs, count):
    tempfile.tempdir = folder
    with Phone(program) as phone:
        environment = phone.session.environment
        phone.session.run(["pactl", "load-module", "module-null-sink", "sink_name=bare"])
        phone.session.run(["pactl", "set-default-sink", "spk"])
        phone.session.run(["pactl", "set-sink-volume", "spk", "60%"])
        phone.add_profiles(1)
        first = int(time.time()) + 8
        phone.add_file("all", *(event_at(f"event {each}", first + PERIOD * each, first + PERIOD * each + 1)
                                for each in range(count)))
        phone.start()
        watch = phone.session.spawn([programs / "bench_volume_watch"])
        watched = pathlib.Path(watch.log_name)
        bare = subprocess.Popen([programs / "bench_volume_timer", "bare", str(first), str(count), str(PERIOD)],
                                env=environment)
        files = replacements_until(phone.session.folder, bare)
        if bare.returncode != 0:
            raise RuntimeError("the bare timer failed")
        time.sleep(1)
        lines = [line.split() for line in watched.read_text().splitlines()]
    tempfile.tempdir = None
    rows = []
    for label, turn in (("start", 0), ("end", 1)):
        late = {}
        for sink in ("spk", "bare"):
            found = {}
            for when, name, _ in lines:
                second, since = divmod(float(when) - first - turn, PERIOD)
                if name == sink and since < PERIOD / 2 and 0 <= second < count:
                    found.setdefault(second, since)
            late[sink] = list(found.values())
        above = 1000 * (statistics.median(late["spk"]) - statistics.median(late["bare"]))
        rows.append((f"from an event's {label} to the volume set, {len(late['spk'])} of {count} events, {where}",
                     "median at most 3 ms above a bare timer's", f"{above:.2f} ms above; {milliseconds(late['spk'])}",
                     f"bare timer: {milliseconds(late['bare'])}, {len(late['bare'])} of {count}; one file replaced and "
                     f"synced: {milliseconds(files)}"))
    return rows
