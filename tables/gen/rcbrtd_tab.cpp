// Heads and tails of reciprocal cube roots for double rcbrt.
#include "tables/gen/cube_roots.h"

int main() {
  std::puts(R"(// Made by build/tables/generate_rcbrtd_tab > tables/rcbrtd_tab.h
// Row 32 rem + i: hi, lo with hi + lo = (2^rem c)^(-1/3), c = 1 + i/32 + 1/64 the middle of an interval; c; 1/c. All rounded.
#pragma once

#include <array>

namespace vorx {

inline constexpr std::array<double, 4 * 96> rcbrtd_tab = {)");
  for_each_middle([](int, int i, const real& x) {
    real root = real(1) / cbrt(x);
    double hi = root.to_double(), lo = (root - real(hi)).to_double();
    std::printf("%a, %a, %a, %a,\n", hi, lo, middle(i).to_double(), (real(1) / middle(i)).to_double());
  });
  std::puts("};\n\n}  // namespace vorx");
}
