#!/usr/bin/python3
# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""Measures a running hushmoded among real services of its own.

usage: measure.py HUSHMODED [--seconds-idle N] [--switches N] [--only NAME...]

Prints a table; each row was measured in one run with what stands beside it. The programs of this folder are taken from
the build that HUSHMODED is of.
"""
import argparse
import os
import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
import memory  # noqa: E402
import replanning  # noqa: E402
import starting  # noqa: E402
import switching  # noqa: E402
import wakeups  # noqa: E402


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("daemon", type=pathlib.Path, metavar="HUSHMODED")
    parser.add_argument("--seconds-idle", type=int, default=60, metavar="N", help="how long an idle daemon is watched")
    parser.add_argument("--switches", type=int, default=100, metavar="N", help="how many events are switched for")
    measurements = {
        "wakeups": lambda: wakeups.count(daemon, options.seconds_idle),
        "memory": lambda: memory.measure(daemon),
        "start": lambda: starting.measure(daemon),
        "switch": lambda: switching.measure(daemon, programs, options.switches),
        "replan": lambda: replanning.measure(daemon),
    }
    parser.add_argument("--only", nargs="+", choices=measurements, default=list(measurements))
    options = parser.parse_args()
    daemon = options.daemon.resolve()
    programs = daemon.parents[2] / "bench" / "daemon"
    print(f"load of the machine: {os.getloadavg()[0]:.1f} on {os.cpu_count()} processors\n")
    print("| what | wanted | measured | beside it |\n|---|---|---|---|")
    for name in options.only:
        for row in measurements[name]():
            print("| " + " | ".join(row) + " |", flush=True)


if __name__ == "__main__":
    main()
