#!/usr/bin/env python3
"""From the catalogue to a program that calls every function on whole arrays, the same function on one lane, and in a bare loop over
aligned full vectors, and the table of these calls.

Usage: array_callers.py catalogue.json c|cpp FILE
"""

import json
import os
import sys

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "tools", "headers"))
from array_functions import array_functions, suffix  # tools/headers/array_functions.py

ARRAYS = "const void* x, const void* y, const void* z, void* r, size_t n"


def on_array(f, language):
    if language == "c":
        return f"{f.name}({', '.join([*f.arguments, 'r', 'n'])});"
    name = "vorx::native::" if f.variant == "native" else "vorx::"
    views = [f"vorx::view(CAST(const {f.lane}*, {a}), n)" for a in f.arguments]
    return f"{name}{f.function}({', '.join(views)}, vorx::view(CAST({f.lane}*, r), n));"


def on_one_lane(f):
    """By the entry point of four lanes, each of them the argument: nothing passes through x87 registers."""
    s = f"{suffix(f.entry)}4"
    variant = "_native" if f.variant == "native" else ""
    lanes = ", ".join(f"vorx_splat{s}(AT(const {f.lane}, {a}))" for a in f.arguments)
    return f"vorx_storen{s}(CAST({f.lane}*, r), vorx_{f.function}{s}{variant}({lanes}), 1);"


def in_bare_loop(f):
    vectors = ", ".join(f"CAST(const {f.vector}*, {a})[i]" for a in f.arguments)
    name = f.entry["name"].replace("__ocl_vorx_p8_", "vorx_")
    return f"size_t i; for (i = 0; i < n / {f.lanes}; i++) CAST({f.vector}*, r)[i] = {name}({vectors});"


def main():
    catalogue, language, path = sys.argv[1:]
    functions = array_functions([e for e in json.load(open(catalogue)) if e["exists"]])
    with open(path, "w") as out:
        out.write(f"#include <vorx/array.h{'pp' if language == 'cpp' else ''}>\n#include \"tests/callers/callers.h\"\n"
                  "#include \"tests/callers/arrays.h\"\n")
        for f in functions:
            unused = "(void)x, (void)y, (void)z;"
            out.write(f"static void array_{f.name}({ARRAYS}) {{ {unused} {on_array(f, language)} }}\n"
                      f"static void lane_{f.name}({ARRAYS}) {{ {unused} (void)n; {on_one_lane(f)} }}\n"
                      f"static void bare_{f.name}({ARRAYS}) {{ {unused} {in_bare_loop(f)} }}\n")
        linkage = 'extern "C" ' if language == "cpp" else "extern "
        out.write(f"{linkage}const struct array_function CALLERS[];\nconst struct array_function CALLERS[] = {{\n")
        for f in functions:
            out.write(f'  {{"{f.name}", {len(f.arguments)}, sizeof({f.lane}), {f.lanes}, {int(f.entry["decides_for_whole_vector"])}, array_{f.name}, lane_{f.name}, bare_{f.name}}},\n')
        out.write("  {0, 0, 0, 0, 0, 0, 0, 0}};\n")


if __name__ == "__main__":
    main()
