"""Ends Quillbox or the mail client by force at random moments of a run, starts it again, and holds what it left
against what it promises.

usage: soak.sh kills SEED KIND=ROUNDS...
  KIND: export, client (the client is ended, not Quillbox), check (by files) or condense

Each round has folders of its own. What its database holds before, and its moment, as a part of the time that a run
takes when nobody ends it, depend on SEED and its number alone.
"""
import collections
import pathlib
import random
import re
import shutil
import sys

from bench import ROOT, Bench, Broken, stored_in, subject_of

EVIDENCE = pathlib.Path(__file__).parents[2] / "build/killed"  # what is left of rounds that failed
FOLDERS = {"Inbox": 9, "Sent Items": 4}  # and their messages


def check_killed(room, rows):
    """Whether at the moment of the kill each e-mail behind which the log goes on was recorded. Answers the last one
    that the log names, "" for none."""
    log = (room / "program/killed.txt").read_bytes().decode("cp1252")
    parts = re.split(r"^.{19} - Exporting (.*?)\r?$", log, flags=re.M)
    subjects, between = parts[1::2], parts[2::2]
    recorded = {subject for _, subject, _ in rows}
    for subject, words in zip(subjects[:-1], between):
        if not re.search(r"^.{19} (FAIL|SKIP|No .* found)", words, re.M) and subject not in recorded:
            raise Broken(f"killed.mdb lacks {subject}, though the log goes on")
    return subjects[-1] if subjects else ""


def check_records(rows, folders):
    recorded = collections.Counter((folder, subject) for folder, subject, _ in rows)
    for folder in folders:
        for number in range(FOLDERS[folder]):
            times = recorded[f"{ROOT}\\{folder}", subject_of(folder, number)]
            if times != 1:
                raise Broken(f"{subject_of(folder, number)} is recorded {times} times")


def check_store(store, folders, last):
    """Every message is there, and besides at most the last one once more. How many there are besides."""
    besides = []
    for folder in folders:
        times, parts = stored_in(store / ROOT / folder, folder)
        besides += [subject_of(folder, number) for number in parts]
        missing = [number for number in range(FOLDERS[folder]) if times[number] == 0]
        if missing:
            raise Broken(f"{folder}: not stored: {missing}")
        besides += [subject_of(folder, number) for number in (times - collections.Counter(times.keys())).elements()]
    if besides not in ([], [last]):
        raise Broken(f"stored besides: {besides}, though the last one was {last}")
    return len(besides)


class Kind:
    """Of rounds: what is ended, and in which run."""

    def __init__(self, bench, name, seed):
        self.bench, self.name, self.seed = bench, name, seed
        self.lengths = {}  # of runs that nobody ends, in milliseconds
        self.store = None  # one for all rounds
        if name == "check":
            self.store = bench.room("stored", []) / "store"
            bench.drive(self.store.parent, ["export-all"])

    def run(self, draw):
        if self.name == "check":
            return ["compare=file", "check-all"]
        if self.name == "condense":
            return ["condense"]
        return draw.choice([["top", "export"], ["compare=database", "export-all"]])

    def rows(self, draw):
        """Of other folders, so that what the run adds begins anywhere on a page; to be condensed, many twice. Each CRC
        stands in two folders, which is as it should be."""
        rows = [(f"{ROOT}\\Old {i % 2}", f"Old letter {i} " + "x" * draw.randrange(120), f"{i // 2 * 7919:08X}")
                for i in range(6000 if self.name == "condense" else draw.randrange(300))]
        if self.name == "condense":
            rows += draw.sample(rows, 3000) + draw.sample(rows, 2000)
            draw.shuffle(rows)
        return rows

    def length(self, run):
        if tuple(run) not in self.lengths:
            room = self.bench.room(f"{self.name}-alone-{len(self.lengths)}", self.rows(random.Random(0)))
            words = self.bench.drive(room, run, self.store)
            self.lengths[tuple(run)] = int(re.search(r"^> took (\d+) ms", words, re.M)[1])
        return self.lengths[tuple(run)]

    def round(self, number):
        draw = random.Random(f"{self.seed} {self.name} {number}")
        run = self.run(draw)
        before, moment = self.rows(draw), int(draw.random() * self.length(run))
        room = self.bench.room(f"{self.name}-{number}", before)
        kill, again = ("kill-client", ["restart-client"]) if self.name == "client" else ("kill", [])
        try:
            self.bench.drive(room, [f"{kill}={moment}", *run, *again, "restart", *run], self.store)
            return self.verify(room, before, list(FOLDERS) if len(run) == 2 and run[0] != "top" else ["Inbox"])
        except Broken as broken:
            raise Broken(f"{' '.join(run)}, {kill} after {moment} ms: {broken}") from broken

    def verify(self, room, before, folders):
        """How many files there are besides."""
        killed, after = (self.bench.rows(room / "program" / name) for name in ("killed.mdb", "saved.mdb"))
        if set(before) - set(killed) or set(before) - set(after):
            raise Broken("a row that was there before has gone")
        if self.name == "condense":
            times = collections.Counter((folder, crc) for folder, _, crc in after)
            if times != collections.Counter(times.keys()):
                raise Broken("a row is there twice after condensing")
            return 0
        last = check_killed(room, killed)
        check_records(after, folders)
        return check_store(self.store or room / "store", folders, last)


def main():
    programs, tools, scratch, seed, *wanted = sys.argv[1:]
    bench = Bench(programs, tools, scratch, FOLDERS)
    failed = False
    for kind, rounds in (words.split("=") for words in wanted):
        kind, besides, broken = Kind(bench, kind, seed), 0, 0
        for number in range(int(rounds)):
            try:
                besides += kind.round(number)
            except Broken as reason:
                broken += 1
                print(f"FAILED: {kind.name} {number} of seed {seed}: {reason}", flush=True)
                shutil.copytree(bench.scratch / f"{kind.name}-{number}", EVIDENCE / f"{kind.name}-{number}-{seed}",
                                dirs_exist_ok=True)
        lengths = " and ".join(f"{length} ms" for length in kind.lengths.values())
        print(f"{kind.name}: killed {rounds} times within {lengths} (seed {seed}); {besides} e-mails saved twice, "
              f"{broken} promises broken", flush=True)
        failed = failed or broken > 0
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
