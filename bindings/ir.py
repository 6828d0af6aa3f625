"""Pieces of LLVM IR: types of vectors and of the registers that hold them, and the instructions of a function in the making."""

REGISTER = {"f32": "<4 x float>", "f64": "<2 x double>", "i32": "<4 x i32>", "i64": "<2 x i64>"}
LANE = {"f32": "float", "f64": "double", "i32": "i32", "i64": "i64"}
LANES_OF_REGISTER = {"f32": 4, "f64": 2, "i32": 4, "i64": 2}


def plain(kind):
    return kind.replace("u", "i")


def vector_type(kind, lanes):
    return LANE[plain(kind)] if lanes == 1 else f"<{lanes} x {LANE[plain(kind)]}>"


def register_count(kind, lanes):
    return -(-(4 if lanes == 3 else lanes) // LANES_OF_REGISTER[plain(kind)])


def structure(types):
    return types[0] if len(types) == 1 else "{" + ", ".join(types) + "}"


class Body:
    """Instructions of a function in the making."""

    def __init__(self):
        self.lines = []
        self.count = 0

    def add(self, instruction):
        self.lines.append("  " + instruction)

    def value(self, instruction):
        self.count += 1
        self.add(f"%{self.count} = {instruction}")
        return f"%{self.count}"

    def shuffle(self, kind, lanes, a, b, indices):
        """Picks lanes of a and b, both of so many lanes; None stands for a lane that carries nothing."""
        wide = vector_type(kind, lanes)
        mask = ", ".join("i32 undef" if i is None else f"i32 {i}" for i in indices)
        return self.value(f"shufflevector {wide} {a}, {wide} {b}, <{len(indices)} x i32> <{mask}>")

    def split(self, kind, lanes, x):
        """The registers of a vector."""
        per_register = LANES_OF_REGISTER[plain(kind)]
        if lanes == 1:
            return [self.value(f"insertelement {REGISTER[plain(kind)]} poison, {LANE[plain(kind)]} {x}, i32 0")]
        if lanes == per_register:
            return [x]
        return [self.shuffle(kind, lanes, x, "poison",
                             [i if i < lanes else None for i in range(first, first + per_register)])
                for first in range(0, register_count(kind, lanes) * per_register, per_register)]

    def join(self, kind, lanes, registers):
        """The vector whose registers these are."""
        have = LANES_OF_REGISTER[plain(kind)]
        if lanes == 1:
            return self.value(f"extractelement {REGISTER[plain(kind)]} {registers[0]}, i32 0")
        while len(registers) > 1:
            registers = [self.shuffle(kind, have, a, b, range(2 * have)) for a, b in zip(registers[::2], registers[1::2])]
            have *= 2
        return registers[0] if have == lanes else self.shuffle(kind, have, registers[0], "poison", range(lanes))

    def cast_pointer(self, value, from_type, to_type):
        if from_type == to_type:
            return value
        operation = "addrspacecast" if "addrspace" in from_type else "bitcast"
        return self.value(f"{operation} {from_type} {value} to {to_type}")

    def splat(self, kind, lanes, x):
        first = self.value(f"insertelement {vector_type(kind, lanes)} poison, {LANE[plain(kind)]} {x}, i32 0")
        return self.shuffle(kind, lanes, first, "poison", [0] * lanes)
