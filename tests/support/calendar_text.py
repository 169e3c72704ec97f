# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""The text of an iCalendar file with one event, for tests that put one into a calendar."""
import time


def calendar_text(title, start, end, *, uid="one", all_day=False):
    """Times in seconds since 1970; of an all-day event the days in UTC, the last one not included."""
    def utc(seconds, form="%Y%m%dT%H%M%SZ"):
        return time.strftime(form, time.gmtime(seconds))

    key, form = (";VALUE=DATE:", "%Y%m%d") if all_day else (":", "%Y%m%dT%H%M%SZ")
    return "\r\n".join(["BEGIN:VCALENDAR", "VERSION:2.0", "PRODID:-//test//EN", "BEGIN:VEVENT", f"UID:{uid}",
                        f"DTSTAMP:{utc(start)}", f"DTSTART{key}{utc(start, form)}", f"DTEND{key}{utc(end, form)}",
                        f"SUMMARY:{title}", "END:VEVENT", "END:VCALENDAR", ""])
