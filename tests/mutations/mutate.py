#!/usr/bin/python3
# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""Shows that the tests can fail: breaks one rule of the library or the host at a time and looks which test notices.

usage: mutate.py [--tree FOLDER] [--build FOLDER] [--jobs N] [--commit C] [--own-room] [NAME...]
                          break the rules whose name or file contains a NAME, or all, and print what caught each
       mutate.py --check  only check that every rule's text is still there exactly once, and its row in docs/testing.md

The sources of a commit (HEAD) are copied into a folder of their own and built there, so that nothing broken ever
stands in the work tree; --tree and --build keep both for another run. At most N compilers run at once (2 without it).
The tests of a broken rule's own room are built and run first, the others only when these notice nothing, and with
--own-room not at all. Exit 1 if any rule can be broken without a test that notices, or if something could not be tried.
"""
import argparse
import collections
import io
import os
import pathlib
import re
import subprocess
import sys
import tarfile
import tempfile
import time

sys.dont_write_bytecode = True  # The work tree stays as it is.
from broken_host_rules import HOST_RULES  # noqa: E402
from broken_rules import RULES as LIBRARY_RULES  # noqa: E402

RULES = LIBRARY_RULES + HOST_RULES

ROOT = pathlib.Path(__file__).resolve().parents[2]
ROOMS = {"util", "model", "store", "wifi", "calendar", "alarms", "effects", "scheduler", "host", "devices/shared"}
SECONDS_PER_TEST_PROGRAM = 300
MARK = ".hushmode-mutations"  # In a folder whose content is this program's to replace.
# What ctest prints of a program that failed, hung or died, and GoogleTest of a test.
FAILED_PROGRAM = re.compile(r"Test\s+#\d+: (\S+) \.*\s*\*\*\*(\S+)")
FAILED_TEST = re.compile(r"^\[  FAILED  \] (\S+?)(?:, where .*)? \(\d+ ms\)", re.M)


class CannotTry(Exception):
    """Something other than the tests went wrong, so that the run proves nothing."""


def faults(rules, root):
    """Why a rule could not be broken as the table says."""
    found = []
    for name, count in collections.Counter(rule.name for rule in rules).items():
        if count > 1:
            found.append(f"{name}: {count} rules of that name")
    for rule in rules:
        path = root / rule.file
        times = path.read_text().count(rule.text) if path.exists() else 0
        if times != 1:
            found.append(f"{rule.name}: expected its text once in {rule.file}, found it {times} times")
        if rule.text == rule.replacement:
            found.append(f"{rule.name}: replaces its text by itself")
    return found


def prove_that_the_check_can_fail():
    Rule = type(RULES[0])
    with tempfile.TemporaryDirectory() as folder:
        root = pathlib.Path(folder)
        (root / "A.cpp").write_text("return a < b;\nreturn b < c;\n")
        for text, replacement, objections in (("a < b", "a <= b", 0), ("a <= b", "a < b", 1), ("return", "", 1),
                                              ("a < b", "a < b", 1)):
            if len(faults([Rule("a rule", "A.cpp", text, replacement)], root)) != objections:
                sys.exit(f"the check itself is broken: it misjudges {text!r}")


def check():
    prove_that_the_check_can_fail()
    found = faults(RULES, ROOT)
    document = (ROOT / "docs/testing.md").read_text()
    found += [f"{rule.name}: has no row in docs/testing.md" for rule in RULES if f"| {rule.name} |" not in document]
    found += [f"{room}: no rule of this room is broken" for room in ROOMS - {rule.room for rule in RULES}]
    print("\n".join(found) if found else f"{len(RULES)} rules, each in its place")
    return 1 if found else 0


def copy_sources(commit, tree):
    """Makes `tree` the sources of a commit. Files that are the same already are left alone, and are not built again."""
    mark = tree / MARK
    if tree.exists() and any(tree.iterdir()) and not mark.exists():
        raise CannotTry(f"{tree} is neither empty nor a tree of an earlier run")
    tree.mkdir(parents=True, exist_ok=True)
    mark.touch()
    archive = subprocess.run(["git", "-C", ROOT, "archive", commit], check=True, capture_output=True).stdout
    wanted = {mark}
    with tarfile.open(fileobj=io.BytesIO(archive)) as tar:
        for member in tar:
            if not member.isfile():
                continue
            path = tree / member.name
            wanted.add(path)
            content = tar.extractfile(member).read()
            if not path.exists() or path.read_bytes() != content:
                path.parent.mkdir(parents=True, exist_ok=True)
                path.write_bytes(content)
            path.chmod(member.mode)
    for path in list(tree.rglob("*")):
        if path.is_file() and path not in wanted:
            path.unlink()


class Build:
    def __init__(self, tree, folder, jobs):
        self.tree, self.folder, self.jobs = tree, folder, jobs
        # What these variables add to the tests (known calendars, more random days), another run would not have.
        self.environment = {key: value for key, value in os.environ.items() if not key.startswith("HUSHMODE_")}

    def run(self, *command):
        return subprocess.run(["nice", "-n", "5", *map(str, command)], cwd=self.tree, env=self.environment,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, errors="replace")

    def must(self, *command):
        result = self.run(*command)
        if result.returncode != 0:
            raise CannotTry(f"{' '.join(map(str, command))}:\n{result.stdout[-4000:]}")

    def configure(self):
        self.must("cmake", "--preset", "dev", "-B", self.folder, "-DHUSHMODE_BENCH=OFF")

    def build(self, *targets):
        self.must("cmake", "--build", self.folder, "-j", self.jobs, *(["--target", *targets] if targets else []))

    def failure(self, *selection):
        """What failed first among the selected tests, or nothing."""
        result = self.run("ctest", "--test-dir", self.folder, "--stop-on-failure", "--output-on-failure",
                          "--no-tests=error", "--timeout", SECONDS_PER_TEST_PROGRAM, *selection)
        program = FAILED_PROGRAM.search(result.stdout)
        if program is None:
            if result.returncode != 0:
                raise CannotTry(result.stdout[-4000:])
            return None
        tests = list(dict.fromkeys(FAILED_TEST.findall(result.stdout)))
        if not tests:
            return f"`{program[1]}` ({program[2].rstrip(':').lower()})"
        more = f" and {len(tests) - 1} more" if len(tests) > 1 else ""
        return f"`{program[1]}`: `{tests[0]}`{more}"

    def failure_of_room(self, room):
        self.build("test_" + room.replace("/", "_"))
        return self.failure("-R", f"^{room}$")

    def catch(self, rule, only_own_room):
        """What notices that the rule is broken, or nothing."""
        path = self.tree / rule.file
        original = path.read_text()
        path.write_text(original.replace(rule.text, rule.replacement))
        try:
            noticed = self.failure_of_room(rule.room)
            if noticed is None and not only_own_room:
                self.build()
                noticed = self.failure("-E", f"^(house/.*|{rule.room})$")
            return noticed
        finally:
            path.write_text(original)


def failure_of_unbroken(build, rules, only_own_room):
    if only_own_room:
        return next(filter(None, map(build.failure_of_room, sorted({rule.room for rule in rules}))), None)
    build.build()
    return build.failure("-E", "^house/")


def mutate(build, commit, rules, only_own_room):
    copy_sources(commit, build.tree)
    found = faults(rules, build.tree)
    if found:
        raise CannotTry("\n".join(found))
    build.configure()
    if noticed := failure_of_unbroken(build, rules, only_own_room):
        raise CannotTry(f"a test fails although nothing is broken: {noticed}")
    outcomes = []
    for number, rule in enumerate(rules, 1):
        begun = time.monotonic()
        try:
            noticed = build.catch(rule, only_own_room)
            said = noticed or "SURVIVED"
        except CannotTry as reason:  # Proves nothing, and so counts as one that nothing caught.
            noticed, said = None, f"COULD NOT BE TRIED: {reason}"
        outcomes.append((rule, noticed))
        print(f"{number}/{len(rules)} {rule.name}: {said} ({time.monotonic() - begun:.0f} s)", file=sys.stderr,
              flush=True)
    return outcomes


def main():
    parser = argparse.ArgumentParser(usage=__doc__.split("usage: ")[1])
    parser.add_argument("--check", action="store_true")
    parser.add_argument("--tree", type=pathlib.Path)
    parser.add_argument("--build", type=pathlib.Path)
    parser.add_argument("--jobs", type=int, default=2)
    parser.add_argument("--commit", default="HEAD")
    parser.add_argument("--own-room", action="store_true")
    parser.add_argument("names", nargs="*")
    options = parser.parse_args()
    if options.check:
        return check()
    rules = [rule for rule in RULES
             if not options.names or any(name in rule.name or name in rule.file for name in options.names)]
    if not rules:
        sys.exit("no rule has such a name")
    with tempfile.TemporaryDirectory(prefix="hushmode-mutations-") as folder:
        tree = (options.tree or pathlib.Path(folder) / "tree").resolve()
        build = (options.build or pathlib.Path(folder) / "build").resolve()
        outcomes = mutate(Build(tree, build, options.jobs), options.commit, rules,
                          options.own_room)
    print("| broken rule | in | caught by |\n|---|---|---|")
    for rule, noticed in outcomes:
        print(f"| {rule.name} | `{rule.file}` | {noticed or '**nothing**'} |")
    survivors = sum(noticed is None for _, noticed in outcomes)
    print(f"\n{len(outcomes)} rules broken, {survivors} unnoticed.")
    return 1 if survivors else 0


if __name__ == "__main__":
    try:
        sys.exit(main())
    except CannotTry as reason:
        sys.exit(f"cannot go on: {reason}")
