// 2^(j/128) for the double kernels of the exponential family.
#include "tables/gen/real.h"

int main() {
  std::puts(R"(// Made by build/tables/generate_exp2_j128 > tables/exp2_j128.h
// Entry j = 2^(j/128), rounded to nearest.
#pragma once

#include <array>

namespace vorx {

inline constexpr std::array<double, 128> exp2_j128 = {)");
  for (int j = 0; j < 128; j++) {
    print(exp2(real(j) / real(128)).to_double());
    std::putchar(j % 4 == 3 ? '\n' : ' ');
  }
  std::puts("};\n\n}  // namespace vorx");
}
