#!/usr/bin/env python3
"""From the catalogue to a program that calls every existing entry point through the callers' header, and the table of these calls.

Usage: header_callers.py catalogue.json c|cpp FILE          compiled with -DCALLERS=name of the table
"""

import json
import sys

SIGNATURE = "const void* x0, const void* x1, const void* x2, void* r, void* s"
LANE = {"f32": "float", "f64": "double", "i32": "int32_t", "u32": "uint32_t", "i64": "int64_t", "u64": "uint64_t"}
VECTOR = {"f32": "float", "f64": "double", "i32": "int", "u32": "uint", "i64": "long", "u64": "ulong"}


def type_name(kind, entry):
    return LANE[kind] if entry["lanes"] == 1 else f"vorx_{VECTOR[kind]}{entry['lanes']}"


def name_in(language, entry):
    if language == "c":
        return entry["name"].replace("__ocl_vorx_p8_", "vorx_")
    name = "vorx::" + ("native::" if entry["variant"] == "native" else "") + entry["function"]
    return name + (f"<{LANE[entry['type']]}>" if "tofp" in name else "")


def body(language, entry):
    arguments = ", ".join(f"*(const {type_name(a['kind'], entry)}*)x{i}" for i, a in enumerate(entry["arguments"]))
    results = [type_name(r["kind"], entry) for r in entry["results"]]
    name = name_in(language, entry)
    if len(results) == 1:
        return f"*({results[0]}*)r = {name}({arguments});"
    if entry["shape"] == "pair":
        lanes = "" if entry["lanes"] == 1 else entry["lanes"]
        return (f"vorx_sincos_{VECTOR[entry['type']]}{lanes} both = {name}({arguments}); "
                f"*({results[0]}*)r = both.sine; *({results[1]}*)s = both.cosine;")
    if language == "c":
        return f"*({results[0]}*)r = {name}({arguments}, ({results[1]}*)s);"
    return f"auto [first, second] = {name}({arguments}); *({results[0]}*)r = first; *({results[1]}*)s = second;"


def main():
    catalogue, language, path = sys.argv[1:]
    entries = [e for e in json.load(open(catalogue)) if e["exists"]]
    with open(path, "w") as f:
        f.write(f"#include <vorx/vorx.h{'pp' if language == 'cpp' else ''}>\n#include \"tests/callers/callers.h\"\n")
        for e in entries:
            f.write(f"static void call{e['name']}({SIGNATURE}) {{ (void)x1, (void)x2, (void)s; {body(language, e)} }}\n")
        linkage = 'extern "C" ' if language == "cpp" else "extern "
        f.write(f"{linkage}const struct caller CALLERS[];\nconst struct caller CALLERS[] = {{\n")
        for e in entries:
            f.write(f'  {{"{name_in(language, e)}", "{e["name"]}", 0, call{e["name"]}}},\n')
        f.write("  {0, 0, 0, 0}};\n")


if __name__ == "__main__":
    main()
