// 2^(j/512) for float exp10.
#include "tables/gen/real.h"

int main() {
  std::puts(R"(// Made by build/tables/generate_exp2_j512 > tables/exp2_j512.h
// Entry j = 2^(j/512), rounded to the nearest float.
#pragma once

#include <array>

namespace vorx {

inline constexpr std::array<float, 512> exp2_j512 = {)");
  for (int j = 0; j < 512; j++) {
    std::printf("%af,%c", exp2(real(j) / real(512)).to_float(), j % 8 == 7 ? '\n' : ' ');
  }
  std::puts("};\n\n}  // namespace vorx");
}
