"""Writes hostile e-mails into a store, has them made into mbox files, and reads these back with Python's own
reader: each must come back byte for byte, but for line ends and a missing last one.
usage: mbox.py QUILLBOX_INSPECT"""
import mailbox
import os
import pathlib
import random
import re
import subprocess
import sys
import tempfile

HEAD = b"From: Ann <ann@x.example>\r\nDate: Sun, 14 Nov 2004 09:30:59 +0100\r\nSubject: x\r\n\r\n"
PIECES = [b"From ", b">From ", b">>From x\r\n", b"From", b"From\t", b"from ", b"\r\n", b"\n", b"\r\n\r\n", b"\r",
          b"\r\r\n", b" From ", b"text", b"\0", b"\xff\xfe", b"=20\r\n", b"> ", b"\n\n\nFrom a@b Mon Jan  1 00:00:00 2007\n"]
FIXED = [HEAD + b"body\r\n", HEAD, HEAD + b"no end", HEAD + b"From me\r\n\r\nFrom you", b"Subject: cut",
         b"From a@b Mon Jan  1 00:00:00 2007\r\nSubject: of an mbox file\r\n\r\nx\r\n", b"From: no date\n\nFrom \n",
         b"From: \"From \" <>\r\nDate: 31 Dec 9999 23:59:59 -1400\r\n\r\n" + b"From \r\n" * 2000, b"\r\n\r\n", b"x"]


def plain(message):
    """With LF alone at each line's end, the last one included."""
    message = message.replace(b"\r\n", b"\n")
    return message if message.endswith(b"\n") else message.removesuffix(b"\r") + b"\n"


def main():
    inspect = sys.argv[1]
    choose = random.Random(7)
    with tempfile.TemporaryDirectory() as scratch:
        store, target = pathlib.Path(scratch, "store"), pathlib.Path(scratch, "mail")
        made = FIXED + [HEAD + b"".join(choose.choices(PIECES, k=choose.randrange(40))) for _ in range(500)]
        folders = {"Local Folders/Inbox": made[::2], "Local Folders/Inbox/Work & \u65e5\u672c": made[1::2], "": made[:1],
                   "Local Folders/Inbox.mbox/x": made[:2], "..\\..\\out": made[:3]}
        for folder, messages in folders.items():
            (store / folder).mkdir(parents=True, exist_ok=True)
            for number, message in enumerate(messages):
                (store / folder / f"{number:04}_x.eml").write_bytes(message)
        os.mkfifo(store / "pipe.eml")
        (store / "Local Folders/empty.eml").write_bytes(b"")  # all that its folder has
        done = subprocess.run([inspect, "mbox", store, target], capture_output=True, text=True, timeout=60)
        assert done.returncode == 1, (done.returncode, done.stderr)  # two files were left out, and named
        assert "pipe.eml" in done.stderr and "empty.eml" in done.stderr, done.stderr
        read = 0
        for folder, messages in folders.items():
            # One of the folders has the directory that another's file would be.
            name = folder.replace("\\", "_")  # of a name: it parts no levels
            path = target / ("Local Folders/Inbox_2.mbox" if folder.endswith("Inbox") else name + ".mbox" if folder else "store.mbox")
            box = mailbox.mbox(path, create=False)
            assert len(box) == len(messages), (path, len(box), len(messages))
            for key, message in zip(sorted(box.keys()), messages):
                # Its reader drops the empty line before the next message, and LF is its line end.
                back = re.sub(rb"^>(>*From )", rb"\1", box.get_bytes(key), flags=re.M)
                assert back == plain(message), (path, key, back[:300], message[:300])
                read += 1
            assert box.get_message(0).get_from() != "", path
        first = mailbox.mbox(target / "store.mbox").get_message(0)
        assert first.get_from() == "ann@x.example Sun Nov 14 08:30:59 2004", first.get_from()
        assert sum(path.is_file() for path in target.rglob("*")) == len(folders), "a folder of which nothing is left gets no file"
        again = subprocess.run([inspect, "mbox", store, target], capture_output=True, text=True, timeout=60)
        assert again.returncode == 2 and "not empty" in again.stderr, "an mbox file must not be written to twice"
        print(f"mbox: {read} messages of {len(folders)} folders came back")


main()
