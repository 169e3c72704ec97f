#!/usr/bin/python3
# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""hushmoded as the phone's user and other programs meet it: real services on private buses, real time.

usage: check_daemon.py HUSHMODED [unittest argument...], under tests/services/run_with.py.
"""
import os
import pathlib
import signal
import stat
import subprocess
import sys
import time
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
from daemon_test import LOUD, QUIET, DaemonTest  # noqa: E402
from hushmoded import (CONFIG, INTERFACE, NAME, PATH, PROFILES, SETTINGS, STATE, Daemon, GLib, put_event,
                       read_profiles_file, remove_event, set_sink_volume, sink_volume, sink_volume_is, wait_until,
                       whole_seconds_from_now, write_profiles_file)  # noqa: E402
from phone_services import SoundServer, WiFi  # noqa: E402

INTERFACE_VERSION = 3


class Interface(DaemonTest):
    def test_a_new_phone_is_ready_with_a_default_profile_and_the_switch_on(self):
        put_event("Interview", time.time() + 3600, time.time() + 7200)
        daemon = self.start()
        self.assertEqual(daemon.get("Version"), INTERFACE_VERSION)
        self.assertIs(daemon.get("Enabled"), True)
        self.assertEqual(daemon.get("Applied"), [])
        wait_until(lambda: len(daemon.call("ListProfiles")) == 1, "the first profile")
        self.assertIn("folder:work", daemon.call("ListProfiles")[0]["calendarIdentifiers"])
        self.assertTrue(daemon.get("Services")["volumes"][0])
        degraded = [name for name, (works, _) in daemon.get("Services").items() if not works]
        self.assertEqual(sorted(daemon.get("Degraded")), sorted(degraded))
        for path, mode in ((CONFIG, 0o700), (STATE, 0o700), (PROFILES, 0o600), (SETTINGS, 0o600)):
            self.assertEqual(stat.S_IMODE(path.stat().st_mode), mode, path)

    def test_the_interface_is_the_one_that_is_documented(self):
        daemon = self.start()
        xml = daemon.call("Introspect", interface="org.freedesktop.DBus.Introspectable")
        for name in ("AddProfile", "UpdateProfile", "DeleteProfile", "ListProfiles", "ListCalendars", "ListNetworks", "ListEvents",
                     "RecentSwitches", "Plan", "SetEnabled", "ProfilesChanged", "Switched", "Degraded"):
            self.assertIn(f'name="{name}"', xml)

    def test_profiles_are_added_changed_and_deleted(self):
        daemon = self.start()
        daemon.delete_all()
        identifier = daemon.add(title="Büro", enabled=True, playBackVolume=0.25, startTime="9:00 AM",
                                endTime="5:30 PM", wifiNetworks=["Office"])
        other = daemon.add(title="Night")
        self.assertNotEqual(identifier, other)
        listed = daemon.profiles()["Büro"]
        self.assertEqual(listed["identifier"], identifier)
        self.assertEqual((listed["playBackVolume"], listed["startTime"], listed["wifiNetworks"], listed["applied"]),
                         (0.25, "9:00 AM", ["Office"], False))
        daemon.update(identifier, title="Office", vibrate=True)
        self.assertEqual(list(daemon.profiles()), ["Office", "Night"])
        self.assertTrue(daemon.profiles()["Office"]["vibrate"])
        self.assertEqual(daemon.profiles()["Office"]["playBackVolume"], 0.25)
        self.assertEqual([each["title"] for each in read_profiles_file()], ["Office", "Night"])
        daemon.call("DeleteProfile", "(x)", identifier)
        self.assertEqual(list(daemon.profiles()), ["Night"])
        wait_until(lambda: ("ProfilesChanged", ()) in daemon.signals, "the signal")

    def test_events_are_listed_with_their_times_and_status(self):
        begin = whole_seconds_from_now(3600)
        put_event("Interview", begin, begin + 1800, uid="interview")
        daemon = self.start()
        wait_until(lambda: daemon.call("ListEvents", "(dd)", begin, begin + 1), "the event")
        self.assertEqual(daemon.call("ListEvents", "(dd)", begin, begin + 1),
                         [{"calendar": "folder:work", "uid": "interview", "title": "Interview", "start": begin,
                           "end": begin + 1800, "status": 0, "allDay": False}])
        self.assertEqual(daemon.call("ListEvents", "(dd)", begin + 1800, begin + 1801), [])
        for span in ((begin, begin - 1), (begin, begin + 401 * 86400), (float("nan"), begin)):
            self.refused("InvalidArgument", daemon.call, "ListEvents", "(dd)", *span)

    def test_numbers_are_the_same_where_people_write_a_comma(self):
        folder = pathlib.Path(os.environ["HUSHMODE_SESSION_FOLDER"]) / "locale"
        folder.mkdir()
        subprocess.run(["localedef", "-i", "de_DE", "-f", "UTF-8", str(folder / "de_DE.UTF-8")], check=True)
        daemon = self.start(LOCPATH=str(folder), LC_ALL="de_DE.UTF-8")
        daemon.delete_all()
        daemon.add(title="Büro", playBackVolume=0.25)
        self.assertEqual(daemon.profiles()["Büro"]["playBackVolume"], 0.25)
        self.assertEqual(read_profiles_file()[0]["playBackVolume"], 0.25)

    def test_what_no_profile_can_have_is_refused_and_nothing_changes(self):
        daemon = self.start()
        daemon.delete_all()
        identifier = daemon.add(title="Work", playBackVolume=0.5)
        before, file_before = daemon.call("ListProfiles"), PROFILES.read_bytes()
        cases = [{"title": "a" * 10_000_000}, {"title": ""}, {"title": 5}, {"nonsense": True}, {"enabled": "yes"},
                 {"playBackVolume": 1.5}, {"playBackVolume": -0.1}, {"playBackVolume": float("nan")},
                 {"startTime": "14:30"}, {"startTime": "nine"}, {"applyProfileEventStatus": 4},
                 {"wifiNetworks": ["x"] * 100_000}, {"wifiNetworks": "Office"},
                 {"title": GLib.Variant("(ss)", ("a", "b"))}, {"a" * 100_000: True}]
        for case in cases:
            with self.subTest(str(case)[:60]):
                self.refused("InvalidArgument", daemon.add, **{"title": "New", **case})
                self.refused("InvalidArgument", daemon.update, identifier, **case)
        self.refused("InvalidArgument", daemon.add)
        self.assertIn("Work", self.refused("TitleTaken", daemon.add, title="Work"))
        self.refused("UnknownProfile", daemon.update, 1, vibrate=True)
        self.refused("UnknownProfile", daemon.call, "DeleteProfile", "(x)", -7)
        self.refused("InvalidArgs", daemon.call, "DeleteProfile", "(s)", "7")
        self.refused("UnknownMethod", daemon.call, "NoSuchMethod")
        self.assertEqual(daemon.call("ListProfiles"), before)
        self.assertEqual(PROFILES.read_bytes(), file_before)

    def test_only_the_phones_own_user_is_answered(self):
        if os.getuid() != 0:
            self.skipTest("needs root, to call as somebody else")
        self.start()
        # The private bus lets others in; a session's own bus would not.
        folder = pathlib.Path(os.environ["HUSHMODE_SESSION_FOLDER"])
        folder.chmod(0o711)
        call = ["gdbus", "call", "--session", "--dest", NAME, "--object-path", PATH, "--method"]
        as_nobody = ["setpriv", "--reuid=65534", "--clear-groups"]
        for method in ("ListProfiles", "Plan"):
            mine = subprocess.run([*call, f"{INTERFACE}.{method}"], capture_output=True, text=True)
            self.assertEqual(mine.returncode, 0, mine.stderr)
            other = subprocess.run([*as_nobody, *call, f"{INTERFACE}.{method}"], capture_output=True, text=True)
            self.assertNotEqual(other.returncode, 0)
            self.assertIn("AccessDenied", other.stderr)


class Switching(DaemonTest):
    def test_the_phone_is_quiet_for_an_event_and_loud_after_it(self):
        daemon = self.start_with_profile()
        start = whole_seconds_from_now(3)
        put_event("Interview", start, start + 5)
        wait_until(lambda: any(each.get("profile") == daemon.identifier for each in daemon.get("Armed")), "the wake-up")
        wait_until(lambda: any(name == "PropertiesChanged" and values[1].get("Applied") for name, values in
                               daemon.signals), "the change of what is applied")
        late = time.time() - start
        self.assertTrue(0 <= late < 0.5, f"{late:.3f} s after the start")
        wait_until(sink_volume_is(QUIET), "the event's volume")
        applied = daemon.get("Applied")[0]
        self.assertEqual((applied["title"], applied["until"]), ("Work", start + 5))
        wait_until(sink_volume_is(LOUD), "the volume as it was")
        self.assertGreaterEqual(time.time(), start + 5)
        wait_until(lambda: sum(name == "Switched" for name, _ in daemon.signals) == 2, "both switches told")
        switches = daemon.call("RecentSwitches", "(u)", 0)
        self.assertEqual([each["on"] for each in switches], [True, False])
        self.assertIn("Interview", switches[0]["reason"])
        self.assertEqual(len(daemon.call("RecentSwitches", "(u)", 1)), 1)
        self.assertNotIn("Interview", daemon.log(), "titles of events are for those who look for a fault")

    def test_off_means_off_and_on_again_is_quiet_again(self):
        daemon = self.start_with_profile()
        self.go_quiet(daemon)
        daemon.call("SetEnabled", "(b)", False)
        wait_until(sink_volume_is(LOUD), "the volume as it was")
        self.assertEqual((daemon.get("Enabled"), daemon.applied(), daemon.get("Armed")), (False, [], []))
        daemon.call("SetEnabled", "(b)", True)
        wait_until(sink_volume_is(QUIET), "the event's volume again")

    def test_the_switch_in_the_settings_file_counts_at_once(self):
        daemon = self.start_with_profile()
        self.go_quiet(daemon)
        SETTINGS.write_text('<plist version="1.0"><dict><key>com.quorvel.hushmode.enabled</key><false/></dict></plist>')
        wait_until(sink_volume_is(LOUD), "the volume as it was")
        wait_until(lambda: not daemon.get("Enabled"), "the switch")

    def test_an_event_that_is_cancelled_makes_the_phone_loud(self):
        daemon = self.start_with_profile()
        self.go_quiet(daemon)
        remove_event()
        wait_until(sink_volume_is(LOUD), "the volume as it was")

    def test_edits_while_applied_count_at_once(self):
        daemon = self.start_with_profile()
        self.go_quiet(daemon)
        daemon.update(daemon.identifier, playBackVolume=0.3)
        wait_until(sink_volume_is(0.3), "the new volume")
        daemon.update(daemon.identifier, enabled=False)
        wait_until(sink_volume_is(LOUD), "the volume as it was")
        daemon.update(daemon.identifier, enabled=True)
        wait_until(sink_volume_is(0.3), "the event's volume")
        daemon.call("DeleteProfile", "(x)", daemon.identifier)
        wait_until(sink_volume_is(LOUD), "the volume as it was")

    def test_a_profiles_file_that_is_changed_by_hand_counts_at_once(self):
        daemon = self.start_with_profile()
        self.go_quiet(daemon)
        profiles = read_profiles_file()
        profiles[0]["enabled"] = False
        write_profiles_file(profiles)
        wait_until(sink_volume_is(LOUD), "the volume as it was")
        self.assertEqual(daemon.log().count("changed by another program"), 1, daemon.log())

    def test_joining_a_network_of_the_profile_makes_the_phone_quiet_and_leaving_it_loud(self):
        daemon = self.start_with_profile(wifiNetworks=["Office"])
        wifi = WiFi()
        office = wifi.add("Office")
        wait_until(lambda: {"name": "Office", "joined": False} in daemon.call("ListNetworks"), "the known network")
        wifi.join(office)
        wait_until(sink_volume_is(QUIET), "the profile's volume")
        self.assertIn("Office", daemon.get("Applied")[0]["reason"])
        self.assertIn({"name": "Office", "joined": True}, daemon.call("ListNetworks"))
        wifi.leave()
        wait_until(sink_volume_is(LOUD), "the volume as it was")

    def test_own_writes_are_not_taken_for_those_of_others(self):
        daemon = self.start_with_profile()
        self.go_quiet(daemon)
        daemon.update(daemon.identifier, vibrate=True)
        daemon.call("Plan")
        remove_event()
        wait_until(sink_volume_is(LOUD), "the volume as it was")
        self.assertNotIn("changed by another program", daemon.log())


class Lives(DaemonTest):
    def test_it_ends_at_once_and_leaves_a_loud_phone(self):
        for how in (signal.SIGTERM, signal.SIGINT):
            with self.subTest(how.name):
                self.setUp()
                daemon = self.start_with_profile()
                self.go_quiet(daemon)
                began = time.monotonic()
                self.assertEqual(daemon.end(how), 0, daemon.log())
                self.assertLess(time.monotonic() - began, 5)
                self.assertAlmostEqual(sink_volume(), LOUD, delta=0.011)
                remove_event()

    def test_a_second_one_ends_by_itself(self):
        first = self.start()
        second = Daemon(self.program, wait=False)
        wait_until(lambda: second.process.poll() is not None, "the end of the second")
        self.assertEqual(second.process.returncode, 3)
        self.assertIn("another hushmoded", second.log())
        self.assertEqual(first.get("Version"), INTERFACE_VERSION)

    def test_killed_in_an_event_it_is_quiet_until_the_end_and_then_as_before(self):
        daemon = self.start_with_profile()
        end = whole_seconds_from_now(6)
        put_event("Interview", end - 600, end)
        wait_until(sink_volume_is(QUIET), "the event's volume")
        daemon.end(signal.SIGKILL)
        self.assertAlmostEqual(sink_volume(), QUIET, delta=0.011)
        daemon = self.start()
        wait_until(sink_volume_is(LOUD), "the volume as it was")
        self.assertGreaterEqual(time.time(), end)

    def test_killed_in_an_event_and_started_after_it_the_phone_is_as_before(self):
        daemon = self.start_with_profile()
        self.go_quiet(daemon)
        daemon.end(signal.SIGKILL)
        remove_event()
        self.start()
        wait_until(sink_volume_is(LOUD), "the volume as it was")

    def test_the_sound_server_may_die_and_return_in_an_event(self):
        daemon = self.start_with_profile()
        self.go_quiet(daemon)
        sound = SoundServer()
        sound.kill()
        wait_until(lambda: "volumes" in daemon.get("Degraded"), "the report that volumes rest")
        sound.start()
        try:
            wait_until(lambda: "volumes" not in daemon.get("Degraded"), "the report that volumes are back")
            set_sink_volume(LOUD)
            remove_event()
            wait_until(lambda: not daemon.applied(), "the end")
            wait_until(sink_volume_is(LOUD), "the volume as it was")
            self.assertEqual(daemon.log().count("volumes: rests"), 1, daemon.log())
        finally:
            daemon.end()

    def test_at_rest_it_does_not_wake_up(self):
        daemon = self.start()
        status = pathlib.Path(f"/proc/{daemon.process.pid}/status")

        def switches():
            return int(status.read_text().split("voluntary_ctxt_switches:")[1].split()[0])

        # What the start set in motion comes to rest; then nothing happens, for as long as is watched.
        deadline = time.monotonic() + 30
        while time.monotonic() < deadline:
            before = switches()
            end = time.monotonic() + 3
            wait_until(lambda: time.monotonic() > end, "three seconds")
            if switches() == before:
                return
        self.fail("it woke up in each of the last spans of three seconds")


if __name__ == "__main__":
    DaemonTest.program = sys.argv.pop(1)
    unittest.main(verbosity=1)
