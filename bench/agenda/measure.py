#!/usr/bin/python3
# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""How long `hushmode agenda` takes for today, as whole processes: beside bare libical on the same files, and through its
cache.

usage: measure.py HUSHMODE BENCH_PARSE_CALENDARS [--daemon HUSHMODED]   the last one: under tests/services/run_with.py,
       measures `hushmode status` as well
"""
import datetime
import os
import pathlib
import statistics
import subprocess
import sys
import tempfile
import time

ZONE = """BEGIN:VTIMEZONE\r
TZID:Europe/Berlin\r
BEGIN:DAYLIGHT\r
TZOFFSETFROM:+0100\r
TZOFFSETTO:+0200\r
TZNAME:CEST\r
DTSTART:19700329T020000\r
RRULE:FREQ=YEARLY;BYMONTH=3;BYDAY=-1SU\r
END:DAYLIGHT\r
BEGIN:STANDARD\r
TZOFFSETFROM:+0200\r
TZOFFSETTO:+0100\r
TZNAME:CET\r
DTSTART:19701025T030000\r
RRULE:FREQ=YEARLY;BYMONTH=10;BYDAY=-1SU\r
END:STANDARD\r
END:VTIMEZONE\r
"""


def event(number, today):
    """One of an ordinary calendar: spread over the years around today; one in ten repeats, one in five of those ends."""
    day = today + datetime.timedelta(days=number * 7919 % 4000 - 3000)
    hour = number % 9 + 8
    rule = ("RRULE:FREQ=DAILY;COUNT=30\r\n" if number % 50 == 0 else
            "RRULE:FREQ=WEEKLY;INTERVAL=2\r\n" if number % 10 == 0 else "")
    return (f"BEGIN:VEVENT\r\nUID:{number:08d}-5d4c-6843-9300-4f918d8e6094@example.org\r\nDTSTAMP:20260101T000000Z\r\n"
            f"CREATED:20260101T000000Z\r\nSUMMARY:Meeting number {number}\r\n"
            f"DTSTART;TZID=Europe/Berlin:{day:%Y%m%d}T{hour:02d}0000\r\n"
            f"DTEND;TZID=Europe/Berlin:{day:%Y%m%d}T{hour:02d}3000\r\n{rule}STATUS:CONFIRMED\r\nTRANSP:OPAQUE\r\n"
            "END:VEVENT\r\n")


class Phone:
    """A user's folders, with so many events in so many files."""

    def __init__(self, folder, events, files):
        self.folder = pathlib.Path(folder)
        self.calendar = self.folder / "data/hushmode/calendars/work"
        self.calendar.mkdir(parents=True)
        today, long_ago = datetime.date.today(), time.time() - 86400
        for number in range(files):
            path = self.calendar / f"{number}.ics"
            texts = (event(each, today) for each in range(number, events, files))
            path.write_text("BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//Example//Calendar//EN\r\n" + ZONE +
                            "".join(texts) + "END:VCALENDAR\r\n", newline="")
            os.utime(path, (long_ago, long_ago))
        self.environment = {**os.environ, "TZ": "Europe/Berlin", "LC_ALL": "C.UTF-8",
                            **{f"XDG_{name}_HOME": str(self.folder / name.lower())
                               for name in ("DATA", "CONFIG", "STATE", "CACHE")}}

    def seconds(self, *command):
        begin = time.perf_counter()
        done = subprocess.run(command, env=self.environment, capture_output=True, text=True)
        seconds = time.perf_counter() - begin
        if done.returncode != 0:
            raise SystemExit(f"{command}: {done.returncode}: {done.stderr}")
        self.printed = done.stdout
        return seconds

    def forget(self):
        for path in (self.folder / "cache").rglob("*.cache"):
            path.unlink()


def milliseconds(values):
    return f"{min(values) * 1000:7.1f} ms at best, {statistics.median(values) * 1000:7.1f} in the middle"


def measure_agenda(program, parser, events, files, rounds):
    without_bus = {"DBUS_SESSION_BUS_ADDRESS": "unix:path=/nonexistent"}
    with tempfile.TemporaryDirectory(prefix="hushmode-agenda-") as folder:
        phone = Phone(folder, events, files)
        phone.environment.update(without_bus)
        phone.seconds(program, "profile", "add", "Work", "--all-day", "--calendars", "work", "--enabled", "on")
        phone.seconds(program, "on")
        bare, first, then = [], [], []
        for _ in range(rounds):  # In turn, so that a busy machine is busy for all.
            bare.append(phone.seconds(parser, str(phone.calendar)))
            phone.forget()
            first.append(phone.seconds(program, "agenda"))
            then += [phone.seconds(program, "agenda") for _ in range(5)]
        switches = sum(" on " in line for line in phone.printed.splitlines())
        print(f"{events} events in {files} files, {switches} of them today switch:")
        print(f"  libical alone     {milliseconds(bare)}")
        print(f"  agenda, first     {milliseconds(first)}: {statistics.median(first) / statistics.median(bare):.2f} times")
        print(f"  agenda, then      {milliseconds(then)}")
        name, text = phone.calendar / "0.ics", (phone.calendar / "0.ics").read_bytes()
        changed = []
        for number in range(rounds):
            name.write_bytes(text.replace(b"SUMMARY:Meeting", b"SUMMARY:Changed"[:15 - number % 2]))
            os.utime(name, (time.time() - 3600 - number,) * 2)
            changed.append(phone.seconds(program, "agenda"))
        print(f"  one file changed  {milliseconds(changed)}")


def measure_status(program, daemon):
    with tempfile.TemporaryDirectory(prefix="hushmode-status-") as folder:
        phone = Phone(folder, 100, 10)
        process = subprocess.Popen([daemon], env=phone.environment)
        try:
            while subprocess.run([program, "status"], env=phone.environment, capture_output=True).returncode != 0:
                if process.poll() is not None:
                    raise SystemExit("the daemon has ended")
            print(f"status, of a daemon {milliseconds([phone.seconds(program, 'status') for _ in range(50)])}")
        finally:
            process.terminate()
            process.wait()


def main():
    program, parser = sys.argv[1:3]
    measure_agenda(program, parser, 10_000, 10_000, 5)
    measure_agenda(program, parser, 100_000, 10_000, 3)
    measure_agenda(program, parser, 100_000, 10, 3)
    if "--daemon" in sys.argv:
        measure_status(program, sys.argv[sys.argv.index("--daemon") + 1])


if __name__ == "__main__":
    main()
