// 2^(j/2048) for float rootn.
#include "tables/gen/real.h"

int main() {
  std::puts(R"(// Made by build/tables/generate_exp2_j2048 > tables/exp2_j2048.h
// Entry j = 2^(j/2048), rounded to nearest.
#pragma once

#include <array>

namespace vorx {

inline constexpr std::array<double, 2048> exp2_j2048 = {)");
  for (int j = 0; j < 2048; j++) {
    print(exp2(real(j) / real(2048)).to_double());
    std::putchar(j % 4 == 3 ? '\n' : ' ');
  }
  std::puts("};\n\n}  // namespace vorx");
}
