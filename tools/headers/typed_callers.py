"""Functions that call an entry point with typed arguments: one for each combination of shape, element type and lanes. They spread
vectors over registers and stack as the caller of the pattern (asm_callers.py) wants them."""

from asm_callers import Pattern

LANE = {"f32": "float", "f64": "double", "i32": "int32_t", "u32": "uint32_t", "i64": "int64_t", "u64": "uint64_t"}
VECTOR = {"f32": "float", "f64": "double", "i32": "int", "u32": "uint", "i64": "long", "u64": "ulong"}
NAMES = "xyz"


def is_integer(kind):
    return kind[0] != "f"


class TypedCaller:
    """Serves all entry points of one shape, element type and number of lanes."""

    def __init__(self, entry):
        self.entry, self.lanes = entry, entry["lanes"]
        self.arguments = [a["kind"] for a in entry["arguments"]]
        self.results = [r["kind"] for r in entry["results"]]
        self.name = f"vorx_{entry['shape']}_{entry['type']}x{self.lanes}"
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

    def text(self):
        parameters = ", ".join(["vorx_entry entry", *self.parameters()])
        declarations, out = self.room_for_result()
        operands = ["entry", *self.scalars()]
        in_registers, on_stack = self.registers_in("xmm"), self.stack_slots(out)
        assignments = []
        for array, values in (("in", in_registers), ("stack", on_stack)):  # not initialised: C89 wants constants
            declarations += [f"__m128 {array}[{len(values)}];"] if values else []
            assignments += [f"{array}[{i}] = {value};" for i, value in enumerate(values)]
        if in_registers:
            operands.insert(1, "in")
        if on_stack:
            operands.append("stack")
        if self.has_pointer and not self.pattern.in_array:
            operands.append("second")
        if not self.pattern.hidden:
            operands.append(out)
        statements = [*declarations, *assignments, f"{self.pattern.name}({', '.join(operands)});", *self.return_result(out)]
        return "\n".join([f"VORX_FUNCTION {self.result_type()} {self.name}({parameters}) {{",
                          *(f"  {line}" for line in statements), "}"])

    def scalars(self):
        """The integers that travel in eax or in stack words."""
        return [f"VORX_CAST({'uint64_t' if kind.endswith('64') else 'uint32_t'}, {name})"
                for kind, name, a in zip(self.arguments, NAMES, self.entry["arguments"]) if a["registers"] == 0]

    def registers_in(self, place):
        """Expressions of all argument registers that belong there."""
        registers = []
        for kind, name, a in zip(self.arguments, NAMES, self.entry["arguments"]):
            if a["place"] == place and a["registers"]:
                registers += ([f"vorx_from_{LANE[kind]}({name})"] if self.lanes == 1 else
                              [f"{name}.xmm[{i}]" for i in range(a["registers"])])
        return registers

    def stack_slots(self, out):
        """Expressions of the 16-byte slots; those with addresses among them only where the assembly copies them all."""
        slots = self.registers_in("stack")
        if self.pattern.hidden:
            slots.insert(0, f"vorx_slot({out})")
        if self.has_pointer and self.pattern.in_array:
            slots.append("vorx_slot(second)")
        return slots

    def room_for_result(self):
        """Declarations of the variables that the caller writes, and the address that it gets."""
        if self.pattern.result in ("eax", "edx:eax"):
            return [f"{'uint32_t' if self.pattern.result == 'eax' else 'uint64_t'} out;"], "&out"
        if self.is_pair or self.lanes == 1:
            registers = sum(r["registers"] for r in self.entry["results"] if r["place"] != "pointer")
            return [f"__m128 out[{registers}];", *[f"{self.result_type()} r;"] * self.is_pair], "out"
        return [f"{self.result_type()} r;"], "r.xmm"

    def return_result(self, out):
        kind = self.results[0]
        if out == "r.xmm":
            return ["return r;"]
        if out == "&out":
            return [f"return VORX_CAST({self.result_type()}, out);"]
        if not self.is_pair:
            return [f"return vorx_to_{LANE[kind]}(out[0]);"]
        count = self.entry["results"][0]["registers"]
        lines = []
        for half, first in (("sine", 0), ("cosine", count)):
            lines += ([f"r.{half} = vorx_to_{LANE[kind]}(out[{first}]);"] if self.lanes == 1 else
                      [f"r.{half}.xmm[{i}] = out[{first + i}];" for i in range(count)])
        return lines + ["return r;"]
