# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""The screen of a live phone: pictures and clicks. Set HUSHMODE_PICTURES to a folder to keep the pictures."""
import os
import re
import subprocess


class Screen:
    def __init__(self, phone):
        self.phone = phone

    def _answer(self, *command):
        return subprocess.run(command, env=self.phone.session.environment, capture_output=True).stdout

    def keep(self, name):
        if "HUSHMODE_PICTURES" in os.environ:
            self._answer("import", "-window", "root", os.path.join(os.environ["HUSHMODE_PICTURES"], f"{name}.png"))

    def pixels(self, place):
        """Those of a part of the screen, such as "40x32+0+0" for the upper left corner."""
        return self._answer("import", "-silent", "-window", "root", "-crop", place, "+repage", "-depth", "8", "rgb:-")

    def place_of(self, title):
        """X, y, width and height of the window; none while there is none."""
        windows = self._answer("xdotool", "search", "--onlyvisible", "--name", f"^{title}$").decode().split()
        if len(windows) != 1:
            return None
        text = self._answer("xdotool", "getwindowgeometry", "--shell", windows[0]).decode()
        found = dict(re.findall(r"^(X|Y|WIDTH|HEIGHT)=(-?\d+)$", text, re.M))
        return tuple(int(found[name]) for name in ("X", "Y", "WIDTH", "HEIGHT")) if len(found) == 4 else None

    def place_at_rest(self, title):
        """The same once the window has stopped moving, and what it shows, too."""
        seen = []

        def stays():
            place = self.place_of(title)
            seen.append((place, place and self.pixels(f"{place[2]}x{place[3]}+{max(0, place[0])}+{max(0, place[1])}")))
            return place and seen[-5:] == [seen[-1]] * 5

        self.phone.until(stays, f"the window \"{title}\"")
        return seen[-1][0]

    def click(self, x, y):
        self._answer("xdotool", "mousemove", str(x), str(y), "click", "1")
