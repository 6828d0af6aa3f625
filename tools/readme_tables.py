#!/usr/bin/env python3
"""Writes the head of the accuracy and speed tables into the README, between its two marks: readme_tables.py README DATA-DIRECTORY

The numbers are those of accuracy.csv, long_runs.csv and speed.csv in the directory, as the tools wrote them. A file that is missing
leaves its table out, a function that is missing its row.
"""
import os
import sys

from page import read_table

BEGIN, END = "<!-- numbers: written by make docs -->", "<!-- end of numbers -->"
# The first of these that are there are shown.
FUNCTIONS = "exp log pow sqrt sin tan atan2 erf cbrt exp2 cos sincos log10 expm1 log1p log2".split()
SHOWN = 8
ONE_REGISTER = {"float": "4", "double": "2"}


def read(path):
    return [row for row in read_table(path)[1] if row["variant"] == "accurate"] if os.path.exists(path) else []


def table(head, rows):
    lines = [head, ["---"] + ["---:"] * (len(head) - 1)] + rows
    return "".join("| " + " | ".join(cells) + " |\n" for cells in lines)


def largest_errors(directory):
    """{(function, type): ULP}: a sample of each kernel and, where one stands for the same claim, the long run."""
    sample = {(r["function"], r["type"]): r for r in read(os.path.join(directory, "accuracy.csv"))}
    longer = {(r["function"], r["type"]): r for r in read(os.path.join(directory, "long_runs.csv"))}
    errors = {}
    for key, row in sample.items():
        runs = [row] + ([longer[key]] if key in longer and longer[key]["claim"] == row["claim"] else [])
        errors[key] = max(float(r["largest_ulp"]) for r in runs)
    return errors


def accuracy_table(directory):
    errors = largest_errors(directory)
    names = [f for f in FUNCTIONS if (f, "f32") in errors or (f, "f64") in errors][:SHOWN]
    rows = [[f"`{f}`"] + [f"{errors[f, t]:.2f}" if (f, t) in errors else "" for t in ("f32", "f64")] for f in names]
    return "Largest error found, in ULP:\n\n" + table(["function", "float", "double"], rows) if rows else ""


def speed_table(directory):
    measured = {(r["function"], r["type"]): r for r in read(os.path.join(directory, "speed.csv"))
                if r["width"] == ONE_REGISTER[r["type"]]}
    names = [f for f in FUNCTIONS if (f, "float") in measured or (f, "double") in measured][:SHOWN]

    def cells(key):
        row = measured.get(key)
        if not row:
            return ["", "", ""]
        ratios = [f"{float(row[c]):.1f}" if row[c] else "" for c in ("scalar_ratio", "vector_accurate_ratio")]
        return [f"{float(row['cycles']):.1f}", *ratios]

    head = ["function", "float, 4 lanes", "× scalar C", "× libsleef", "double, 2 lanes", "× scalar C", "× libsleef"]
    rows = [[f"`{f}`", *cells((f, "float")), *cells((f, "double"))] for f in names]
    return ("Cycles per lane, call included, and how many times as fast that is as the scalar C library and as the independent vector\n"
            "library at 1.0 ULP:\n\n" + table(head, rows)) if rows else ""


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    path, directory = sys.argv[1:]
    with open(path) as file:
        text = file.read()
    if text.count(BEGIN) != 1 or text.count(END) != 1 or text.index(BEGIN) > text.index(END):
        sys.exit(f"{path}: the lines {BEGIN} and {END} must be there once, in this order")
    tables = [t for t in (accuracy_table(directory), speed_table(directory)) if t]
    before, behind = text[:text.index(BEGIN)], text[text.index(END):]
    with open(path, "w") as file:
        file.write(before + BEGIN + "\n\n" + "".join(t + "\n" for t in tables) + behind)


if __name__ == "__main__":
    main()
