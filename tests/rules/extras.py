"""Holds the guide's list of extras to the rows of src/app/Extras.cpp: the same keys in the same order, with the
same values and sentences."""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
ROW = re.compile(r'^    (Switch|Number)<[^>]*>\(\s*u"([^"]*)",([\s\d,]*)((?:\s*u"(?:\\.|[^"\\])*")+)\)', re.M)


def rows():
    for kind, key, numbers, sentence in ROW.findall((ROOT / "src/app/Extras.cpp").read_text(encoding="utf-8")):
        values = "0 or 1"
        if kind == "Number":
            least, most, normal = re.findall(r"\d+", numbers)
            values = f"{least} to {most}, else {normal}"
        words = "".join(re.findall(r'u"((?:\\.|[^"\\])*)"', sentence)).replace('\\"', '"')
        yield f"| {key} | {values} | {words} |"


def told():
    text = (ROOT / "docs/guide.md").read_text(encoding="utf-8")
    section = re.search(r"^## Extras$(.*?)^## ", text, re.M | re.S)
    return [line for line in section[1].splitlines() if line.startswith("| ")][1:] if section else []


def main():
    said, listed = list(rows()), told()
    wrong = [f"docs/guide.md: no line: {row}" for row in said if row not in listed]
    wrong += [f"docs/guide.md: no such extra: {row}" for row in listed if row not in said]
    if not wrong and said != listed:
        wrong.append("docs/guide.md: the extras stand in another order")
    print("\n".join(wrong) if wrong else f"extras: {len(said)} rows, each in the guide")
    return 1 if wrong or not said else 0


if __name__ == "__main__":
    sys.exit(main())
