"""report.py [--keep] RESULTS...: ratios of medians from Google Benchmark's JSON files, with their goals. Ends with
1 when a goal is missed, with 2 when one was not measured. --keep writes the table of docs/performance.md and a plot
for each of its parts, of a whole measurement alone."""
import json
import math
import pathlib
import subprocess
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

# A row: the work and its benchmark, which is run for numbers of ten and a hundred times the first.
GROWTH = ("growth", "How the time grows with the number", [
    ("records added, one by one", "add"),
    ("records asked for, one by one", "ask"),
    ("records forgotten, one by one", "forget"),
    ("condensing", "condense"),
    ("rows come to the sorted results table", "results"),
    ("files found in the order of the list", "find"),
    ("folders side by side", "folders"),
    ("folders whose directories would have one name", "folders-alike"),
    ("e-mails of one minute, none of them saved", "one-minute"),
])
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
    """Number and nanoseconds of processor time for each, by number."""
    times = {int(key.rsplit("/", 1)[1]): value[1] for key, value in found.items()
             if key.startswith(f"growth/{name}/")}
    return sorted(times.items())


def power(times):
    """With which power of the number the time for all grows; None where it was not measured."""
    if len(times) < 2:
        return None
    (few, first), (many, last) = times[0], times[-1]
    return 1 + math.log(last / first) / math.log(many / few)


def is_met(value, goal):
    return value <= goal[1] if goal[0] == "at most" else value >= goal[1]


def number(value):
    return "–" if value is None else f"{value:.2g}" if value < 1 else f"{value:.2f}" if value < 10 else f"{value:.0f}"


def lines(found, before):
    for _, title, rows in PARTS:
        yield title, "", "", "", ""
        for row in rows:
            value, goal = figure(found, row), row[3]
            if value is not None:
                yield ("  " + row[0], number(value), f"{goal[0]} {goal[1]:g}", number(figure(before, row)),
                       "" if is_met(value, goal) else "MISSED")
    yield GROWTH[1] + ": its power", "", "", "", ""
    for work, name in GROWTH[2]:
        if (value := power(grown(found, name))) is not None:
            yield ("  " + work, number(value), f"at most {MOST_POWER:g}", number(power(grown(before, name))),
                   "" if value <= MOST_POWER else "MISSED")


def print_table(found, before):
    for work, value, goal, was, missed in [("", "now", "goal", "before", ""), *lines(found, before)]:
        print(f"{work:62} {value:>8}   {goal:16} {was:>8}  {missed}".rstrip())


STYLE = """
  text { font: 13px sans-serif; fill: #24292f } .title { font-weight: bold; font-size: 15px }
  .soft { fill: #57606a } .grid { stroke: #d0d7de } .goal { stroke: #24292f; stroke-width: 2 }
  .met { fill: #2da44e } .missed { fill: #bc4c00 } .was { stroke: #24292f; stroke-width: 2; fill: none }
  @media (prefers-color-scheme: dark) {
    text { fill: #e6edf3 } .soft { fill: #9198a1 } .grid { stroke: #3d444d } .goal { stroke: #e6edf3 }
    .met { fill: #3fb950 } .missed { fill: #f0883e } .was { stroke: #e6edf3 }
  }"""


def plot(title, rows, found, before):
    """A bar for each row: how much of what its goal allows is used, on a logarithmic scale."""
    shown = [row for row in rows if figure(found, row) is not None]
    left, width, top, step = 410, 400, 70, 30
    height = top + step * len(shown) + 12

    def place(part):
        return left + width * min(max((math.log10(part) + 1.5) / 2.5, 0), 1)  # 1/32 to 10 times the goal

    def part(value, goal):
        return value / goal[1] if goal[0] == "at most" else goal[1] / value

    out = [f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {left + width + 80} {height}" role="img">',
           f"<title>{title}</title><style>{STYLE}\n</style>", f'<text class="title" x="10" y="22">{title}</text>',
           '<text class="soft" x="10" y="44">Left of the line: the goal is reached. A ring: before.</text>']
    for mark, words in [(0.1, "10 times better"), (1, "goal"), (10, "10 times worse")]:
        kind = "goal" if mark == 1 else "grid"
        out.append(f'<text class="soft" x="{place(mark)}" y="{top - 10}" text-anchor="middle">{words}</text>'
                   f'<line class="{kind}" x1="{place(mark)}" x2="{place(mark)}" y1="{top - 4}" y2="{height - 8}"/>')
    for at, row in enumerate(shown):
        value, was, goal, y = figure(found, row), figure(before, row), row[3], top + step * at
        kind = "met" if is_met(value, goal) else "missed"
        out.append(f'<text x="{left - 12}" y="{y + 18}" text-anchor="end">{row[0]}</text>'
                   f'<rect class="{kind}" x="{left}" y="{y + 4}" width="{max(place(part(value, goal)) - left, 2):.0f}" '
                   f'height="20" rx="2"/><text x="{left + width + 10}" y="{y + 18}">{number(value)}</text>')
        if was is not None:
            out.append(f'<circle class="was" cx="{place(part(was, goal)):.0f}" cy="{y + 14}" r="5"/>')
    return "\n".join(out) + "\n</svg>\n"


LINES = ("#2da44e", "#bc4c00", "#0969da", "#8250df", "#9a6700", "#cf222e", "#1b7c83", "#bf3989", "#6e7781")


def growth_plot(found, before):
    """Time for all over the number, both logarithmic; dashed: before."""
    name, title, rows = GROWTH
    left, top, width, height = 70, 60, 420, 330
    out = [f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {left + width + 330} {top + height + 40}" role="img">',
           f"<title>{title}</title><style>{STYLE}\n  polyline {{ fill: none; stroke-width: 2 }}\n</style>",
           f'<text class="title" x="10" y="22">{title}</text>',
           '<text class="soft" x="10" y="44">A step to the right: ten times as many. Dashed: before.</text>']

    def place(count, nanoseconds):
        across = (math.log10(count) - 2) / 3  # 100 to 100,000
        up = (math.log10(nanoseconds) - 4) / 6.5  # 10 µs to half a minute
        return f"{left + width * across:.0f},{top + height * (1 - up):.0f}"

    for exponent in range(2, 6):
        x = place(10 ** exponent, 1e4).split(",")[0]
        out.append(f'<line class="grid" x1="{x}" x2="{x}" y1="{top}" y2="{top + height}"/>'
                   f'<text class="soft" x="{x}" y="{top + height + 20}" text-anchor="middle">{10 ** exponent:,}</text>')
    for nanoseconds, words in (1e5, "0.1 ms"), (1e6, "1 ms"), (1e7, "10 ms"), (1e8, "0.1 s"), (1e9, "1 s"), (1e10, "10 s"):
        y = place(100, nanoseconds).split(",")[1]
        out.append(f'<line class="grid" x1="{left}" x2="{left + width}" y1="{y}" y2="{y}"/>'
                   f'<text class="soft" x="{left - 8}" y="{int(y) + 4}" text-anchor="end">{words}</text>')
    for at, ((work, key), colour) in enumerate(zip(rows, LINES)):
        for of, dashes in (found, ""), (before, ' stroke-dasharray="5 4"'):
            points = " ".join(place(count, count * each) for count, each in grown(of, key))
            if points:
                out.append(f'<polyline stroke="{colour}"{dashes} points="{points}"/>')
        y = top + 22 * at + 10
        out.append(f'<line stroke="{colour}" stroke-width="3" x1="{left + width + 20}" x2="{left + width + 40}" '
                   f'y1="{y}" y2="{y}"/><text x="{left + width + 48}" y="{y + 4}">{work}</text>')
    return "\n".join(out) + "\n</svg>\n"


def duration(nanoseconds):
    for unit, name in (1e9, "s"), (1e6, "ms"), (1e3, "µs"):
        if nanoseconds >= unit:
            return f"{nanoseconds / unit:.3g} {name}"
    return f"{nanoseconds:.3g} ns"


def growth_table(found, before):
    name, title, rows = GROWTH
    told = ["", f"## {title}", "", f"![{title}](pictures/performance-{name}.svg)", "",
            "| for each of | 100 | 1,000 | 10,000 | 100,000 | power | goal | before |", "|---|---|---|---|---|---|---|---|"]
    for work, key in rows:
        times = dict(grown(found, key))
        if (value := power(grown(found, key))) is None:
            continue
        cells = " | ".join(duration(times[count]) if count in times else "" for count in (100, 1000, 10000, 100000))
        bold = "" if value <= MOST_POWER else "**"
        told.append(f"| {work} | {cells} | {bold}{number(value)}{bold} | at most {MOST_POWER:g} "
                    f"| {number(power(grown(before, key)))} |")
    return told


def keep(found, before):
    told = []
    for name, title, rows in PARTS:
        (ROOT / f"docs/pictures/performance-{name}.svg").write_text(plot(title, rows, found, before), encoding="utf-8")
        told += ["", f"## {title}", "", f"![{title}](pictures/performance-{name}.svg)", "",
                 "| | now | goal | before |", "|---|---|---|---|"]
        for row in rows:
            value, goal = figure(found, row), row[3]
            if value is not None:
                bold = "" if is_met(value, goal) else "**"
                told.append(f"| {row[0]} | {bold}{number(value)}{bold} | {goal[0]} {goal[1]:g} "
                            f"| {number(figure(before, row))} |")
    if any(key.startswith("growth/") for key in found):
        told += growth_table(found, before)
        (ROOT / "docs/pictures/performance-growth.svg").write_text(growth_plot(found, before), encoding="utf-8")
    commit = subprocess.run(["git", "log", "-1", "--format=%h of %ad", "--date=short"], cwd=ROOT, check=True,
                            capture_output=True, text=True).stdout.strip()
    begin, end = "<!-- table -->", "<!-- end of table -->"
    head, rest = PAGE.read_text(encoding="utf-8").split(begin)
    table = "\n".join([begin, f"Measured at {commit}. Bold: the goal is missed.", *told, "", end])
    PAGE.write_text(head + table + rest.split(end)[1], encoding="utf-8")


def main(arguments):
    found = medians([pathlib.Path(argument) for argument in arguments if argument != "--keep"])
    before = json.loads(BEFORE.read_text())
    print_table(found, before)
    values = [(row[0], figure(found, row), row[3]) for _, _, rows in PARTS for row in rows]
    values += [(work, power(grown(found, name)), ("at most", MOST_POWER)) for work, name in GROWTH[2]]
    if unmeasured := [work for work, value, _ in values if value is None]:
        print("not measured: " + "; ".join(unmeasured), file=sys.stderr)
        return 2
    if "--keep" in arguments:
        keep(found, before)
    return 0 if all(is_met(value, goal) for _, value, goal in values) else 1


try:
    sys.exit(main(sys.argv[1:]))
except (OSError, ValueError, KeyError, ZeroDivisionError) as error:
    print(f"report: {error!r}", file=sys.stderr)
    sys.exit(2)
