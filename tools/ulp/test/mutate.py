#!/usr/bin/env python3
"""Changes one bit of one number in a copy of a source file: mutate.py FILE COPY constant STRUCT NAME | table NUMBER

`constant` takes a member c(bits, decimal) of a constants struct and changes its last bit; `table` takes the n-th hexadecimal double
of the file and changes the last bit but one, for the last one may be all but a tie in the exact value.
"""
import re
import struct
import sys


def constant(text, struct, name):
    start = text.index("struct " + struct)
    pattern = re.compile(r"(rep(32|64) " + name + r" = )c\((0x[0-9a-f]+), [^)]*\)")
    found = pattern.search(text, start)
    changed = int(found[3], 16) ^ 1
    return text[: found.start()] + f"{found[1]}bits{found[2]}({changed:#x})" + text[found.end() :]


def table(text, number):
    found = list(re.finditer(r"-?0x[0-9a-f]\.?[0-9a-f]*p[+-]?[0-9]+", text))[int(number)]
    bits = struct.unpack("<q", struct.pack("<d", float.fromhex(found[0])))[0] ^ 2
    changed = struct.unpack("<d", struct.pack("<q", bits))[0]
    return text[: found.start()] + changed.hex() + text[found.end() :]


source, copy, what, *which = sys.argv[1:]
with open(source) as f:
    original = f.read()
changed = {"constant": constant, "table": table}[what](original, *which)
assert changed != original
with open(copy, "w") as f:
    f.write(changed)
