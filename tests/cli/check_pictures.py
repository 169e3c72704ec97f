#!/usr/bin/python3
# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""The pictures of `hushmode agenda`: drawn by the program, measured and rendered by what people look at them with.

usage: check_pictures.py PROGRAM SOURCE-FOLDER [--update]   (--update: writes the expected pictures of the terminal anew)
"""
import atexit
import fcntl
import os
import pathlib
import plistlib
import pty
import re
import struct
import subprocess
import sys
import tempfile
import termios
import unicodedata
import unittest
import xml.etree.ElementTree as ElementTree
import zlib

import gi

gi.require_version("Pango", "1.0")
gi.require_version("PangoCairo", "1.0")
from gi.repository import Pango, PangoCairo  # noqa: E402

PROGRAM, SOURCE = pathlib.Path(sys.argv.pop(1)).resolve(), pathlib.Path(sys.argv.pop(1)).resolve()
UPDATE = "--update" in sys.argv and not sys.argv.remove("--update")
SVG = "{http://www.w3.org/2000/svg}"
WIDTH, LEFT, RIGHT = 360, 12, 348
ON_LIGHT, ON_DARK = (0, 0x72, 0xB2), (0x56, 0xB4, 0xE9)
HEBREW = "ארוחת בוקר עם המשפחה בבית הקפה הגדול"


def profile(identifier, title, calendar, start=None, end=None, **more):
    return {"identifier": identifier, "title": title, "enabled": True, "allDay": start is None,
            "startTime": start or "12:00 AM", "endTime": end or "12:00 AM", "calendarIdentifiers": ["folder:" + calendar],
            "allDayEventsIgnored": True, "ringerVolume": 0.05, **more}


def event(day, start, end, title, status="CONFIRMED"):
    return (f"BEGIN:VEVENT\r\nUID:{day}{start}{end}{title}@example.org\r\nDTSTAMP:20240101T000000Z\r\n"
            f"DTSTART;TZID=Europe/Berlin:{day}T{start}00\r\nDTEND;TZID=Europe/Berlin:{day}T{end}00\r\n"
            f"STATUS:{status}\r\nSUMMARY:{title}\r\nEND:VEVENT\r\n")


WORK, HOME = profile(1, "Meetings", "Work", "8:00 AM", "6:00 PM"), profile(2, "Evening", "Home", "4:00 PM", "10:00 PM")
TITLES = ["Standup", "Review of the quarterly figures and what follows from them for next year", "1:1", "WWWW MMMM WWWW MMMM",
          "会議 " * 12, HEBREW, "Lunch & learn <now>", "fiji lilli " * 9]
# A phone's profiles and calendars, the first day, and how many.
PHONES = {
    "a workday": ([WORK], {"Work": [
        event("20251118", "0900", "0915", "Standup"), event("20251118", "1030", "1200", "Architecture review"),
        event("20251118", "1300", "1330", "Budget review", "CANCELLED"), event("20251118", "0700", "0730", "Call with Osaka"),
        "BEGIN:VEVENT\r\nUID:x\r\nDTSTAMP:20240101T000000Z\r\nDTSTART;VALUE=DATE:20251117\r\n"
        "DTEND;VALUE=DATE:20251122\r\nSUMMARY:On call\r\nEND:VEVENT\r\n"]}, "2025-11-18", 1),
    "conflicts": ([WORK, HOME, profile(3, "Doctor & <Family>", "Health")], {
        "Work": [event("20251120", "0900", "0930", "Standup"), event("20251120", "1500", "1730", "Planning")],
        "Home": [event("20251120", "1600", "1830", "Parents' evening")],
        "Health": [event("20251120", "1700", "1715", "Physio")]}, "2025-11-20", 1),
    "the clock goes ahead": ([profile(1, "Night", "Work")], {"Work": [event("20250330", "0100", "0430", "Deployment")]},
                             "2025-03-30", 1),
    "the clock goes back": ([profile(1, "Night", "Work")], {"Work": [event("20251026", "0130", "0430", "Migration")]},
                            "2025-10-26", 1),
    "fifty events": ([WORK], {"Work": [
        event("20251120", f"{8 + n // 6:02}{n * 10 % 60:02}", f"{9 + n // 6 + n % 2:02}{n * 10 % 60:02}", TITLES[n % 8])
        for n in range(50)]}, "2025-11-20", 1),
    "nothing": ([WORK], {"Work": [event("20200101", "0900", "1000", "Past")]}, "2025-11-18", 2),
    "over midnight": ([HOME, profile(4, "W" * 200, "Home")], {"Home": [
        "BEGIN:VEVENT\r\nUID:n\r\nDTSTAMP:20240101T000000Z\r\nDTSTART;TZID=Europe/Berlin:20251121T220000\r\n"
        "DTEND;TZID=Europe/Berlin:20251123T013000\r\nSUMMARY:Night train\r\nEND:VEVENT\r\n"]}, "2025-11-21", 3),
}


class Phone:
    """A user's folders, in which the program finds these profiles and calendars."""

    def __init__(self, name):
        profiles, calendars, self.day, self.days = PHONES[name]
        self.holder = tempfile.TemporaryDirectory()
        atexit.register(self.holder.cleanup)
        self.folder = pathlib.Path(self.holder.name)
        (self.folder / "config/hushmode").mkdir(parents=True, mode=0o700)
        for key, value in (("com.quorvel.hushmode.profiles.plist", profiles),
                           ("com.quorvel.hushmode.plist", {"com.quorvel.hushmode.enabled": True})):
            (self.folder / "config/hushmode" / key).write_bytes(plistlib.dumps(value))
        for calendar, events in calendars.items():
            folder = self.folder / "data/hushmode/calendars" / calendar
            folder.mkdir(parents=True)
            folder.joinpath("events.ics").write_bytes(("BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//test//EN\r\n" +
                                                       "".join(events) + "END:VCALENDAR\r\n").encode())
        self.environment = {**os.environ, "XDG_CONFIG_HOME": str(self.folder / "config"), "TZ": "Europe/Berlin",
                            "XDG_DATA_HOME": str(self.folder / "data"), "XDG_STATE_HOME": str(self.folder / "state"),
                            "XDG_CACHE_HOME": str(self.folder / "cache"), "XDG_RUNTIME_DIR": str(self.folder),
                            "LC_ALL": "C.UTF-8", "LANGUAGE": ""}
        for unwanted in ("DBUS_SESSION_BUS_ADDRESS", "COLUMNS"):
            self.environment.pop(unwanted, None)

    def run(self, *arguments, environment=(), **options):
        command = [PROGRAM, "agenda", "--from", self.day, "--days", str(self.days), *map(str, arguments)]
        return subprocess.run(command, env={**self.environment, **dict(environment)}, timeout=60,
                              **{"stdout": subprocess.PIPE, "stderr": subprocess.PIPE, **options})

    def drawn(self, *arguments, **options):
        result = self.run(*arguments, **options)
        assert (result.returncode, result.stderr) == (0, b""), result
        return result.stdout.decode()


def measure(text, size, bold):
    context = PangoCairo.FontMap.get_default().create_context()
    PangoCairo.context_set_resolution(context, 72)
    layout = Pango.Layout.new(context)
    layout.set_font_description(Pango.FontDescription.from_string(f"sans-serif {'bold ' if bold else ''}{size}px"))
    wide = [letter for letter in text if unicodedata.east_asian_width(letter) in "WF"]
    layout.set_text("".join(letter for letter in text if letter not in wide), -1)
    # Ideographs are as wide as high; where no font has them, a stand-in of any width is drawn.
    return layout.get_pixel_extents()[1].width + size * len(wide)


class Picture:
    SIZES = {"heading": (15, True), "title": (13, True), "now-text": (11, True), "jump-text": (11, True)}

    def __init__(self, svg):
        self.root = ElementTree.fromstring(svg)
        self.height = float(self.root.get("height"))

    def boxes(self, *looks):
        return [tuple(float(each.get(key)) for key in ("x", "y", "width", "height"))
                for each in self.root.iter(SVG + "rect") if each.get("class") in looks and each.get("x")]

    def texts(self):
        """(left, right, y, size, text) of each, as measured with this system's font."""
        for each in self.root.iter(SVG + "text"):
            size, bold = self.SIZES.get(each.get("class"), (11, False))
            x, width = float(each.get("x")), measure(each.text, size, bold)
            left = x - {"middle": width / 2, "end": width}.get(each.get("text-anchor"), 0)
            yield left, left + width, float(each.get("y")), size, each.text


def overlap(a, b):
    return a[0] < b[0] + b[2] and b[0] < a[0] + a[2] and a[1] < b[1] + b[3] and b[1] < a[1] + a[3]


def pixels(svg, width=720):
    """Rows of (red, green, blue)."""
    png = subprocess.run(["rsvg-convert", "-w", str(width)], input=svg.encode(), stdout=subprocess.PIPE, check=True,
                         timeout=60).stdout
    at, data = 8, b""
    while at < len(png):
        length, kind = struct.unpack(">I4s", png[at:at + 8])
        content = png[at + 8:at + 8 + length]
        if kind == b"IHDR":
            columns, rows, depth, colour = struct.unpack(">IIBB", content[:10])
            assert (depth, colour) in ((8, 2), (8, 6)), (depth, colour)
            step = 3 if colour == 2 else 4
        data += content if kind == b"IDAT" else b""
        at += 12 + length
    data, before, image = zlib.decompress(data), bytearray(columns * step), []
    for row in range(rows):
        start = row * (columns * step + 1)
        method, line = data[start], bytearray(data[start + 1:start + 1 + columns * step])
        for i in range(len(line)):
            a, b = line[i - step] if i >= step else 0, before[i]
            c = before[i - step] if i >= step else 0
            nearest = min((abs(b - c), 0, a), (abs(a - c), 1, b), (abs(a + b - 2 * c), 2, c))[2]
            line[i] = line[i] + (0, a, b, (a + b) // 2, nearest)[method] & 255
        image.append([tuple(line[i:i + 3]) for i in range(0, len(line), step)])
        before = line
    return image


def dark(svg):
    """The same with the rules for dark as the only ones: the renderer asks nobody for a preference."""
    changed = re.sub(r"@media \(prefers-color-scheme: dark\) \{\n(.*?)\n\}\n</style>", r"\1\n</style>", svg, flags=re.S)
    assert changed != svg
    return changed


class Svg(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.svgs = {name: Phone(name).drawn("--svg", "-") for name in PHONES}
        cls.pictures = {name: Picture(svg) for name, svg in cls.svgs.items()}
        kept = (SOURCE / "docs/pictures/agenda.svg").read_text()
        cls.pictures["the one of the documents"] = Picture(kept)

    def test_every_text_is_large_enough_and_within_the_picture(self):
        for name, picture in self.pictures.items():
            for left, right, y, size, text in picture.texts():
                with self.subTest(picture=name, text=text):
                    self.assertGreaterEqual(size, 11)
                    self.assertGreaterEqual(left, LEFT - 1)
                    self.assertLessEqual(right, RIGHT + 1)
                    self.assertTrue(0 < y - size and y + 3 < picture.height)

    def test_no_event_lies_on_another_and_no_text_on_a_text(self):
        for name, picture in self.pictures.items():
            events = picture.boxes("event", "off")
            words = [(left, y - 8, right - left, 8) for left, right, y, _, _ in picture.texts()]
            for things in (events, words):
                for index, each in enumerate(things):
                    for other in things[index + 1:]:
                        self.assertFalse(overlap(each, other), (name, each, other))
            for box in events:
                self.assertTrue(box[0] >= LEFT and box[0] + box[2] <= RIGHT + 0.2, (name, box))

    def test_a_text_is_in_its_box_or_beside_it(self):
        for name, picture in self.pictures.items():
            for box in picture.boxes("event", "off"):
                for left, right, y, _, text in picture.texts():
                    if not (box[1] < y < box[1] + box[3]) or right <= box[0] or left >= box[0] + box[2]:
                        continue
                    self.assertTrue(box[0] < left and right < box[0] + box[2], (name, text, box))

    def test_fifty_events_are_all_there(self):
        self.assertEqual(len(self.pictures["fifty events"].boxes("event", "off")), 51)  # And one in the legend.

    def test_titles_are_text_and_nothing_else(self):
        texts = [text for *_, text in self.pictures["fifty events"].texts()]
        self.assertTrue(any("Lunch & learn <now>" in text for text in texts), texts)
        self.assertTrue(any("ארוחת" in text for text in texts))
        self.assertTrue(any(text.endswith("…") for text in texts))

    def test_readers_of_screens_hear_all_of_it(self):
        root = self.pictures["conflicts"].root
        self.assertEqual(root.get("role"), "img")
        named = [root.find(f"*[@id='{each}']") for each in root.get("aria-labelledby").split()]
        self.assertEqual([each.tag for each in named], [SVG + "title", SVG + "desc"])
        for sentence in ("Thursday, 20 November 2025: Meetings is on, 15:00–17:30.",
                         "17:00–17:15: Meetings and 2 others are on."):
            self.assertIn(sentence, named[1].text)

    def test_the_clock_jumps_where_it_says(self):
        for name, words, hours in (("the clock goes ahead", "02:00 to 03:00 skipped", 23),
                                   ("the clock goes back", "02:00 to 03:00 repeated", 25)):
            picture = self.pictures[name]
            self.assertIn(words, [text for *_, text in picture.texts()])
            jump = next(each for each in picture.root.iter(SVG + "path") if "jump" in each.get("class"))
            at = LEFT + (RIGHT - LEFT) * (2 if hours == 23 else 3) / hours
            self.assertAlmostEqual(float(re.match(r"M([\d.]+)", jump.get("d"))[1]), at, delta=0.2)

    def test_empty_days_say_so(self):
        texts = [text for *_, text in self.pictures["nothing"].texts()]
        self.assertEqual(texts.count("Nothing is planned."), 2)

    def test_the_same_days_give_the_same_bytes(self):
        for name, svg in self.svgs.items():
            self.assertEqual(Phone(name).drawn("--svg", "-"), svg, name)

    def test_a_renderer_shows_what_is_on_in_light_and_dark(self):
        for name in ("a workday", "the clock goes back"):
            bars = self.pictures[name].boxes("on")[:-1]  # The last is the legend's.
            for svg, colour in ((self.svgs[name], ON_LIGHT), (dark(self.svgs[name]), ON_DARK)):
                image = pixels(svg)
                for x, y, width, height in bars:
                    self.assertEqual(image[round(2 * (y + height / 2))][round(2 * (x + width / 2))], colour, name)
                    self.assertNotEqual(image[round(2 * (y + height / 2))][round(2 * (x + width + 6))], colour, name)
        start = LEFT + (RIGHT - LEFT) * 10.5 / 24
        self.assertTrue(any(abs(x - start) < 0.2 and abs(width - 21) < 0.3
                            for x, _, width, _ in self.pictures["a workday"].boxes("on")))

    def test_every_picture_renders_and_is_not_blank(self):
        for name, svg in self.svgs.items():
            for each in (svg, dark(svg)):
                image = pixels(each, 360)
                self.assertEqual(len(image[0]), WIDTH)
                self.assertGreater(len({pixel for row in image for pixel in row}), 8, name)


class Files(unittest.TestCase):
    def setUp(self):
        self.phone = Phone("a workday")
        self.folder = self.phone.folder / "pictures"
        self.folder.mkdir()

    def refused(self, *arguments, says, code=2):
        result = self.phone.run(*arguments)
        self.assertEqual((result.returncode, result.stdout), (code, b""), result)
        self.assertEqual(result.stderr.count(b"\n"), 1, result)
        self.assertIn(says, result.stderr.decode())

    def test_a_file_is_replaced_whole_and_nothing_else_is_left(self):
        file = self.folder / "a.svg"
        file.write_text("old")
        self.assertEqual(self.phone.drawn("--svg", file), "")
        self.assertEqual(file.read_text(), self.phone.drawn("--svg", "-"))
        self.assertEqual(os.listdir(self.folder), ["a.svg"])

    def test_wrong_places_are_told_and_left_alone(self):
        self.refused("--svg", self.folder / "none/a.svg", says="folder that exists")
        self.refused("--svg", self.folder, says="expected a regular file")
        self.refused("--svg", "/dev/null", says="expected a regular file")
        self.assertTrue(pathlib.Path("/dev/null").is_char_device())
        self.assertEqual(os.listdir(self.folder), [])

    def test_one_form_at_a_time(self):
        self.refused("--svg", self.folder / "a.svg", "--json", says="--json")
        self.refused("--picture", "--json", says="--json")
        self.refused("--picture", "--svg", "-", says="--picture")
        self.assertEqual(os.listdir(self.folder), [])

    def test_a_day_is_a_day(self):
        for wrong in ("tomorrow", "2025-11-31", "2025-11-18 09:00"):
            self.phone.day = wrong
            self.refused("--picture", says="expected a day, such as")

    def test_a_full_disk_is_said(self):
        with open("/dev/full", "wb") as full:
            result = self.phone.run("--svg", "-", stdout=full)
        self.assertEqual(result.returncode, 3)
        self.assertIn(b"could not be written", result.stderr)


class InTheTerminal(unittest.TestCase):
    maxDiff = None

    def test_the_pictures_are_as_people_have_looked_at(self):
        for columns in (40, 80):
            made = "".join(Phone(name).drawn("--picture", environment={"COLUMNS": str(columns)})
                           for name in PHONES if name != "fifty events")
            expected = SOURCE / f"tests/cli/agenda-{columns}.txt"
            if UPDATE:
                expected.write_text(made)
            self.assertEqual(made, expected.read_text())
            for line in made.splitlines():
                self.assertLessEqual(len(line), columns, line)

    def test_without_utf8_it_is_plain(self):
        made = Phone("conflicts").drawn("--picture", environment={"LC_ALL": "C"})
        self.assertTrue(made.isascii(), made)
        self.assertRegex(made, r"Meetings +\.{16}--#-{11}#{5}-\.{12}\n")

    def test_it_fits_the_terminal_and_is_coloured_there(self):
        for columns in (40, 80, 120):
            controller, terminal = pty.openpty()
            fcntl.ioctl(terminal, termios.TIOCSWINSZ, struct.pack("HHHH", 50, columns, 0, 0))
            phone = Phone("conflicts")
            phone.environment.update(TERM="xterm")
            phone.environment.pop("NO_COLOR", None)
            result = phone.run("--picture", stdout=terminal)
            os.close(terminal)
            made = b""
            try:
                while chunk := os.read(controller, 65536):
                    made += chunk
            except OSError:
                pass  # The end of what a terminal says.
            os.close(controller)
            self.assertEqual((result.returncode, result.stderr), (0, b""))
            text = re.sub(r"\x1b\[\d+m", "", made.decode())
            self.assertNotEqual(text, made.decode())
            longest = max(map(len, text.splitlines()))
            self.assertTrue(columns * 0.7 <= longest <= columns, (columns, longest))


if __name__ == "__main__":
    unittest.main()
