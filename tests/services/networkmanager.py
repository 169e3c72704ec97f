# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""A stand-in for NetworkManager on the private system bus."""
PROGRAMS = {"/usr/lib/python3/dist-packages/dbusmock": "python3-dbusmock"}


def start(session):
    session.need_system_bus()
    session.spawn(["/usr/bin/python3", "-m", "dbusmock", "--system", "--template", "networkmanager"])
    session.wait_for_name("org.freedesktop.NetworkManager", "system")
