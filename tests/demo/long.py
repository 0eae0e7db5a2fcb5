"""One long run of Quillbox: a large mailbox checked, exported, checked by each type and exported again, with many
rows of other folders in the database, while what both programs hold of the system is measured.

usage: soak.sh long MESSAGES FOLDERS ROWS
"""
import collections
import re
import sys

from bench import ROOT, Bench, Broken, message_of, subject_of, windows_path

STEPS = ["check-all", "export-all", "measure", "check-all", "compare=database", "check-all", "compare=file", "check-all",
         "export-all", "measure"]
UNRECORDED = ["compare=database", "check-all", "measure"]  # another run then, with all e-mails in the table
EXTRAS = "Poll Interval=10"  # as many e-mails in a third of the time
HANDLES_MORE, KILOBYTES_MORE = 20, 8192  # than behind the first thousand e-mails


def counts_of(messages, folders):
    """Neighbours differ: of folders that follow each other the program tells the same count from a late list."""
    mean = messages // folders
    counts = [mean + (1 + i % 3 if i % 2 else -1 - i % 3) * min(mean // 20, 5) for i in range(folders)]
    counts[-1] += messages - sum(counts)
    return {f"Folder {i:02d}": count for i, count in enumerate(counts)}


def check_outcome(bench, room, folders, others):
    rows = bench.rows(room / "program/saved.mdb")
    times = collections.Counter((folder, subject) for folder, subject, _ in rows)
    if len(rows) != others + sum(folders.values()):
        raise Broken(f"saved.mdb has {len(rows)} rows")
    for folder, count in folders.items():
        files = sorted((room / "store" / ROOT / folder).iterdir())
        if len(files) != count:
            raise Broken(f"{folder}: {len(files)} files of {count} messages")
        for number, file in enumerate(files):
            if int(file.name.split("_")[0]) != number or file.read_bytes() != message_of(folder, number):
                raise Broken(f"{folder}/{file.name} is another message")
            if times[f"{ROOT}\\{folder}", subject_of(folder, number)] != 1:
                raise Broken(f"{folder}/{file.name} is not recorded once")


def what_grew(words):
    """Behind the first thousand e-mails; of what they hold, and of what the system counts."""
    lines = re.findall(r"^meter: (\d+) e-mails, (\d+) s; Quillbox: (.*); client: (.*)$", words, re.M)
    held = [(int(emails), *([int(n) for n in re.findall(r"\d+", side)] for side in sides))
            for emails, _, *sides in lines]
    grown = []
    for side, name in (1, "Quillbox"), (2, "client"):
        settled = [line for line in held if line[0] >= 1000] or held
        for place, unit, more in (0, "handles", HANDLES_MORE), (1, "KB", KILOBYTES_MORE), (2, "GDI objects", 10), \
                (3, "USER objects", 10):
            values = [line[side][place] for line in settled]
            counted = f"{values[0]} to {max(values)}, {values[-1]} at the end" if any(values) else "not counted"
            print(f"{name}, {unit}: {counted}")
            if max(values) > values[0] + more:
                grown.append(f"{name} holds more and more {unit}")
    return grown


def main():
    programs, tools, scratch, messages, folders, others = sys.argv[1:]
    mailbox = counts_of(int(messages), int(folders))
    bench = Bench(programs, tools, scratch, mailbox)
    rows = [(f"{ROOT}\\Old {i % 97}", f"Old letter {i}", f"{i * 7919 % (1 << 32):08X}") for i in range(int(others))]
    room = bench.room("long", rows)
    meter = f'"{windows_path(bench.programs / "demo-meter.exe")}" "{windows_path(room / "program/log.txt")}" 1000 60'
    try:
        words = bench.drive(room, STEPS, beside=meter, extras=EXTRAS)
        grown = what_grew(words)
        check_outcome(bench, room, mailbox, int(others))
        unrecorded = bench.room("unrecorded", rows)
        words += bench.drive(unrecorded, UNRECORDED, room / "store", extras=EXTRAS)
        steps = [step for step in STEPS + UNRECORDED if step in ("check-all", "export-all")]
        for step, time in zip(steps, re.findall(r"^> took (\d+) ms", words, re.M)):
            print(f"{step}: {int(time) / 1000:.1f} s for {messages} e-mails in {folders} folders")
        print(*re.findall(r"^> (?:log list|results table|summary): .*", words, re.M), sep="\n")
        if grown:
            raise Broken("; ".join(grown))
        print(f"{messages} messages in {folders} folders, beside {others} other rows: each saved and recorded once")
        return 0
    except Broken as reason:
        print(f"FAILED: {reason}")
        return 1


if __name__ == "__main__":
    sys.exit(main())
