#!/usr/bin/python3
# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""What the commands print for programs is what docs/json says: every command with --json, without and with the daemon.

usage: check_json.py HUSHMODE SOURCE-FOLDER [HUSHMODED] [unittest argument...]; with HUSHMODED under run_with.py.
"""
import json
import pathlib
import plistlib
import sys
import time
import unittest

import jsonschema

from user_phone import UserFolders

if len(sys.argv) > 3 and not sys.argv[3].startswith("-"):
    sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "daemon"))
    from phone_services import WiFi
PROGRAM, SOURCE = pathlib.Path(sys.argv.pop(1)).resolve(), pathlib.Path(sys.argv.pop(1)).resolve()
DAEMON = sys.argv.pop(1) if len(sys.argv) > 1 and not sys.argv[1].startswith("-") else None
SCHEMAS = SOURCE / "docs/json"
EXAMPLES = SOURCE / "examples"


class Json(unittest.TestCase):
    """A phone in a meeting of the profile Work, with quiet hours for the profile Night."""

    @classmethod
    def setUpClass(cls):
        cls.seen = set()
        cls.phone = UserFolders(PROGRAM, on_bus=DAEMON is not None)
        cls.addClassCleanup(cls.phone.end)
        now = time.time()
        cls.phone.put_event("Work", "Interview", now - 600, now + 600)
        cls.list = cls.phone.folder / "list.plist"
        cls.list.write_bytes(plistlib.dumps([
            {"title": "Work", "enabled": True, "allDay": True, "ringerVolume": 0.05, "calendarIdentifiers": ["folder:Work"]},
            {"title": "Night", "enabled": True, "allDay": True, "calendarIdentifiers": []}]))
        cls.phone.write_profiles([])
        if DAEMON:
            wifi = WiFi()
            wifi.join(wifi.add("Home"))
            cls.phone.start_daemon(DAEMON)
        cls.lines("import", "import", cls.list)
        cls.call("on")
        cls.call("schedule", "Night", "22:00-06:00", "--days", "mon,sun")
        if DAEMON:
            deadline = time.monotonic() + 30
            while '"on":true' not in cls.call("log", "--json"):  # Once its effects have come to rest.
                assert time.monotonic() < deadline, "the profile did not go on"
                time.sleep(0.1)

    @classmethod
    def call(cls, *arguments, codes=(0,)):
        result = cls.phone.run(*arguments)
        assert result.returncode in codes, (arguments, result)
        return result.stdout

    @classmethod
    def lines(cls, schema, *arguments, least=1, codes=(0,)):
        """Runs a command and holds each line against a schema."""
        described = json.loads((SCHEMAS / f"{schema}.schema.json").read_text())
        validator = jsonschema.Draft202012Validator(described)
        lines = [json.loads(line) for line in cls.call(*arguments, "--json", codes=codes).splitlines()]
        for line in lines:
            errors = [f"{error.json_path}: {error.message}" for error in validator.iter_errors(line)]
            assert not errors, (arguments, str(line)[:300], errors)
        assert len(lines) >= least, (arguments, lines)
        cls.seen.add(schema)
        return lines

    def test_each_command_prints_what_its_schema_says(self):
        lines, day = self.lines, ["--from", "2026-11-24", "--to", "2026-11-24", "--zone", "Europe/Berlin"]
        lines("profile-list", "profile", "list", least=2)
        lines("profile-show", "profile", "show", "Work")
        lines("calendars", "calendars")
        lines("agenda", "agenda", "--days", "8", least=2)
        lines("schedule", "schedule", "--list")
        lines("events", "events", "--calendars", EXAMPLES / "calendars", *day, least=3)
        lines("simulate", "simulate", EXAMPLES / "workday.json", least=100)
        lines("explain", "explain", "Work", codes=(0, 1))
        lines("explain", "explain", "Night", codes=(0, 1))
        lines("doctor", "doctor", codes=(0, 1, 3))
        lines("help", "help", least=1)
        lines("import", "import", self.list, "--dry-run", "--replace", least=2)
        lines("rescue", "rescue", least=0, codes=(1,) if DAEMON else (0,))
        if DAEMON:
            self.assertTrue(lines("status", "status")[0]["Applied"])
            lines("log", "log")
            lines("networks", "networks")
            # What a dead daemon has left.
            self.phone.kill_daemon()
            lines("rescue", "rescue", "--dry-run", least=2)
            lines("rescue", "rescue", least=2)
        else:
            for command in ("status", "log", "networks"):
                lines(command, command, least=0, codes=(3,))
        self.assertEqual(self.seen, {path.name.removesuffix(".schema.json") for path in SCHEMAS.glob("*.schema.json")})

    def test_each_command_with_json_has_a_schema_and_a_line_in_the_list(self):
        described = {json.loads(path.read_text())["title"]: path.name for path in SCHEMAS.glob("*.schema.json")}
        listed = (SCHEMAS / "README.md").read_text()
        for title, name in described.items():
            self.assertIn(f"[`{title}`]({name})", listed)
        found = []

        def walk(command):
            if any("--json" in argument.get("names", []) for argument in command["arguments"]):
                found.append(command["name"])
            for each in command["commands"]:
                walk(each)

        walk(json.loads(self.call("help", "--json")))
        self.assertGreater(len(found), 10)
        for name in found:
            self.assertTrue(any(title.startswith(name + " ") for title in described), f"{name} --json has no schema")
        self.assertEqual(len(found), len(described))

    def test_the_schemas_are_schemas_that_allow_nothing_else(self):
        for path in SCHEMAS.glob("*.schema.json"):
            schema = json.loads(path.read_text())
            jsonschema.Draft202012Validator.check_schema(schema)
            for object_ in self.objects(schema):
                self.assertIn("additionalProperties", object_, path)

    def objects(self, schema):
        if isinstance(schema, dict):
            if "properties" in schema:
                yield schema
            for each in schema.values():
                yield from self.objects(each)
        elif isinstance(schema, list):
            for each in schema:
                yield from self.objects(each)


if __name__ == "__main__":
    unittest.main()
