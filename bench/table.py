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
FLOORS = ("a copy", "copy its bytes", "append its lines", "line floor", "page floor")
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

# Nodes that share one allocation are as good as without: a text grows a few times, and no more.
ALLOCATIONS_A_NODE = 0.01

# A line of the table, as it is shown.
Row = collections.namedtuple("Row", "work beside own other ratio limit stretch result")
HEADING = Row("Work", "Beside", "Quillo", "The other", "Ratio", "At most", "Stretch", "Result")


# --- what a run left behind ----------------------------------------------------------------------

def times(path, field="cpu_time", unit=1e-9, choose=statistics.median):
    """Each benchmark's time in seconds, chosen from its repetitions, in the program's order."""
    found = collections.defaultdict(list)
    runs = json.loads(path.read_text())["benchmarks"]
    for run in sorted(runs, key=lambda run: run["family_index"]):
        if run.get("error_occurred"):
            sys.exit(f"table: {run['name']}: {run['error_message']}")
        if run["run_type"] == "iteration" and field in run:
            found[run["run_name"]].append(run[field] * unit)
    return {name: choose(values) for name, values in found.items()}


def lines(path):
    """The fields of each line, of which the first is a name and the others are numbers or empty."""
    for line in path.read_text().splitlines():
        name, *numbers = line.split("\t")
        yield name, *(float(number) if number else None for number in numbers)


def contenders(measured, work):
    """What was measured as WORK/CONTENDER, by contender."""
    return {name[len(work) + 1:]: value for name, value in measured.items()
            if name.startswith(work + "/")}


# --- rows ----------------------------------------------------------------------------------------

def judge(value, limit, stretch=None):
    if value is None or limit is None:
        return ""
    if value > limit:
        return "MISSED"
    return "stretch" if stretch is not None and value <= stretch else "met"


def ratio_row(work, beside, own, other, ratio, goal):
    limit, stretch = goal
    return Row(work, beside, own, other, show_ratio(ratio), show_ratio(limit), show_ratio(stretch),
               judge(ratio, limit, stretch))


def figure_row(work, own, limit, show):
    return Row(work, "", show(own), "", "", "" if limit is None else show(limit), "",
               judge(own, limit))


def rows_of(work, measured, show):
    """Quillo beside each other contender of a work."""
    peers = {name: value for name, value in measured.items() if name != "quillo"}
    fastest = min((name for name in peers if name not in FLOORS), key=peers.get, default=None)
    own = measured["quillo"]
    for beside, value in peers.items():
        goal = GOALS.get((work, beside)) or beside == fastest and GOALS.get((work, FASTEST))
        yield ratio_row(work, beside, show(own), show(value), own / value if value else None,
                        goal or (None, None))


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
    for where, target in (("a file", "file"), ("a pipe", "pipe"), ("memory", "memory")):
        yield from rows_of(f"page of 100 rows, to {where}",
                           contenders(measured, f"flush/{target}"), show_time)


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
        smallest, *_, half, largest = sorted(values)
        growth = values[largest] / values[smallest]
        ratio = growth ** (1 / (len(values) - 1)) if values[largest] > NOTICEABLE else None
        yield ratio_row(f"{work}, {show_size(largest)}", f"{show_size(half)}, as a mean from "
                        + show_size(smallest), show_time(values[largest]),
                        show_time(values[half]), ratio, (DOUBLING, None))


def memory_rows(folder):
    measured = dict(lines(folder / "memory.tsv"))
    work = "page of 100 rows, allocations a node"
    yield from rows_of(f"{work}, build", contenders(measured, "100/build"), show_number)
    yield from rows_of(f"{work}, write", contenders(measured, "100/write"), show_number)
    yield figure_row(f"{work}, write", measured["100/write/quillo"], ALLOCATIONS_A_NODE,
                     show_number)
    for count in (100, 1000, 10000):
        yield from rows_of(f"page of {count:,} rows, memory at most",
                           contenders(measured, f"{count}/peak"), show_size)


def instruction_rows(folder):
    titles = {"whole": "page of 100 rows, instructions a node, whole",
              "write": "page of 100 rows, instructions a node, write",
              "filter": "Filter, 4 KiB, 2 %, instructions a byte"}
    for target in ("x86-64", "PowerPC"):
        for work, figure, bound in lines(folder / f"instructions-{target}.tsv"):
            yield figure_row(f"{titles[work]}, {target}", figure, bound, "{:,.1f}".format)


def size_rows(folder):
    show = {"load": lambda microseconds: show_time(microseconds * 1e-6)}
    for path in sorted(folder.glob("size-*.tsv"), reverse=True):
        option = path.stem[len("size-"):].replace("_", " ")
        for what, figure in lines(path):
            yield figure_row(f"libquillo.so, {option}, {what}", figure, None,
                             show.get(what, "{:,.0f}".format))


# --- how they are shown --------------------------------------------------------------------------

def show_size(count):
    for unit, size in (("MiB", 1 << 20), ("KiB", 1 << 10)):
        if count >= size:
            return f"{count / size:.3g} {unit}"
    return f"{count:.0f} B"


def show_time(seconds):
    for unit, size in (("s", 1), ("ms", 1e-3), ("us", 1e-6)):
        if seconds >= size:
            return f"{seconds / size:.3g} {unit}" if seconds < 1000 * size else f"{seconds:.0f} s"
    return f"{seconds * 1e9:.3g} ns"


def show_ratio(ratio):
    return "" if ratio is None else f"{ratio:.2f}" if ratio < 10 else f"{ratio:.0f}"


def show_number(number):
    return f"{number:.2f}" if number >= 0.095 or number == 0 else f"{number:.3f}"


def table(rows):
    cells = [HEADING, *rows]
    widths = [max(map(len, column)) for column in zip(*cells)]
    is_text = [name in ("work", "beside", "result") for name in Row._fields]
    rule = ["-" * width if text else "-" * (width - 1) + ":"
            for width, text in zip(widths, is_text)]
    for line in [HEADING, rule, *rows]:
        padded = [cell.ljust(width) if text else cell.rjust(width)
                  for cell, width, text in zip(line, widths, is_text)]
        yield "| " + " | ".join(padded) + " |"


def check_goals(rows):
    """Each goal is some row's: a name that changed does not lose one."""
    judged = {(row.work, row.beside) for row in rows if row.result}
    for work, beside in GOALS:
        if (work, beside) not in judged and not (
                beside == FASTEST and any(work == row for row, _ in judged)):
            sys.exit(f"table: nothing was measured for the goal: {work}, beside {beside}")


def summary(rows):
    found = collections.Counter(row.result for row in rows)
    yield (f"{found['met'] + found['stretch']} limits are kept, {found['stretch']} of them with "
           f"the stretch figure, and {found['MISSED']} are missed{':' if found['MISSED'] else '.'}")
    yield ""
    for row in rows:
        if row.result == "MISSED":
            yield (f"- {row.work}: {row.ratio + ' x ' + row.beside if row.ratio else row.own}, "
                   f"at most {row.limit}")


def main():
    folder, document, heading = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2]), sys.argv[3:]
    doubling = list(doubling_rows(folder))
    rows = [*page_rows(folder), *memory_rows(folder), *flush_rows(folder), *text_rows(folder),
            *doubling, *instruction_rows(folder), *size_rows(folder)]
    check_goals(rows)
    text = "\n".join([*heading, "", *table(rows), "", *summary(rows), ""])
    print(text, end="")
    kept, mark, _ = document.read_text().partition(MARK)
    if not mark:
        sys.exit(f"table: {document} has no line {MARK}")
    document.write_text(f"{kept}{MARK}\n\n{text}")
    return any(row.result == "MISSED" for row in doubling)


if __name__ == "__main__":
    sys.exit(main())
