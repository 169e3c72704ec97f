# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT
"""The completion for bash: tables of the commands behind an engine (bash_engine.sh), which knows no command."""
import pathlib
import shlex


def action(argument):
    """What the engine does for a value: "names profiles", "list calendars none", "words on off", "files", "any"."""
    value = argument.value
    if value.path:
        return value.path + "s"
    if value.names:
        return " ".join(["list" if value.is_list else "names", value.names, *value.choices])
    if value.choices:
        return " ".join(["wordlist" if value.is_list else "words", *value.choices])
    return "any"


def cases(rows):
    return "".join(f"    {shlex.quote(key)}) {text} ;;\n" for key, text in rows)


def script(program):
    offers, values = [], []
    for command in program.all():
        words = " ".join(each.word for each in command.commands)
        options = " ".join(name for each in command.options for name in each.names)
        offers.append((command.name, f"commands={shlex.quote(words)} options={shlex.quote(options)}"))
        for option in command.options:
            if option.value:
                values += [(f"{command.name} {name}", f"action={shlex.quote(action(option))}") for name in option.names]
        for place, argument in enumerate(command.places, 1):
            key = f"{command.name} {'+' if argument.several else place}"
            values.append((key, f"action={shlex.quote(action(argument))}"))
    engine = (pathlib.Path(__file__).parent / "bash_engine.sh").read_text()
    return (engine.replace("    # OFFERS\n", cases(offers)).replace("    # VALUES\n", cases(values)))
