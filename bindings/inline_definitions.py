"""Functions that are a few instructions: defined by these instead of a call, with the bits of the entry points.

Instructions that are x86's own work register by register, the others on whole vectors. Two operands that are both NaN are what the
entry points' comments say; nothing else in here depends on the order of operands.
"""

from ir import LANES_OF_REGISTER, REGISTER, vector_type

SUFFIX = {"f32": "ps", "f64": "pd"}  # of x86's intrinsics
SET = {"f32": "sse", "f64": "sse2"}  # where minimum and maximum came with

# Immediates of the rounding instruction: the direction; 4: that of the caller; 8: without the inexact flag.
TO_NEAREST, DOWN, UP, TO_ZERO, CURRENT, CURRENT_QUIET = 0, 1, 2, 3, 4, 12
DIRECTIONS = {"rtn": TO_NEAREST, "rtz": TO_ZERO, "down": DOWN, "up": UP}


class Work:
    """One definition in the making: the body, the entry point, the declarations of the intrinsics that it needs."""

    def __init__(self, body, entry):
        self.body, self.type, self.lanes = body, entry["type"], entry["lanes"]
        self.declarations = []

    def intrinsic(self, name, result, operands, attributes="nounwind"):
        """Calls an intrinsic; operands are (type, value)."""
        self.declarations.append(f"declare {result} @{name}({', '.join(t for t, _ in operands)}) {attributes}")
        return self.body.value(f"call {result} @{name}({', '.join(f'{t} {v}' for t, v in operands)})")

    def whole(self, kind=None):
        return vector_type(kind or self.type, self.lanes)

    def generic(self, name, *x):
        """An intrinsic of LLVM's own, on whole vectors."""
        suffix = ("" if self.lanes == 1 else f"v{self.lanes}") + self.type
        return self.intrinsic(f"llvm.{name}.{suffix}", self.whole(), [(self.whole(), v) for v in x])

    def by_register(self, function, *x):
        """function(registers...) on every register of the arguments, and the vector of the results."""
        registers = zip(*(self.body.split(self.type, self.lanes, v) for v in x))
        return self.body.join(self.type, self.lanes, [function(*r) for r in registers])

    def round_register(self, x, immediate):
        register = REGISTER[self.type]
        return self.intrinsic(f"llvm.x86.sse41.round.{SUFFIX[self.type]}", register, [(register, x), ("i32", str(immediate))])

    def splat(self, kind, bits):
        lane = f"{'i32' if kind.endswith('32') else 'i64'} {bits}"
        return str(bits) if self.lanes == 1 else "<" + ", ".join([lane] * self.lanes) + ">"


def rounding(immediate):
    return lambda w, x: w.by_register(lambda r: w.round_register(r, immediate), x)


def larger_or_smaller(operation):
    """The packed operation, which returns y where either is a NaN; then x where only y is one."""
    def define(w, x, y):
        register, lanes = REGISTER[w.type], LANES_OF_REGISTER[w.type]

        def of_registers(a, b):
            r = w.intrinsic(f"llvm.x86.{SET[w.type]}.{operation}.{SUFFIX[w.type]}", register, [(register, a), (register, b)])
            not_y = w.body.value(f"fcmp uno {register} {b}, {b}")
            but_x = w.body.value(f"fcmp ord {register} {a}, {a}")
            only_y = w.body.value(f"and <{lanes} x i1> {not_y}, {but_x}")
            return w.body.value(f"select <{lanes} x i1> {only_y}, {register} {a}, {register} {r}")
        return w.by_register(of_registers, x, y)
    return define


def multiply_and_add(w, x, y, z):
    product = w.body.value(f"fmul {w.whole()} {x}, {y}")
    return w.body.value(f"fadd {w.whole()} {product}, {z}")


def quiet_nan(w, code):
    integer, quiet = ("u32", 0x7fc00000) if w.type == "f32" else ("u64", 0x7ff8000000000000)
    bits = w.body.value(f"or {w.whole(integer)} {code}, {w.splat(integer, quiet)}")
    return w.body.value(f"bitcast {w.whole(integer)} {bits} to {w.whole()}")


def to_i32(immediate):
    def define(w, x):
        registers = []
        for r in w.body.split(w.type, w.lanes, x):
            rounded = w.round_register(r, immediate)
            registers.append(w.intrinsic(f"llvm.x86.sse2.cvt{SUFFIX[w.type]}2dq", REGISTER["i32"], [(REGISTER[w.type], rounded)]))
        if w.type == "f64":  # two lanes in each
            pairs = zip(registers[::2], registers[1::2])
            registers = registers if len(registers) == 1 else [w.body.shuffle("i32", 4, a, b, [0, 1, 4, 5]) for a, b in pairs]
        return w.body.join("i32", w.lanes, registers)
    return define


def from_integer(operation, kind):
    return lambda w, n: w.body.value(f"{operation} {w.whole(kind)} {n} to {w.whole()}")


def divide(w, x, y):
    return w.body.value(f"fdiv {w.whole()} {x}, {y}")


def reciprocal(w, x):
    one = "1.0" if w.lanes == 1 else "<" + ", ".join([f"{vector_type(w.type, 1)} 1.0"] * w.lanes) + ">"
    return divide(w, one, x)


# (catalogue name, type, variant) -> function(work, arguments...) that returns the result.
INLINE = {}
for of_type in ("f32", "f64"):
    accurate = {
        "fabs": lambda w, x: w.generic("fabs", x),
        "copysign": lambda w, x, y: w.generic("copysign", x, y),
        "fmax": larger_or_smaller("max"),
        "fmin": larger_or_smaller("min"),
        "mad": multiply_and_add,
        "nan": quiet_nan,
        "ceil": rounding(UP),
        "floor": rounding(DOWN),
        "trunc": rounding(TO_ZERO),
        "rint": rounding(CURRENT),
        "inv": reciprocal,
        "div": divide,
    }
    for word, immediate in DIRECTIONS.items():
        accurate[f"cvtfptoi32{word}nosat"] = to_i32(immediate)
        if of_type == "f64":  # exact, whatever the direction
            accurate[f"cvti32tofp{word}"] = from_integer("sitofp", "i32")
            accurate[f"cvtu32tofp{word}"] = from_integer("uitofp", "u32")
    INLINE |= {(name, of_type, "accurate"): define for name, define in accurate.items()}
INLINE["cvti32tofprtn", "f32", "accurate"] = from_integer("sitofp", "i32")
INLINE["sqrt", "f64", "accurate"] = lambda w, x: w.generic("sqrt", x)


def inline_definition(body, entry, arguments):
    """Adds the instructions to the body; returns the result, and the declarations that they need."""
    work = Work(body, entry)
    result = INLINE[entry["function"], entry["type"], entry["variant"]](work, *arguments)
    return result, work.declarations
