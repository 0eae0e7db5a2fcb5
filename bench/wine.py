"""wine.py PROGRAMS TOOLS SCRATCH RESULTS ROUNDS CHECKED EXPORTED HELD: inside a Wine, what Quillbox does with so many
e-mails beside what cannot be left out of it, in turns; medians as Google Benchmark writes them."""
import json
import pathlib
import re
import statistics
import subprocess
import sys

sys.path.append(str(pathlib.Path(__file__).parent.parent / "tests/demo"))
from bench import ROOT, Bench, Broken, subject_of, windows_path  # noqa: E402

FOLDER = "Inbox"
# What Wine starts beside a program keeps its standard error open.
QUIET = {"stdin": subprocess.DEVNULL, "stdout": subprocess.PIPE, "stderr": subprocess.DEVNULL}


class Mailbox:
    """A client's folder with so many e-mails, of which none is saved."""

    def __init__(self, programs, tools, scratch, count):
        self.count, self.rooms = count, 0
        self.bench = Bench(programs, tools, scratch / str(count), {FOLDER: count})

    def room(self, extras=""):
        self.rooms += 1
        room = self.bench.room(f"room {self.rooms}", [("other", "other", "1")])
        self.bench.settle(room, extras=extras)
        (room / "store" / ROOT / FOLDER).mkdir(parents=True)
        return room

    def bare(self, *arguments):
        """What is said of a bare piece of work beside the client, milliseconds first."""
        client = [windows_path(self.bench.programs / "demo-client.exe"), "--mail", windows_path(self.bench.pack)]
        return bare(self.bench.programs, *arguments, "--", *client)

    def run(self, room, *switches):
        """Milliseconds from the program's start to its end, and its log."""
        program = windows_path(room / "program/quillbox.exe")
        time = self.bare("run", program, "/sync", "/close", *switches)[0]
        return time, (room / "program/log.txt").read_text(encoding="cp1252")


def bare(programs, *arguments):
    done = subprocess.run(["wine", programs / "bench-bare.exe", *arguments], **QUIET, encoding="utf-8")
    if done.returncode:
        raise Broken(f"bench-bare {arguments[0]}: {done.stdout.strip()}")
    return [float(figure) for figure in done.stdout.split()]


def check(mailbox, room=None):
    room = room or mailbox.room()
    (room / "store" / ROOT / FOLDER / "other.eml").write_text("Subject: another\n\n")  # or nothing is compared
    time, log = mailbox.run(room, "/check", "/comparison:database")
    if len(re.findall(" Not saved ", log)) != mailbox.count:
        raise Broken(f"the check found something else: {log[-300:]}")
    return time


def export(mailbox, extras=""):
    time, log = mailbox.run(mailbox.room(extras), "/export")
    if f"{mailbox.count} passed, 0 failed" not in log:
        raise Broken(f"the export did something else: {log[-300:]}")
    return time


def export_barely(mailbox):
    store = mailbox.room() / "store"
    time = mailbox.bare("export", windows_path(store))[0]
    if len(list(store.glob("*.eml"))) != mailbox.count:
        raise Broken("the bare driver saved something else")
    return time


def start(mailbox):
    program = mailbox.room() / "program/quillbox.exe"
    return bare(mailbox.bench.programs, "start", "Form1", windows_path(program))[0]


def start_empty(mailbox):
    empty = windows_path(mailbox.bench.programs / "bench-bare.exe")
    return bare(mailbox.bench.programs, "start", "EmptyWindow", empty, "window")[0]


def memory(mailbox):
    """Bytes that a check holds at the most."""
    room = mailbox.room()
    log = windows_path(room / "program/log.txt")
    meter = subprocess.Popen(["wine", mailbox.bench.programs / "demo-meter.exe", log, "1000", "1"], **QUIET,
                             encoding="utf-8")
    check(mailbox, room)
    meter.terminate()
    return 1024 * max(map(int, re.findall(r"; Quillbox: \d+ handles, (\d+) KB", meter.communicate()[0])))


def texts(mailbox, cells):
    """Bytes of what such a check reads, lists and logs, in UTF-16; cells: of an e-mail in the client's list."""
    listed = len(f"{ROOT}\\{FOLDER}" + "03/04/2007 10:15:00" + "1234ABCD")  # beside number and subject
    logged = len("03/04/2007 10:15:00 Not saved  - ")
    return sum(cells + 2 * (listed + logged + 2 * len(f"{number}{subject_of(FOLDER, number)}"))
               for number in range(mailbox.count))


def main():
    programs, tools, scratch, results = map(pathlib.Path, sys.argv[1:5])
    rounds, *counts = map(int, sys.argv[5:])
    single, to_check, to_export, to_hold = (Mailbox(programs, tools, scratch, count) for count in (1, *counts))
    found = {}

    def note(name, value):
        found.setdefault(f"wine/{name}", []).append(value)

    for _ in range(rounds):
        # Without starting, reading the folders and ending.
        note("check", check(to_check) - check(single))
        time, cells = to_check.bare("cells")
        note("cells", time)
        note("export", export(to_export) - export(single))
        note("export-poll-10", export(to_export, "Poll Interval=10") - export(single, "Poll Interval=10"))
        note("export-bare", export_barely(to_export))
        for _ in range(3):
            note("start", start(single))
            note("start-empty", start_empty(single))
    note("memory", memory(to_hold))
    note("texts", texts(to_hold, cells / to_check.count))
    for name, values in found.items():
        print(name, *(f"{value:.0f}" for value in values))
    runs = [{"run_name": name, "aggregate_name": "median", "time_unit": "ms", "real_time": statistics.median(values),
             "cpu_time": statistics.median(values)} for name, values in found.items()]
    results.write_text(json.dumps({"benchmarks": runs}))


if __name__ == "__main__":
    try:
        main()
    except Broken as reason:
        sys.exit(f"bench: {reason}")
