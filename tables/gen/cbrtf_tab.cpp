// Heads and tails of cube roots for float cbrt.
#include "tables/gen/cube_roots.h"

int main() {
  std::puts(R"(// Made by build/tables/generate_cbrtf_tab > tables/cbrtf_tab.h
// Row 32 rem + i: hi, lo with hi + lo = cbrt(2^rem c), c = 1 + i/32 + 1/64 the middle of an interval. hi is cut, lo is rounded.
#pragma once

#include <array>

namespace vorx {

inline constexpr std::array<float, 2 * 96> cbrtf_tab = {)");
  for_each_middle([](int rem, int i, const real& x) {
    real root = cbrt(x);
    float hi = root.cut_to_float(), lo = (root - real(hi)).to_float();
    if (rem == 0 && i == 0) require(hi, 0x3f80a9c9, "hi, first row"), require(lo == 7.87693999e-09f, "lo, first row");
    if (rem == 2 && i == 31) require(hi, 0x3fff54e3, "hi, last row"), require(lo == 7.05022263e-09f, "lo, last row");
    std::printf("%af, %af,%c", hi, lo, i % 3 == 2 || i == 31 ? '\n' : ' ');
  });
  std::puts("};\n\n}  // namespace vorx");
}
