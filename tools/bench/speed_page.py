#!/usr/bin/env python3
"""Makes speed.md and its plots from the CSV that the speed tool wrote: speed_page.py CSV DIRECTORY.

Fails when a field that must be a number is not one. Plots need gnuplot; without it the page is made without them.
"""
import os
import shutil
import subprocess
import sys

sys.path.insert(0, os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
from page import FAMILIES, read_table  # tools/page.py

WIDTHS = (1, 2, 3, 4, 8, 16)
HEAD_TO_HEAD = {"float": 4, "double": 2}  # lanes of one register: where the vector library is called as we are
PEERS = {
    "scalar_ratio": "scalar C library",
    "vector_accurate_ratio": "independent library, 1.0 ULP",
    "vector_fast_ratio": "independent library, 3.5 ULP",
}
ALWAYS = ("cycles", "cycles_spread", "ns", "latency", "empty", "empty_latency")


def read(path):
    """The facts in the head of the CSV, and {(function, type, variant): {lanes: {quantity: number or None}}} in its order."""
    facts, lines = read_table(path)
    rows, family = {}, {}
    for line in lines:
        key = line["function"], line["type"], line["variant"]
        family[line["function"]] = line["family"]
        numbers = {name: float(text) if text else None for name, text in line.items() if name not in
                   ("function", "type", "variant", "family", "width")}
        for name in ALWAYS:
            if numbers[name] is None:
                sys.exit(f"{path}: {' '.join(key)} {line['width']}: no {name}")
        if any(n is not None and n != n for n in numbers.values()):
            sys.exit(f"{path}: {' '.join(key)} {line['width']}: not a number")
        rows.setdefault(key, {})[int(line["width"])] = numbers
    for key, by_width in rows.items():
        if tuple(by_width) != WIDTHS:
            sys.exit(f"{path}: {' '.join(key)}: widths {tuple(by_width)}")
    return facts, rows, family


def number(x, digits=1):
    return "" if x is None else f"{x:.{digits}f}"


def ratio(numbers, name):
    """A ratio; its spread only where it is more than 2%."""
    if numbers[name] is None:
        return ""
    spread = numbers[name + "_spread"]
    return number(numbers[name], 2 if numbers[name] < 10 else 1) + (f" ± {100 * spread:.0f}%" if spread > 0.02 else "")


def table(rows, of_type, functions):
    lanes = HEAD_TO_HEAD[of_type]
    head = (["function"] + [str(w) for w in WIDTHS] + ["inlined", "× scalar C", "× 1.0 ULP", "× 3.5 ULP", "latency", "special lane"])
    text = "| " + " | ".join(head) + " |\n|---" + "|---:" * (len(head) - 1) + "|\n"
    for key, by_width in rows.items():
        if key[0] not in functions or key[1] != of_type:
            continue
        one = by_width[lanes]
        cells = [f"`{key[0]}`" + (" native" if key[2] == "native" else "")]
        cells += [number(by_width[w]["cycles"], 2) for w in WIDTHS]
        cells += [number(one["inlined"], 2)] + [ratio(one, p) for p in PEERS]
        cells += [number(one["latency"], 0), number(one["special"], 0)]
        text += "| " + " | ".join(cells) + " |\n"
    return text


def plot(rows, of_type, peers, title, path):
    """Bars: how many times as fast as the peers, accurate variants; the 48 conversions are in the tables only. False if there is nothing to show or no gnuplot."""
    lanes = HEAD_TO_HEAD[of_type]
    bars = [(key[0], [by_width[lanes][p] for p in peers]) for key, by_width in rows.items()
            if key[1] == of_type and key[2] == "accurate" and not key[0].startswith("cvt")
            and by_width[lanes][peers[0]] is not None]
    if not bars or not shutil.which("gnuplot"):
        return False
    data = "\n".join(f"{name} " + " ".join("?" if v is None else f"{v:.4g}" for v in values) for name, values in bars)
    columns = ", ".join(f"$data using {i + 2}{':xtic(1)' if i == 0 else ''} title '{PEERS[p]}'" for i, p in enumerate(peers))
    script = f"""
set terminal svg size {220 + 26 * len(bars)},380 font 'sans-serif,12' background 'white'
set output '{path}'
set datafile missing '?'
set title '{title}' noenhanced
set style data histograms
set style histogram clustered gap 1
set style fill solid 0.9 noborder
set boxwidth 0.9
set logscale y 2
set grid ytics lc rgb '#cccccc'
set xtics rotate by -60 noenhanced
set key outside top right
set linetype 1 lc rgb '#1f5a99'
set linetype 2 lc rgb '#e0912f'
set arrow from graph 0, first 1 to graph 1, first 1 nohead lc rgb 'black'
$data << END
{data}
END
plot {columns}
"""
    subprocess.run(["gnuplot"], input=script, text=True, check=True)
    return True


def page(facts, rows, family, directory):
    os.makedirs(os.path.join(directory, "plots"), exist_ok=True)
    any_row = next(iter(rows.values()))[4]
    text = f"""# Speed

Made by `make docs` from [data/speed.csv](data/speed.csv); do not edit.

- Commit {facts['commit']}, command `{facts['command']}`
- {facts['processor']}, {any_row['cycles'] / any_row['ns']:.2f} GHz while measuring

How to read the tables:

- *1* to *16*: core cycles per lane at that number of lanes. The entry point is called in a loop that loads its arguments, copies
  what is passed on the stack, calls and stores the results; nothing is subtracted. The same loop around an entry point that only
  returns takes {any_row['empty']:.1f} cycles per call at 4 float lanes.
- *inlined*: core cycles per lane of the kernel (path and lane test) inlined into a loop over arrays: what a call adds is the
  difference.
- *×*: time of the peer over time of this library, on the same arguments in the same run: above 1 this library is faster.
  *scalar C* is the C library lane by lane; for conversions, a loop of casts over the lanes, compiled without vectorisation, with
  `rint`, `floor` or `ceil` before the cast, comparisons for saturation, and for directed rounding of integers a correction by one
  unit after the cast. *1.0 ULP* and *3.5 ULP* are the independent vector library (libsleef), SSE4.1. All at
  4 float or 2 double lanes, one register, where the vector library is called in the same way. Ratios are medians of
  the repetitions; their spread (half of the middle half) is given where it is more than 2%.
- *latency*: core cycles of a call whose argument waits for the result of the call before, at 4 float or 2 double lanes
  ({any_row['empty_latency']:.0f} for an entry point that only returns).
- *special lane*: core cycles that a call takes longer when one of its lanes has to be recomputed, or sends all lanes through the
  path for large arguments: a NaN or, where the vector path treats that, another argument outside its range (1e10, an infinity,
  zero ...).

Arguments are where programs call a function (exponentials in [-10, 10], logarithms in [1e-6, 1e6], sine and cosine in
[-100, 100] ...; all in `tools/bench/domains.cpp`) and take the vector path.
"""
    for of_type, lanes in HEAD_TO_HEAD.items():
        for peers, what in ((("vector_accurate_ratio", "vector_fast_ratio"), "the independent vector library"),
                            (("scalar_ratio",), "the scalar C library")):
            name = f"plots/speed_{of_type}_{'scalar' if 'scalar_ratio' in peers else 'vector'}.svg"
            title = f"{of_type}, {lanes} lanes: times as fast as {what}"
            if plot(rows, of_type, peers, title, os.path.join(directory, name)):
                text += f"\n![{title}]({name})\n"
    for name, title in FAMILIES.items():
        functions = {f for f, of_family in family.items() if of_family == name}
        for of_type in HEAD_TO_HEAD:
            if functions:
                text += f"\n## {title}, {of_type}\n\n{table(rows, of_type, functions)}"
    with open(os.path.join(directory, "speed.md"), "w") as file:
        file.write(text)


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    page(*read(sys.argv[1]), sys.argv[2])
