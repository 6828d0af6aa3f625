#!/usr/bin/env python3
"""From the catalogue to a program that calls entry points through the callers' header, and the table of these calls.

Usage: header_callers.py catalogue.json c|cpp callers FILE     every existing entry point
       header_callers.py catalogue.json c|cpp in_frames FILE   one of each caller, in functions that are hard to compile

It is compiled with -DCALLERS=name of the table. Functions that are hard to compile have a frame that is realigned and whose size
is known at run time only, values that live across the call, and calls on the results of calls.
"""

import json
import os
import sys

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "tools", "headers"))
from typed_callers import LANE, VECTOR, TypedCaller, is_integer  # tools/headers/typed_callers.py

SIGNATURE = "const void* x0, const void* x1, const void* x2, void* r, void* s"
FRAME = """\
  ALIGNED(32) volatile double kept[4] = {1, 2, 3, 4};
  volatile char* room = CAST(volatile char*, __builtin_alloca(callers_room));
  int a = callers_one, b = callers_one, c = callers_one;
  double d = callers_one;
  room[0] = 5;
"""
FRAME_KEPT = "  callers_check(kept[0] + kept[1] + kept[2] + kept[3] + room[0] == 15 && a + b + c == 3 && d == 1);\n"


def name_in(language, entry):
    if language == "c":
        return entry["name"].replace("__ocl_vorx_p8_", "vorx_")
    name = "vorx::" + ("native::" if entry["variant"] == "native" else "") + entry["function"]
    return name + (f"<{LANE[entry['type']]}>" if "tofp" in name else "")


def body(language, entry):
    caller = TypedCaller(entry)
    arguments = ", ".join(f"AT(const {caller.type(kind)}, x{i})" for i, kind in enumerate(caller.arguments))
    results = [caller.type(kind) for kind in caller.results]
    name = name_in(language, entry)
    if len(results) == 1:
        return f"AT({results[0]}, r) = {name}({arguments});"
    if caller.is_pair:
        return (f"{caller.result_type()} both = {name}({arguments}); "
                f"AT({results[0]}, r) = both.sine; AT({results[1]}, s) = both.cosine;")
    if language == "c":
        return f"AT({results[0]}, r) = {name}({arguments}, ({results[1]}*)s);"
    return f"auto [first, second] = {name}({arguments}); AT({results[0]}, r) = first; AT({results[1]}, s) = second;"


def body_in_frame(entry):
    """The call, and calls on its result that leave no more than its sign, or convert it."""
    caller = TypedCaller(entry)
    arguments = ", ".join(f"AT(const {caller.type(kind)}, x{i})" for i, kind in enumerate(caller.arguments))
    kind, result = caller.results[0], caller.type(caller.results[0])
    name = name_in("c", entry)
    text = FRAME
    if caller.is_pair:
        text += f"  {caller.result_type()} both = {name}({arguments});\n  {result} first = both.sine;\n  AT({result}, s) = both.cosine;\n"
    else:
        second = f", CAST({caller.type(caller.results[1])}*, s)" if caller.has_pointer else ""
        text += f"  {result} first = {name}({arguments}{second});\n"
    text += f"  AT({result}, r) = first;\n"
    lanes, lane = caller.lanes, "first" if caller.lanes == 1 else f"first.lane[{caller.lanes - 1}]"
    if not is_integer(kind):
        f = "f" if kind == "f32" else ""
        size = f"sizeof({LANE[kind]})"
        text += f"  {result} again = vorx_fabs{f}{lanes}(first);\n  {LANE[kind]} last = vorx_fabs{f}1({lane});\n"
        text += f"  callers_check_magnitudes(&again, r, {size}, {lanes});\n"
        text += f"  callers_check_magnitudes(&last, CAST(char*, r) + {lanes - 1} * {size}, {size}, 1);\n"
    else:
        text += f"  callers_check(vorx_cvt{kind.replace('32', '32tofp').replace('64', '64tofp')}rtn1({lane}) == CAST(double, {lane}));\n"
    return text + FRAME_KEPT


def main():
    catalogue, language, form, path = sys.argv[1:]
    entries = [e for e in json.load(open(catalogue)) if e["exists"]]
    if form == "in_frames":
        entries = list({TypedCaller(e).name: e for e in entries}.values())
    with open(path, "w") as f:
        f.write(f"#include <vorx/vorx.h{'pp' if language == 'cpp' else ''}>\n#include \"tests/callers/callers.h\"\n")
        for e in entries:
            text = f"\n{body_in_frame(e)}" if form == "in_frames" else f" {body(language, e)} "
            f.write(f"static void call{e['name']}({SIGNATURE}) {{ (void)x1, (void)x2, (void)s;{text}}}\n")
        linkage = 'extern "C" ' if language == "cpp" else "extern "
        f.write(f"{linkage}const struct caller CALLERS[];\nconst struct caller CALLERS[] = {{\n")
        for e in entries:
            f.write(f'  {{"{name_in(language, e)}", "{e["name"]}", 0, call{e["name"]}}},\n')
        f.write("  {0, 0, 0, 0}};\n")


if __name__ == "__main__":
    main()
