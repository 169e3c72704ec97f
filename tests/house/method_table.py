#!/usr/bin/python3
# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""Makes the table of exported classes and methods with the files that define them, or checks the one in docs/.

usage: method_table.py SOURCE-FOLDER          print the table
       method_table.py SOURCE-FOLDER --check  exit 1 where docs/methods.md is not that table
"""
import difflib
import pathlib
import re
import sys

CLASSES = {"HMProfile": "model/HMProfile.h", "HMProfilesManager": "store/HMProfilesManager.h",
           "HMEventManager": "calendar/HMEventManager.h", "HMWiFiManager": "wifi/HMWiFiManager.h",
           "HMUtils": "util/HMUtils.h"}
CATEGORIES = ["model/DayHelpers.h", "calendar/EventBinding.h", "effects/VolumeMarks.h", "alarms/AlarmTagging.h",
              "util/Images.h"]
ROOMS = ["platform", "util", "model", "store", "wifi", "calendar", "alarms", "effects", "scheduler"]
COMMENT = re.compile(r"//[^\n]*|/\*.*?\*/", re.S)
# A declaration: whatever type, a name, parameters, and then ";" (defined elsewhere) or "{" (defined here).
METHOD = re.compile(r"(?:^|[\s*&>])(\w+)\s*\(((?:[^()]|\([^()]*\))*)\)\s*(?:const\s*)?(?:override\s*)?([;{])")
KEYWORDS = {"if", "for", "while", "switch", "return", "explicit", "std"}


def code_of(path):
    return COMMENT.sub("", path.read_text())


def class_body(code, name):
    start = re.search(r"class HUSHMODE_API %s\b[^;{]*\{" % name, code).end()
    depth, at = 1, start
    while depth:
        depth += {"{": 1, "}": -1}.get(code[at], 0)
        at += 1
    return code[start:at - 1].split("private:\n  std::shared_ptr")[0]


def declared(code, inside):
    """The public methods in order, once each: name and whether the header itself defines it."""
    methods = {}
    depth = 0
    for line in re.split(r"(?<=[;{}])", code):
        if depth == 0:
            for name, _, end in METHOD.findall(line):
                if name not in KEYWORDS and not name.startswith("Private") and name != inside:
                    methods[name] = methods.get(name, False) or end == "{"
        depth = max(0, depth + line.count("{") - line.count("}"))
    return methods


def main():
    root = pathlib.Path(sys.argv[1])
    sources = {p.relative_to(root): code_of(p) for room in ROOMS for p in sorted((root / room).glob("*.cpp"))}
    lines = ["# Where each method is defined", "",
             "Made by `tests/house/method_table.py`; a test compares. A method lives in the room of its subsystem, which need",
             "not be the room of the header that declares its class.", ""]

    def add(title, header, methods, qualifier):
        lines.extend([f"## {title}", "", f"Declared in `{header}`.", "", "| method | defined in |", "|---|---|"])
        for name, in_header in methods.items():
            # Definitions begin in the first column; calls are indented.
            pattern = re.compile(r"^(?:\w[\w:<>,&* ]*[\s*&>])?%s%s\s*\(" % (re.escape(qualifier), re.escape(name)), re.M)
            places = [f"`{path}`" for path, code in sources.items() if pattern.search(code) and
                      (qualifier or str(path) == header.replace(".h", ".cpp"))]
            if in_header:
                places.insert(0, f"`{header}`")
            if not places:
                sys.exit(f"{header}: {qualifier}{name} is declared and defined nowhere")
            lines.append(f"| `{name}` | {', '.join(dict.fromkeys(places))} |")
        lines.append("")

    for name, header in CLASSES.items():
        body = class_body(code_of(root / header), name).split("private:\n")
        public = "".join(body[:1]) if name != "HMUtils" else "".join(body)
        add(name, header, declared(public, name), name + "::")
    for header in CATEGORIES:
        if (root / header).exists():
            functions = re.sub(r"namespace hushmode \{", "", code_of(root / header))
            add(header.split("/")[1][:-2], header, declared(functions, ""), "")
    table = "\n".join(lines).rstrip() + "\n"

    if "--check" not in sys.argv:
        sys.stdout.write(table)
        return
    kept = (root / "docs/methods.md").read_text()
    if kept != table:
        sys.stdout.writelines(difflib.unified_diff(kept.splitlines(True), table.splitlines(True), "docs/methods.md",
                                                   "the sources"))
        sys.exit("docs/methods.md is stale: tests/house/method_table.py . > docs/methods.md")
    print(f"{table.count(chr(10) + '| `')} methods")


main()
