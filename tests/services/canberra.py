# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""The sound theme, and what plays it on a sound server. Nothing runs: programs play it themselves."""
import pathlib

LIBRARIES = pathlib.Path("/usr/lib")
DRIVER = next((str(each) for each in LIBRARIES.glob("*/libcanberra-*/libcanberra-pulse.so")),
              "/usr/lib/libcanberra-pulse.so")
PROGRAMS = {DRIVER: "libcanberra-pulse",
            "/usr/share/sounds/freedesktop/stereo/complete.oga": "sound-theme-freedesktop"}


def start(session):
    """Nothing to start."""
