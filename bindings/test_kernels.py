#!/usr/bin/env python3
"""From the list of built-ins (vorx-bindings --list) to OpenCL C kernels that call each of them once, and a C++ table of the kernels.

Usage: test_kernels.py LIST before2.cl from2.cl table.inc
Every kernel has the same parameters: up to three arguments, the result, and the vector for a second result. OpenCL C before 2.0
has private, local and global second results, later versions generic ones; hence two files.
"""

import re
import sys


def kernel(mangled, declaration):
    result, name, parameters = re.fullmatch(r"(\w+) (\w+)\((.*)\)", declaration).groups()
    parameters = parameters.split(", ")
    space, second = "global", "void"
    if parameters[-1].endswith("*"):
        *space, second = parameters.pop()[:-1].split()
        space = space[0] if space else ""
    arguments = [f"*(global const {t}*)x{i}" for i, t in enumerate(parameters)]
    signature = ", ".join(f"global const void* x{i}" for i in range(3)) + ", global void* r"
    head = f"kernel void test{mangled}({signature}, {space if space == 'local' else 'global'} void* s) {{\n"
    if second == "void":
        body = f"  *(global {result}*)r = {name}({', '.join(arguments)});\n"
    elif space == "private":
        body = (f"  {second} p;\n  *(global {result}*)r = {name}({', '.join(arguments + ['&p'])});\n"
                f"  *(global {second}*)s = p;\n")
    else:
        arguments.append(f"({space or 'global'} {second}*)s")  # a global pointer converts to a generic one
        body = f"  *(global {result}*)r = {name}({', '.join(arguments)});\n"
    return head + body + "}\n"


def main():
    list_file, before2, from2, table = sys.argv[1:]
    head = "#pragma OPENCL EXTENSION cl_khr_fp64 : enable\n"
    texts = {"before2": [head], "from2": [head]}
    rows = []
    for line in open(list_file):
        mangled, entry, declaration = line.rstrip("\n").split("\t")
        texts["from2" if "CLgeneric" in mangled else "before2"].append(kernel(mangled, declaration))
        # A scalar second argument stands for all lanes: fmax(float4, float).
        parameters = re.search(r"\((.*)\)", declaration)[1].split(", ")
        one_for_all = len(parameters) == 2 and parameters[0][-1].isdigit() and not re.search(r"[\d*]$", parameters[1])
        rows.append(f'KERNEL(test{mangled}, "{entry}", {str(one_for_all).lower()})\n')
    for path, text in ((before2, texts["before2"]), (from2, texts["from2"]), (table, rows)):
        with open(path, "w") as f:
            f.write("\n".join(text) if text is not rows else "".join(text))


if __name__ == "__main__":
    main()
