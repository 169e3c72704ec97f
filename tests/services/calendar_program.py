# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""What a program needs to edit the calendars of Evolution Data Server. Nothing runs: the tests are the program."""
import pathlib

TYPES = next((str(each) for each in pathlib.Path("/usr/lib").glob("*/girepository-1.0/ECal-2.0.typelib")),
             "/usr/lib/girepository-1.0/ECal-2.0.typelib")
PROGRAMS = {TYPES: "gir1.2-ecal-2.0", "/usr/lib/python3/dist-packages/gi": "python3-gi"}


def start(session):
    """Nothing to start."""
