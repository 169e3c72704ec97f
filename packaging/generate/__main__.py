# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT
"""Makes the manual pages (packaging/man/) and the shells' completions (packaging/completions/) from what the programs
say of themselves, and from the prose in docs/man/. They are kept in the source, so that a build needs neither these
programs nor Python; the test cli/manuals compares.

usage: python3 packaging/generate PROGRAM DAEMON           write them
       python3 packaging/generate PROGRAM DAEMON --check   exit 1 where a file is not as it would be written
"""
import pathlib
import re
import sys

import commands_manual
import completion_bash
import completion_fish
import completion_zsh
import manual
import tree

SOURCE = pathlib.Path(__file__).resolve().parents[2]


def version():
    return re.search(r"project\(hushmode VERSION (\S+)", (SOURCE / "CMakeLists.txt").read_text()).group(1)


def date():
    """That of the latest release, or of the one being prepared."""
    return re.search(r"^## .*\b(\d{4}-\d\d-\d\d)\b", (SOURCE / "CHANGELOG.md").read_text(), re.M).group(1)


def pages(program, daemon):
    insertions = {
        "commands": commands_manual.commands(program.command),
        "options": commands_manual.own_options(program.command),
        "daemon-options": commands_manual.daemon_options(tree.daemon_options(daemon)),
        "profile-keys": commands_manual.profile_keys((SOURCE / "docs/profiles-file.md").read_text(),
                                                     program.profile_keys),
    }
    for path in sorted((SOURCE / "docs/man").glob("*.md")):
        yield f"man/{path.stem}", manual.page(path.read_text(), f"Hush Mode {version()}", date(), insertions)


def files(program_path, daemon_path):
    program = tree.Program(program_path)
    yield from pages(program, daemon_path)
    yield "completions/hushmode.bash", completion_bash.script(program.command)
    yield "completions/_hushmode", completion_zsh.script(program.command)
    yield "completions/hushmode.fish", completion_fish.script(program.command)


def main():
    arguments = [each for each in sys.argv[1:] if each != "--check"]
    if len(arguments) != 2:
        raise SystemExit(__doc__)
    others = []
    for name, text in files(*arguments):
        path = SOURCE / "packaging" / name
        if path.exists() and path.read_text() == text:
            continue
        others.append(str(path.relative_to(SOURCE)))
        if "--check" not in sys.argv:
            path.parent.mkdir(exist_ok=True)
            path.write_text(text)
    for name in others:
        print(("differs: " if "--check" in sys.argv else "written: ") + name)
    if others and "--check" in sys.argv:
        raise SystemExit("make them anew with: python3 packaging/generate PROGRAM DAEMON")


main()
