#!/usr/bin/env python3
"""Makes one table of the results of one run, and puts it into the document of benchmarks.

    bench/table.py RESULTS-FOLDER DOCUMENT HEADING-LINE...

Prints the table. The document keeps what stands above the line that marks where this begins. A goal
that is missed is shown as such; the exit code is 1 when a text that doubles takes too much.
"""
import collections
import json
import pathlib
import statistics
import sys

MARK = "<!-- From here on ./dev bench writes. -->"

# How much more time a text twice as long may take. A function that is quadratic comes to 4.
DOUBLING = 2.3
# In seconds. What takes less for the longest text is copying, and the caches decide its ratio.
NOTICEABLE = 0.001

# What is aimed at, as ratios to what stands beside: at most, and at best.
FASTEST = "the fastest of them"
GOALS = {
    ("page of 100 rows, whole", "cgicc"): (0.70, 0.50),
    ("page of 100 rows, whole", "tinyxml2 DOM"): (0.80, 0.55),
    ("page of 100 rows, whole", "libxml2 DOM"): (0.60, 0.45),
    ("page of 100 rows, whole", "pugixml"): (2.3, 1.6),
    ("page of 100 rows, write", "pugixml"): (1.1, 1.0),
    ("page of 100 rows, write", "tinyxml2 DOM"): (0.45, None),
    ("page of 10,000 rows, whole", "cgicc"): (1.0, None),
    ("page of 10,000 rows, whole", "tinyxml2 DOM"): (1.6, 1.0),
    ("page of 100 rows, to a pipe", "line floor"): (1.4, 1.2),
    ("page of 100 rows, to a file", "line floor"): (1.4, 1.2),
    ("Filter, 4 KiB, 0 %", "libxml2"): (0.4, 0.12),
    ("Filter, 4 KiB, 2 %", "libxml2"): (0.4, 0.15),
    ("Filter, 4 KiB, 20 %", "libxml2"): (1.0, 0.4),
    ("Filter, 32 B, 0 %", "libxml2"): (0.8, 0.5),
    ("PcntEncode, 64 KiB, 10 %", "glib"): (0.5, 0.2),
    ("PcntEncode, 64 KiB, 50 %", "glib"): (0.5, 0.2),
    ("PcntDecode, 64 KiB, 10 %", FASTEST): (0.8, 0.4),
    ("PcntDecode, 64 KiB, 50 %", FASTEST): (0.8, 0.4),
}

# A line of the table. What counts is `ratio`, or `own` where there is none.
Row = collections.namedtuple("Row", "work beside own other ratio limit stretch")


# --- what a run left behind ----------------------------------------------------------------------

def times(path, field="cpu_time", unit=1e-9, choose=statistics.median):
    """The time of each benchmark in seconds, chosen from its repetitions."""
    found = collections.defaultdict(list)
    for run in json.loads(path.read_text())["benchmarks"]:
        if run.get("error_occurred"):
            sys.exit(f"table: {run['name']}: {run['error_message']}")
        if run["run_type"] == "iteration" and field in run:
            found[run["run_name"]].append(run[field] * unit)
    return {name: choose(values) for name, values in found.items()}


def figures(path):
    """The lines NAME<TAB>NUMBER of a file."""
    lines = (line.split("\t") for line in path.read_text().splitlines())
    return {name: float(number) for name, number in lines}


def contenders(measured, work):
    """What was measured as WORK/CONTENDER, by contender."""
    return {name[len(work) + 1:]: value for name, value in measured.items()
            if name.startswith(work + "/")}


# --- rows ----------------------------------------------------------------------------------------

def goal_of(work, beside, is_fastest):
    goal = GOALS.get((work, beside))
    if goal is None and is_fastest:
        goal = GOALS.get((work, FASTEST))
    return goal or (None, None)


def rows_of(work, measured, show):
    """Quillo beside each other contender of a work, in the order they were measured."""
    peers = {name: value for name, value in measured.items() if name != "quillo"}
    own = measured["quillo"]
    for beside, value in peers.items():
        goal = goal_of(work, beside, value == min(peers[p] for p in peers if p != "a copy"))
        ratio = own / value if value else None
        yield Row(work, beside, show(own), show(value), ratio, *goal)


def page_rows(folder):
    whole = times(folder / "page.json")
    for count in (100, 1000, 10000):
        work = f"page of {count:,} rows"
        yield from rows_of(f"{work}, whole", contenders(whole, f"page/{count}/whole"), show_time)
        for phase in ("build", "write", "destroy"):
            measured = times(folder / "page.json", phase, 1)
            yield from rows_of(f"{work}, {phase}", contenders(measured, f"page/{count}/phases"),
                               show_time)


def flush_rows(folder):
    measured = times(folder / "flush.json")
    for where in ("file", "pipe", "memory"):
        yield from rows_of(f"page of 100 rows, to a {where}".replace("a memory", "memory"),
                           contenders(measured, f"flush/{where}"), show_time)


def text_rows(folder):
    measured = times(folder / "text.json")
    for title, work, sizes, shares in (
            ("Filter", "filter", (32, 4096, 262144), (0, 2, 20)),
            ("PcntEncode", "encode", (100, 65536), (10, 50)),
            ("PcntDecode", "decode", (100, 65536), (10, 50))):
        for size in sizes:
            for share in shares:
                yield from rows_of(f"{title}, {show_size(size)}, {share} %",
                                   contenders(measured, f"{work}/{size}/{share}"), show_time)


def doubling_rows(folder):
    """What a doubling takes on the way from the smallest to the largest text. Noise only adds."""
    sizes = collections.defaultdict(dict)
    for name, value in times(folder / "doubling.json", choose=min).items():
        work, size = name.rsplit("/", 1)
        sizes[work][int(size)] = value
    for work, values in sizes.items():
        smallest, largest = min(values), max(values)
        growth = values[largest] / values[smallest]
        ratio = growth ** (1 / (len(values) - 1)) if values[largest] > NOTICEABLE else None
        yield Row(f"{work}, {show_size(largest)}", "half of it, on the way from "
                  + show_size(smallest), show_time(values[largest]), "", ratio, DOUBLING, None)


# --- how they are shown --------------------------------------------------------------------------

def show_size(count):
    for unit, size in (("MiB", 1 << 20), ("KiB", 1 << 10)):
        if count >= size:
            return f"{count // size} {unit}"
    return f"{count} B"


def show_time(seconds):
    for unit, size in (("s", 1), ("ms", 1e-3), ("us", 1e-6)):
        if seconds >= size:
            return f"{seconds / size:.3g} {unit}" if seconds < 1000 * size else f"{seconds:.0f} s"
    return f"{seconds * 1e9:.3g} ns"


def show_ratio(ratio):
    return "" if ratio is None else f"{ratio:.2f}" if ratio < 10 else f"{ratio:.0f}"


def verdict(row):
    if row.limit is None or row.ratio is None:
        return ""
    if row.ratio > row.limit:
        return "MISSED"
    return "stretch" if row.stretch is not None and row.ratio <= row.stretch else "met"


def table(rows):
    lines = [("Work", "Beside", "Quillo", "The other", "Ratio", "At most", "Stretch", "Result")]
    lines += [(row.work, row.beside, row.own, row.other, show_ratio(row.ratio),
               show_ratio(row.limit), show_ratio(row.stretch), verdict(row)) for row in rows]
    widths = [max(map(len, column)) for column in zip(*lines)]
    is_text = (True, True, False, False, False, False, False, True)
    rule = ["-" * width if text else "-" * (width - 1) + ":"
            for width, text in zip(widths, is_text)]
    for line in [lines[0], rule] + lines[1:]:
        cells = [cell.ljust(width) if text else cell.rjust(width)
                 for cell, width, text in zip(line, widths, is_text)]
        yield "| " + " | ".join(cells) + " |"


def summary(rows):
    found = collections.Counter(filter(None, map(verdict, rows)))
    return (f"{found['met'] + found['stretch']} limits are kept, {found['stretch']} of them with "
            f"the stretch figure, and {found['MISSED']} are missed.")


def main():
    folder, document, heading = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2]), sys.argv[3:]
    doubling = list(doubling_rows(folder))
    rows = [*page_rows(folder), *flush_rows(folder), *text_rows(folder), *doubling]
    text = "\n".join([*heading, "", *table(rows), "", summary(rows), ""])
    print(text, end="")
    kept, mark, _ = document.read_text().partition(MARK)
    if not mark:
        sys.exit(f"table: {document} has no line {MARK}")
    document.write_text(f"{kept}{MARK}\n\n{text}")
    return any(verdict(row) == "MISSED" for row in doubling)


if __name__ == "__main__":
    sys.exit(main())
