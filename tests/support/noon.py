# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""For tests on the real clock that must not cross midnight."""
import time


def zone_of_noon():
    """A zone in which it is about noon."""
    hour = time.gmtime().tm_hour
    return f"Etc/GMT{'+' if hour > 12 else '-'}{abs(hour - 12)}"
