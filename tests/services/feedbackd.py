# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""feedbackd, for tones and vibration: its own theme, and for a quiet message something that it can do without a motor."""
import json

PROGRAMS = {"/usr/libexec/feedbackd": "feedbackd"}
THEME = {"name": "test", "parent-name": "default", "profiles": [
    {"name": "quiet", "feedbacks": [{"event-name": "message-new-instant", "type": "Dummy", "duration": 50}]}]}


def start(session):
    themes = session.folder / "config" / "feedbackd" / "themes"
    themes.mkdir(parents=True)
    (themes / "test.json").write_text(json.dumps(THEME))
    session.run(["gsettings", "set", "org.sigxcpu.feedbackd", "theme", "test"])
    session.spawn(["/usr/libexec/feedbackd"])
    session.wait_for_name("org.sigxcpu.Feedback")
