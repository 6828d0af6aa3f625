#!/usr/bin/env python3
"""Writes the callers' headers from catalogue.json and the functions' texts: vorx/callers.h (how entry points are reached),
vorx/vorx.h (C) and vorx/vorx.hpp (C++). Only entry points that exist are declared.

Usage: generate_headers.py catalogue.json functions.json DIRECTORY
"""

import json
import pathlib
import re
import sys
import textwrap

from asm_callers import Pattern

LANE = {"f32": "float", "f64": "double", "i32": "int32_t", "u32": "uint32_t", "i64": "int64_t", "u64": "uint64_t"}
VECTOR = {"f32": "float", "f64": "double", "i32": "int", "u32": "uint", "i64": "long", "u64": "ulong"}
NAMES = "xyz"


def is_integer(kind):
    return kind[0] != "f"


class Shape:
    """Entry points of one shape, element type and number of lanes: the same types in C, and the same caller."""

    def __init__(self, entry):
        self.entry, self.lanes = entry, entry["lanes"]
        unsigned = re.match(r"cvt(fpto)?u", entry["function"]) is not None

        def kind(v):
            return v["kind"].replace("i", "u") if unsigned else v["kind"]
        self.arguments = [kind(a) for a in entry["arguments"]]
        self.results = [kind(r) for r in entry["results"]]
        shape = re.sub(r"i(32|64)$", r"u\1", entry["shape"]) if unsigned else entry["shape"]
        self.name = f"vorx_{shape}_{entry['type']}x{self.lanes}"
        self.pattern = Pattern.of(entry)
        self.has_pointer = self.pattern.pointer
        self.is_pair = len(self.results) == 2 and not self.has_pointer

    def type(self, kind):
        return LANE[kind] if self.lanes == 1 else f"vorx_{VECTOR[kind]}{self.lanes}"

    def result_type(self):
        lanes = "" if self.lanes == 1 else self.lanes
        return f"vorx_sincos_{VECTOR[self.results[0]]}{lanes}" if self.is_pair else self.type(self.results[0])

    def parameters(self, names=NAMES, second="second"):
        p = [f"{self.type(k)} {n}" for k, n in zip(self.arguments, names)]
        return p + ([f"{self.type(self.results[1])}* {second}"] if self.has_pointer else [])

    def registers_of(self, argument):
        """Expressions of the registers of an argument."""
        name, kind = NAMES[argument], self.arguments[argument]
        count = self.entry["arguments"][argument]["registers"]
        if self.lanes == 1:
            return [f"vorx_from_{LANE[kind]}({name})"]
        return [f"{name}.xmm[{i}]" for i in range(count)]

    def text(self):
        p = self.pattern
        lines = [f"VORX_INLINE {self.result_type()} {self.name}({', '.join(['vorx_entry entry'] + self.parameters())}) {{"]
        in_registers, on_stack, operands = [], [], ["entry"]
        for i, a in enumerate(self.entry["arguments"]):
            if a["registers"] == 0:
                operands.append(f"({'uint32_t' if p.in_eax or p.words == 1 else 'uint64_t'}){NAMES[i]}")
            else:
                (in_registers if a["place"] == "xmm" else on_stack).extend(self.registers_of(i))
        scalar_real = self.lanes == 1 and not is_integer(self.results[0])
        if not p.results and not p.hidden:
            lines.append(f"  {'uint32_t' if p.result == 'eax' else 'uint64_t'} out;")
            out = "&out"
        elif self.is_pair or scalar_real:
            registers = sum(r["registers"] for r in self.entry["results"] if r["place"] != "pointer")
            lines.append(f"  __m128 out[{registers}];")
            out = "out"
        else:
            lines.append(f"  {self.result_type()} r;")
            out = "r.xmm"
        if p.hidden:
            on_stack.insert(0, f"vorx_slot({out})")
        if p.pointer and p.in_array:
            on_stack.append("vorx_slot(second)")
        if in_registers:
            lines.append(f"  __m128 in[{len(in_registers)}] = {{{', '.join(in_registers)}}};")
            operands.insert(1, "in")
        if on_stack:
            lines.append(f"  __m128 stack[{len(on_stack)}] = {{{', '.join(on_stack)}}};")
            operands.append("stack")
        if p.pointer and not p.in_array:
            operands.append("second")
        if not p.hidden:
            operands.append(out)
        lines.append(f"  {p.name}({', '.join(operands)});")
        if self.is_pair:
            lines.append(f"  {self.result_type()} r;")
            half = self.entry["results"][0]["registers"]
            if self.lanes == 1:
                lines += [f"  r.sine = vorx_to_{LANE[self.results[0]]}(out[0]);",
                          f"  r.cosine = vorx_to_{LANE[self.results[0]]}(out[1]);"]
            else:
                lines += [f"  r.{name}.xmm[{i}] = out[{first + i}];"
                          for name, first in (("sine", 0), ("cosine", half)) for i in range(half)]
            lines.append("  return r;")
        elif out == "&out":
            lines.append(f"  return ({self.result_type()})out;")
        else:
            lines.append(f"  return vorx_to_{LANE[self.results[0]]}(out[0]);" if scalar_real else "  return r;")
        return "\n".join(lines + ["}"])


CALLERS_HEAD = '''\
/* How C and C++ reach the entry points: one caller in inline assembly for each pattern of registers and stack, and on top of them
 * one function for each combination of argument types. Generated from the catalogue. */
#ifndef VORX_CALLERS_H
#define VORX_CALLERS_H

#include "vorx/types.h"

/* The address of an entry point; only the callers below know how to call it. */
typedef void (*vorx_entry)(void);

/* An entry point finds the x87 stack empty, as every function does. */
#define VORX_X87 "st", "st(1)", "st(2)", "st(3)", "st(4)", "st(5)", "st(6)", "st(7)"

VORX_INLINE __m128 vorx_from_float(float x) { return _mm_set_ss(x); }
VORX_INLINE __m128 vorx_from_double(double x) { return _mm_castpd_ps(_mm_set_sd(x)); }
VORX_INLINE float vorx_to_float(__m128 x) { return _mm_cvtss_f32(x); }
VORX_INLINE double vorx_to_double(__m128 x) { return _mm_cvtsd_f64(_mm_castps_pd(x)); }

/* A stack slot that holds an address. */
VORX_INLINE __m128 vorx_slot(void* address) { return _mm_castsi128_ps(_mm_cvtsi32_si128((int)(intptr_t)address)); }

'''


def register_range(first, count):
    return f"xmm{first}" if count == 1 else f"xmm{first}-xmm{first + count - 1}"


def describe_place(v, hidden_name="the hidden area"):
    place = v["place"]
    if place == "xmm":
        return register_range(v["at"], v["registers"])
    if place == "stack":
        return f"{v['at']}(%esp)"
    return {"hidden": hidden_name, "pointer": f"through the pointer at {v['at']}(%esp)"}.get(place, place)


def describe_registers(entries, arguments, results):
    """Lines that say where the arguments and results are, widths with the same placement in one line."""
    groups = {}
    for e in entries:
        ins = ", ".join(f"{n} {describe_place(a)}" for n, a in zip(arguments, e["arguments"]))
        outs = ", ".join(f"{n} {describe_place(r)}" if len(e["results"]) > 1 else describe_place(r)
                         for n, r in zip(results, e["results"]))
        area = "; address of the hidden area 4(%esp)" if e["hidden_bytes"] else ""
        lanes = groups.setdefault((LANE[e["type"]], f"{ins} -> {outs}{area}"), [])
        if e["lanes"] not in lanes:
            lanes.append(e["lanes"])
    return [f"  {t} {', '.join(map(str, lanes))}: {where}" for (t, where), lanes in groups.items()]


class Function:
    """All existing entry points of one function, with what is said about it."""

    def __init__(self, name, entries, text):
        self.name, self.entries, self.text = name, entries, text
        self.arguments = text.get("arguments", list(NAMES[:len(entries[0]["arguments"])]))
        self.results = text.get("results", ["result"])
        self.has_native = any(e["variant"] == "native" for e in entries)

    def comment(self, with_registers):
        """The comment before the declarations: what it is, units, special results, lanes, registers."""
        paragraphs = [self.text["brief"]]
        paragraphs += [self.text["units"]] if "units" in self.text else []
        paragraphs += ["Special results: " + self.text["special"]] if "special" in self.text else []
        if self.has_native:
            paragraphs.append("Native: " + self.text.get("native", "zeros, subnormals, infinities, NaN and arguments whose result "
                                                         "leaves the range of the type may give any value."))
        lines = [line for p in paragraphs for line in textwrap.wrap(p, 120, break_long_words=False)]
        if with_registers:
            accurate = [e for e in self.entries if e["variant"] == "accurate"]
            lines += ["Where lanes of 1, 2, 3, 4, 8, 16 are:", *describe_registers(accurate, self.arguments, self.results)]
        return "\n".join(["/**"] + [f" * {line}" for line in lines] + [" */"])

    def c_declarations(self):
        lines = [self.comment(with_registers=True)]
        for e in self.entries:
            shape = Shape(e)
            name = e["name"].replace("__ocl_vorx_p8_", "vorx_")
            second = self.results[-1]
            names = list(self.arguments) + ([second] if shape.has_pointer else [])
            lines.append(f"void {e['name']}(void);")
            lines.append(f"VORX_INLINE {shape.result_type()} {name}({', '.join(shape.parameters(self.arguments, second))}) "
                         f"{{ return {shape.name}({', '.join([e['name'], *names])}); }}")
        return "\n".join(lines) + "\n"

    def cpp_declarations(self, variant):
        entries = [e for e in self.entries if e["variant"] == variant]
        if not entries:
            return ""
        lines = [self.comment(with_registers=False)]
        first = Shape(entries[0])
        if first.has_pointer and variant == "accurate":
            a, b = self.results
            lines += ["template <class First, class Second>", f"struct {self.name}_result {{", f"  First {a};", f"  Second {b};",
                      "};"]
        if all(is_integer(k) for k in first.arguments) and entries[0]["shape"] != "from_bits":
            return "\n".join(lines + self.by_result_type(entries)) + "\n"
        for e in entries:
            shape = Shape(e)
            parameters = ", ".join(f"{shape.type(k)} {n}" for k, n in zip(shape.arguments, self.arguments))
            call = f"::{e['name'].replace('__ocl_vorx_p8_', 'vorx_')}({', '.join(self.arguments)}"
            if not shape.has_pointer:
                lines.append(f"VORX_INLINE {shape.result_type()} {self.name}({parameters}) {{ return {call}); }}")
                continue
            result = f"{self.name}_result<{shape.type(shape.results[0])}, {shape.type(shape.results[1])}>"
            a, b = self.results
            lines.append(f"VORX_INLINE {result} {self.name}({parameters}) {{ {result} r; r.{a} = {call}, &r.{b}); return r; }}")
        return "\n".join(lines) + "\n"

    def by_result_type(self, entries):
        """Conversions from integers to the floating type that the caller names: cvti32tofprtz<float>(n)."""
        lines = []
        for lanes in dict.fromkeys(e["lanes"] for e in entries):
            to = {e["type"]: e for e in entries if e["lanes"] == lanes}
            x = self.arguments[0]
            calls = {t: e["name"].replace("__ocl_vorx_p8_", "::vorx_") for t, e in to.items()}
            lines += ["template <class Real>",
                      f"VORX_INLINE vec<Real, {lanes}> {self.name}({Shape(to['f32']).type(Shape(to['f32']).arguments[0])} {x}) {{",
                      f"  if constexpr (std::is_same_v<Real, float>) return {calls['f32']}({x});",
                      f"  else return {calls['f64']}({x});", "}"]
        return lines


C_HEAD = '''\
/* The entry points of __ocl_vorx_p8 for C: vorx_expf8(x) calls __ocl_vorx_p8_expf8. Names are those of the entry points: the
 * function, f for float (nothing for double), the number of lanes, and _native for the variant that trades accuracy or special
 * results for speed. Generated from the catalogue; C++ has vorx/vorx.hpp. */
#ifndef VORX_VORX_H
#define VORX_VORX_H

#include "vorx/callers.h"

#ifdef __cplusplus
extern "C" {
#endif

'''
C_TAIL = '''
#ifdef __cplusplus
}
#endif

#endif
'''
CPP_HEAD = '''\
// The entry points of __ocl_vorx_p8 for C++: vorx::exp(x) on float, double and their vectors of 2, 3, 4, 8 and 16 lanes calls the
// entry point of that type and width, vorx::native::exp(x) its native variant. Functions with two results return a struct.
// Generated from the catalogue; vorx/vorx.h says where the lanes are.
#pragma once

#include "vorx/vector.hpp"
#include "vorx/vorx.h"

namespace vorx {

'''


def text_of(name, texts):
    """What is said about a function; the texts of the conversions are formed from their names."""
    if name in texts["functions"]:
        return texts["functions"][name]
    c = texts["conversions"]
    if m := re.fullmatch(r"cvtfpto([iu])(\d\d)(rtn|rtz|down|up)(sat|nosat)", name):
        sign, bits, rounding, saturation = m.groups()
        kind = c["signed" if sign == "i" else "unsigned"]
        special = c[f"{sign}_{saturation}"].format(lowest=f"-2^{int(bits) - 1}", high=int(bits) - 1, nan=c.get("nan_u" + bits))
        return {"brief": c["to_integer"].format(sign=kind, bits=bits, rounding=c["rounding"][rounding]), "special": special}
    sign, bits, rounding = re.fullmatch(r"cvt([iu])(\d\d)tofp(rtn|rtz|down|up)", name).groups()
    kind = c["signed" if sign == "i" else "unsigned"]
    return {"brief": c["to_real"].format(sign=kind, bits=bits, rounding=c["rounding"][rounding]), "arguments": ["n"]}


def main():
    catalogue = [e for e in json.load(open(sys.argv[1])) if e["exists"]]
    texts = json.load(open(sys.argv[2]))
    directory = pathlib.Path(sys.argv[3])
    by_function = {}
    for e in catalogue:
        by_function.setdefault(e["function"], []).append(e)
    functions = [Function(name, entries, text_of(name, texts)) for name, entries in by_function.items()]

    shapes = {Shape(e).name: Shape(e) for e in catalogue}
    patterns = sorted({s.pattern for s in shapes.values()})
    pairs = {s.result_type(): s for s in shapes.values() if s.is_pair}
    callers = CALLERS_HEAD + "\n\n".join(p.text() for p in patterns) + "\n\n"
    callers += "".join(f"typedef struct {{\n  {s.type(s.results[0])} sine, cosine;\n}} {name};\n" for name, s in pairs.items())
    callers += "\n" + "\n".join(s.text() for s in shapes.values()) + "\n\n#undef VORX_X87\n\n#endif\n"
    (directory / "callers.h").write_text(callers)
    (directory / "vorx.h").write_text(C_HEAD + "\n".join(f.c_declarations() for f in functions) + C_TAIL)
    cpp = CPP_HEAD + "\n".join(f.cpp_declarations("accurate") for f in functions)
    native = "\n".join(t for f in functions if (t := f.cpp_declarations("native")))
    (directory / "vorx.hpp").write_text(cpp + "\nnamespace native {\n\n" + native + "\n}  // namespace native\n\n}  // namespace vorx\n")


if __name__ == "__main__":
    main()
