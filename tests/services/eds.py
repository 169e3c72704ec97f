# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""Evolution Data Server, which the session bus starts when it is asked for; its files are in the private folders."""
PROGRAMS = {"/usr/libexec/evolution-source-registry": "evolution-data-server",
            "/usr/libexec/evolution-calendar-factory": "evolution-data-server"}


def start(session):
    """Nothing to start: the tests also look at what happens before it is there."""
