# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT
"""Manual pages: prose in a small part of Markdown (docs/man/), with the program's own texts put in.

A page's source is: "# name(1): what it is" first; "## SECTION" and "### Subsection"; paragraphs; "term" and then
": explanation" lines; lines with four blanks before them for literal text; {{commands}} and the like on a line of their
own for what is put in. Within lines: `literal`, *variable*, **name**(1).
"""
import re
import textwrap

# Narrow windows: no hyphens in words to be typed, no rivers of blanks.
OPENING = ".nh\n.ad l\n"


def escaped(text):
    text = text.replace("\\", "\\e").replace("…", "...")
    return re.sub(r"(?<![A-Za-z])-|-(?=-)", r"\\-", text)


def literal(text):
    """A text as it is typed: its hyphens stay what they are when copied."""
    return text.replace("\\", "\\e").replace("-", "\\-")


def guarded(line):
    """No request, though it begins with a point or an apostrophe."""
    return "\\&" + line if line[:1] in (".", "'") else line


def inline(text):
    parts = re.split(r"(`[^`]+`|\*\*[^*]+\*\*|\*[^*\s][^*]*\*)", text)
    shown = ""
    for part in parts:
        if part.startswith("`"):
            shown += rf"\fB{literal(part[1:-1])}\fR"
        elif part.startswith("**"):
            shown += rf"\fB{literal(part[2:-2])}\fR"
        elif part.startswith("*") and len(part) > 2:
            shown += rf"\fI{literal(part[1:-1])}\fR"
        else:
            shown += escaped(part)
    return guarded(shown)


def prose(text):
    """A paragraph's lines: each sentence on its own, none too long."""
    lines = []
    for sentence in re.split(r"(?<=[a-z][.!?]) (?=[A-Z`*])", text):
        # Blanks within what is marked stay with it.
        marked = re.sub(r"(`[^`]+`|\*[^*]+\*)", lambda match: match.group().replace(" ", "\0"), sentence)
        lines += textwrap.wrap(marked, 72, break_long_words=False, break_on_hyphens=False)
    return "".join(inline(line.replace("\0", " ")) + "\n" for line in lines) or "\\&\n"


def paragraph(text):
    return ".PP\n" + prose(text)


def code(lines):
    return ".PP\n.RS 4\n.EX\n" + "".join(guarded(literal(line)) + "\n" for line in lines) + ".EE\n.RE\n"


def entry(term, *explanations, indent=""):
    """A term, already in the page's form, with what there is to say of it, in people's."""
    first, *others = [each for each in explanations if each] or [""]
    return f".TP{indent}\n{term}\n{prose(first)}" + "".join(f".IP\n{prose(each)}" for each in others)


def page(source, release, date, insertions):
    """The page of a Markdown source; `insertions` has the page's form for each {{name}}."""
    lines = source.split("\n")
    name, section, about = re.fullmatch(r"# ([\w-]+)\((\d)\): (.+)", lines[0]).groups()
    manual = {"1": "User Commands", "5": "File Formats", "8": "System Administration"}[section]
    out = [f'.\\" Made by packaging/generate of docs/man/{name}.{section}.md; changes belong there.\n',
           ".nr HY 0\n", f'.TH {name.upper()} {section} "{date}" "{release}" "{manual}"\n', OPENING,
           f".SH NAME\n{literal(name)} \\- {escaped(about)}\n"]
    at, fresh = 1, False

    def take(matches):
        nonlocal at
        taken = []
        while at < len(lines) and matches(lines[at]):
            taken.append(lines[at])
            at += 1
        return taken

    while at < len(lines):
        line = lines[at]
        if not line.strip():
            at += 1
            continue
        if line.startswith("#"):
            level, title = line.split(" ", 1)
            out.append((".SH " if level == "##" else ".SS ") + (f'"{title}"' if " " in title else title) + "\n")
            at, fresh = at + 1, True
            continue
        elif line.startswith("{{"):
            out.append(insertions[line.strip("{} ")])
            at += 1
        elif line.startswith("    "):
            text = code([each[4:] for each in take(lambda each: each.startswith("    "))])
            out.append(text.removeprefix(".PP\n") if fresh else text)
        elif at + 1 < len(lines) and lines[at + 1].startswith(": "):
            at += 1
            out.append(entry(inline(line), " ".join(each[2:] for each in take(lambda each: each.startswith((": ", "  "))))))
        else:
            text = paragraph(" ".join(take(lambda each: each.strip() and not each.startswith(("#", "{{", "    ")))))
            out.append(text.removeprefix(".PP\n") if fresh else text)
        fresh = False
    return "".join(out)
