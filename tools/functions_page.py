#!/usr/bin/env python3
"""Makes the page of what exists, from the catalogue and the functions' texts: functions_page.py CATALOGUE FUNCTIONS-JSON DOCS"""
import json
import os
import sys

from page import FAMILIES

INTEGERS = {"i32": "int", "u32": "unsigned", "i64": "64-bit int", "u64": "64-bit unsigned", "bits": "bits"}


def signature(entry):
    """What goes in and out, in words: x, y for floating arguments, n for integers."""
    def names(values):
        reals = iter("xyz")
        return ", ".join(next(reals) if v["kind"] in ("f32", "f64") else INTEGERS[v["kind"]] for v in values)
    results = ["floating" if r["kind"] in ("f32", "f64") else INTEGERS[r["kind"]] for r in entry["results"]]
    return f"{names(entry['arguments'])} → {', '.join(results)}"


def main():
    catalogue_path, texts_path, docs = sys.argv[1:]
    with open(catalogue_path) as file:
        catalogue = json.load(file)
    with open(texts_path) as file:
        texts = json.load(file)["functions"]
    existing = sum(e["exists"] for e in catalogue)
    text = f"""# What exists

Made by `make docs` from the catalogue; do not edit. {existing} of {len(catalogue)} entry points exist: every function below for `float`
and `double`, with 1, 2, 3, 4, 8 and 16 lanes. The headers say of each function what its special results are and where its lanes are.
"""
    for family, title in FAMILIES.items():
        text += f"\n## {title}\n\n| function | arguments → results | variants | |\n|---|---|---|---|\n"
        rows = {}
        for e in catalogue:
            if e["family"] == family:
                rows.setdefault(e["function"], []).append(e)
        for name, entries in rows.items():
            if name not in texts:
                continue
            variants = "accurate, native" if any(e["variant"] == "native" for e in entries) else "accurate"
            missing = "" if entries[0]["exists"] else " **Not there yet.**"
            text += f"| `{name}` | {signature(entries[0])} | {variants} | {texts[name]['brief']}{missing} |\n"
        if family == "exact":
            text += ("\nConversions, 48 names, accurate only: `cvtfpto` `i32` `u32` `i64` `u64`, then `rtn` (to nearest), `rtz` (towards zero), "
                     "`down` or `up`, then `sat` or `nosat`: `cvtfptoi32rtzsat`; and `cvt` `i32` `u32` `i64` `u64` `tofp`, then the same "
                     "roundings: `cvtu64tofprtn`.\n")
    with open(os.path.join(docs, "functions.md"), "w") as file:
        file.write(text)


if __name__ == "__main__":
    main()
