# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""A real terminal with a shell in it, in which a test types, and looks at what people would see: a private tmux."""
import os
import pathlib
import re
import shutil
import subprocess
import tempfile
import time

LIMIT_SECONDS = 60  # For what never comes; every wait ends with what it waits for.
PROMPT = "ready>"


def wait_until(happened, what):
    """What `happened` returns, as soon as it is true."""
    deadline = time.monotonic() + LIMIT_SECONDS
    while not (result := happened()):
        if time.monotonic() > deadline:
            raise AssertionError(f"waited {LIMIT_SECONDS} seconds for {what() if callable(what) else what}")
        time.sleep(0.01)
    return result


class Process:
    """One that somebody else started, as /proc shows it."""

    def __init__(self, pid):
        self.pid, self.folder = pid, pathlib.Path("/proc", str(pid))

    def state(self):
        """Its letter; "gone" after its end."""
        try:
            return (self.folder / "stat").read_text().rpartition(")")[2].split()[0]
        except (FileNotFoundError, ProcessLookupError):
            return "gone"

    def bytes_read(self):
        """None after its end."""
        try:
            return int(re.search(r"rchar: (\d+)", (self.folder / "io").read_text())[1])
        except (FileNotFoundError, ProcessLookupError, PermissionError):
            return None

    def name(self):
        try:
            return (self.folder / "comm").read_text().strip()
        except (FileNotFoundError, ProcessLookupError):
            return ""

    def children(self):
        try:
            return [Process(each) for each in (self.folder / f"task/{self.pid}/children").read_text().split()]
        except (FileNotFoundError, ProcessLookupError):
            return []

    def descendants(self):
        return [each for child in self.children() for each in (child, *child.descendants())]


class TerminalWindow:
    """`columns` wide; 200 rows, so that nothing scrolls away, unless told otherwise."""

    def __init__(self, environment, columns=80, rows=200):
        self.columns, self.commands = columns, 0
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="hm-tmux-"))
        kept = {key: value for key, value in environment.items() if key not in ("COLUMNS", "NO_COLOR", "TMUX", "ENV")}
        # The shell reads its prompt there; one for root it would make itself.
        (self.folder / "settings").write_text(f"PS1='{PROMPT} '\n")
        self.environment = {**kept, "ENV": str(self.folder / "settings"), "TERM": "xterm-256color"}
        self.tmux("new-session", "-d", "-x", str(columns), "-y", str(rows), "exec /bin/sh", ";", "set", "-g", "status",
                  "off")
        self.shell = Process(int(self.tmux("display-message", "-p", "#{pane_pid}")))
        self.wait_for_prompt()

    def tmux(self, *arguments):
        return subprocess.run(["tmux", "-u", "-S", self.folder / "socket", "-f", "/dev/null", *arguments], check=True,
                              env=self.environment, stdout=subprocess.PIPE, text=True).stdout

    def end(self):
        # The server is gone already if its last window was closed.
        subprocess.run(["tmux", "-S", self.folder / "socket", "kill-server"], stderr=subprocess.DEVNULL)
        shutil.rmtree(self.folder)

    def screen(self, *, escapes=False):
        """All that was printed; what the terminal wrapped is one line again."""
        return self.tmux("capture-pane", "-p", "-J", "-S", "-", *(["-e"] if escapes else []))

    def lines(self):
        return [line.rstrip() for line in self.screen().rstrip().splitlines()]

    def wait_for(self, text):
        wait_until(lambda: text in self.screen(), lambda: f"{text!r} in:\n{self.screen().rstrip()}")

    def wait_for_prompt(self):
        wait_until(lambda: self.lines()[-1:] == [PROMPT], lambda: f"the prompt in:\n{self.screen().rstrip()}")

    def type(self, text, *, enter=True):
        self.tmux("send-keys", "-l", "--", text)
        if enter:
            self.press("Enter")

    def press(self, key):
        self.tmux("send-keys", key)

    def run(self, command, *, escapes=False):
        """Types a command and waits for its end: its exit code and the lines that it printed."""
        self.commands += 1
        self.type(f"{command}; echo =={self.commands}:$?==")
        end = re.compile(rf"^=={self.commands}:(\d+)==", re.M)
        code = int(wait_until(lambda: end.search(self.screen()), lambda: f"the end of {command}:\n{self.screen()}")[1])
        printed = self.screen(escapes=escapes).partition(f"=={self.commands}:$?==")[2]
        return code, [line.rstrip() for line in printed.partition(f"=={self.commands}:{code}==")[0].splitlines()[1:]]

    def program(self, name):
        """The process of this name that was started in here, once it runs."""
        return wait_until(lambda: next((each for each in self.shell.descendants() if each.name() == name), None),
                          lambda: f"a process {name}:\n{self.screen().rstrip()}")

    def interrupt(self):
        """Ctrl-C: the exit code of what it ended, when the shell is back."""
        self.press("C-c")
        self.wait_for_prompt()
        code, [shown] = self.run("echo $?")
        assert code == 0
        return int(shown)

    def close(self):
        """As when its window is closed, or the connection breaks."""
        self.tmux("kill-pane")
