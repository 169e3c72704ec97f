#!/usr/bin/python3
# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""The house's rule for texts: whatever is shown to people is marked for translation where it stands, and no sentence is
put together from pieces. Looks for literals with words in them

- that go to standard output or standard error, into an error, a complaint, a service's state, or a help text,
- and that no translating function, nor a mark, surrounds;
- and for words that are glued to a translated text.

usage: check_texts_marked.py SOURCE-FOLDER; exit 1 where the rule is broken. It first proves on made-up sources that it
can fail. A heuristic: a text that travels through a variable of its own is not seen.
"""
import pathlib
import re
import sys

ROOMS = ("host", "devices/shared", "devices/linux", "apps/cli", "apps/usage", "apps/client", "apps/profiles", "apps/advice", "apps/pictures", "apps/terminal", "apps/daemon", "apps/bus", "apps/simulation",
         "apps/words")
MARKS = re.compile(r"\b(tr|trCount|HUSHMODE_MARKED|Message|lineOf|R)\s*\(")
LITERAL = re.compile(r'R"\w*\(.*?\)\w*"|"(?:[^"\\\n]|\\.)*"', re.S)
COMMENT = re.compile(r'R"\w*\(.*?\)\w*"|"(?:[^"\\\n]|\\.)*"|\'(?:[^\'\\]|\\.)\'|//[^\n]*|/\*.*?\*/|^\s*#include[^\n]*', re.S | re.M)
# Where a text is shown to people: the call, or the stream, that it goes into.
SHOWN = re.compile(r"(?:\b(?:InputError|ServiceError|AlreadyRunning|EditError|fail|failed|lose|rest|keep|say_|sayOnce|"
                   r"complain_?|complainOnce|complaining|diagnose_?|tellOnce|report_?|problem_?|footer)\s*\(|"
                   r"\bstd::c(?:out|err)\b|\bout_\s*<<|\bsink_?\s*\(|\badd_(?:option|flag|subcommand)\s*\()")
WORDS = re.compile(r"[A-Za-z]{2,}")
# What is the same in all languages: the program's own name, names of options, keys, kinds of values and services.
NAME = re.compile(r'^((?:hushmoded?|feedbackd): ?|--?[\w,!-]+|[A-Z]+|[a-z][\w-]*|org\.[\w.]+|NetworkManager|GSettings|'
                  r'Mutter|)$')


def closing(code, opening):
    depth = 0
    for match in re.compile(r'"(?:[^"\\\n]|\\.)*"|[()]').finditer(code, opening):
        depth += {"(": 1, ")": -1}.get(match.group(0), 0)
        if depth == 0:
            return match.end()
    return len(code)


def without_comments(code):
    return COMMENT.sub(lambda m: m.group(0) if m.group(0)[0] in "R\"'" else "\n" * m.group(0).count("\n"), code)


def without_marked(code):
    """The code with blanks for what a mark surrounds."""
    result = list(code)
    for match in MARKS.finditer(code):
        for i in range(match.end(), closing(code, match.end() - 1) - 1):
            if result[i] != "\n":
                result[i] = " "
    return "".join(result)


def faults_of(name, text):
    code = without_marked(without_comments(text))
    found = []
    for match in SHOWN.finditer(code):
        isStream = not match.group(0).endswith("(")
        end = code.find(";", match.end()) if isStream else closing(code, match.end() - 1)
        shown = code[match.end():end]
        for literal in LITERAL.finditer(shown):
            inside = literal.group(0)[1:-1].replace("\\n", "")
            if literal.group(0).startswith("R") or NAME.match(inside) or not WORDS.search(inside):
                continue
            line = code[:match.end() + literal.start()].count("\n") + 1
            found.append(f"{name}:{line}: not marked for translation: {literal.group(0)}")
    for match in re.finditer(r'\btr(?:Count)?\(\s*\)\s*\+\s*("[^"\n]*[A-Za-z]{2,}[^"\n]*")|'
                             r'("[^"\n]*[A-Za-z]{2,} [^"\n]*")\s*\+\s*tr\(', code):
        found.append(f"{name}:{code[:match.start()].count(chr(10)) + 1}: glued to a translated text: "
                     f"{match.group(1) or match.group(2)}")
    return sorted(set(found))


def faults(root):
    found = []
    for room in ROOMS:
        for path in sorted((root / room).rglob("*")):
            if path.suffix in (".cpp", ".h"):
                found += faults_of(path.relative_to(root), path.read_text())
    return found


def prove_that_it_can_fail():
    bad = ['std::cout << "No events.\\n";', 'throw InputError("quiet: expected how long");',
           'throw InputError(file + ": no such file");', 'add_flag("--list", list, "List the quiet hours");',
           'services_.report(name, {false, "the service is away"});', 'sink_(Priority::Error, "the bus is gone");',
           'sayOnce(quoted(title) + ": its window ends");', 'std::cerr << tr("off") << " now it is\\n";',
           'x = tr("the window") + " is closed";', 'x = "The window " + tr("is closed");']
    good = ['std::cout << tr("No events.") << \'\\n\';', 'std::cerr << "hushmode: " << error.what();',
            '// std::cout << "No events.";', 'throw InputError(tr("{}: no such file", file));',
            'add_flag("--list", list, tr("List the quiet hours"));', 'sayOnce(Message("its window ends ({0})", end));',
            'services_.report("tones", {true, "feedbackd"});']
    for case in bad:
        if len(faults_of("case", case)) != 1:
            sys.exit(f"the check itself is broken: it says of {case!r}: {faults_of('case', case)}")
    for case in good:
        if faults_of("case", case):
            sys.exit(f"the check itself is broken: it objects to {case!r}")


prove_that_it_can_fail()
found = faults(pathlib.Path(sys.argv[1]))
print("\n".join(found))
if found:
    sys.exit(f"{len(found)} texts: mark them with tr() or Message() (devices/words/Text.h, host/Message.h)")
