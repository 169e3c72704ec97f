#!/usr/bin/python3
# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""Plays every scenario of this folder and compares the whole record of the phone with the file beside it.

usage: check_scenarios.py PROGRAM [--update] [NAME...]

NAME.json is a scenario as `hushmode simulate` takes it; its "comment" says what it shows. NAME.record is what the phone
recorded, an instant a paragraph and an entry a line: kind and fields, in their order. A log line's source line stands
there only where it is a fixed number. `--update` writes the records anew, after a change that is meant: read the
difference before it is committed.
"""
import argparse
import concurrent.futures
import difflib
import json
import os
import pathlib
import subprocess
import sys

FOLDER = pathlib.Path(__file__).resolve().parent

# The lines of the log whose number is fixed, by method.
FIXED_LINES = {
    "setPropertiesFromDicitonary:": {88},
    "addToWiFiNetwork:": {587, 589},
    "removeFromWiFiNetwork:": {594, 604},
    "saveAllProfilesToDisk:postNotification:notificationName:": {286, 289},
    "updateProfile:success:failure:": {342},
    "updateProfile:shouldPostNotification:success:failure:": {32},
    "eventsForProfile:": {95, 104},
    "lastConnectedNetwork": {102},
    "hm_isHidden": {47},
    "unloadAllHushmodeAlarms": {144},
}


def text_of(entry):
    """An entry of the record as a line: all that it holds but its time."""
    fields = {key: value for key, value in entry.items() if key not in ("time", "kind")}
    if entry["kind"] == "log":
        line = f" @{fields['line']}" if fields["line"] in FIXED_LINES.get(fields["method"], ()) else ""
        return f"log {fields['level']} {fields['method']}{line} | {fields['message']}"
    words = [entry["kind"]]
    for index, (key, value) in enumerate(fields.items()):
        text = json.dumps(value, ensure_ascii=False)
        words.append(value if index == 0 and isinstance(value, str) else f"{key}={text}")
    return " ".join(words)


def record_of(program, scenario):
    """The record as text, and what went wrong (empty when nothing did)."""
    run = subprocess.run([program, "simulate", str(scenario), "--json", "--no-host"], capture_output=True, text=True, timeout=60)
    lines, time = [], None
    for entry in map(json.loads, run.stdout.splitlines()):
        if entry["time"] != time:
            time = entry["time"]
            lines += [""] * bool(lines) + [time]
        lines.append("  " + text_of(entry))
    trouble = run.stderr
    if run.returncode != 0:
        trouble += f"exit code {run.returncode}\n"
    return "\n".join(lines) + "\n", trouble


def check(program, scenario, update):
    """Everything that is wrong with one scenario, as text; empty when nothing is."""
    if not str(json.loads(scenario.read_text()).get("comment", "")).strip():
        return "it has no comment that says what it shows\n"
    record, trouble = record_of(program, scenario)
    if trouble:
        return trouble
    again, _ = record_of(program, scenario)
    if again != record:
        return "two runs gave two records\n"
    expected = scenario.with_suffix(".record")
    if update:
        expected.write_text(record)
        return ""
    if not expected.exists():
        return f"{expected.name} is missing\n"
    return "".join(difflib.unified_diff(expected.read_text().splitlines(True), record.splitlines(True),
                                        f"expected {expected.name}", "recorded"))


def main():
    arguments = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    arguments.add_argument("program")
    arguments.add_argument("names", nargs="*", metavar="NAME")
    arguments.add_argument("--update", action="store_true")
    options = arguments.parse_args()

    scenarios = sorted(FOLDER.glob("*.json"))
    if options.names:
        scenarios = [FOLDER / (name.removesuffix(".json") + ".json") for name in options.names]
    if not scenarios:
        sys.exit("there are no scenarios")
    with concurrent.futures.ThreadPoolExecutor(max_workers=os.cpu_count()) as pool:
        results = list(pool.map(lambda each: check(options.program, each, options.update), scenarios))
    failed = 0
    for scenario, wrong in zip(scenarios, results):
        if wrong:
            failed += 1
            print(f"--- {scenario.stem}\n{wrong}")
    owned = {each.with_suffix(".record") for each in FOLDER.glob("*.json")}
    for orphan in sorted(set(FOLDER.glob("*.record")) - owned):
        failed += 1
        print(f"--- {orphan.name} belongs to no scenario")
    print(f"{len(scenarios)} scenarios, {failed} failed")
    sys.exit(failed > 0)


if __name__ == "__main__":
    main()
