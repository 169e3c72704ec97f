# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT
"""The completion for zsh: a function for each command, in the words of _arguments."""

HEAD = """#compdef hushmode
# Completion of hushmode for zsh. Made by packaging/generate from the program's own commands; do not edit.

# Names that the program knows: profiles, calendars, networks, zones; further words may stand for them.
_hushmode_names() { # KIND [WORD...]
  local -a names expl
  names=(${(f)"$(_call_program $1 hushmode complete $1 2>/dev/null)"} ${@[2,-1]})
  _wanted $1 expl $1 compadd -a names
}

# One more entry of a list with commas, of those that are not yet in it.
_hushmode_list() { # TAG ENTRY...
  local tag=$1 given
  local -a expl entries
  shift
  entries=("$@")
  compset -P '*,(\\\\[[:blank:]]|[[:blank:]])#'
  for given in ${(s:,:)${(Q)IPREFIX}}; do entries=("${(@)entries:#${given## #}}"); done
  _wanted $tag expl $tag compadd -a entries
}

_hushmode_name_list() { # KIND [WORD...]
  _hushmode_list $1 ${(f)"$(_call_program $1 hushmode complete $1 2>/dev/null)"} ${@[2,-1]}
}
"""


def quoted(text):
    return "'" + text.replace("'", "'\\''") + "'"


def escaped(text):
    """Within a specification, where brackets and colons mean something."""
    for special in "\\[]:":
        text = text.replace(special, "\\" + special)
    return text


def action(value):
    """Behind "MESSAGE:"; one that begins with a blank is called as it stands."""
    if value.path:
        return "_files" if value.path == "file" else "_files -/"
    if value.names:
        function = "_hushmode_name_list" if value.is_list else "_hushmode_names"
        return " ".join([" " + function, value.names, *value.choices])
    if value.choices:
        return f" _hushmode_list {value.word.lower()} {' '.join(value.choices)}" if value.is_list else \
            f"({' '.join(value.choices)})"
    return " "


def option_line(option):
    names = option.names
    exclusion = f"({' '.join(names)})" if len(names) > 1 else ""
    if "--help" in names or "--version" in names:
        exclusion = "(- *)"
    value = f":{escaped(option.value.word)}:{action(option.value)}" if option.value else ""
    lines = []
    for name in names:
        # Long ones take their value behind "=", too.
        assign = ("=" if name.startswith("--") else "+") if option.value else ""
        lines.append(quoted(f"{exclusion}{name}{assign}[{escaped(option.help)}]{value}"))
    return lines


def place_line(argument, place):
    where = "*" if argument.several else str(place) if argument.required else f"{place}:"
    separator = ":" if argument.required or argument.several else ""
    return quoted(f"{where}{separator}{escaped(argument.names[0])}:{action(argument.value)}")


def function_name(command):
    return "_" + command.name.replace(" ", "_").replace("-", "_")


def function(command):
    lines = [line for option in command.options for line in option_line(option)]
    if not command.commands:
        lines += [place_line(each, place) for place, each in enumerate(command.places, 1)]
        return f"\n{function_name(command)}() {{\n  _arguments -s \\\n    " + " \\\n    ".join(lines) + "\n}\n"
    lines += ["'1: :->command'", "'*:: :->rest'"]
    described = "\n".join("      " + quoted(f"{each.word}:{each.help}") for each in command.commands)
    called = "\n".join(f"        {each.word}) {function_name(each)} ;;" for each in command.commands)
    return f"""
{function_name(command)}() {{
  local curcontext=$curcontext state
  local -a commands line
  local -A opt_args
  _arguments -C -s \\
    {(' ' + chr(92) + chr(10) + '    ').join(lines)} && return
  case $state in
    command)
      commands=(
{described}
      )
      _describe -t commands command commands
      ;;
    rest)
      curcontext="${{curcontext%:*}}-$line[1]:"
      case $line[1] in
{called}
      esac
      ;;
  esac
}}
"""


def script(program):
    return HEAD + "".join(function(each) for each in program.all()) + '\n_hushmode "$@"\n'
