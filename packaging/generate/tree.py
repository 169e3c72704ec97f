# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT
"""The commands of the program, as it tells them itself: "hushmode help --json"."""
import json
import os
import re
import subprocess

# English, whatever the user's language; and no terminal's width.
ENVIRONMENT = {**os.environ, "LC_ALL": "C.UTF-8", "LANGUAGE": "", "COLUMNS": "80"}


def output_of(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True, env=ENVIRONMENT).stdout


class Value:
    """What an argument takes: a word for people, and how it can be completed."""

    def __init__(self, fields):
        self.word = fields["word"]
        self.choices = fields.get("choices", [])
        self.names = fields.get("names")  # What "hushmode complete" lists.
        self.path = fields.get("path")  # "file" or "folder"
        self.is_list = fields.get("list", False)
        self.range = fields.get("range")
        self.default = fields.get("default")


class Argument:
    def __init__(self, fields):
        self.is_positional = "name" in fields
        self.names = [fields["name"]] if self.is_positional else fields["names"]
        self.several = fields.get("several", False)
        self.help = fields["help"]
        self.required = fields["required"]
        self.value = Value(fields["value"]) if "value" in fields else None


class Command:
    def __init__(self, fields):
        self.name = fields["name"]  # "hushmode profile edit"
        self.word = self.name.split()[-1]
        self.purpose = fields["purpose"]
        self.help = fields["help"]
        self.notes = fields["notes"]
        self.examples = fields["examples"]
        arguments = [Argument(each) for each in fields["arguments"]]
        self.places = [each for each in arguments if each.is_positional]
        self.options = [each for each in arguments if not each.is_positional]
        self.commands = [Command(each) for each in fields["commands"]]

    def all(self):
        """This command and all in it."""
        yield self
        for each in self.commands:
            yield from each.all()


class Program:
    def __init__(self, path):
        fields = json.loads(output_of(path, "help", "--json"))
        self.command = Command(fields)
        self.profile_keys = fields["profileKeys"]


def daemon_options(path):
    """The daemon's options, as its help shows them: [(names with their value, explanation)]."""
    text = output_of(path, "--help").split("Options:\n", 1)[1].split("\n\n", 1)[0]
    entries = re.findall(r"^ {1,6}(-\S(?:.*?\S)??)(?: {2,}|\n {8,})(\S.*(?:\n {8,}\S.*)*)$", text, re.M)
    return [(names, " ".join(help.split())) for names, help in entries]
