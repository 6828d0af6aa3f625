"""Functions on whole arrays, over the entry points of functions of one to three floating arguments and one floating result: a loop over
full vectors for each shape and type, and one inline function for each function, type and variant."""

from typed_callers import LANE, VECTOR, TypedCaller

# The widest entry point all of whose arguments are in registers is the fastest for each lane, or close to it: what goes through the
# stack costs more than wider vectors save (doubles of 16 lanes take 1.3 times as long as those of 8 in exp, 6 times in fabs; of
# eight lanes and four, float fma gains 12%, mad loses as much).
ARGUMENT_REGISTERS = 4
FILL = {"three_quarters": "0.75", "one": "1.0", "two": "2.0"}
SHAPES = {"unary": "x", "binary": "xy", "ternary": "xyz"}


def suffix(entry):
    return "f" if entry["type"] == "f32" else ""


class ArrayFunction:
    """One function on arrays of one type, in one variant."""

    def __init__(self, entry):
        self.entry, self.function, self.variant = entry, entry["function"], entry["variant"]
        self.shape, self.lanes, self.lane = entry["shape"], entry["lanes"], LANE[entry["type"]]
        self.vector = f"vorx_{VECTOR[entry['type']]}{self.lanes}"
        self.arguments = SHAPES[self.shape]
        self.result = "y" if self.shape == "unary" else "result"
        self.loop = f"vorx_array_{self.shape}_{entry['type']}x{self.lanes}"
        self.name = f"vorx_array_{self.function}{suffix(entry)}" + ("_native" if self.variant == "native" else "")
        self.fill = FILL[entry["fourth_lane"]] + suffix(entry)

    def parameters(self):
        return ", ".join([*(f"const {self.lane}* {x}" for x in self.arguments), f"{self.lane}* {self.result}", "size_t n"])

    def text(self):
        arguments = ", ".join([self.entry["name"], *self.arguments, self.result, "n", self.fill])
        return f"VORX_ARRAY_FUNCTION void {self.name}({self.parameters()}) {{ {self.loop}({arguments}); }}"

    def loop_text(self):
        """The loop, and on its own, so that it costs the loop no register, what remains behind it."""
        caller, s = TypedCaller(self.entry).name, f"{suffix(self.entry)}{self.lanes}"
        entry = f"vorx_entry entry, {self.parameters()}, {self.lane} fill"
        rest = ", ".join([*(f"{x} + n" for x in [*self.arguments, self.result])])

        def call(load, rest):
            return f"{caller}(entry, {', '.join(f'vorx_{load}{s}({x}{rest})' for x in self.arguments)})"

        return f"""\
VORX_REST void {self.loop}_rest({entry}) {{
  vorx_storen{s}({self.result}, {call("loadn", ", n, fill")}, n);
}}
VORX_FUNCTION void {self.loop}({entry}) {{
  const size_t remain = n % {self.lanes};
  size_t i;
  for (i = 0; i < n / {self.lanes}; i++)
    vorx_store{s}({self.result} + {self.lanes} * i, {call("load", f" + {self.lanes} * i")});
  n -= remain;
  if (remain != 0) {self.loop}_rest(entry, {rest}, remain, fill);
}}"""

    def views_text(self):
        """The overload for views in C++."""
        parameters = [*(f"view<const {self.lane}> {x}" for x in self.arguments), f"view<{self.lane}> {self.result}"]
        names = [*self.arguments, self.result]
        pointers = ", ".join(f"{x}.data()" for x in names)
        return f"VORX_FUNCTION void {self.function}({', '.join(parameters)}) {{ ::{self.name}({pointers}, length({', '.join(names)})); }}"


def array_functions(catalogue):
    """All of them, in the order of the catalogue."""
    widest = {}
    for e in catalogue:
        kinds = [v["kind"] for v in e["arguments"] + e["results"]]
        if e["shape"] in SHAPES and set(kinds) == {e["type"]} and sum(a["registers"] for a in e["arguments"]) <= ARGUMENT_REGISTERS:
            key = (e["function"], e["variant"], e["type"])
            if key not in widest or widest[key]["lanes"] < e["lanes"]:
                widest[key] = e
    return [ArrayFunction(e) for e in widest.values()]
