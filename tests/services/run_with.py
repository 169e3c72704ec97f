#!/usr/bin/python3
# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""Runs a command among services of its own: private folders, private buses, nothing leaks in or out.

usage: run_with.py [SERVICE...] -- COMMAND [ARGUMENT...]

A service is a module beside this file, with PROGRAMS (path or program name -> Debian package) and start(session). A
session bus is always there. Exit code: the command's; 77 when a program is not installed, which is said by name (an
error instead when HUSHMODE_SKIP_NOTHING is set).
"""
import importlib
import os
import pathlib
import shutil
import signal
import subprocess
import sys
import tempfile
import time

SKIPPED = 77
STARTUP_SECONDS = 30  # A limit for a broken service; every wait ends with the event it waits for.
BUS_CONFIGURATION = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>{kind}</type>
  <listen>unix:path={socket}</listen>
  <auth>EXTERNAL</auth>
  {services}
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
    <allow user="*"/>
  </policy>
</busconfig>
"""


class Session:
    """Private folders and buses, and the processes started among them."""

    # What the session bus may start by itself: whatever is installed.
    ACTIVATION = "<standard_session_servicedirs/>"

    def __init__(self):
        # Short: a socket's path may have 107 characters.
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="hm-"))
        self.environment = {
            "PATH": "/usr/local/bin:/usr/bin:/bin:/usr/sbin:/sbin",
            "LANG": "C.UTF-8",
            "GSETTINGS_BACKEND": "keyfile",
            "GIO_USE_VFS": "local",
            "NO_AT_BRIDGE": "1",
            "PYTHONUNBUFFERED": "1",
        }
        for name in ("HUSHMODE_SKIP_NOTHING", "ASAN_OPTIONS", "UBSAN_OPTIONS", "LSAN_OPTIONS", "TZ"):
            if name in os.environ:
                self.environment[name] = os.environ[name]
        folders = {"HOME": "home", "XDG_RUNTIME_DIR": "run", "XDG_CONFIG_HOME": "config", "XDG_CACHE_HOME": "cache",
                   "XDG_DATA_HOME": "data", "XDG_STATE_HOME": "state"}
        for variable, name in folders.items():
            (self.folder / name).mkdir(mode=0o700)
            self.environment[variable] = str(self.folder / name)
        self.processes = []
        self.start_bus("session")

    def start_bus(self, kind):
        """Starts a private bus; "system" ones activate nothing."""
        socket = self.folder / f"{kind}-bus"
        configuration = self.folder / f"{kind}.conf"
        services = self.ACTIVATION if kind == "session" else ""
        configuration.write_text(BUS_CONFIGURATION.format(kind=kind, socket=socket, services=services))
        self.environment[f"DBUS_{kind.upper()}_BUS_ADDRESS"] = f"unix:path={socket}"
        process = self.spawn(["dbus-daemon", f"--config-file={configuration}", "--nofork", "--nopidfile"])
        self.wait_until(socket.exists, f"the {kind} bus", process)
        return process

    def need_system_bus(self):
        if "DBUS_SYSTEM_BUS_ADDRESS" not in self.environment:
            self.start_bus("system")

    def spawn(self, arguments, **environment):
        """Starts a process that lives as long as the session; its output goes to a log in the folder."""
        log_name = self.folder / f"{pathlib.Path(arguments[0]).name}-{len(self.processes)}.log"
        with open(log_name, "wb") as log:
            process = subprocess.Popen(arguments, env={**self.environment, **environment}, stdin=subprocess.DEVNULL,
                                       stdout=log, stderr=subprocess.STDOUT, start_new_session=True)
        process.log_name = log_name
        self.processes.append(process)
        return process

    def run(self, arguments):
        return subprocess.run(arguments, env=self.environment, check=True, capture_output=True, text=True).stdout

    def wait_for_name(self, name, bus="session"):
        self.run(["gdbus", "wait", f"--{bus}", "--timeout", str(STARTUP_SECONDS), name])

    @staticmethod
    def wait_until(condition, what, process=None):
        deadline = time.monotonic() + STARTUP_SECONDS
        while not condition():
            if process is not None and process.poll() is not None:
                sys.exit(f"{what} ended at once: {pathlib.Path(process.log_name).read_text()[-2000:]}")
            if time.monotonic() > deadline:
                sys.exit(f"{what} did not start within {STARTUP_SECONDS} seconds")
            time.sleep(0.01)

    def end(self):
        for process in reversed(self.processes):
            if process.poll() is None:
                process.terminate()
        for process in self.processes:
            try:
                process.wait(5)
            except subprocess.TimeoutExpired:
                process.kill()
                process.wait()
        shutil.rmtree(self.folder, ignore_errors=True)


def missing_packages(modules):
    missing = {}
    for module in modules:
        for program, package in module.PROGRAMS.items():
            if not (os.path.exists(program) if "/" in program else shutil.which(program)):
                missing[program] = package
    return missing


def main():
    if "--" not in sys.argv[1:]:
        sys.exit(__doc__)
    split = sys.argv.index("--")
    names, command = sys.argv[1:split], sys.argv[split + 1:]
    sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
    modules = [importlib.import_module(name) for name in names]
    missing = missing_packages(modules)
    if missing:
        text = ", ".join(f"{program} (Debian package {package})" for program, package in missing.items())
        if os.environ.get("HUSHMODE_SKIP_NOTHING"):
            sys.exit(f"not installed: {text}")
        print(f"SKIPPED, not installed: {text}")
        return SKIPPED
    session = Session()
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(143))
    try:
        for module in modules:
            module.start(session)
        result = subprocess.run(command, env={**session.environment, "HUSHMODE_SESSION_FOLDER": str(session.folder)})
        if result.returncode != 0 and os.environ.get("HUSHMODE_SHOW_LOGS"):
            for process in session.processes:
                print(f"--- {process.log_name}", pathlib.Path(process.log_name).read_text(), sep="\n", file=sys.stderr)
        return result.returncode if result.returncode >= 0 else 128 - result.returncode
    finally:
        session.end()


if __name__ == "__main__":
    sys.exit(main())
