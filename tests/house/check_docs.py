#!/usr/bin/python3
# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""The documents tell the truth about what a machine can look up:

- each `hushmode ...` line that a reader may copy is one that the program takes: the command, its options, their choices,
  and no argument too many or too few (of those in running text: the command and its options only);
- each relative link leads to a file that exists, and to a heading in it;
- each command is in the user's guide.

usage: check_docs.py HUSHMODE SOURCE-FOLDER; exit 1 where a document errs. It first proves on bad samples that it can fail.
"""
import json
import os
import pathlib
import re
import shlex
import subprocess
import sys
import tempfile

GUIDE = "docs/guide.md"
FENCE = re.compile(r"^ *```")
# A title behind the address is not used here.
LINK = re.compile(r"\]\(([^)\s]+)\)")
SPAN = re.compile(r"`(hushmode [a-z-][^`]*)`")
BREAKS = {"&&", "||", "|", ";", "&", ">", ">>", "<"}


class Program:
    """The program's commands by their full names, as `hushmode help --json` describes them."""

    def __init__(self, description):
        self.commands = {}
        self.add(description)

    def add(self, command):
        self.commands[command["name"]] = command
        for below in command["commands"]:
            self.add(below)

    def leaves(self):
        return [name for name, command in self.commands.items() if not command["commands"]]

    def faults(self, words, whole):
        """What the program would refuse of these words; without `whole`, arguments may be left out."""
        name, rest = words[0], words[1:]
        while rest and f"{name} {rest[0]}" in self.commands:
            name, rest = f"{name} {rest[0]}", rest[1:]
        command = self.commands[name]
        options = {option: argument for argument in command["arguments"] for option in argument.get("names", [])}
        found, given = [], 0
        while rest:
            word, rest = rest[0], rest[1:]
            option, equals, value = word.partition("=")
            if not word.startswith("-") or word == "-":
                if command["commands"]:
                    return [f"{name} has no command {word}"]
                given += 1
            elif option not in options:
                found.append(f"{name} has no option {option}")
            elif "value" in options[option]:
                if not equals and not rest:
                    found += [f"{name}: {option} needs a value"] if whole else []
                    continue
                value, rest = (value, rest) if equals else (rest[0], rest[1:])
                described = options[option]["value"]
                # A list may hold other words than its choices, and a word in capitals stands for a value.
                if "choices" in described and "list" not in described and not value.isupper() \
                        and value not in described["choices"]:
                    found.append(f"{name}: {option} is not {value}")
        places = [argument for argument in command["arguments"] if "name" in argument]
        if whole and not found:
            if given < sum(argument["required"] for argument in places):
                found.append(f"{name} lacks an argument")
            if command["commands"] and len(words) == len(name.split()):
                found.append(f"{name} lacks a command")
        if given > len(places) and not any(argument["several"] for argument in places):
            found.append(f"{name} has an argument too many")
        return found


def blocks(text, indented):
    """The lines of code, with their numbers, where a reader copies from; lines that end in a backslash are joined."""
    inside, held, first = False, "", 0
    for number, line in enumerate(text.splitlines(), 1):
        if FENCE.match(line):
            inside = not inside
        elif inside or indented and line.startswith("    "):
            first = first if held else number
            held += line.strip()
            if held.endswith("\\"):
                held = held[:-1]
                continue
            yield first, held
        held = ""


def prose(text):
    """The text with what stands in fenced code left blank, so that the lines keep their numbers."""
    inside, kept = False, []
    for line in text.splitlines():
        fence = bool(FENCE.match(line))
        kept.append("" if inside or fence else line)
        inside ^= fence
    return "\n".join(kept)


def calls(line):
    """The calls of the program in a line of a shell."""
    lexer = shlex.shlex(line.removeprefix("$ "), posix=True, punctuation_chars=True)
    lexer.whitespace_split = True
    words = []
    for word in [*lexer, ";"]:
        if word in BREAKS:
            if words[:1] == ["hushmode"]:
                yield words
            words = []
        else:
            words.append(word)


def command_faults(where, text, program):
    found = []
    for number, line in blocks(text, where.startswith("docs/man/")):
        if not re.search(r"(^|[&|;] *)(\$ )?hushmode ", line):
            continue
        for words in calls(line):
            found += [f"{where}:{number}: {fault}" for fault in program.faults(words, True)]
    running = prose(text)
    for match in SPAN.finditer(running):
        for words in calls(match.group(1).replace("\n", " ")):
            number = running.count("\n", 0, match.start()) + 1
            found += [f"{where}:{number}: {fault}" for fault in program.faults(words, False)]
    return found


def anchors(text):
    """The anchors of the headings, as the forges make them."""
    found = set()
    for heading in re.findall(r"^#+ +(.*)$", prose(text), re.M):
        plain = re.sub(r"\]\([^)]*\)", "]", heading).strip().lower()
        anchor = re.sub(r"[^\w\- ]", "", plain).replace(" ", "-")
        number, name = 0, anchor
        while name in found:
            number += 1
            name = f"{anchor}-{number}"
        found.add(name)
    return found


def link_faults(root, where, text):
    found, running = [], prose(text)
    for match in LINK.finditer(running):
        address = match.group(1)
        if re.match(r"[a-z]+:", address):
            continue
        path, _, anchor = address.partition("#")
        target = (root / where).parent / path if path else root / where
        number = running.count("\n", 0, match.start()) + 1
        if not target.exists():
            found.append(f"{where}:{number}: the link {address} leads to no file")
        elif anchor and (target.suffix != ".md" or anchor not in anchors(target.read_text())):
            found.append(f"{where}:{number}: the link {address} leads to no heading")
    return found


def documents(root):
    done = subprocess.run(["git", "-C", str(root), "ls-files", "-z", "*.md"], capture_output=True, text=True)
    names = [name for name in done.stdout.split("\0") if name] if done.returncode == 0 else []
    names = names or [str(path.relative_to(root)) for path in sorted(root.rglob("*.md"))]
    return [name for name in names if not name.startswith("build/") and (root / name).is_file()]


def faults(root, program):
    found = []
    for where in documents(root):
        text = (root / where).read_text()
        found += command_faults(where, text, program) + link_faults(root, where, text)
    guide = (root / GUIDE).read_text()
    found += [f"{GUIDE}: does not mention {name}" for name in program.leaves()
              if not re.search(rf"\b{name}\b".replace(" ", r"\s+"), guide)]
    return found


def prove_that_it_can_fail(program):
    good = "# A guide\n\n" + "\n".join(f"`{name}`" for name in program.leaves()) + "\n\n## A `b`, c\n\n"
    bad = ["```\nhushmode quit 90m\n```\n", "```\n$ hushmode status --jsn  # how\n```\n", "```\nhushmode on now\n```\n",
           "```\nhushmode explain \\\n  --at 14:20\n```\n", "```\ntrue && hushmode profile ad Work\n```\n",
           "```\nhushmode profile\n```\n", "```\nhushmode profile add A --vibrate maybe\n```\n",
           "```\nhushmode agenda --days\n```\n", "So `hushmode profile edit --colour red`.\n", "So `hushmode stat`.\n",
           "[page](other.md)\n", "[page](#a-c)\n", "[page](guide.md#a-d)\n", "![picture](no.svg)\n"]
    fine = ["```\n$ hushmode status --json | cat  # not --jsn\nhushmode quiet 90m\n```\n", "```\n[page](no.md)\n```\n",
            "[page](guide.md#a-b-c), [page](https://example.org/no.md)\n", "So `hushmode profile edit --icon`.\n"]
    for sample in bad + fine:
        with tempfile.TemporaryDirectory() as folder:
            root = pathlib.Path(folder)
            (root / "docs").mkdir()
            (root / GUIDE).write_text(good + sample)
            if len(faults(root, program)) != (sample in bad):
                sys.exit(f"the check itself is broken: {sample!r} gives {faults(root, program)}")
            (root / GUIDE).write_text(good.replace("`hushmode rescue`", ""))
            if faults(root, program) != [f"{GUIDE}: does not mention hushmode rescue"]:
                sys.exit("the check itself is broken: it does not miss a command in the guide")


def main():
    if len(sys.argv) != 3:
        print("usage: check_docs.py HUSHMODE SOURCE-FOLDER", file=sys.stderr)
        return 2
    described = subprocess.run([sys.argv[1], "help", "--json"], capture_output=True, text=True, check=True,
                               env={**os.environ, "LC_ALL": "C.UTF-8"})
    program = Program(json.loads(described.stdout))
    prove_that_it_can_fail(program)
    found = faults(pathlib.Path(sys.argv[2]), program)
    print("\n".join(found) if found else f"{len(program.leaves())} commands, all documents right")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
