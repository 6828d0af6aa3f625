#!/usr/bin/env python3
"""From the list of built-ins (vorx-bindings --list) to OpenCL C kernels that call each of them once, and the table of the kernels.

Usage: opencl_callers.py LIST call|inline TABLE before2.cl from2.cl table.c
Those that are defined by a call, or inline. Every kernel has the parameters of a caller. OpenCL C before 2.0 has private, local and global second results, later versions
generic ones; hence two files of kernels.
"""

import re
import sys


def kernel(kernel_name, declaration):
    result, name, parameters = re.fullmatch(r"(\w+) (\w+)\((.*)\)", declaration).groups()
    parameters = parameters.split(", ")
    space, second = "global", "void"
    if parameters[-1].endswith("*"):
        *space, second = parameters.pop()[:-1].split()
        space = space[0] if space else ""
    arguments = [f"*(global const {t}*)x{i}" for i, t in enumerate(parameters)]
    signature = ", ".join(f"global const void* x{i}" for i in range(3)) + ", global void* r"
    head = f"kernel void {kernel_name}({signature}, {space if space == 'local' else 'global'} void* s) {{\n"
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
    list_file, form, table_name, before2, from2, table = sys.argv[1:]
    kernels = {before2: "", from2: ""}
    declarations, rows = "", ""
    for line in open(list_file):
        mangled, entry, declaration, how = line.rstrip("\n").split("\t")
        if how != form:
            continue
        kernel_name = f"{table_name}{mangled}"
        kernels[from2 if "CLgeneric" in mangled else before2] += kernel(kernel_name, declaration)
        # A scalar second argument stands for all lanes: fmax(float4, float).
        parameters = re.search(r"\((.*)\)", declaration)[1].split(", ")
        one_for_all = len(parameters) == 2 and parameters[0][-1].isdigit() and not re.search(r"[\d*]$", parameters[1])
        declarations += f"void {kernel_name}(const void*, const void*, const void*, void*, void*);\n"
        rows += f'  {{"{declaration}", "{entry}", {int(one_for_all)}, {kernel_name}}},\n'
    for path, text in kernels.items():
        with open(path, "w") as f:
            f.write("#pragma OPENCL EXTENSION cl_khr_fp64 : enable\n" + text)
    with open(table, "w") as f:
        f.write(f'#include "tests/callers/callers.h"\n{declarations}extern const struct caller {table_name}[];\n'
                f"const struct caller {table_name}[] = {{\n{rows}  {{0, 0, 0, 0}}}};\n")


if __name__ == "__main__":
    main()
