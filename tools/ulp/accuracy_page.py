#!/usr/bin/env python3
"""Measures the accuracy of all kernels and makes docs/accuracy.md and its plots: accuracy_page.py TOOL DOCS COMMIT [--long]

DOCS/data/accuracy.csv is measured anew: a sample of every kernel, and the worst inputs known (tests/witnesses.csv).
DOCS/data/long_runs.csv keeps what took minutes for each kernel: runs over all 2^32 inputs or, where there are more, over a large
sample. Such a row is valid while the kernel's claim is the same and its results are the same bits, which a digest over a million
inputs shows. --long runs what has no valid row; without it the page falls back to the small sample. Plots need gnuplot.
"""
import csv
import json
import math
import os
import shutil
import subprocess
import sys
import tempfile

sys.path.insert(0, os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
from page import FAMILIES, read_table  # tools/page.py

COUNT = 1000000
LONG_COUNT = 200000000
FINGERPRINT = ["--exhaustive", "--stride", "4099", "--count", "0"]  # a million inputs of kernels that have 2^32
PLOT_STRIDE = "257"
# Where a logarithm is small: |ln| of the argument (of 1 + x for log1p) is up to 2^-7.
NEAR_ONE = {"log": ["0x1.fcp-1", "0x1.02p0"], "log2": ["0x1.fcp-1", "0x1.02p0"], "log10": ["0x1.fcp-1", "0x1.02p0"],
            "log1p": ["-0x1p-7", "0x1p-7"]}
NAMES_OF_BOUNDS = {"0x1.fcp-1": "1 - 2^-7", "0x1.02p0": "1 + 2^-7", "-0x1p-7": "-2^-7", "0x1p-7": "2^-7"}

# Functions whose errors under other settings of MXCSR the page shows: ulp's names of these, and the page's.
ENVIRONMENTS = {"down": "down", "up": "up", "zero": "towards zero", "flush": "flushed, read as zero"}
IN_ENVIRONMENTS = ["exp", "log2", "sin", "tan", "fma", "remainder"]

OTHER_ESTIMATES = """
Double `log`, `log10` and `log1p`, their natives and float `log1p` start from the processor's estimate of a reciprocal, so their last
bits differ between processors. The claims hold with estimates that are exact, exact to 12 bits, or from the least exact table that the
architecture allows. If an estimate were off by all of the allowed 1.5 x 2^-12, in one direction, at every argument, which no table is,
the errors of small results near 1 would rise to 4.3, 11.3, 2.3 and 0.8 ULP; elsewhere the claims would still hold
(`tests/logarithms_test.cpp` has these estimates).

From estimates start, too, and differ in their last bits: float `sqrt`, `hypot` and `atanh` and their natives, `rsqrt` in all variants,
accurate float `rootn`, and the float natives of `inv`, `div`, `tan` and `tanpi`, and of `tan` vectors with a large argument
(`tests/roots_test.cpp` has the errors of the roots with any estimate). All other bits are the same on every processor.
"""


def key(row):
    return row["function"], row["type"], row["variant"]


def run(tool, *arguments):
    """The rows that the tool writes, by kernel. A violated claim or limit is no error here: the page shows it."""
    with tempfile.TemporaryDirectory() as scratch:
        path = os.path.join(scratch, "rows.csv")
        status = subprocess.run([tool, *arguments, "--brief", "--csv", path], stdout=subprocess.DEVNULL).returncode
        if status not in (0, 1):
            sys.exit(f"{tool} {' '.join(arguments)}: status {status}")
        with open(path) as file:
            return {key(row): row for row in csv.DictReader(file)}


def write(path, rows, facts):
    with open(path, "w", newline="") as file:
        for name, value in facts.items():
            file.write(f"# {name}: {value}\n")
        writer = csv.DictWriter(file, list(rows[0]), lineterminator="\n")
        writer.writeheader()
        writer.writerows(rows)


def read(path):
    return {key(row): row for row in read_table(path)[1]} if os.path.exists(path) else {}


def processor():
    with open("/proc/cpuinfo") as file:
        fields = {name.strip(): value.strip() for name, _, value in (line.partition(":") for line in file)}
    return f"{fields['model name']}, family {fields['cpu family']} model {fields['model']}"


def with_known_worst(tool, rows, witnesses):
    """The rows, with the largest errors of the inputs that are known to be bad where the sample has none as large."""
    for witness in read(witnesses).values():
        with tempfile.NamedTemporaryFile("w") as file:
            file.write(witness["argument_bits"] + "\n")
            file.flush()
            kernel = [witness["function"], "--type", witness["type"], "--variant", witness["variant"]]
            known = run(tool, *kernel, "--count", "0", "--file", file.name)
        for k, row in known.items():
            if k in rows:
                rows[k] = larger(rows[k], row)
    return rows


def larger(row, other):
    """The row, with the largest error of the other one if that is larger."""
    if float(other["largest_ulp"]) <= float(row["largest_ulp"]):
        return row
    return {**row, **{name: other[name] for name in ("largest_ulp", "worst_arguments", "worst_results", "verdict")}}


def long_runs(tool, path, sampled, facts, run_missing):
    """The valid rows of long runs, new ones included; the file is written after each, for they take long."""
    exhaustive = {k: r for k, r in run(tool, "--all", *FINGERPRINT).items() if int(r["inputs"]) > 0}
    now = {**{k: r for k, r in sampled.items() if float(r["claim"]) > 0.5}, **exhaustive}
    kept = read(path)
    valid = {k: kept[k] for k, r in now.items() if k in kept and (kept[k]["fingerprint"], kept[k]["claim"]) == (r["digest"], r["claim"])}
    for k in now:
        if k in valid or not run_missing:
            continue
        print("long run of", *k, flush=True)
        size = ["--exhaustive"] if k in exhaustive else ["--count", str(LONG_COUNT)]
        row = run(tool, k[0], "--type", k[1], "--variant", k[2], *size)[k]
        valid[k] = {**row, "fingerprint": now[k]["digest"], "commit": facts["commit"], "processor": facts["processor"]}
        write(path, list(valid.values()), {"made by": "make docs LONG=1"})
    return valid


# ---- the page ----


def ulp(text):
    value = float(text)
    return f"{value:.0f}" if value >= 100 else f"{value:.3f}".rstrip("0").rstrip(".")


def shares(text):
    value = float(text)
    return "all" if value == 100 else f"{math.floor(100 * value) / 100:.2f} %"


def inputs(row):
    if row["exhaustive"] == "yes":
        return "all 2^32"
    n = int(row["inputs"])
    return f"{n / 1e6:.0f} M" if n >= 1e6 else f"{n / 1e3:.0f} k"


def accuracy_table(rows):
    head = ["function", "type", "largest error", "at", "correctly rounded", "standard's limit", "our claim", "inputs", ""]
    text = "| " + " | ".join(head) + " |\n|---|---|---:|---|---:|---:|---:|---:|---|\n"
    for r in rows:
        exact = float(r["largest_ulp"]) <= 0.5
        cells = [
            f"`{r['function']}`" + (" native" if r["variant"] == "native" else ""),
            "float" if r["type"] == "f32" else "double",
            ulp(r["largest_ulp"]),
            "" if exact else f"`{r['worst_arguments']}`",
            shares(r["correctly_rounded_percent"]),
            "" if r["variant"] == "native" else {"0.5": "correct", "0": "exact", "": "none"}.get(r["limit"], r["limit"]),
            "correct" if float(r["claim"]) <= 0.5 else ulp(r["claim"]) + (f" for x from {r['domain']}" if r["domain"] else ""),
            inputs(r),
            "" if r["verdict"] == "pass" else f"**{r['verdict']}**",
        ]
        text += "| " + " | ".join(cells) + " |\n"
    return text


def exact_table(rows):
    text = "| function | type | inputs compared | |\n|---|---|---:|---|\n"
    for r in rows:
        result = "every bit right" if r["verdict"] == "pass" else f"**{r['verdict']}**"
        text += f"| `{r['function']}` | {'float' if r['type'] == 'f32' else 'double'} | {inputs(r)} | {result} |\n"
    return text


def neighbour_table(rows):
    text = "| function | type | inputs whose bits another lane changed | |\n|---|---|---:|---|\n"
    for r in rows:
        share = 100 * int(r["neighbour_matters"]) / int(r["inputs"])
        name = f"`{r['function']}`" + (" native" if r["variant"] == "native" else "")
        declared = "declared" if r["whole_vector"] == "yes" else "**not declared**"
        text += f"| {name} | {'float' if r['type'] == 'f32' else 'double'} | {share:.2f} % | {declared} |\n"
    return text


def near_one_table(rows):
    head = ["function", "type", "from", "to", "largest error", "at", "correctly rounded", "inputs"]
    text = "| " + " | ".join(head) + " |\n|---|---|---|---|---:|---|---:|---:|\n"
    for r in rows:
        cells = [f"`{r['function']}`" + (" native" if r["variant"] == "native" else ""), "float" if r["type"] == "f32" else "double",
                 *(NAMES_OF_BOUNDS[b] for b in NEAR_ONE[r["function"]]), ulp(r["largest_ulp"]), f"`{r['worst_arguments']}`",
                 shares(r["correctly_rounded_percent"]), inputs(r)]
        text += "| " + " | ".join(cells) + " |\n"
    return text


def environment_table(by_environment):
    text = "| function | type | " + " | ".join(ENVIRONMENTS.values()) + " |\n|---|---|" + "---:|" * len(ENVIRONMENTS) + "\n"
    for k in next(iter(by_environment.values())):
        cells = []
        for rows in by_environment.values():
            error = float(rows[k]["largest_ulp"])
            size = ulp(error) if error < 1e5 else f"{error:.0e}"
            cells.append(size + (", wrong kinds" if int(rows[k]["faults"]) else ""))
        name = f"`{k[0]}`" + (" native" if k[2] == "native" else "")
        text += f"| {name} | {'float' if k[1] == 'f32' else 'double'} | " + " | ".join(cells) + " |\n"
    return text


def page(rows, near_one, by_environment, families, facts, plots):
    bad = [r for r in rows if r["verdict"] != "pass"]
    text = f"""# Accuracy

Made by `make docs` on commit {facts['commit']}, {facts['processor']}. Numbers and plots come from `build/ulp`; the data is in
`docs/data/accuracy.csv` (a million inputs, `{facts['command']}`, and the worst known, `tests/witnesses.csv`) and
`docs/data/long_runs.csv` (more; each row names its commit).
{len(rows)} kernels (function, type, variant) were measured; {len(rows) - len(bad)} keep the standard's limits and their own claims.

- **Error**: |result - exact value| in units in the last place (ULP) of the binade that holds the exact value, which MPFR gives. Below
  the normal range the unit is that of the subnormal numbers; results there are rounded gradually, never flushed.
- **Correctly rounded**: the share of finite results other than zero that are the number nearest to the exact value. Right NaN,
  infinite and zero results are counted apart (the data files say how many, and how many results were subnormal). Samples go where the
  errors are, so their shares are lower than those over all 2^32 inputs.
- **Kinds**: a NaN, an infinity or a sign of zero in the wrong place is no matter of size. Such faults are counted apart, one is enough to
  fail, and the last column names them; it is empty when there is none.
- **Limits** are those of OpenCL C 3.0, full profile. Native variants have none: there the claim holds for normal arguments and results, in
  the range of x given with it. A claim is `max_ulp` in the kernel's source, and the tool fails above it.
- Every input is computed twice, among others and beside a lane with an infinity, a signalling NaN, a subnormal or a huge number.

Reproduce any line: `make ulp ARGS="exp --type f32 --exhaustive"`, or `build/ulp --help`.
"""
    for family, title in FAMILIES.items():
        mine = [r for r in rows if families[r["function"]] == family]
        real = [r for r in mine if float(r["claim"]) > 0 or float(r["largest_ulp"]) > 0]
        exact = [r for r in mine if r not in real]
        if not mine:
            continue
        text += f"\n## {title}\n\n"
        if real:
            text += accuracy_table(real)
        if exact:
            text += ("\nBit for bit:\n\n" if real else "Compared bit for bit with a reference:\n\n") + exact_table(exact)
        names = list(dict.fromkeys(r["function"] for r in real if r["function"] in plots))
        if names:
            text += "\nLargest error over the argument: " + ", ".join(f"[{n}](plots/accuracy_{n}.svg)" for n in names) + ".\n"
        if family == "explog":
            text += "\nLogarithms where they are small:\n\n" + near_one_table(near_one) + OTHER_ESTIMATES
    text += (
        "\n## Other floating-point environments\n\n"
        "Results are for rounding to nearest and with subnormal numbers. This is what becomes of a few functions when the caller has set "
        "another rounding mode, or lets subnormal results be flushed and subnormal arguments be read as zero: the largest error in ULP of "
        "100000 inputs (`ulp --environment`); wrong kinds are a NaN, an infinity, a sign of zero or an exact result in the wrong place.\n\n"
    )
    text += environment_table(by_environment)
    influenced = [r for r in rows if r["whole_vector"] == "yes" or int(r["neighbour_matters"]) > 0]
    text += "\n## Lanes and their neighbours\n\n"
    if influenced:
        text += (
            "Of all other kernels a lane's bits depend on its own arguments only. These choose one path for the whole vector, so that a large "
            "argument in one lane may change the last bits of the others; both results are within the errors above.\n\n"
        )
        text += neighbour_table(influenced)
    else:
        text += "A lane's bits depend on its own arguments only, whatever the other lanes hold.\n"
    return text


# ---- plots ----


def profile(path):
    with open(path) as file:
        return [(float(r["argument"]), float(r["ulp"])) for r in csv.DictReader(file)]


def scaled(points):
    """Positions on an axis that is logarithmic on both sides of zero, and its labels."""
    finite = [(x, e) for x, e in points if math.isfinite(x)]
    busy = [abs(x) for x, e in finite if e > 0.5 and x != 0] or [abs(x) for x, _ in finite if x != 0]
    smallest, largest = min(busy) / 4, min(max(busy) * 4, max(abs(x) for x, _ in finite))

    def position(x):
        return math.copysign(math.log2(abs(x) + smallest) - math.log2(smallest), x)

    positions = [(position(x), e) for x, e in finite if abs(x) <= largest]
    left, right = min(p for p, _ in positions), max(p for p, _ in positions)
    columns = {}  # the largest error in each of 300 columns
    for p, e in positions:
        column = round(300 * (p - left) / (right - left))
        columns[column] = max(columns.get(column, 0), e)
    kept = [(left + c * (right - left) / 300, e) for c, e in sorted(columns.items())]
    low, high = math.ceil(math.log2(smallest)) + 2, math.floor(math.log2(largest))
    step = max(1, (high - low) // 4)
    wanted = [("0", 0.0)]
    for k in range(high, low - 1, -step):
        wanted += [(f"{sign}2^{{{k}}}", position(float(sign + "1") * 2.0**k)) for sign in ("", "-")]
    taken = []  # positions of labels, as far apart as one is wide
    for _, p in wanted:
        if left <= p <= right and all(abs(p - q) > 0.1 * (right - left) for q in taken):
            taken.append(p)
    tics = [f'"{label}" {p}' for label, p in wanted if p in taken]
    return kept, tics


def plot(name, panels, directory, facts):
    with tempfile.TemporaryDirectory() as scratch:
        script = ["set terminal svg size 900,260 font 'sans,11' background 'white'",
                  f"set output '{directory}/accuracy_{name}.svg'",
                  f"set multiplot layout 1,{len(panels)}", "unset key", "set grid", "set yrange [0:*]", "set border 3", "set tics nomirror"]
        for i, (title, path) in enumerate(panels):
            points, tics = scaled(profile(path))
            data = os.path.join(scratch, f"{i}")
            with open(data, "w") as file:
                file.writelines(f"{x:.4g} {e:.4g}\n" for x, e in points)
            script += [f"set title '{title}'", "set xlabel 'x'", "set ylabel 'largest error (ULP)'", f"set xtics ({', '.join(tics)})",
                       f"plot '{data}' with lines linecolor rgb '#1f5faa'"]
        subprocess.run(["gnuplot"], input="\n".join(script) + "\n", text=True, check=True)


def make_plots(tool, rows, directory, facts):
    """One file for each function with an error: float and double side by side, accurate variants."""
    if not shutil.which("gnuplot"):
        print("no gnuplot: no plots")
        return []
    os.makedirs(directory, exist_ok=True)
    names = list(dict.fromkeys(r["function"] for r in rows if r["variant"] == "accurate" and float(r["claim"]) > 0.5))
    made = []
    with tempfile.TemporaryDirectory() as scratch:
        for name in names:
            run(tool, name, "--variant", "accurate", "--exhaustive", "--stride", PLOT_STRIDE, "--count", str(COUNT), "--profile", scratch)
            panels = [(f"{name}, {'float' if t == 'f32' else 'double'}", os.path.join(scratch, f"{name}_{t}.csv")) for t in ("f32", "f64")]
            plot(name, [p for p in panels if os.path.exists(p[1])], directory, facts)
            made.append(name)
    return made


def main():
    arguments = [a for a in sys.argv[1:] if a != "--long"]
    tool, docs, commit = arguments
    command = ["--all", "--count", str(COUNT)]
    facts = {"commit": commit, "processor": processor(), "command": f"build/ulp {' '.join(command)}"}
    data = os.path.join(docs, "data")
    os.makedirs(data, exist_ok=True)
    sampled = with_known_worst(tool, run(tool, *command), os.path.join(docs, "..", "tests", "witnesses.csv"))
    write(os.path.join(data, "accuracy.csv"), list(sampled.values()), {**facts, "and": "the inputs of tests/witnesses.csv"})
    near_one = [row for name, bounds in NEAR_ONE.items() for row in run(tool, name, "--interval", *bounds, "--count", str(COUNT)).values()]
    write(os.path.join(data, "near_one.csv"), near_one, {**facts, "command": "build/ulp log1p --interval -0x1p-7 0x1p-7, and so on"})
    by_environment = {e: run(tool, *IN_ENVIRONMENTS, "--environment", e, "--count", "100000") for e in ENVIRONMENTS}
    longer = long_runs(tool, os.path.join(data, "long_runs.csv"), sampled, facts, "--long" in sys.argv)
    rows = [larger({**row, **longer.get(k, {})}, row) for k, row in sampled.items()]
    plots = make_plots(tool, rows, os.path.join(docs, "plots"), facts)
    with open(os.path.join(os.path.dirname(tool), "catalogue.json")) as file:
        families = {entry["function"]: entry["family"] for entry in json.load(file)}
    with open(os.path.join(docs, "accuracy.md"), "w") as file:
        file.write(page(rows, near_one, by_environment, families, facts, plots))


if __name__ == "__main__":
    main()
