#!/usr/bin/env python3
"""Writes the callers' headers from catalogue.json and the functions' texts: vorx/callers.h (how entry points are reached),
vorx/vorx.h (C) and vorx/vorx.hpp (C++), vorx/array.h and vorx/array.hpp (functions on whole arrays). Only entry points that
exist are declared.

Usage: generate_headers.py catalogue.json functions.json DIRECTORY
"""

import itertools
import json
import pathlib
import re
import sys
import textwrap

from array_functions import array_functions
from typed_callers import LANE, NAMES, TypedCaller, is_integer

CALLERS_HEAD = '''\
/* How C and C++ reach the entry points: one caller in inline assembly for each pattern of registers and stack, and on top of them
 * one function for each combination of argument types. Generated from the catalogue. */
#ifndef VORX_CALLERS_H
#define VORX_CALLERS_H

#include "vorx/types.h"

/* The address of an entry point; only the callers below know how to call it. */
typedef void (*vorx_entry)(void);

#ifdef __cplusplus
#define VORX_CAST(TYPE, X) static_cast<TYPE>(X)
#else
#define VORX_CAST(TYPE, X) ((TYPE)(X))
#endif

/* An entry point finds the x87 stack empty, as every function does. */
#define VORX_X87 "st", "st(1)", "st(2)", "st(3)", "st(4)", "st(5)", "st(6)", "st(7)"

/* The barrier is for gcc 12, which fails with an internal error when it knows that x is a lane of another call's result. */
VORX_FUNCTION __m128 vorx_from_float(float x) {
  __m128 r = _mm_set_ss(x);
  __asm__("" : "+x"(r));
  return r;
}
VORX_FUNCTION __m128 vorx_from_double(double x) { return _mm_castpd_ps(_mm_set_sd(x)); }
VORX_FUNCTION float vorx_to_float(__m128 x) { return _mm_cvtss_f32(x); }
VORX_FUNCTION double vorx_to_double(__m128 x) { return _mm_cvtsd_f64(_mm_castps_pd(x)); }

/* A stack slot that holds an address. */
VORX_FUNCTION __m128 vorx_slot(void* address) {
  int word;
  __builtin_memcpy(&word, &address, sizeof word);
  return _mm_castsi128_ps(_mm_cvtsi32_si128(word));
}

'''


def register_range(first, count):
    return f"xmm{first}" if count == 1 else f"xmm{first}-xmm{first + count - 1}"


def describe_place(v):
    place = v["place"]
    if place == "xmm":
        return register_range(v["at"], v["registers"])
    if place == "stack":
        return f"{v['at']}(%esp)"
    return {"hidden": "the hidden area", "pointer": f"through the pointer at {v['at']}(%esp)"}.get(place, place)


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
        paragraphs += self.about_neighbours()
        if self.has_native:
            paragraphs.append("Native: " + self.text.get("native", "zeros, subnormals, infinities, NaN and arguments whose result "
                                                         "leaves the range of the type may give any value."))
        lines = [line for p in paragraphs for line in textwrap.wrap(p, 120, break_long_words=False)]
        if with_registers:
            accurate = [e for e in self.entries if e["variant"] == "accurate"]
            lines += ["Where lanes of 1, 2, 3, 4, 8, 16 are:", *describe_registers(accurate, self.arguments, self.results)]
        return "\n".join(["/**"] + [f" * {line}" for line in lines] + [" */"])

    def about_neighbours(self):
        """What a lane may do to the others, where one decides for all."""
        decides = {(e["variant"], LANE[e["type"]]): e["decides_for_whole_vector"] for e in self.entries}
        if not any(decides.values()):
            return []
        exceptions = " and ".join(f"{variant} {of_type}" for (variant, of_type), does in decides.items() if not does)
        return ["One lane with a large argument sends the whole vector to the path for large arguments; the other lanes may then "
                "differ in the last bits from what they are without it" + (f" (not so: {exceptions})." if exceptions else ".")]

    def c_declarations(self):
        lines = [self.comment(with_registers=True)]
        for e in self.entries:
            caller = TypedCaller(e)
            name = e["name"].replace("__ocl_vorx_p8_", "vorx_")
            second = self.results[-1]
            names = list(self.arguments) + ([second] if caller.has_pointer else [])
            lines.append(f"void {e['name']}(void);")
            lines.append(f"VORX_FUNCTION {caller.result_type()} {name}({', '.join(caller.parameters(self.arguments, second))}) "
                         f"{{ return {caller.name}({', '.join([e['name'], *names])}); }}")
        return "\n".join(lines) + "\n"

    def cpp_declarations(self, variant):
        entries = [e for e in self.entries if e["variant"] == variant]
        if not entries:
            return ""
        lines = [self.comment(with_registers=False)]
        first = TypedCaller(entries[0])
        if first.has_pointer and variant == "accurate":
            a, b = self.results
            lines += ["template <class First, class Second>", f"struct {self.name}_result {{", f"  First {a};", f"  Second {b};",
                      "};"]
        if all(is_integer(k) for k in first.arguments) and entries[0]["shape"] != "from_bits":
            return "\n".join(lines + self.by_result_type(entries)) + "\n"
        for e in entries:
            caller = TypedCaller(e)
            parameters = ", ".join(f"{caller.type(k)} {n}" for k, n in zip(caller.arguments, self.arguments))
            call = f"::{e['name'].replace('__ocl_vorx_p8_', 'vorx_')}({', '.join(self.arguments)}"
            if not caller.has_pointer:
                lines.append(f"VORX_FUNCTION {caller.result_type()} {self.name}({parameters}) {{ return {call}); }}")
                continue
            result = f"{self.name}_result<{caller.type(caller.results[0])}, {caller.type(caller.results[1])}>"
            a, b = self.results
            lines.append(f"VORX_FUNCTION {result} {self.name}({parameters}) {{ {result} r; r.{a} = {call}, &r.{b}); return r; }}")
        if not is_integer(first.arguments[0]) and not self.name.startswith("cvt"):
            lines += [*self.beside_scalars(first), *self.of_integers(first)]
        return "\n".join(lines) + "\n"

    def beside_scalars(self, caller):
        """Functions that take scalars in place of some vectors: fmax(x, 1.0f), ldexp(x, 2)."""
        def vector(kind):
            return f"vec<{LANE[kind] if is_integer(kind) else 'T'}, N>"

        lines = []
        result = "auto" if len(caller.results) > 1 else vector(caller.results[0])
        for are_scalars in itertools.product((False, True), repeat=len(caller.arguments)):
            if not any(are_scalars) or all(scalar or is_integer(k) for k, scalar in zip(caller.arguments, are_scalars)):
                continue  # no scalar at all, or no vector that says how many lanes of which type
            parameters, arguments = [], []
            for kind, name, scalar in zip(caller.arguments, self.arguments, are_scalars):
                of = vector(kind)
                parameters.append(f"{(LANE[kind] if is_integer(kind) else 'detail::scalar<T>') if scalar else of} {name}")
                arguments.append(f"splat<{of}>({name})" if scalar else name)
            lines += ["template <class T, int N>", f"VORX_FUNCTION {result} {self.name}({', '.join(parameters)}) {{ "
                      f"return {self.name}({', '.join(arguments)}); }}"]
        return lines

    def of_integers(self, caller):
        """Functions that take arithmetic types other than one floating type, as those of the C++ library: fmax(1, x) in double."""
        real = [n for k, n in zip(caller.arguments, self.arguments) if not is_integer(k)]
        types = dict(zip(real, "TUV"))
        parameters = [f"{types.get(n, LANE[k])} {n}" for k, n in zip(caller.arguments, self.arguments)]
        arguments = [f"static_cast<double>({n})" if n in types else n for n in self.arguments]
        result = "auto" if len(caller.results) > 1 else "int32_t" if is_integer(caller.results[0]) else "double"
        return [f"template <class {', class '.join(types.values())}, detail::if_promoted<{', '.join(types.values())}> = 0>",
                f"VORX_FUNCTION {result} {self.name}({', '.join(parameters)}) {{ return {self.name}({', '.join(arguments)}); }}"]

    def by_result_type(self, entries):
        """Conversions from integers to the floating type that the caller names: cvti32tofprtz<float>(n)."""
        lines = []
        for lanes in dict.fromkeys(e["lanes"] for e in entries):
            to = {e["type"]: e for e in entries if e["lanes"] == lanes}
            x = self.arguments[0]
            calls = {t: e["name"].replace("__ocl_vorx_p8_", "::vorx_") for t, e in to.items()}
            lines += ["template <class Real>",
                      f"VORX_FUNCTION vector_of<Real, {lanes}> {self.name}({TypedCaller(to['f32']).type(TypedCaller(to['f32']).arguments[0])} {x}) {{",
                      f"  if constexpr (std::is_same_v<Real, float>) return {calls['f32']}({x});",
                      f"  else return {calls['f64']}({x});", "}"]
        return lines


C_HEAD = '''\
/* The entry points of __ocl_vorx_p8 for C: vorx_expf8(x) calls __ocl_vorx_p8_expf8. Names are those of the entry points: the
 * function, f for float (nothing for double), the number of lanes, and _native for the variant that trades accuracy or special
 * results for speed. A second result is written through the last argument; sincosreg returns a struct. Scalars that gcc keeps in
 * x87 registers (its default without -mfpmath=sse) lose the signalling bit of a NaN there. Generated from the catalogue; C++ has
 * vorx/vorx.hpp. */
#ifndef VORX_VORX_H
#define VORX_VORX_H

#include "vorx/callers.h"
#include "vorx/memory.h"

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
// The entry points of __ocl_vorx_p8 for C++17: vorx::exp(x) on float, double and their vectors of 2, 3, 4, 8 and 16 lanes calls the
// entry point of that type and width, vorx::native::exp(x) its native variant. Functions with two results return a struct. Scalars
// may stand beside vectors, integers for double: fmax(x, 1.0f), exp(1). The functions of a vector are found without vorx::, too.
// Generated from the catalogue; vorx/vorx.h says where the lanes are.
#pragma once

#include "vorx/operators.hpp"
#include "vorx/vorx.h"

namespace vorx {

'''


ARRAY_HEAD = '''\
/* Functions on whole arrays in C: vorx_array_expf(x, y, n) writes the exponentials of the n floats at x to y, vorx_array_exp those of
 * doubles, vorx_array_expf_native by the native variant. Every function of one to three floating arguments with one floating result
 * has them. Any n, 0 too; memory of any alignment; the result may take the place of an argument (y == x), but not overlap one otherwise.
 * Not a byte beyond the n elements is read or written.
 *
 * Each is a loop over the entry point of the width that is fastest, in which what remains of the last vector is filled with an ordinary
 * argument. Where one lane may decide for its whole vector (vorx/vorx.h says it of sin and others), that is a vector of this loop.
 * The loops also serve entry points found by dlsym: vorx_array_unary_f32x16(entry, x, y, n, 0.75f) takes an entry point of shape unary
 * with 16 lanes of float, such as __ocl_vorx_p8_expf16. The last argument fills: 0.75 for all of these functions, 2 for acosh.
 * Generated from the catalogue. */
#ifndef VORX_ARRAY_H
#define VORX_ARRAY_H

#include "vorx/vorx.h"

#ifdef __cplusplus
#define VORX_ARRAY_FUNCTION inline
#define VORX_REST inline __attribute__((noinline))
extern "C" {
#else
#define VORX_ARRAY_FUNCTION static __inline__ __attribute__((unused))
#define VORX_REST static __attribute__((noinline, unused))
#endif

'''
ARRAY_CPP_HEAD = '''\
// Functions on whole arrays in C++17: vorx::exp(x, y) writes the exponentials of the elements of x to y, vorx::native::exp(x, y) by the
// native variant, for anything that becomes a vorx::view: std::vector, std::array, std::span, arrays, {pointer, n}. vorx/array.h says what
// they do. Generated from the catalogue.
#pragma once

#include "vorx/array.h"
#include "vorx/view.hpp"
#include "vorx/vorx.hpp"

namespace vorx {

'''


def write_array_headers(directory, catalogue, texts):
    functions = array_functions(catalogue)
    loops = {f.loop: f for f in functions}
    text = ARRAY_HEAD + "\n\n".join(f.loop_text() for f in loops.values()) + "\n\n"
    for name in dict.fromkeys(f.function for f in functions):
        text += f"/* {text_of(name, texts)['brief']} */\n" + "".join(f.text() + "\n" for f in functions if f.function == name)
    (directory / "array.h").write_text(text + "\n#undef VORX_ARRAY_FUNCTION\n#undef VORX_REST\n" + C_TAIL)
    views = {v: "\n".join(f.views_text() for f in functions if f.variant == v) for v in ("accurate", "native")}
    (directory / "array.hpp").write_text(ARRAY_CPP_HEAD + views["accurate"] + "\n\nnamespace native {\n\n" + views["native"] +
                                         "\n\n}  // namespace native\n\n}  // namespace vorx\n")


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

    callers_by_name = {TypedCaller(e).name: TypedCaller(e) for e in catalogue}
    typed = callers_by_name.values()
    pairs = {t.result_type(): t for t in typed if t.is_pair}
    patterns = sorted({t.pattern for t in typed})
    callers = CALLERS_HEAD + "\n\n".join(p.text() for p in patterns) + "\n\n"
    callers += "".join(f"typedef struct {{\n  {t.type(t.results[0])} sine, cosine;\n}} {name};\n" for name, t in pairs.items())
    callers += "\n" + "\n".join(t.text() for t in typed) + "\n\n#undef VORX_X87\n#undef VORX_CAST\n\n#endif\n"
    (directory / "callers.h").write_text(callers)
    (directory / "vorx.h").write_text(C_HEAD + "\n".join(f.c_declarations() for f in functions) + C_TAIL)
    cpp = CPP_HEAD + "\n".join(f.cpp_declarations("accurate") for f in functions)
    native = "\n".join(t for f in functions if (t := f.cpp_declarations("native")))
    cpp += "\nnamespace native {\n\n" + native + "\n}  // namespace native\n\n}  // namespace vorx\n"
    (directory / "vorx.hpp").write_text(cpp + '\n#include "vorx/convert.hpp"\n')
    write_array_headers(directory, catalogue, texts)


if __name__ == "__main__":
    main()
