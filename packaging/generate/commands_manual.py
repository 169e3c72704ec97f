# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT
"""What the manual says of commands, options and keys."""
import re

import manual
from manual import guarded, inline, literal


def call(argument):
    """An argument as it is called: bold for what is typed as it stands, italic for what stands for something else."""
    if argument.is_positional:
        return rf"\fI{literal(argument.names[0])}\fR" + ("..." if argument.several else "")
    names = ", ".join(rf"\fB{literal(name)}\fR" for name in argument.names)
    if not argument.value:
        return names
    return f"{names} {value_word(argument.value)}"


def value_word(value):
    if "|" in value.word:
        return "|".join(rf"\fB{literal(word)}\fR" for word in value.word.split("|"))
    return rf"\fI{literal(value.word)}\fR"


def sentence(text):
    """A help text is a sentence without its point."""
    return text if text.endswith((".", "!", "?")) else text + "."


def explanation(argument):
    parts = [sentence(argument.help)]
    value = argument.value
    if value and value.is_list and value.choices and value.choices != ["none"]:
        parts.append(f"Among them: {', '.join(value.choices)}.")
    if value and value.range:
        parts.append(f"From {value.range[0]} to {value.range[1]}.")
    if value and value.default:
        parts.append(f"If not given: {value.default}.")
    return " ".join(parts)


def is_help(option):
    return "--help" in option.names


def command_entry(command):
    options = [each for each in command.options if not is_help(each)]
    words = [rf"\fB{literal(command.name)}\fR"]
    words += [call(each) for each in options if each.required]
    words += [call(each) if each.required else f"[{call(each)}]" for each in command.places]
    if any(not each.required for each in options):
        words.append(r"[\fIOPTIONS\fR]")
    head = f".TP 4\n{' '.join(words)}\n{manual.prose(sentence(command.help))}"
    text = ""
    for argument in command.places + options:
        text += manual.entry(call(argument), explanation(argument), indent=" 4")
    for note in command.notes:
        text += manual.paragraph(note)
    examples = [each for each in command.examples if each != command.name]  # That the line above has said.
    if examples:
        text += ".PP\n" + ("Examples:" if len(examples) > 1 else "Example:") + "\n.EX\n"
        text += "".join(f"{guarded(literal(each))}\n" for each in examples) + ".EE\n"
    return f"{head}.RS 4\n{text}.RE\n" if text else head


def commands(program):
    text = ""
    purposes = dict.fromkeys(each.purpose for each in program.commands)
    for purpose in purposes:
        text += f'.SS "{purpose}"\n'
        for command in program.commands:
            if command.purpose == purpose:
                text += "".join(command_entry(each) for each in command.all() if not each.commands)
    return text


def own_options(program):
    return "".join(manual.entry(call(each), explanation(each)) for each in program.options)


def daemon_options(options):
    text = ""
    for names, help in options:
        names = re.sub(r"-[\w-]+", lambda match: rf"\fB{literal(match.group())}\fR", names)
        names = re.sub(r"\b([A-Z]{2,})\b", r"\\fI\1\\fR", names).replace(",", ", ").replace(",  ", ", ")
        text += manual.entry(names, sentence(help))
    return text


def profile_keys(document, expected):
    """The table of keys of docs/profiles-file.md. Exits when a key that profiles have is missing there."""
    rows = re.findall(r"^\| (`.+?`) \| (.+?) \| (.+?) \| (.+?) \|$", document.split("## Profiles")[1], re.M)
    known = {name for row in rows for name in re.findall(r"`(\w+)`", row[0])}
    missing = [key for key in expected if key not in known]
    if missing:
        raise SystemExit(f"docs/profiles-file.md: the table of keys has no {', '.join(missing)}")
    text = ""
    for names, kind, meaning, without in rows:
        meaning = meaning[0].upper() + meaning[1:]
        text += manual.entry(inline(names) + f" ({kind})", f"{sentence(meaning)} When missing: {without}.")
    return text
