"""The disk goes wrong in mid-export: it is full, or it is pulled and comes back. Each time Quillbox says so, every
record tells of a whole file, and the next run, on a disk that is well, completes the folders.

usage: soak.sh disk
"""
import collections
import re
import subprocess
import sys
import threading
import time

from bench import ROOT, Bench, Broken, stored_in, subject_of

FOLDERS = {"Inbox": 12, "Sent Items": 4}


def mount(*options):
    return subprocess.run(["mount", *map(str, options)], capture_output=True).returncode == 0


class SmallDisk:
    """In place of a directory, with what lies there and so many free pages."""

    def __init__(self, directory, free):
        self.directory = directory
        files = {file.name: file.read_bytes() for file in directory.iterdir()}
        size = sum(-len(content) // -4096 for content in files.values()) * 4096 + free * 4096
        if not mount("-t", "tmpfs", "-o", f"size={size}", "none", directory):
            raise PermissionError("no file system can be mounted here")
        for name, content in files.items():
            (directory / name).write_bytes(content)

    def mend(self):
        mount("-o", "remount,size=64m", self.directory)

    def remove(self):
        subprocess.run(["umount", "-l", self.directory])


class Pulled:
    """The store folder goes once three e-mails lie in it, for so many seconds or until it is mended."""

    def __init__(self, store, seconds):
        self.store, self.away, self.seconds = store, store.with_name("away"), seconds
        self.thread = threading.Thread(target=self.pull, daemon=True)
        self.thread.start()

    def pull(self):
        while len(list(self.store.glob("*/*/*.eml"))) < 3:
            time.sleep(0.02)
        self.store.rename(self.away)
        if self.seconds:
            time.sleep(self.seconds)
            self.put_back()

    def put_back(self):
        if self.store.exists():  # made anew meanwhile
            subprocess.run(["cp", "-rn", f"{self.store}/.", self.away], check=True)
            self.store.rename(self.store.with_name("made-meanwhile"))
        self.away.rename(self.store)

    def mend(self):
        self.thread.join()
        if self.away.exists():
            self.put_back()

    def remove(self):
        pass


class Locked:
    """Files that nobody may write, or a directory in which nobody may write anything."""

    def __init__(self, *paths):
        self.paths = paths
        for path in paths:
            path.touch()
            if subprocess.run(["chattr", "+i", path], capture_output=True).returncode:
                self.mend()
                raise PermissionError("nothing can be locked here")

    def mend(self):
        subprocess.run(["chattr", "-i", *self.paths], capture_output=True)

    def remove(self):
        pass


# What goes wrong, and what is said of it; what does not last, or costs no e-mail, need not be.
TROUBLES = {
    "the store's disk is full": (lambda room: SmallDisk(room / "store", 9), "FAIL: "),
    "the program's disk is full": (lambda room: SmallDisk(room / "program", 3), "The disk is full"),
    "the store is gone for two seconds": (lambda room: Pulled(room / "store", 2), ""),
    "the store is gone": (lambda room: Pulled(room / "store", 0), "FAIL: "),
    "the store cannot be written": (lambda room: Locked(room / "store"), "The export folder could not be made"),
    "saved.mdb cannot be written": (lambda room: Locked(room / "program/saved.mdb"), "can be read but not written"),
    "the program's folder cannot be written": (lambda room: Locked(room / "program"), ""),
    "log and settings cannot be written":
        (lambda room: Locked(room / "program/log.txt", room / "program/settings.ini"), ""),
}


def check(bench, room, whole):
    """Every record has its file, whole; with whole each message has both."""
    rows = collections.Counter((folder, subject) for folder, subject, _ in bench.rows(room / "program/saved.mdb"))
    besides = 0
    for folder, count in FOLDERS.items():
        stored, parts = stored_in(room / "store" / ROOT / folder, folder)
        besides += len(parts)
        for number in range(count):
            times = rows[f"{ROOT}\\{folder}", subject_of(folder, number)]
            if times > 1 or times and not stored[number] or whole and not times:
                raise Broken(f"{subject_of(folder, number)}: {times} records, {stored[number]} files")
            besides += max(stored[number] - 1, 0)
    return besides


def export(bench, room, words):
    """What is said, with these words; a box at the start with them keeps the driver from going on."""
    try:
        said = bench.drive(room, ["compare=database", "export-all"])
    except Broken:
        said = (room / "said").read_text(encoding="utf-8", errors="replace")
        if not words or words not in said:
            raise
    if words not in said:
        raise Broken(f"not said: {words}")
    return said


def main():
    bench = Bench(*sys.argv[1:4], FOLDERS)
    failed = False
    for number, (name, (make, words)) in enumerate(TROUBLES.items()):
        room = bench.room(f"disk-{number}", [])
        try:
            trouble = make(room)
        except PermissionError as reason:
            print(f"{name}: SKIPPED, {reason}")
            continue
        try:
            said = export(bench, room, words)
            trouble.mend()
            check(bench, room, False)
            bench.drive(room, ["compare=database", "export-all"])
            besides = check(bench, room, True)
            failures = len(re.findall("FAIL: ", said))
            print(f"{name}: {failures} failures said, all saved by the next run, {besides} files besides", flush=True)
        except Broken as reason:
            failed = True
            print(f"FAILED: {name}: {reason}", flush=True)
        finally:
            trouble.mend()
            trouble.remove()
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
