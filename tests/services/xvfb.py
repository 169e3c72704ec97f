# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""A screen without a monitor, for programs with windows."""
import pathlib

PROGRAMS = {"Xvfb": "xvfb", "import": "imagemagick"}


def start(session, size="400x200"):
    chosen = pathlib.Path(session.folder) / "display"
    # Xvfb picks a free number, and says it when it is ready.
    command = f"exec Xvfb -displayfd 3 -screen 0 {size}x24 -nolisten tcp -noreset 3>{chosen}"
    process = session.spawn(["sh", "-c", command])
    session.wait_until(lambda: chosen.exists() and chosen.read_text().endswith("\n"), "Xvfb", process)
    session.environment["DISPLAY"] = f":{chosen.read_text().strip()}"
    session.environment["GDK_BACKEND"] = "x11"
