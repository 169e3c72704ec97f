#!/usr/bin/python3
# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""The house's rules for the library's rooms, read from the sources:

- includes go down the house only;
- beside its own rooms, the library includes the C++ standard library and nothing else;
- no ambient time and no sleep: time is the device's.

usage: check_rooms.py SOURCE-FOLDER; exit 1 where a rule is broken. It first proves on made-up sources that it can fail.
"""
import pathlib
import re
import sys
import tempfile

FLOORS = {"platform": 0, "util": 0, "model": 1, "store": 2, "wifi": 2, "calendar": 3, "alarms": 3,
          "scheduler": 4, "effects": 4}
# On one floor, rooms do not know each other, but for these.
NEIGHBOURS = {("util", "platform")}
AMBIENT = re.compile(r"\b(system_clock|steady_clock|high_resolution_clock)\b|\b(time|localtime|gmtime|mktime|sleep|usleep)"
                     r"(_r)?\s*\(\s*(NULL|nullptr|0|&)|\bsleep_(for|until)\b|\bclock_gettime\b|\bgettimeofday\b")
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]', re.M)
COMMENT = re.compile(r"//[^\n]*|/\*.*?\*/", re.S)


def faults(root):
    found = []
    for room, floor in FLOORS.items():
        for path in sorted((root / room).rglob("*")):
            if path.suffix not in (".h", ".cpp"):
                continue
            code = COMMENT.sub(lambda m: "\n" * m.group(0).count("\n"), path.read_text())
            where = path.relative_to(root)
            for bracket, name in INCLUDE.findall(code):
                if bracket == "<":
                    if "/" in name or name.endswith(".h"):
                        found.append(f"{where}: includes <{name}>, which is not of the C++ standard library")
                    continue
                other = name.split("/")[0]
                if other not in FLOORS:
                    found.append(f"{where}: includes \"{name}\", which is not of the library")
                elif other != room and (FLOORS[other] > floor or
                                        FLOORS[other] == floor and (room, other) not in NEIGHBOURS):
                    found.append(f"{where}: includes \"{name}\", which is not below it")
            for match in AMBIENT.finditer(code):
                found.append(f"{where}:{code[:match.start()].count(chr(10)) + 1}: ambient time: {match.group(0)}")
    return found


def prove_that_it_can_fail():
    cases = ['#include "store/HMProfilesManager.h"\n', "#include <glib.h>\n", "#include <sys/stat.h>\n",
             '#include "devices/shared/TimeZone.h"\n', "auto t = std::chrono::system_clock::now();\n",
             "auto t = time(nullptr);\n", '#include "effects/SavedState.h"\n']
    for case in cases:
        with tempfile.TemporaryDirectory() as folder:
            root = pathlib.Path(folder)
            (root / "model").mkdir()
            (root / "model" / "Bad.cpp").write_text(case)
            if len(faults(root)) != 1:
                sys.exit(f"the check itself is broken: it does not object to {case!r}")


prove_that_it_can_fail()
result = faults(pathlib.Path(sys.argv[1]))
print("\n".join(result) if result else f"{len(FLOORS)} rooms, no rule broken")
sys.exit(1 if result else 0)
