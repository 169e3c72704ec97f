# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""A private system bus, for tests that start their own stand-ins for services."""
PROGRAMS = {"/usr/lib/python3/dist-packages/dbusmock": "python3-dbusmock"}


def start(session):
    session.need_system_bus()
