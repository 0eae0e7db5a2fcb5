"""wine.py PROGRAMS TOOLS SCRATCH RESULTS ROUNDS CHECKED EXPORTED HELD: inside a Wine, what Quillbox does with so many
e-mails beside what cannot be left out of it, in turns, and how time and memory of a check grow up to the last number;
medians as Google Benchmark writes them."""
import json
import pathlib
import re
import statistics
import subprocess
import sys
import threading

sys.path.append(str(pathlib.Path(__file__).parent.parent / "tests/demo"))
from bench import ROOT, Bench, Broken, message_of, stored_in, subject_of, windows_path  # noqa: E402

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


def read_cells(mailbox):
    """Milliseconds, and the bytes of the texts."""
    time, size = mailbox.bare("cells")
    if size <= sum(2 * len(subject_of(FOLDER, number)) for number in range(mailbox.count)):
        raise Broken("the bare reader has not read the subjects")
    return time, size


def export(mailbox, extras=""):
    room = mailbox.room(extras)
    time, log = mailbox.run(room, "/export")
    whole = stored_in(room / "store" / ROOT / FOLDER, FOLDER)[0]
    if f"{mailbox.count} passed, 0 failed" not in log or set(whole.values()) != {1} or len(whole) != mailbox.count:
        raise Broken(f"the export did something else: {log[-300:]}")
    return time


def export_barely(mailbox, wait=100):
    store = mailbox.room() / "store"
    time = mailbox.bare("export", windows_path(store), str(wait))[0]
    saved = sorted(file.read_bytes() for file in store.glob("*.eml"))
    if saved != sorted(message_of(FOLDER, number) for number in range(mailbox.count)):
        raise Broken("the bare driver saved something else")
    return time


def start(mailbox):
    program = mailbox.room() / "program/quillbox.exe"
    return bare(mailbox.bench.programs, "start", "Form1", windows_path(program))[0]


def start_empty(mailbox):
    empty = windows_path(mailbox.bench.programs / "bench-bare.exe")
    return bare(mailbox.bench.programs, "start", "EmptyWindow", empty, "window")[0]


def held(mailbox):
    """Milliseconds of a check, and the bytes that are the program's own at the most, as seen every 10 ms."""
    room, ended, sizes = mailbox.room(), threading.Event(), [0]
    program = windows_path(room / "program/quillbox.exe").encode()

    def watch(process=None):
        while not ended.wait(0.01):
            try:
                process = process or next(entry for entry in pathlib.Path("/proc").glob("[0-9]*")
                                          if (entry / "cmdline").read_bytes().startswith(program))
                sizes.append(int(re.search(r"RssAnon:\s+(\d+) kB", (process / "status").read_text())[1]))
            except (OSError, StopIteration, TypeError):  # not there yet, or no more
                continue

    watcher = threading.Thread(target=watch)
    watcher.start()
    try:
        time = check(mailbox, room)
    finally:
        ended.set()
        watcher.join()
    if len(sizes) < 5:
        raise Broken("the program's memory was not seen")
    return time, 1024 * max(sizes)


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
    smaller = [Mailbox(programs, tools, scratch / "smaller", to_hold.count // part) for part in (100, 10)]
    found = {}

    def note(name, value):
        found.setdefault(name, []).append(value)

    for _ in range(rounds):
        for _ in range(3):
            # Without starting, reading the folders and ending.
            note("wine/check", check(to_check) - check(single))
            time, cells = read_cells(to_check)
            note("wine/cells", time)
            note("wine/start", start(single))
            note("wine/start-empty", start_empty(single))
        note("wine/export", export(to_export) - export(single))
        note("wine/export-poll-10", export(to_export, "Poll Interval=10") - export(single, "Poll Interval=10"))
        note("wine/export-bare", export_barely(to_export))
    without = [statistics.median(values) for values in zip(*(held(single) for _ in range(3)))]
    for mailbox in (*smaller, to_hold):
        for _ in range(1 if mailbox is to_hold else rounds):
            time, size = held(mailbox)
            note(f"growth/check/{mailbox.count}", (time - without[0]) / mailbox.count)
            note(f"growth/memory/{mailbox.count}", (size - without[1]) / mailbox.count)
    note("wine/memory", size)
    note("wine/texts", texts(to_hold, cells / to_check.count))
    runs = []
    for name, values in found.items():
        print(name, *(f"{value:.5g}" for value in values))
        value = statistics.median(values)
        runs.append({"run_name": name, "aggregate_name": "median", "real_time": value, "cpu_time": value,
                     "time_unit": "ns" if re.search("memory|texts", name) else "ms"})  # a byte as a nanosecond
    results.write_text(json.dumps({"benchmarks": runs}))


if __name__ == "__main__":
    try:
        main()
    except Broken as reason:
        sys.exit(f"bench: {reason}")
