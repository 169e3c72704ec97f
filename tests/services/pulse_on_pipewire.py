# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""PipeWire's stand-in for PulseAudio, with a null sink "spk", as a phone's speaker."""
PROGRAMS = {"pipewire": "pipewire", "pipewire-pulse": "pipewire-pulse", "wireplumber": "wireplumber",
            "pactl": "pulseaudio-utils"}


def start(session):
    run = session.folder / "run"
    server = session.spawn(["pipewire"])
    session.wait_until((run / "pipewire-0").exists, "PipeWire", server)
    session.spawn(["wireplumber"])
    pulse = session.spawn(["pipewire-pulse"])
    session.wait_until((run / "pulse" / "native").exists, "PipeWire's PulseAudio", pulse)
    session.run(["pactl", "load-module", "module-null-sink", "sink_name=spk",
                 "sink_properties=device.description=Speaker"])

    def speaker_is_default():
        return session.run(["pactl", "get-default-sink"]).strip() == "spk"

    session.wait_until(speaker_is_default, "the speaker as the default")
