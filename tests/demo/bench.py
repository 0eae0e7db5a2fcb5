"""What runs of Quillbox inside a Wine are made of: a mailbox, the program's folder, the driver, the database."""
import collections
import csv
import io
import json
import os
import pathlib
import shutil
import subprocess

ROOT = "Local Folders"


class Broken(Exception):
    """A promise is, or a program failed that is not to."""


def windows_path(path):
    return "Z:" + str(path).replace("/", "\\")


def subject_of(folder, number):
    """Told apart by it; every third is too long for a row of the database."""
    return f"{folder} letter {number:03d}" + " of very many words" * (number % 3 * 2)


def message_of(folder, number):
    time = f"Tue, 3 Apr 2007 {number // 60 % 24:02d}:{number % 60:02d}:00 +0000"
    return (f"Received: from a by b; {time}\r\nFrom: Ann <a{number}@example.org>\r\nTo: reader@example.com\r\n"
            f"Subject: {subject_of(folder, number)}\r\nDate: {time}\r\n\r\n{'Body ' * 200 * (number % 4)}\r\n").encode()


def stored_in(directory, folder):
    """Of the messages in the folder's directory: how often each lies there whole, and the numbers of those in part."""
    whole, parts = collections.Counter(), []
    for file in directory.iterdir() if directory.exists() else ():
        number = int(file.name.split("_")[0])
        content, message = file.read_bytes(), message_of(folder, number)
        if content == message:
            whole[number] += 1
        elif message.startswith(content):
            parts.append(number)
        else:
            raise Broken(f"{file.name} is another message")
    return whole, parts


class Bench:
    """folders: how many messages each has. What is made lies below scratch."""

    def __init__(self, programs, tools, scratch, folders):
        self.tools, self.scratch = pathlib.Path(tools), pathlib.Path(scratch)
        self.programs = self.scratch / "programs"  # of this moment: a build may go on beside
        shutil.copytree(programs, self.programs, ignore=lambda _, names: [n for n in names if not n.endswith(".exe")])
        mail = self.scratch / "mail"
        for folder, count in folders.items():
            (mail / folder).mkdir(parents=True)
            for number in range(count):
                (mail / folder / f"{number:05d}.eml").write_bytes(message_of(folder, number))
        self.pack = self.scratch / "mail.pack"
        subprocess.run([self.tools / "demo-pack", mail, self.pack], check=True, stdout=subprocess.DEVNULL)

    def inspect(self, database, *arguments, text=None):
        done = subprocess.run([self.tools / "quillbox-inspect", "db", database, *arguments], input=text,
                              capture_output=True, encoding="utf-8")
        if done.returncode:
            raise Broken(f"{database.name} {arguments[0]}: {done.stderr.strip()}")
        return done.stdout

    def rows(self, database):
        """As the program's own engine reads them, and as another one does."""
        rows = [tuple(json.loads(line).values()) for line in self.inspect(database, "list").splitlines()]
        other = subprocess.run(["mdb-export", "-H", database, "saved"], capture_output=True, encoding="utf-8")
        if other.returncode or other.stderr or [tuple(row) for row in csv.reader(io.StringIO(other.stdout))] != rows:
            raise Broken(f"{database.name}: mdb-export reads it otherwise {other.stderr.strip()}")
        return rows

    def room(self, name, rows):
        """The program's folder of a run, with a database of these rows."""
        room = self.scratch / name
        (room / "program").mkdir(parents=True)
        (room / "store").mkdir()
        os.link(self.programs / "quillbox.exe", room / "program/quillbox.exe")
        database = room / "program/saved.mdb"
        self.inspect(database, "create")
        self.inspect(database, "load", text="".join("\t".join(row) + "\n" for row in rows))
        self.settle(room)
        return room

    def settle(self, room, store=None, extras=""):
        """Writes the settings, unless they cannot be written."""
        settings = room / "program/settings.ini"
        if settings.exists() and not os.access(settings, os.W_OK):
            return
        settings.write_text(f"[Paths]\r\nStore={windows_path(store or room / 'store')}\r\n"
                            f"[Options]\r\nOE Folder Settle Time=0.1\r\n[Extras]\r\n{extras}\r\n", newline="")

    def drive(self, room, steps, store=None, beside=None, extras=""):
        """Does the driver's steps; answers what it has printed."""
        self.settle(room, store, extras)
        command = ["wine", self.programs / "demo-driver.exe", "--program", windows_path(room / "program/quillbox.exe")]
        command += ["--beside", beside] if beside else []
        command += [word for step in steps for word in ("--do", step)]
        command += ["--", windows_path(self.programs / "demo-client.exe"), "--mail", windows_path(self.pack)]
        with open(room / "said", "w") as output:
            code = subprocess.run(command, stdin=subprocess.DEVNULL, stdout=output, stderr=subprocess.STDOUT).returncode
        words = (room / "said").read_text(encoding="utf-8", errors="replace")
        if code:
            raise Broken(f"the run did not come to its end: {words.strip().splitlines()[-1:]}")
        return words
