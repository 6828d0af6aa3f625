#!/usr/bin/env python3
"""Of several passes of the speed tool keeps, for each entry point, the one in which it was fastest: quietest.py RESULT PASS...

What else runs on the processor, other virtual machines included, makes a pass slower for seconds at a time and never faster. A row
is kept whole, so that its ratios are of times taken side by side.
"""
import csv
import sys

result, *passes = sys.argv[1:]
best, head, names = {}, [], []
for number, path in enumerate(passes):
    with open(path) as file:
        lines = list(file)
    comments = [line for line in lines if line.startswith("#")]
    if number == 0:
        head = [line.replace(path, "PASS") for line in comments] + [f"# rows: the fastest of {len(passes)} passes\n"]
    reader = csv.DictReader(line for line in lines if not line.startswith("#"))
    names = reader.fieldnames
    for row in reader:
        key = row["function"], row["type"], row["width"], row["variant"]
        if key not in best or float(row["cycles"]) < float(best[key]["cycles"]):
            best[key] = row
with open(result, "w", newline="") as file:
    file.writelines(head)
    writer = csv.DictWriter(file, names, lineterminator="\n")
    writer.writeheader()
    writer.writerows(best.values())
