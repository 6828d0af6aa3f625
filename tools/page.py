"""What the pages of documents share: the families' titles, and tables as CSV with facts in comment lines at their head."""
import csv

FAMILIES = {
    "explog": "Exponentials, logarithms, powers",
    "roots": "Roots and quotients",
    "trig": "Trigonometric functions",
    "special": "Hyperbolic, error and gamma functions",
    "exact": "Rounding, exact operations, conversions",
}


def read_table(path):
    """The facts (`# name: value`) and the rows of a file, as dictionaries."""
    with open(path) as file:
        lines = file.readlines()
    facts = dict(line[2:].rstrip("\n").split(": ", 1) for line in lines if line.startswith("# "))
    return facts, list(csv.DictReader(line for line in lines if not line.startswith("#")))
