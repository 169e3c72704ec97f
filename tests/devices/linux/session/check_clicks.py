#!/usr/bin/python3
# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""Answers a question with real clicks on the buttons of a real notification server, on a screen without a monitor.

usage: check_clicks.py TEST-PROGRAM [PICTURE]; the picture, if asked for, shows the question.
"""
import re
import subprocess
import sys
import time

LIMIT = 30  # Seconds, for a broken server; every wait ends with what it waits for.
# Where the server puts the middles of its buttons, in pixels from the lower right corner of its window.
BUTTONS = {0: (184, 39), 1: (96, 39)}


def output_of(*command):
    return subprocess.run(command, capture_output=True, text=True).stdout


def geometry():
    """X, y, width and height of the notification; none while there is none."""
    windows = output_of("xdotool", "search", "--onlyvisible", "--name", "^Notification$").split()
    if len(windows) != 1:
        return None
    text = output_of("xdotool", "getwindowgeometry", "--shell", windows[0])
    found = dict(re.findall(r"^(X|Y|WIDTH|HEIGHT)=(-?\d+)$", text, re.M))
    return tuple(int(found[name]) for name in ("X", "Y", "WIDTH", "HEIGHT")) if len(found) == 4 else None


def wait_for(condition, what):
    deadline = time.monotonic() + LIMIT
    while not (result := condition()):
        if time.monotonic() > deadline:
            sys.exit(f"waited in vain for {what}")
        time.sleep(0.02)
    return result


def settled_geometry():
    """The notification's place once it has stopped moving."""
    places = [None]

    def stays():
        places.append(geometry())
        return places[-1] and places[-5:] == [places[-1]] * 5

    wait_for(stays, "the notification")
    return places[-1]


def click(button, picture=None):
    program = subprocess.Popen([sys.argv[1], "--gtest_also_run_disabled_tests", "--gtest_filter=*IsAnsweredByAClick"],
                               stdout=subprocess.PIPE, text=True)
    try:
        left, top, width, height = settled_geometry()
        if picture:
            subprocess.run(["import", "-window", "root", picture], check=True)
        right, up = BUTTONS[button]
        subprocess.run(["xdotool", "mousemove", str(left + width - right), str(top + height - up), "click", "1"],
                       check=True)
        text, _ = program.communicate(timeout=LIMIT + 10)
    finally:
        program.kill()
    if program.returncode != 0 or f"answered with button {button}\n" not in text:
        sys.exit(f"button {button} was clicked, and the answer was:\n{text}")
    wait_for(lambda: not geometry(), "the answered notification to go")


for index in BUTTONS:
    click(index, sys.argv[2] if len(sys.argv) > 2 and index == 0 else None)
print(f"{len(BUTTONS)} buttons clicked, {len(BUTTONS)} answers")
