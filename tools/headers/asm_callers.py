"""Callers of entry points from C and C++: one inline assembly statement for each pattern of registers and stack.

gcc knows no calling convention that returns four vectors in registers, so the callers place them by local register variables and
call through ecx. They name no register that a compiler may need for its own frame: clang keeps a base pointer in esi, gcc one in ebx. What the pattern of an entry point is follows from where catalogue.json puts its arguments and results.
"""

from dataclasses import dataclass

MOST_SLOTS_IN_REGISTERS = 4  # stack vectors up to this many travel to the assembly in xmm4-xmm7, more in an array
INTEGER_WORDS = {"i32": 1, "u32": 1, "i64": 2, "u64": 2}


@dataclass(frozen=True, order=True)
class Pattern:
    registers: int   # argument vectors in xmm0, xmm1, ...
    slots: int       # 16-byte stack slots
    words: int       # stack words of a scalar integer
    pointer: bool    # a pointer behind them
    hidden: bool     # the address of a result area before them, in a slot of its own
    in_eax: bool     # a scalar integer argument in eax
    result: str      # "xmm", "eax", "edx:eax" or "hidden"
    results: int     # result vectors in xmm0, xmm1, ...

    @staticmethod
    def of(entry):
        arguments, results = entry["arguments"], entry["results"]
        on_stack = [a for a in arguments if a["place"] == "stack"]
        return Pattern(entry["argument_registers"], sum(a["registers"] for a in on_stack),
                       sum(INTEGER_WORDS[a["kind"]] for a in on_stack if a["registers"] == 0),
                       results[-1]["place"] == "pointer", entry["hidden_bytes"] > 0, arguments[0]["place"] == "eax",
                       results[0]["place"], entry["result_registers"])

    @property
    def name(self):
        parts = [f"{self.registers}xmm"] if self.registers else []
        parts += ["eax"] * self.in_eax + ["area"] * self.hidden
        parts += [f"{self.slots}slots"] if self.slots else []
        parts += [f"{self.words}words"] if self.words else []
        parts += ["pointer"] * self.pointer
        result = f"{self.results}xmm" if self.result == "xmm" else self.result.replace(":", "_")
        return "vorx_call_" + "_".join(parts) + ("" if self.hidden else f"_to_{result}")

    @property
    def in_array(self):
        """Whether the stack arguments are handed over as an array that the assembly copies."""
        return self.hidden or self.slots > MOST_SLOTS_IN_REGISTERS

    @property
    def array_slots(self):
        return self.hidden + self.slots + self.pointer

    def describe(self):
        parts = []
        if self.hidden:
            parts.append("the address of the result area in a stack slot of its own")
        if self.registers:
            parts.append("xmm0" if self.registers == 1 else f"xmm0-xmm{self.registers - 1}")
        parts += ["eax"] * self.in_eax
        if self.slots:
            parts.append(f"{self.slots} stack slots")
        if self.words:
            parts.append("a stack word" if self.words == 1 else f"{self.words} stack words")
        parts += ["a pointer"] * self.pointer
        last = f"xmm0-xmm{self.results - 1}" if self.results > 1 else "xmm0"
        result = {"xmm": last, "eax": "eax", "edx:eax": "edx:eax", "hidden": "the area"}[self.result]
        return f"/* {', '.join(parts)} -> {result} */"

    def text(self):
        return "\n".join([self.describe(), f"VORX_FUNCTION void {self.name}({', '.join(self.parameters())}) {{",
                          *self.variables(), *self.assembly(), *self.outputs(), "}"])

    def parameters(self):
        p = ["vorx_entry entry"]
        p += ["const __m128* in"] if self.registers else []
        p += ["uint32_t word"] if self.in_eax or self.words == 1 else []
        p += ["uint64_t words"] if self.words == 2 else []
        p += ["const __m128* stack"] if self.slots else []
        p += ["void* pointer"] if self.pointer and not self.in_array else []
        integer = {"eax": "uint32_t", "edx:eax": "uint64_t"}
        return p + ([] if self.hidden else [f"{integer.get(self.result, '__m128')}* out"])

    def vectors(self):
        """For each xmm register: what goes in (None: nothing) and whether a result comes out."""
        direct = 0 if self.in_array else self.slots
        for i in range(8):
            source = f"in[{i}]" if i < self.registers else f"stack[{i - 4}]" if 4 <= i < 4 + direct else None
            yield i, source, i < self.results

    def variables(self):
        lines = [f'  register __m128 xmm{i} __asm__("xmm{i}"){f" = {source}" if source else ""};'
                 for i, source, result in self.vectors() if source or result]
        if self.result == "eax":
            lines.append("  uint32_t eax;")
        elif self.result == "edx:eax":
            lines.append("  uint64_t edx_eax;")
        return lines

    def instructions(self):
        stack = 16 * (self.array_slots if self.in_array else self.slots) + 4 * self.words
        stack += 4 * (self.pointer and not self.in_array)
        if stack == 0:
            return ["call *%%ecx"]
        if self.words == 2:  # no vector is on the stack: it may stay where it is, and no register is needed to find it again
            return ["pushl %%edx", "pushl %%eax", "call *%%ecx", "addl $8, %%esp"]
        saved = (stack + 15) // 16 * 16  # the old stack pointer lies behind the arguments
        setup = ["movl %%esp, %%eax", f"subl ${saved + 16}, %%esp", "andl $-16, %%esp", f"movl %%eax, {saved}(%%esp)"]
        if self.words == 1:
            setup.append("movl %%edx, (%%esp)")
        elif self.in_array:
            setup += [f"movl ${stack}, %%eax", "1:", "movaps -16(%%edx,%%eax), %%xmm7", "movaps %%xmm7, -16(%%esp,%%eax)",
                      "subl $16, %%eax", "jne 1b"]
        else:
            setup += [f"movaps %%xmm{4 + i}, {16 * i}(%%esp)" for i in range(self.slots)]
            setup += [f"movl %%edx, {16 * self.slots}(%%esp)"] * self.pointer
        return [*setup, "call *%%ecx", f"movl {saved}(%%esp), %%esp"]

    def assembly(self):
        outputs = ['"+c"(entry)']
        clobbers = []
        for i, source, result in self.vectors():
            if source:
                outputs.append(f'"+x"(xmm{i})')
            elif result:
                outputs.append(f'"=x"(xmm{i})')
            else:
                clobbers.append(f'"xmm{i}"')
        eax = "word" if self.in_eax else None
        edx = "stack" if self.in_array else "pointer" if self.pointer else "word" if self.words == 1 else None
        if self.words == 2:
            outputs.append('"+A"(words)')
        elif self.result == "edx:eax":
            outputs.append('"=A"(edx_eax)')
        else:
            if eax:
                outputs.append(f'"+a"({eax})')
            elif self.result == "eax":
                outputs.append('"=a"(eax)')
            else:
                clobbers.append('"eax"')
            if edx:
                outputs.append(f'"+d"({edx})')
            else:
                clobbers.append('"edx"')
        touches_memory = self.in_array or self.pointer
        clobbers += ['"memory"'] * touches_memory + ['"cc"', "VORX_X87"]
        lines = self.instructions()
        head = "  __asm__ volatile(" if touches_memory else "  __asm__("
        text = "\n".join((head if i == 0 else " " * len(head)) + f'"{line}\\n\\t"' for i, line in enumerate(lines))
        rest = f": {', '.join(outputs)}\n:\n: {', '.join(clobbers)});"
        return [text, *(" " * len(head) + line for line in rest.split("\n"))]

    def outputs(self):
        if self.result == "eax":
            return ["  *out = eax;"]
        if self.result == "edx:eax":
            return ["  *out = edx_eax;"]
        return [f"  out[{i}] = xmm{i};" for i in range(self.results)]
