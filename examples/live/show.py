#!/usr/bin/python3
# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""Shows the daemon at work on real services: a meeting that begins in a few seconds and lasts ten.

usage: show.py DAEMON

Everything is private: folders, buses, sound server; nothing of this machine's own session is touched. Services that the
machine lacks have stand-ins. Exit code 0 only when the phone is afterwards what it was before.
"""
import datetime
import os
import pathlib
import re
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tests" / "services"))
import run_with  # noqa: E402  (beside the other services)

SECONDS_AHEAD, SECONDS_LONG, SECONDS_TO_SETTLE, SECONDS_AT_MOST = 6, 10, 5, 45
OBJECT = ["-d", "com.quorvel.Hushmode", "-o", "/com/quorvel/Hushmode"]
BANNERS = ["org.gnome.desktop.notifications", "show-banners"]
PROFILE = {
    "title": "<'Meetings'>", "enabled": "<true>", "allDay": "<true>", "allDayEventsIgnored": "<true>",
    "ringerVolume": "<0.05>", "playBackVolume": "<0.0>", "vibrate": "<true>", "dnDEnabled": "<true>",
    "showOnStatusBar": "<true>", "playAlert": "<true>", "wakeUpScreen": "<true>",
    "alertToneIdentifier": "<'texttone:Calendar Alert'>", "calendarIdentifiers": "<['folder:Work']>",
}


def say(text):
    print(f"{datetime.datetime.now():%H:%M:%S}  {text}", flush=True)


class Show:
    def __init__(self, session, daemon):
        self.session, self.daemon = session, daemon

    def call(self, method, *arguments):
        return self.session.run(["gdbus", "call", "--session", *OBJECT, "-m", method, *arguments])

    def state(self):
        """What a meeting changes, asked of the services themselves."""
        sink = re.search(r"(\d+)%", self.session.run(["pactl", "get-sink-volume", "spk"])).group(1)
        ringtone = self.ringtone_volume()
        banners = self.session.run(["gsettings", "get", *BANNERS]).strip()
        vibrate = (self.session.folder / "state/hushmode/com.apple.springboard.plist").read_text()
        switches = re.findall(r"<key>(ring|silent)-vibrate</key>\s*<(true|false)/>", vibrate)
        icon = (self.session.folder / "icon").read_text().strip()
        return {"media volume": f"{sink}%", "ringtone volume": ringtone,
                "do not disturb": "off" if banners == "true" else "on",
                "vibrate": ", ".join(f"{name} {'on' if on == 'true' else 'off'}" for name, on in sorted(switches)),
                "icon": icon}

    def ringtone_volume(self):
        """The sound server applies it to every stream of the role "event": ask it about a silent one."""
        with open("/dev/zero", "rb") as silence:
            stream = subprocess.Popen(["pacat", "--raw", "--property=media.role=event"], stdin=silence,
                                      env=self.session.environment)
        try:
            until = time.monotonic() + 5
            while time.monotonic() < until:
                streams = self.session.run(["pactl", "list", "sink-inputs"])
                volume = re.search(r"Volume:.*?(\d+)%", streams)
                if volume and "event" in streams:
                    return f"{volume.group(1)}%"
        finally:
            stream.terminate()
            stream.wait()
        sys.exit("the sound server does not show the ringtone volume")

    @staticmethod
    def text(state):
        return "; ".join(f"{name} {value}" for name, value in state.items())

    def make_meeting(self):
        start = datetime.datetime.now(datetime.timezone.utc) + datetime.timedelta(seconds=SECONDS_AHEAD)
        end = start + datetime.timedelta(seconds=SECONDS_LONG)
        folder = self.session.folder / "data/hushmode/calendars/Work"
        folder.mkdir(parents=True)
        stamp = "%Y%m%dT%H%M%SZ"
        lines = ["BEGIN:VCALENDAR", "VERSION:2.0", "PRODID:-//Hush Mode//live show//EN", "BEGIN:VEVENT", "UID:live-show",
                 f"DTSTAMP:{start:{stamp}}", f"DTSTART:{start:{stamp}}", f"DTEND:{end:{stamp}}", "SUMMARY:Interview",
                 "END:VEVENT", "END:VCALENDAR"]
        (folder / "interview.ics").write_bytes("".join(line + "\r\n" for line in lines).encode())
        say(f"a meeting, \"Interview\", from {start.astimezone():%H:%M:%S} to {end.astimezone():%H:%M:%S}")

    def start_daemon(self):
        config = self.session.folder / "config/hushmode"
        config.mkdir(mode=0o700)
        # No profile but the show's own.
        (config / "com.quorvel.hushmode.profiles.plist").write_text(
            '<?xml version="1.0" encoding="UTF-8"?>\n<plist version="1.0"><array/></plist>\n')
        process = subprocess.Popen([self.daemon], env=self.session.environment, stderr=subprocess.PIPE)
        self.session.processes.append(process)
        os.set_blocking(process.stderr.fileno(), False)
        self.session.wait_for_name("com.quorvel.Hushmode")
        return process

    def follow(self, process, until, wanted):
        """Prints what the daemon says until `wanted` is in a line."""
        rest = b""
        while time.monotonic() < until:
            rest += process.stderr.read() or b""
            *lines, rest = rest.split(b"\n")
            for line in lines:
                line = re.sub(r"^<\d>", "", line.decode())
                say(line)
                if wanted in line:
                    return
            if process.poll() is not None:
                sys.exit(f"the daemon ended with {process.returncode}")
            time.sleep(0.05)
        sys.exit(f"the daemon did not say: {wanted}")

    def run(self):
        until = time.monotonic() + SECONDS_AT_MOST
        process = self.start_daemon()
        self.follow(process, until, "ready:")
        arguments = "{" + ", ".join(f"'{key}': {value}" for key, value in PROFILE.items()) + "}"
        self.call("com.quorvel.Hushmode1.AddProfile", arguments)
        before = self.state()
        say("before:  " + self.text(before))
        self.make_meeting()
        self.follow(process, until, "\"Meetings\" on")
        say("during:  " + self.text(self.state()))
        say("applied: " + self.call("org.freedesktop.DBus.Properties.Get", "com.quorvel.Hushmode1", "Applied").strip())
        self.follow(process, until, "\"Meetings\" off")
        after = self.state()
        say("after:   " + self.text(after))
        process.terminate()
        if process.wait(10) != 0:
            sys.exit(f"the daemon ended with {process.returncode}")
        differences = [name for name in before if before[name] != after[name]]
        if differences:
            sys.exit("not as before: " + ", ".join(differences))
        say("everything is as it was before")


def main():
    session = run_with.Session()
    try:
        import feedback_or_stand_in
        import logind
        import networkmanager
        import pulse
        import standin_desktop
        for service in (pulse, feedback_or_stand_in, standin_desktop, networkmanager, logind):
            service.start(session)
        Show(session, sys.argv[1]).run()
    finally:
        session.end()


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    main()
