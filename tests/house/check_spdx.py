#!/usr/bin/python3
# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""Every source file says in its first lines whose it is and under which licence, in the form of SPDX.

Programs in C++, Python, CMake and shell, and the templates of them. Everything else (documents, goldens, calendars,
property lists, pictures) cannot or need not say it itself: REUSE.toml does.

usage: check_spdx.py SOURCE-FOLDER [--add]; exit 1 where a file does not say it. --add writes it into those that do not,
but for those with changes that are not committed, and names these. It first proves on made-up sources that it can fail.
"""
import pathlib
import subprocess
import sys
import tempfile

HOLDER = "SPDX-FileCopyrightText: Hush Mode developers"
LICENCE = "SPDX-License-Identifier: MIT"
MARKS = {".h": "//", ".cpp": "//", ".py": "#", ".cmake": "#"}
# After a line "#!", and with no more before it than that.
NEAR = 3


def mark(path, first_line):
    """What begins a comment in that file; None where the file need not say it."""
    name = path.name.removesuffix(".in")
    if name == "CMakeLists.txt" or path.parts[:1] == ("debian",) and name == "rules":
        return "#"
    suffix = pathlib.PurePath(name).suffix
    if suffix in MARKS:
        return MARKS[suffix]
    return "#" if first_line.startswith("#!") else None


def says_it(text, comment):
    lines = text.splitlines()[:NEAR]
    return f"{comment} {HOLDER}" in lines and f"{comment} {LICENCE}" in lines


def with_it(text, comment):
    lines = text.splitlines(keepends=True)
    shebang = [lines.pop(0)] if lines and lines[0].startswith("#!") else []
    # A paragraph of its own: what follows is about the file.
    gap = ["\n"] if lines and lines[0].strip() else []
    return "".join(shebang + [f"{comment} {HOLDER}\n", f"{comment} {LICENCE}\n"] + gap + lines)


def sources(root):
    """The tracked source files, with their texts and the beginnings of their comments."""
    names = git(root, "ls-files", "-z").split("\0")
    if names == [""]:
        names = [str(path.relative_to(root)) for path in sorted(root.rglob("*")) if path.is_file()]
    for name in filter(None, names):
        path = root / name
        if path.is_symlink() or not path.is_file() or name.startswith("build/"):
            continue
        with path.open("rb") as file:
            first_line = file.readline(200).decode("utf-8", "replace")
        comment = mark(pathlib.PurePath(name), first_line)
        if comment:
            yield name, path.read_text(), comment


def git(root, *words):
    done = subprocess.run(["git", "-C", str(root), *words], capture_output=True, text=True)
    return done.stdout if done.returncode == 0 else ""


def silent(root):
    return [(name, text, comment) for name, text, comment in sources(root) if not says_it(text, comment)]


def add(root):
    changed = {line[3:] for line in git(root, "status", "--porcelain", "-z").split("\0") if line}
    left = []
    for name, text, comment in silent(root):
        if name in changed:
            left.append(name)
        else:
            (root / name).write_text(with_it(text, comment))
    return left


def prove_that_it_can_fail():
    texts = {"a.h": "#pragma once\n", "b/CMakeLists.txt": "project(b)\n", "c.py": "#!/usr/bin/python3\n\"\"\"C.\"\"\"\n",
             "d": "#!/bin/sh\nset -eu\n", "e.cpp.in": f"// {LICENCE}\nint e;\n", "debian/rules": "#!/usr/bin/make -f\n"}
    exempt = {"golden.txt": "text\n", "page.md": "# Page\n"}
    with tempfile.TemporaryDirectory() as folder:
        root = pathlib.Path(folder)
        for name, text in {**texts, **exempt}.items():
            (root / name).parent.mkdir(exist_ok=True)
            (root / name).write_text(text)
        if {name for name, _, _ in silent(root)} != set(texts):
            sys.exit("the check itself is broken: it does not object to sources that say nothing")
        for name, text, comment in silent(root):
            added = with_it(text, comment)
            if not says_it(added, comment) or added.startswith("#!") != text.startswith("#!"):
                sys.exit(f"the check itself is broken: what it adds to {name} is not what it looks for")


def main():
    if len(sys.argv) not in (2, 3) or sys.argv[2:] not in ([], ["--add"]):
        print("usage: check_spdx.py SOURCE-FOLDER [--add]", file=sys.stderr)
        return 2
    prove_that_it_can_fail()
    root = pathlib.Path(sys.argv[1])
    if sys.argv[2:]:
        left = add(root)
        print("".join(f"{name}: left alone, it has changes\n" for name in left), end="")
        return 1 if left else 0
    found = silent(root)
    for name, _, comment in found:
        print(f"{name}: lacks the lines '{comment} {HOLDER}' and '{comment} {LICENCE}' at its top; "
              "tests/house/check_spdx.py . --add writes them", file=sys.stderr)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
