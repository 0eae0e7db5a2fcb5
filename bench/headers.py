"""headers.py DIRECTORY: what Python's email package takes out of the messages of a directory. A line "answers" is
answered with their count and a line for each, "read" with a line when all are read."""
import calendar
import email
import email.header
import email.utils
import pathlib
import re
import sys

MARK = re.compile(rb"content-disposition: attachment;\r\n", re.IGNORECASE)


def decoded(text):
    return str(email.header.make_header(email.header.decode_header(text or "")))


def addresses(message, name):
    found = email.utils.getaddresses(message.get_all(name, []))
    return ", ".join(f"{decoded(shown)} <{address}>" if shown else address for shown, address in found)


def moment(text):
    parsed = email.utils.parsedate_tz(text or "")
    return calendar.timegm(parsed[:6] + (0, 0, 0)) - parsed[9] if parsed else 0


def answer(path):
    whole = path.read_bytes()
    attached = MARK.search(whole) is not None
    message = email.message_from_bytes(whole[: whole.find(b"\r\n\r\n") + 4])
    return (addresses(message, "From"), addresses(message, "To"), addresses(message, "Cc"), addresses(message, "Bcc"),
            decoded(message["Subject"]), moment(message["Delivery-date"]), moment(message["Date"]),
            moment((message["Received"] or "").partition(";")[2]), int(attached))


paths = sorted(pathlib.Path(sys.argv[1]).iterdir())
sys.stdout.reconfigure(encoding="utf-8")
for command in sys.stdin:
    answers = [answer(path) for path in paths]
    print(len(answers))
    if command.strip() == "answers":
        for fields in answers:
            print("\t".join(map(str, fields)))
    sys.stdout.flush()
