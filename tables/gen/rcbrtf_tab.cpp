// Heads and tails of reciprocal cube roots for float rcbrt.
#include "tables/gen/cube_roots.h"

int main() {
  std::puts(R"(// Made by build/tables/generate_rcbrtf_tab > tables/rcbrtf_tab.h
// Row 32 rem + i: hi, lo with hi + lo = (2^rem c)^(-1/3), c = 1 + i/32 + 1/64 the middle of an interval. hi is cut, lo is rounded.
#pragma once

#include <array>

namespace vorx {

inline constexpr std::array<float, 2 * 96> rcbrtf_tab = {)");
  for_each_middle([](int rem, int i, const real& x) {
    real root = real(1) / cbrt(x);
    float hi = root.cut_to_float(), lo = (root - real(hi)).to_float();
    if (rem == 0 && i == 0) require(hi, 0x3f7eae2d, "hi, first row"), require(lo == 5.77729757e-08f, "lo, first row");
    if (rem == 2 && i == 31) require(hi, 0x3f0055c7, "hi, last row"), require(lo == 4.81010005e-08f, "lo, last row");
    std::printf("%af, %af,%c", hi, lo, i % 3 == 2 || i == 31 ? '\n' : ' ');
  });
  std::puts("};\n\n}  // namespace vorx");
}
