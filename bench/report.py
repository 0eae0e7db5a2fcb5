"""report.py [--keep=COMMIT] RESULTS...: ratios of medians from Google Benchmark's JSON files, with their goals. Ends
with 1 when a goal is missed, with 2 when one was not measured. --keep writes the table of docs/performance.md, as
measured at that commit, and a plot for each of its parts, of a whole measurement alone."""
import json
import math
import pathlib
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
PAGE = ROOT / "docs/performance.md"
BEFORE = ROOT / "bench/before.json"  # medians of the program as it was before this page began

# Name of the plot, title, rows. A row: the work, the measured benchmark, what it is held against, the goal. A goal
# "at most" is of the time over the other's, one "at least" of the speed over the other's. Both are processor time, but
# by the clock where one waits for the disk or for another process, as all do under Wine.
BY_CLOCK = ("headers/python", "rows/mdb-export", "add/two-pages-synced", "add/lmdb", "condense/sqlite")
PARTS = [
    ("headers", "The headers of 5,000 saved e-mails (200 MB)", [
        ("time over just reading the files", "headers/quillbox", "headers/read", ("at most", 1.5)),
        ("speed against GMime, header block", "headers/quillbox", "headers/gmime-headers", ("at least", 8)),
        ("speed against GMime, whole message", "headers/quillbox", "headers/gmime-whole", ("at least", 11)),
        ("speed against VMime", "headers/quillbox", "headers/vmime", ("at least", 20)),
        ("speed against Python's email", "headers/quillbox", "headers/python", ("at least", 25)),
    ]),
    ("database", "saved.mdb with 100,000 rows", [
        ("all rows: speed against mdb-export", "rows/quillbox", "rows/mdb-export", ("at least", 10)),
        ("is it saved: time over SQLite", "ask/all/quillbox", "ask/all/sqlite", ("at most", 0.5)),
        ("is it saved: time over LMDB", "ask/all/quillbox", "ask/all/lmdb", ("at most", 4)),
        ("is it saved among 1,000,000 rows: time over 10,000 rows", "ask/tenfold/quillbox", "ask/tenth/quillbox",
         ("at most", 5)),
        ("open and first answer: time over reading and decoding", "open/quillbox", "open/read-and-decode",
         ("at most", 2)),
        ("durable add: time over two pages written and synced", "add/quillbox", "add/two-pages-synced",
         ("at most", 1.3)),
        ("durable add: time over LMDB", "add/quillbox", "add/lmdb", ("at most", 1.3)),
        ("a folder's CRCs: time over SQLite", "crcs/quillbox", "crcs/sqlite", ("at most", 0.35)),
        ("condensing, durable: time over SQLite", "condense/quillbox", "condense/sqlite", ("at most", 0.5)),
    ]),
    ("comparison", "A check of 100,000 e-mails", [
        ("CRC of an e-mail's identity: time over zlib", "crc/quillbox", "crc/zlib", ("at most", 1)),
        ("files in the order of the list: time over the plain search", "same-order/quillbox",
         "same-order/plain-search", ("at most", 0.4)),
        ("every other e-mail unsaved: time over the plain search", "half-unsaved/quillbox",
         "half-unsaved/plain-search", ("at most", 0.003)),
    ]),
    ("wine", "The program under Wine", [
        ("a check by database: time over reading the cells", "wine/check", "wine/cells", ("at most", 1.15)),
        ("an export: time over a bare driver of the dialog", "wine/export", "wine/export-bare", ("at most", 1.1)),
        ("\"Poll Interval\" 10: speed against 100", "wine/export-poll-10", "wine/export", ("at least", 3)),
        ("start: time over an empty window", "wine/start", "wine/start-empty", ("at most", 1.5)),
        ("memory over the texts of 100,000 e-mails", "wine/memory", "wine/texts", ("at most", 2.5)),
    ]),
]

def duration(nanoseconds):
    for unit, name in (1e9, "s"), (1e6, "ms"), (1e3, "µs"):
        if nanoseconds >= unit:
            return f"{nanoseconds / unit:.3g} {name}"
    return f"{nanoseconds:.3g} ns"


# A row: the work, its benchmark, which is run for numbers of ten and a hundred times the first, and how what one takes
# is told.
GROWTH = ("growth", "How time and memory grow with the number", [
    ("opening, to the first answer", "open", duration),
    ("all rows", "rows", duration),
    ("records added, one by one", "add", duration),
    ("records asked for, one by one", "ask", duration),
    ("records forgotten, one by one", "forget", duration),
    ("a folder's CRCs", "crcs", duration),
    ("condensing", "condense", duration),
    ("headers of small files in a directory", "headers", duration),
    ("rows come to the sorted results table", "results", duration),
    ("files found in the order of the list", "find", duration),
    ("folders side by side", "folders", duration),
    ("folders whose directories would have one name", "folders-alike", duration),
    ("e-mails of one minute, none of them saved", "one-minute", duration),
    ("a check by database under Wine", "check", duration),
    ("memory of such a check", "memory", lambda size: f"{size:,.0f} bytes"),
])
COUNTS = (100, 1000, 10000, 100000, 1000000)
# n log n is a power of 1.1 over these numbers; caches that become too small add to it.
MOST_POWER = 1.3

NANOSECONDS = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}


def medians(paths):
    """By name: nanoseconds by the clock and of processor time; of one item where the benchmark counts items."""
    found = {}
    for path in paths:
        for run in json.loads(path.read_text())["benchmarks"]:
            if run.get("aggregate_name") != "median":
                continue
            unit = NANOSECONDS[run["time_unit"]]
            items = run.get("items_per_second", 0) * run["real_time"] * unit / 1e9 or 1
            found[run["run_name"].removesuffix("/real_time")] = [run["real_time"] * unit / items,
                                                                 run["cpu_time"] * unit / items]
    return found


def figure(found, row):
    """The ratio in the goal's sense; None where it was not measured."""
    _, work, other, (sense, _) = row
    if work not in found or other not in found:
        return None
    which = 0 if other in BY_CLOCK or other.startswith("wine/") else 1
    ratio = found[work][which] / found[other][which]
    return ratio if sense == "at most" else 1 / ratio


def grown(found, name):
    """Number and what each takes of it, nanoseconds of processor time or bytes, by number."""
    each = {int(key.rsplit("/", 1)[1]): value[1] for key, value in found.items()
            if key.startswith(f"growth/{name}/")}
    return sorted(each.items())


def power(found, name):
    """With which power of the number the whole grows from the first number to the last; None where it was not
    measured at three."""
    each = grown(found, name)
    if len(each) < 3:
        return None
    (few, first), (many, last) = each[0], each[-1]
    return 1 + math.log(last / first) / math.log(many / few)


def is_met(value, goal):
    return value <= goal[1] if goal[0] == "at most" else value >= goal[1]


def number(value):
    return "–" if value is None else f"{value:.2g}" if value < 1 else f"{value:.2f}" if value < 10 else f"{value:.0f}"


class Line:
    """Of a table: value and before are None where they were not measured."""

    def __init__(self, work, value, goal, before, share):
        self.work, self.value, self.goal, self.before = work, value, goal, before
        self.is_met = value is None or is_met(value, goal)
        self.share = share  # of what the goal allows, which such a value uses

    def limit(self):
        return f"{self.goal[0]} {self.goal[1]:g}"


def shares_of(goal):
    return lambda value: value / goal[1] if goal[0] == "at most" else goal[1] / value


def parts(found, before):
    """Name, title and lines of each table, that of the growth last."""
    for name, title, rows in PARTS:
        yield name, title, [Line(row[0], figure(found, row), row[3], figure(before, row), shares_of(row[3]))
                            for row in rows]
    name, title, rows = GROWTH
    yield name, title, [Line(work, power(found, key), ("at most", MOST_POWER), power(before, key),
                             lambda value: 10 ** (value - MOST_POWER))
                        for work, key, _ in rows]


def print_table(found, before):
    print(f"{'':62} {'now':>8}   {'goal':16} {'before':>8}")
    for name, title, lines in parts(found, before):
        print(title + (": its power" if name == GROWTH[0] else ""))
        for line in lines:
            missed = "not measured" if line.value is None else "" if line.is_met else "MISSED"
            told = f"  {line.work:60} {number(line.value):>8}   {line.limit():16} {number(line.before):>8}  {missed}"
            print(told.rstrip())


# What is marked has a rim in the colour of the page, so that it shows on a bar, too.
STYLE = """
  text { font: 13px sans-serif; fill: #1f2328 } .title { font-weight: bold; font-size: 15px }
  .soft { fill: #59636e } .grid { stroke: #d1d9e0 } .goal { stroke: #1f2328; stroke-width: 2 }
  .met { fill: #1a7f37 } .missed { fill: #bc4c00 } .bold { font-weight: bold }
  .was { stroke: #1f2328; stroke-width: 2; fill: #ffffff } .rim { stroke: #ffffff; stroke-width: 5; fill: none }
  @media (prefers-color-scheme: dark) {
    text { fill: #f0f6fc } .soft { fill: #9198a1 } .grid { stroke: #3d444d } .goal { stroke: #f0f6fc }
    .was { stroke: #f0f6fc; fill: #0d1117 } .met { fill: #3fb950 } .missed { fill: #f0883e } .rim { stroke: #0d1117 }
  }"""


def plot(name, title, lines):
    """A bar for each row from the goal on, to the left where it is reached, to the right where it is missed; how much
    of what the goal allows is used, on a logarithmic scale."""
    left, width, top, step = 400, 400, 78, 30
    height = top + step * len(lines) + 12

    def place(share):
        return round(left + width * min(max((math.log10(share) + 1.5) / 2.5, 0), 1))  # 1/32 to 10 times the goal

    marks = [(0.1, "10 times better"), (1, "goal"), (10, "10 times worse")]
    how = "Green, left of the goal: it is reached. Orange, right of it: missed. Ring: before."
    if name == GROWTH[0]:
        marks = [(10 ** (1 - MOST_POWER), "the same"), (1, "goal"), (10 ** (2 - MOST_POWER), "10 times as much")]
        how = "What each takes where there are ten times as many. " + how
    out = [f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {left + width + 120} {height}" role="img">',
           f"<title>{title}</title><style>{STYLE}\n</style>", f'<text class="title" x="10" y="22">{title}</text>',
           f'<text class="soft" x="10" y="44">{how}</text>']
    for share, words in marks:
        x = place(share)
        out.append(f'<text class="soft" x="{x}" y="{top - 10}" text-anchor="middle">{words}</text>'
                   f'<line class="grid" x1="{x}" x2="{x}" y1="{top - 4}" y2="{height - 8}"/>')
    for at, line in enumerate(lines):
        y, x, goal = top + step * at, place(line.share(line.value)), place(1)
        x = min(x, goal - 5) if line.is_met else max(x, goal + 5)  # beside the line
        kind = "met" if line.is_met else "missed"
        told = number(line.value) if line.is_met else f'<tspan class="bold">{number(line.value)} missed</tspan>'
        out.append(f'<text x="{left - 12}" y="{y + 18}" text-anchor="end">{line.work}</text>'
                   f'<rect class="{kind}" x="{min(x, goal)}" y="{y + 4}" width="{abs(x - goal)}" height="20"/>'
                   f'<text x="{left + width + 16}" y="{y + 18}">{told}</text>')
    for kind in "rim", "goal":  # above the bars
        out.append(f'<line class="{kind}" x1="{place(1)}" x2="{place(1)}" y1="{top - 4}" y2="{height - 8}"/>')
    for kind in "rim", "was":
        out += [f'<circle class="{kind}" cx="{place(line.share(line.before))}" cy="{top + step * at + 14}" r="5"/>'
                for at, line in enumerate(lines) if line.before is not None]
    return "\n".join(out) + "\n</svg>\n"


def table(name, lines, found):
    """A row for each; that of the growth tells what each takes at every number, too."""
    counts = COUNTS if name == GROWTH[0] else ()
    heads = ["for each of" if counts else "", *(f"{count:,}" for count in counts), "power" if counts else "now", "goal",
             "before"]
    told = [f"| {' | '.join(heads)} |", "|---" * len(heads) + "|"]
    for at, line in enumerate(lines):
        cells = []
        if counts:
            _, key, tell = GROWTH[2][at]
            each = dict(grown(found, key))
            cells = [tell(each[count]) if count in each else "" for count in counts]
        bold = "" if line.is_met else "**"
        cells += [f"{bold}{number(line.value)}{bold}", line.limit(), number(line.before)]
        told.append(f"| {line.work} | {' | '.join(cells)} |")
    return told


def keep(found, before, commit):
    told = []
    for name, title, lines in parts(found, before):
        picture = f"pictures/performance-{name}.svg"
        (PAGE.parent / picture).write_text(plot(name, title, lines), encoding="utf-8")
        told += ["", f"## {title}", "", f"![{title}]({picture})", "", *table(name, lines, found)]
    begin, end = "<!-- table -->", "<!-- end of table -->"
    head, rest = PAGE.read_text(encoding="utf-8").split(begin)
    inner = "\n".join([begin, f"Measured at {commit}. Bold: the goal is missed.", *told, "", end])
    PAGE.write_text(head + inner + rest.split(end)[1], encoding="utf-8")


def main(arguments):
    commit = [argument.removeprefix("--keep=") for argument in arguments if argument.startswith("--keep=")]
    found = medians([pathlib.Path(argument) for argument in arguments if not argument.startswith("--keep=")])
    before = json.loads(BEFORE.read_text())
    print_table(found, before)
    lines = [line for _, _, lines in parts(found, before) for line in lines]
    if any(line.value is None for line in lines):
        return 2
    if commit:
        keep(found, before, commit[0])
    return 0 if all(line.is_met for line in lines) else 1


if __name__ == "__main__":
    try:
        sys.exit(main(sys.argv[1:]))
    except Exception as error:  # 1 is for goals alone
        print(f"report: {error!r}", file=sys.stderr)
        sys.exit(2)
