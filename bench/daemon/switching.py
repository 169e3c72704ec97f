"""From an event's second to the volume: the daemon's sink, and beside it one that a bare timer sets."""
import pathlib
import statistics
import subprocess
import time

from phone import Phone, event_at, milliseconds

PERIOD = 2  # An event of one second every two seconds.


def measure(program, programs, count):
    with Phone(program) as phone:
        environment = phone.session.environment
        phone.session.run(["pactl", "load-module", "module-null-sink", "sink_name=bare"])
        phone.session.run(["pactl", "set-default-sink", "spk"])
        phone.session.run(["pactl", "set-sink-volume", "spk", "60%"])
        phone.add_profiles(1)
        first = int(time.time()) + 8
        phone.add_file("all", *(event_at(f"event {each}", first + PERIOD * each, first + PERIOD * each + 1)
                                for each in range(count)))
        phone.start()
        watched = pathlib.Path(phone.session.folder / "volumes")
        watch = phone.session.spawn([programs / "bench_volume_watch"])
        watched = pathlib.Path(watch.log_name)
        bare = subprocess.Popen([programs / "bench_volume_timer", "bare", str(first), str(count), str(PERIOD)],
                                env=environment)
        if bare.wait(first - time.time() + PERIOD * count + 30) != 0:
            raise RuntimeError("the bare timer failed")
        time.sleep(1)
        lines = [line.split() for line in watched.read_text().splitlines()]
    rows = []
    for label, turn in (("start", 0), ("end", 1)):
        late = {}
        for sink in ("spk", "bare"):
            found = {}
            for when, name, _ in lines:
                second, since = divmod(float(when) - first - turn, PERIOD)
                if name == sink and since < PERIOD / 2 and 0 <= second < count:
                    found.setdefault(second, since)
            late[sink] = list(found.values())
        above = 1000 * (statistics.median(late["spk"]) - statistics.median(late["bare"]))
        rows.append((f"from an event's {label} to the volume set, {len(late['spk'])} of {count} events",
                     "median at most 3 ms above a bare timer's", f"{above:.2f} ms above; {milliseconds(late['spk'])}",
                     f"bare timer: {milliseconds(late['bare'])}, {len(late['bare'])} of {count}"))
    return rows
