# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT
"""Shells that complete, for check_completion.py: each types a line, presses TAB, and tells what arguments came of it."""
import os
import pty
import re
import select
import shutil
import subprocess
import time

ANSWER_SECONDS = 30  # A limit for a shell that hangs; every wait ends with what it waits for.


class Terminal:
    """An interactive shell behind a terminal."""

    def __init__(self, command, environment):
        self.process, self.terminal = pty.fork()
        if self.process == 0:
            os.execvpe(command[0], command, environment)
        self.seen = ""

    def send(self, text):
        os.write(self.terminal, text.encode())

    def wait_for(self, pattern):
        """What the pattern's group has matched in what came since the last wait."""
        end = time.monotonic() + ANSWER_SECONDS
        while not (match := re.search(pattern, self.seen, re.S)):
            if not select.select([self.terminal], [], [], max(0, end - time.monotonic()))[0]:
                raise AssertionError(f"no {pattern!r} in {self.seen!r}")
            self.seen += os.read(self.terminal, 65536).decode(errors="replace")
        self.seen = self.seen[match.end():]
        return match.group(1)

    def end(self):
        os.close(self.terminal)
        os.waitpid(self.process, 0)


class Interactive:
    """A shell in which the command "args" completes as hushmode does, and prints what it is given."""

    SHOW = "args() { printf '%s:' RE''SULT; printf '⟦%s⟧' \"$@\"; printf ':%s\\n' E''ND; }"

    def __init__(self, command, setup, environment):
        self.terminal = Terminal(command, environment)
        self.terminal.send(f"{setup}; {self.SHOW}; echo REA''DY\n")
        self.terminal.wait_for("(READY)")

    def completed(self, line):
        """The arguments after a TAB behind the line."""
        self.terminal.send(f"args {line}\t\n")
        try:
            return re.findall("⟦(.*?)⟧", self.terminal.wait_for("RESULT:(.*?):END"))
        except AssertionError:
            self.terminal.send("\x03")  # A quotation mark is open: the next line is not to continue this one.
            raise

    def end(self):
        self.terminal.end()


class Bash(Interactive):
    def __init__(self, folder, environment):
        script = folder / "hushmode.bash"
        super().__init__(["bash", "--norc", "--noprofile", "-i"],
                         f"bind 'set bell-style none'; source '{script}'; complete -F _hushmode args",
                         {**environment, "TERM": "dumb"})


class Zsh(Interactive):
    def __init__(self, folder, environment):
        dump = os.path.join(environment["HOME"], "zcompdump")
        super().__init__(["zsh", "-f", "-i"],
                         f"unsetopt beep; fpath=('{folder}' $fpath); autoload -Uz compinit; compinit -u -d '{dump}'; "
                         "compdef _hushmode args", {**environment, "TERM": "vt100"})


class Fish:
    """Fish completes without a terminal; of what it offers, the only one is what a TAB would insert."""

    def __init__(self, folder, environment):
        self.script, self.environment = folder / "hushmode.fish", environment

    def offered(self, line):
        program = 'source $argv[1]; complete -C "hushmode $argv[2]"'
        result = subprocess.run(["fish", "--no-config", "-c", program, str(self.script), line], env=self.environment,
                                capture_output=True, text=True, timeout=ANSWER_SECONDS, check=True)
        if result.stderr:
            raise AssertionError(result.stderr)
        return [each.split("\t")[0] for each in result.stdout.splitlines()]

    def completed(self, line):
        return self.offered(line)

    def end(self):
        pass


SHELLS = {"bash": Bash, "zsh": Zsh, "fish": Fish}


def is_installed(name):
    return shutil.which(name) is not None
