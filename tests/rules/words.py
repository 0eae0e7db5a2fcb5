"""Holds the program's words together: what it says to the user, README.md's table of messages, and words.txt,
which lists what is no message, with the reason.

A message of the table is cut at each "...", which stands for what varies; several in one cell are parted by
<br>. What is left must be the words of one string in src/, in one place. The other way round, each string of
two words or more in the folders that speak to the user must be such a part of a message, or stand in
words.txt; none may stand in two places. What the database engines say comes behind "Database error: ", or into the
box that says why exporting stays off: none of it may stand in two places either. Blanks and punctuation at the ends
do not count.
"""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
ROOMS = "app", "archive", "folders", "oe", "store"
ENGINES = "jet", "platform", "platform/win32"
# Strings of these are captions and tips of controls, the extras' sentences, keys and defaults of settings.ini,
# the mail client's words.
NO_SPEAKERS = re.compile(r"app/(Captions|ControlTable|Extras|Form1Controls|Settings)|folders/RunView|oe/ClientWords")
SQL = re.compile(r"^(SELECT|CREATE TABLE)\b|efolder=")
TOKEN = re.compile(r'''//[^\n]*|/\*.*?\*/|\d[\w']*|\w*"(?:\\.|[^"\\])*"|\w*'(?:\\.|[^'\\])*'|\s+|\w+|.''', re.S)
TWO_WORDS = re.compile(r"[A-Za-z)][.,:;]? +[(\"]?[A-Za-z]")


def bare(words):
    words = re.sub(r"\s+", " ", words.replace(r"\r\n", " ").replace(r"\"", '"'))
    return words.strip(" .:,;-()")


def strings(source):
    """Line and words of each u"..." string, with those that follow on it at once."""
    begun, line = None, 1
    for token in TOKEN.findall(source):
        if token.startswith('u"'):
            begun = (begun[0], begun[1] + token[2:-1]) if begun else (line, token[2:-1])
        elif begun and not token.isspace() and not token.startswith("//"):
            yield begun
            begun = None
        line += token.count("\n")
    if begun:
        yield begun


def said(rooms):
    places = {}
    for room in rooms:
        for path in sorted((ROOT / "src" / room).glob("*.[ch]*")):
            if path.suffix not in (".cpp", ".h") or NO_SPEAKERS.search(path.as_posix()):
                continue
            for line, words in strings(path.read_text(encoding="utf-8")):
                places.setdefault(bare(words), []).append(f"{path.relative_to(ROOT)}:{line}")
    return places


def told():
    """The parts of the table's messages, with their lines."""
    parts, inside = {}, False
    for number, line in enumerate((ROOT / "README.md").read_text(encoding="utf-8").splitlines(), 1):
        if line.startswith("## "):
            inside = line == "## Messages"
        if not inside or not line.startswith("| ") or line.startswith("| Message |"):
            continue
        for message in line.split("|")[1].split("<br>"):
            for part in map(bare, message.split("...")):
                if TWO_WORDS.search(part) or part.isupper() or part == bare(message):
                    parts.setdefault(part, f"README.md:{number}")
    return parts


def excused():
    lines = (ROOT / "tests/rules/words.txt").read_text(encoding="utf-8").splitlines()
    return {bare(line): f"tests/rules/words.txt:{number}" for number, line in enumerate(lines, 1)
            if line and not line.startswith("#")}


def main():
    places, parts, allowed = said(ROOMS), told(), excused()
    wrong = []
    for part, place in {**allowed, **parts}.items():
        if part not in places:
            wrong.append(f"{place}: the program does not say: {part}")
        elif part in parts and len(places[part]) > 1:
            wrong.append(f"{places[part][1]}: said in {places[part][0]}, too: {part}")
    for words, where in places.items():
        if not TWO_WORDS.search(words) or SQL.search(words) or words in parts:
            continue
        if words not in allowed:
            wrong.append(f"{where[0]}: not in README.md's table of messages: {words}")
        if len(where) > 1:
            wrong.append(f"{where[1]}: said in {where[0]}, too: {words}")
    wrong += [f"{where[1]}: said in {where[0]}, too: {words}" for words, where in said(ENGINES).items()
              if len(where) > 1 and words.count(" ") > 1]  # beginnings may be alike
    print("\n".join(wrong) if wrong else f"words: {len(parts)} parts of messages, each said once and told of")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
