# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT
"""The completion for fish: one line for each thing that can be said."""

HEAD = r"""# Completion of hushmode for fish. Made by packaging/generate from the program's own commands; do not edit.

# Prints the command that is being typed, and how many arguments it has before the cursor.
function __hushmode_where
    set -l command hushmode
    set -l places 0
    set -l option ''
    set -l only_places ''
    for word in (commandline -opc)[2..]
        if test -n "$option"
            set option ''
        else if test -z "$only_places" -a "$word" = --
            set only_places 1
        else if test -z "$only_places"; and string match -qr -- '^-.' $word
            if contains -- "$command $word" $__hushmode_with_value
                set option $word
            end
        else if contains -- "$command $word" $__hushmode_commands
            set command "$command $word"
        else
            set places (math $places + 1)
        end
    end
    echo $command
    echo $places
end

# Whether that command is typed; with a number, whether that argument is next; with "+", whether any is.
function __hushmode_at
    set -l where (__hushmode_where)
    test "$where[1]" = "$argv[1]"; or return 1
    test -z "$argv[2]" -o "$argv[2]" = +; or test (math $where[2] + 1) -eq $argv[2]
end

function __hushmode_names
    hushmode complete $argv[1] 2>/dev/null
end

# Each entry behind what a list with commas has already, but for those that are in it.
function __hushmode_list
    # What is typed, without its quotation marks.
    set -l typed (commandline -ct | string replace -r -- '^(--[^=]*=)?["\']?' '' | string replace -ra '\\\\(.)' '$1')
    set -l begin (string match -r -- '^.*, *' $typed)
    set -l given (string split , -- $typed | string trim)
    for entry in $argv
        if not contains -- $entry $given[1..-2]
            echo -- "$begin$entry"
        end
    end
end

complete -c hushmode -f
"""


def quoted(text):
    return "'" + text.replace("\\", "\\\\").replace("'", "\\'") + "'"


def candidates(value):
    words = " ".join(value.choices)
    if value.names and value.is_list:
        return f"(__hushmode_list (__hushmode_names {value.names}){' ' + words if words else ''})"
    if value.names:
        return f"(__hushmode_names {value.names})" + (" " + words if words else "")
    if value.choices and value.is_list:
        return f"(__hushmode_list {words})"
    return words


def value_flags(value, of_option):
    if value.path == "file":
        return "-rF" if of_option else "-F"
    if value.path == "folder":
        return ("-x " if of_option else "") + "-a '(__fish_complete_directories)'"
    offered = candidates(value)
    return ("-x " if of_option else "") + (f"-a {quoted(offered)}" if offered else "")


def line(command, *parts, place=""):
    condition = f'__hushmode_at "{command.name}"' + (f" {place}" if place else "")
    return " ".join(["complete -c hushmode -n", quoted(condition), *[each for each in parts if each]]) + "\n"


def option_line(command, option):
    flags = [f"-l {name[2:]}" if name.startswith("--") else f"-s {name[1:]}" for name in option.names]
    return line(command, *flags, value_flags(option.value, True) if option.value else "", "-d " + quoted(option.help))


def script(program):
    commands = [each.name for each in program.all() if each is not program]
    valued = [f"{command.name} {name}" for command in program.all() for option in command.options if option.value
              for name in option.names]
    text = HEAD
    text += "set -g __hushmode_commands " + " ".join(map(quoted, commands)) + "\n"
    text += "set -g __hushmode_with_value " + " ".join(map(quoted, valued)) + "\n"
    for command in program.all():
        text += "\n"
        for inner in command.commands:
            text += line(command, "-a " + inner.word, "-d " + quoted(inner.help))
        for option in command.options:
            text += option_line(command, option)
        for place, argument in enumerate(command.places, 1):
            flags = value_flags(argument.value, False)
            if flags:
                text += line(command, flags, "-d " + quoted(argument.names[0]), place="+" if argument.several else place)
    return text
