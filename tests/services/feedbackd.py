"""feedbackd, for tones and vibration."""
PROGRAMS = {"/usr/libexec/feedbackd": "feedbackd"}


def start(session):
    session.spawn(["/usr/libexec/feedbackd"])
    session.wait_for_name("org.sigxcpu.Feedback")
