#!/usr/bin/python3
# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""The catalogues in po/ hold what the sources say: the template has every marked text and no other, each language has
every text of the template, none of them doubtful, and the same values ({0}, {}) stand on both sides. So too the tables of the library's own texts.

usage: check_texts_translated.py SOURCE-FOLDER; exit 1 where that is not so, with what to do. It first proves on made-up
catalogues that it can fail.
"""
import collections
import json
import pathlib
import plistlib
import re
import subprocess
import sys
import tempfile

Entry = collections.namedtuple("Entry", "one many translations doubtful")
LIBRARY = ("model", "store", "wifi", "calendar", "alarms", "effects", "scheduler", "util")
TABLES = pathlib.Path("packaging/hushmode/HushmodePreferences.bundle")
PLACE = re.compile(r"\{\d*(?::[^}]*)?\}")


def entries_of(text):
    """The entries of a catalogue by their English text, without its header."""
    entries = {}
    for block in re.split(r"\n\s*\n", text):
        fields, field = {}, None
        lines = block.splitlines()
        for line in lines:
            match = re.match(r'(msgid_plural|msgid|msgstr(?:\[\d\])?) (".*")$', line)
            if match:
                field = match.group(1)
                fields[field] = json.loads(match.group(2))
            elif line.startswith('"') and field:
                fields[field] += json.loads(line)
        if fields.get("msgid"):
            doubtful = any(line.startswith("#,") and "fuzzy" in line for line in lines)
            translations = [value for key, value in fields.items() if key.startswith("msgstr")]
            entries[fields["msgid"]] = Entry(fields["msgid"], fields.get("msgid_plural"), translations, doubtful)
    return entries


def places(text):
    return sorted(PLACE.findall(text))


def differences(fresh, template):
    """Of two templates: that of the sources, and the one in po/."""
    found = [f"not in po/hushmode.pot: {one!r}" for one in fresh.keys() - template.keys()]
    found += [f"no longer in the sources: {one!r}" for one in template.keys() - fresh.keys()]
    return sorted(found)


def gaps(template, language):
    """What a language's catalogue lacks."""
    found = []
    for one, entry in template.items():
        translated = language.get(one)
        if not translated or not all(translated.translations):
            found.append(f"not translated: {one!r}")
        elif translated.doubtful:
            found.append(f"doubtful: {one!r}")
        else:
            allowed = [places(one), places(entry.many or one)]
            found += [f"other values than in {one!r}: {each!r}" for each in translated.translations
                      if places(each) not in allowed]
    return found


def library_texts(root):
    """The texts that the library has translated by tables: literals in its calls, and the lists that it calls with."""
    literal = re.compile(r'"((?:[^"\\]|\\.)*)"')
    found = set()
    for room in LIBRARY:
        for path in (root / room).rglob("*.cpp"):
            code = re.sub(r'"\s*\n\s*"', "", path.read_text())
            for place in re.findall(r"\b(?:localized|hostText)\(\s*(\"[^;]*?\")\s*\)|\bErrorTexts \w+\s*\{([^}]*)\}|"
                                    r"\beventStatusLabels = \{([^}]*)\}", code):
                found.update(text for part in place for text in literal.findall(part))
    return found


def table_gaps(texts, table):
    return ([f"not in the table: {text!r}" for text in sorted(texts - table.keys())] +
            [f"no text of the library: {text!r}" for text in sorted(table.keys() - texts)] +
            [f"other values than in {text!r}" for text in sorted(texts & table.keys())
             if re.findall("%.", text) != re.findall("%.", table[text])])


def prove_that_it_can_fail():
    if len(table_gaps({"a %@", "b"}, {"a %@": "A", "c": "C"})) != 3:
        sys.exit("the check itself is broken: it does not see a bad table")
    template = entries_of('msgid ""\nmsgstr "head"\n\nmsgid "on {0}"\nmsgstr ""\n\n'
                          'msgid "{} day"\nmsgid_plural "{} days"\nmsgstr[0] ""\nmsgstr[1] ""\n')
    whole = 'msgid "on {0}"\nmsgstr "an {0}"\n\nmsgid "{} day"\nmsgid_plural "{} days"\nmsgstr[0] "{} Tag"\nmsgstr[1] "{} Tage"\n'
    cases = [(whole, 0), ("", 2), (whole.replace("an {0}", ""), 1), (whole.replace("an {0}", "an {1}"), 1),
             (whole.replace("{} Tage", "Tage"), 1), ("#, fuzzy\n" + whole, 1)]
    for text, count in cases:
        if len(gaps(template, entries_of(text))) != count:
            sys.exit(f"the check itself is broken: it finds {gaps(template, entries_of(text))} in {text!r}")
    if len(differences(template, entries_of('msgid "on"\nmsgstr ""\n'))) != 3:
        sys.exit("the check itself is broken: it does not see a stale template")


def main():
    prove_that_it_can_fail()
    root = pathlib.Path(sys.argv[1])
    template = entries_of((root / "po" / "hushmode.pot").read_text())
    with tempfile.TemporaryDirectory() as folder:
        fresh = pathlib.Path(folder) / "fresh.pot"
        subprocess.run([sys.executable, root / "po" / "update", "--template", fresh], check=True, capture_output=True)
        found = differences(entries_of(fresh.read_text()), template)
    for language in (line for line in (root / "po" / "LINGUAS").read_text().split("\n") if re.match("[a-z]", line)):
        catalogue = root / "po" / f"{language}.po"
        checked = subprocess.run(["msgfmt", "--check", "-o", "/dev/null", catalogue], capture_output=True, text=True)
        if checked.returncode != 0:
            found.append(checked.stderr.strip())
        found += [f"po/{language}.po: {each}" for each in gaps(template, entries_of(catalogue.read_text()))]
        table = TABLES / f"{language}.lproj" / "Localizable.strings"
        texts = library_texts(root)
        if len(texts) < 15:
            sys.exit("the check itself is broken: it does not find the library's texts")
        found += [f"{table}: {each}" for each in table_gaps(texts, plistlib.loads((root / table).read_bytes()))]
    print("\n".join(found))
    if found:
        sys.exit("run po/update, and translate what is empty in po/*.po")


main()
