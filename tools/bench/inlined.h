// Every kernel in a loop of its own: what a function costs when nothing has to be passed, and whether its lane test flags an
// argument.
#pragma once

#include <cstdint>
#include <vector>

#include "frame/catalogue.h"

namespace vorx::bench {

struct inlined_kernel {
  const char* function;
  element type;
  bool native;
  // Path and lane test on so many registers of each argument, from arrays of lanes to arrays of lanes (16-byte aligned); null for
  // a kernel that leaves every lane to its rare-case routine.
  void (*loop)(const void* const* arguments, void* const* results, int registers);
  // Whether the test for special or large lanes flags lane 0 of these arguments; null for a kernel without one.
  bool (*flags)(const void* const* arguments);
};

// Filled before main by one object per family.
inline std::vector<inlined_kernel>& inlined_kernels() {
  static std::vector<inlined_kernel> all;
  return all;
}

inline const inlined_kernel* inlined_kernel_of(const entry_point& e) {
  for (const inlined_kernel& k : inlined_kernels())
    if (std::string(e.of->name) == k.function && e.type == k.type && e.native == k.native) return &k;
  return nullptr;
}

}  // namespace vorx::bench
