// Heads and tails of cube roots for double cbrt.
#include "tables/gen/cube_roots.h"

int main() {
  std::puts(R"(// Made by build/tables/generate_cbrtd_tab > tables/cbrtd_tab.h
// Row 32 rem + i: hi, lo with hi + lo = cbrt(2^rem c), c = 1 + i/32 + 1/64 the middle of an interval; c; 1/c. All rounded.
#pragma once

#include <array>

namespace vorx {

inline constexpr std::array<double, 4 * 96> cbrtd_tab = {)");
  for_each_middle([](int, int i, const real& x) {
    real root = cbrt(x);
    double hi = root.to_double(), lo = (root - real(hi)).to_double();
    std::printf("%a, %a, %a, %a,\n", hi, lo, middle(i).to_double(), (real(1) / middle(i)).to_double());
  });
  std::puts("};\n\n}  // namespace vorx");
}
