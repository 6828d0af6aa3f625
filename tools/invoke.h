// Calls any entry point from data: places the lanes of its arguments in registers and stack slots as the calling convention says,
// fills everything else with garbage, calls, and takes the results from where they must be. Every call also checks what an entry
// point must leave alone.
#pragma once

#include <cstdint>
#include <string>

#include "frame/catalogue.h"

namespace vorx {

// The machine around a call. What goes in comes out changed by the call.
struct alignas(16) machine_state {
  unsigned char xmm[8][16];
  uint32_t eax, edx, ecx, ebx, esi, edi, ebp;
  uint32_t esp;    // out: 0 if the stack pointer came back as it was
  uint32_t mxcsr;  // in and out
};

// What a call may be given beside its lanes.
struct call_options {
  uint64_t garbage = 0xffa5a5a5ffa5a5a5;  // fills lanes and registers that carry no element: a signalling NaN, unless changed
  int misalignment = 0;     // bytes (multiple of 4) by which the stack is off 16; only where no vector is on the stack
  int hidden_offset = 8;    // alignment of the hidden result area: 8 modulo 16, or 0
  uint32_t mxcsr = 0x1f80;  // round to nearest, all exceptions masked, no flag raised
};

class invoker {
 public:
  // The entry point at an address, usually dlsym(library, e.symbol()).
  invoker(const entry_point& e, const void* address);

  // arguments[a] points to `width` lanes of argument a, results[r] to room for `width` lanes of result r. Returns an empty
  // string, or what the entry point did that it must not do.
  std::string operator()(const void* const* arguments, void* const* results, const call_options& options = {});

  uint32_t flags() const { return state_.mxcsr & 0x3f; }  // exception flags that the last call raised
  const layout& where_things_are() const { return layout_; }

 private:
  entry_point entry_;
  layout layout_;
  const void* address_;
  machine_state state_;
};

// The library under test: opened once from the path in the environment variable VORX_LIBRARY, or __ocl_vorx_p8.so beside the
// build.
const void* library_symbol(const std::string& name);

}  // namespace vorx
