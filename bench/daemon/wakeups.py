# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""How often an idle daemon wakes up: every system call of every thread, seen by strace."""
import re
import subprocess
import time

from phone import Phone, event_at, voluntary_switches

# "[pid  12] 1700000000.123456 poll(..." or, with one thread, without the brackets.
LINE = re.compile(r"^(?:\[pid +)?(\d+)?\]? *(\d+\.\d{6}) (.*)$")
WAITING = re.compile(r"^(?:poll|ppoll|epoll_wait|epoll_pwait|select|pselect6|futex|restart_syscall|nanosleep|"
                     r"clock_nanosleep)\(|^<\.\.\. \w+ resumed>")


class Trace:
    """strace, attached to all threads of a process."""

    def __init__(self, process, path):
        self.path = path
        self.strace = subprocess.Popen(["strace", "-f", "-ttt", "-o", path, "-p", str(process)],
                                       stderr=subprocess.PIPE, text=True)
        if "attached" not in self.strace.stderr.readline():
            raise RuntimeError("strace cannot attach")
        time.sleep(1)  # Waits that it interrupted are begun anew.

    def end(self):
        self.strace.terminate()
        self.strace.communicate()

    def calls(self, since, until):
        """What was called or came back in that time: lines of strace."""
        found = []
        for line in open(self.path, errors="replace"):
            match = LINE.match(line)
            if match and since <= float(match[2]) < until:
                found.append(line.rstrip())
        return found


def count(program, seconds):
    with Phone(program) as phone:
        phone.add_profiles(10)
        phone.add_events(1000, 1)
        phone.start()
        phone.settle()
        trace = Trace(phone.daemon.pid, str(phone.session.folder / "strace"))
        armed = phone.property("Armed")
        time.sleep(1)  # That question is answered.
        server = next(each for each in phone.session.processes if "pulseaudio" in str(each.args[0]))
        began, slept, server_slept = time.time(), phone.voluntary_switches(), voluntary_switches(server.pid)
        time.sleep(seconds)
        ended = time.time()
        slept, server_slept = phone.voluntary_switches() - slept, voluntary_switches(server.pid) - server_slept
        # That anything would have been seen: the daemon notices a file.
        phone.add_file("later", event_at("later", began + 9000, began + 9600))
        time.sleep(5)
        trace.end()
        calls = trace.calls(began, ended)
        noticed = trace.calls(ended, time.time())
        if not any("read(" in each for each in noticed):
            raise RuntimeError("strace does not see the daemon notice a new file")
        wanted = sum(1 for each in armed if began <= each["date"] < ended)
        for line in calls[:40]:
            print("   ", line)
        return [("wake-ups of an idle daemon (10 profiles, 1,000 events, all services)",
                 "none beyond the armed ones",
                 f"{len(calls)} system calls and {slept} sleeps of all threads in {seconds} s, {wanted} armed in that time "
                 f"({len(armed)} for later)",
                 f"the sound server slept {server_slept} times; a new file then: {len(noticed)} calls")]
