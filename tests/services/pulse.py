# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""PulseAudio with a null sink "spk", as a phone's speaker."""
PROGRAMS = {"pulseaudio": "pulseaudio", "pactl": "pulseaudio-utils"}


def start(session):
    process = session.spawn(["pulseaudio", "-n", "--daemonize=no", "--exit-idle-time=-1", "--use-pid-file=no",
                             "-L", "module-device-restore", "-L", "module-stream-restore",
                             "-L", "module-null-sink sink_name=spk sink_properties=device.description=Speaker",
                             "-L", "module-native-protocol-unix"])
    socket = session.folder / "run" / "pulse" / "native"
    session.wait_until(socket.exists, "PulseAudio", process)
