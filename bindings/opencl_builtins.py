"""The OpenCL C built-ins that the library serves: their names, argument types and mangled names, derived from catalogue.json.

A built-in is the function of one name for one element type and one number of lanes (and, where it has a pointer argument, one
address space). Most have the catalogue's name; the tables below hold those that have not.
"""

import re
from dataclasses import dataclass, field

from inline_definitions import INLINE

# Catalogue name -> OpenCL name, where they differ. None: OpenCL C has no accurate built-in of that meaning.
RENAMED = {"lgammar": "lgamma_r", "inv": None, "div": None, "rcbrt": None, "nearbyint": None, "sincosreg": None}

# Functions with native_ and half_ forms (float only), and the name behind the prefix. The half_ forms get the accurate entry
# points: they keep the limit of 8192 ULP over the whole range, which the native ones do not promise.
SHORT_FORMS = {name: name for name in "cos exp exp2 exp10 log log2 log10 powr rsqrt sin sqrt tan".split()}
SHORT_FORMS |= {"inv": "recip", "div": "divide"}

# Second arguments that may be one scalar for all lanes: fmax(float4, float), ldexp(float4, int).
SCALAR_SECOND = ("fmax", "fmin", "ldexp")

# The catalogue's rounding words and OpenCL's. Beware: rtn is "to nearest" in the catalogue, "to negative" in OpenCL.
ROUNDING = {"rtn": "_rte", "rtz": "_rtz", "down": "_rtn", "up": "_rtp"}
DEFAULT_TO_INTEGER, DEFAULT_TO_REAL = "rtz", "rtn"  # what a conversion without a rounding suffix does

# Kind of a lane -> OpenCL type, letter in a mangled name.
TYPES = {"f32": ("float", "f"), "f64": ("double", "d"), "i32": ("int", "i"), "u32": ("uint", "j"), "i64": ("long", "l"),
         "u64": ("ulong", "m")}

# Address spaces that a pointer argument may have: OpenCL C before 2.0 declares the first three, from 2.0 on the last.
ADDRESS_SPACES = ("private", "local", "global", "generic")


@dataclass
class Builtin:
    name: str                 # as in OpenCL C, with the prefix
    entry: dict               # the record of the entry point in the catalogue
    parameters: list          # (kind, lanes) of each argument by value
    result: tuple             # (kind, lanes)
    space: str = ""           # address space of the pointer argument, "" without one
    pointee: tuple = ()       # (kind, lanes) of what it addresses
    mangled: str = field(init=False)

    def __post_init__(self):
        self.mangled = mangle(self.name, self.parameters, self.space, self.pointee)

    def is_inline(self, calls_only=False):
        """Whether a few instructions define it."""
        return not calls_only and (self.entry["function"], self.entry["type"], self.entry["variant"]) in INLINE

    def declaration(self):
        """The built-in as OpenCL C declares it."""
        arguments = [type_name(p) for p in self.parameters]
        if self.space:
            qualifier = "" if self.space == "generic" else f"{self.space} "
            arguments.append(f"{qualifier}{type_name(self.pointee)}*")
        return f"{type_name(self.result)} {self.name}({', '.join(arguments)})"


def type_name(vector):
    kind, lanes = vector
    return TYPES[kind][0] + (str(lanes) if lanes > 1 else "")


def mangle(name, parameters, space, pointee):
    """The Itanium mangling that clang gives OpenCL C functions: a repeated vector type is a substitution."""
    seen = []

    def vector(kind, lanes):
        if lanes == 1:
            return TYPES[kind][1]
        spelling = f"Dv{lanes}_{TYPES[kind][1]}"
        if spelling in seen:
            return "S_" if seen.index(spelling) == 0 else f"S{seen.index(spelling) - 1}_"
        seen.append(spelling)
        return spelling

    text = f"_Z{len(name)}{name}" + "".join(vector(*p) for p in parameters)
    if space:
        text += f"PU{len(space) + 2}CL{space}" + vector(*pointee)
    return text


def lane_kinds(entry):
    """Kinds of the arguments and results of an entry point."""
    return [a["kind"] for a in entry["arguments"]], [r["kind"] for r in entry["results"]]


def names_of(entry):
    """The OpenCL names, without prefix, that an entry point serves."""
    function, lanes, is_native = entry["function"], entry["lanes"], entry["variant"] == "native"
    if conversion := re.fullmatch(r"cvtfpto[iu]\d\d(rtn|rtz|down|up)(sat|nosat)", function):
        rounding, saturation = conversion[1], "_sat" if conversion[2] == "sat" else ""
        default = DEFAULT_TO_INTEGER
    elif conversion := re.fullmatch(r"cvt[iu]\d\dtofp(rtn|rtz|down|up)", function):
        rounding, saturation, default = conversion[1], "", DEFAULT_TO_REAL
    else:
        names = []
        if not is_native and RENAMED.get(function, function):
            names.append(RENAMED.get(function, function))
        if entry["type"] == "f32" and function in SHORT_FORMS:
            names.append(("native_" if is_native else "half_") + SHORT_FORMS[function])
        return names
    target = "convert_" + type_name((lane_kinds(entry)[1][0], lanes)) + saturation
    return [target + ROUNDING[rounding]] + ([target] if rounding == default else [])


def builtins(catalogue, prefix=""):
    """All built-ins whose entry points exist, in the catalogue's order."""
    for entry in catalogue:
        if not entry["exists"]:
            continue
        arguments, results = lane_kinds(entry)
        lanes = entry["lanes"]
        parameters = [(kind, lanes) for kind in arguments]
        for name in names_of(entry):
            if len(results) == 2:
                for space in ADDRESS_SPACES:
                    yield Builtin(prefix + name, entry, parameters, (results[0], lanes), space, (results[1], lanes))
                continue
            yield Builtin(prefix + name, entry, parameters, (results[0], lanes))
            if name in SCALAR_SECOND and lanes > 1:
                yield Builtin(prefix + name, entry, [parameters[0], (arguments[1], 1)], (results[0], lanes))


# The maths built-ins of OpenCL C 3.0, without prefix, and the conversions between what the library converts.
MATHS = """acos acosh acospi asin asinh asinpi atan atan2 atanh atanpi atan2pi cbrt ceil copysign cos cosh cospi erfc erf exp exp2
exp10 expm1 fabs fdim floor fma fmax fmin fmod fract frexp hypot ilogb ldexp lgamma lgamma_r log log2 log10 log1p logb mad maxmag
minmag modf nan nextafter pow pown powr remainder remquo rint rootn round rsqrt sin sincos sinh sinpi sqrt tan tanh tanpi tgamma
trunc""".split()
FLOAT_ONLY = [form + name for form in ("half_", "native_") for name in SHORT_FORMS.values()]


def missing_builtins(chosen, prefix):
    """(name, types) of each maths built-in that is not among the chosen ones."""
    defined = {(b.name[len(prefix):], b.entry["type"]) for b in chosen}
    for name in MATHS + FLOAT_ONLY:
        types = [t for t in ("f32", "f64") if (name, t) not in defined and not (t == "f64" and name in FLOAT_ONLY)]
        if types:
            yield name, [TYPES[t][0] for t in types]
