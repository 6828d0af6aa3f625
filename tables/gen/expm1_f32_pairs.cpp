// 2^(j/64) as high and low part for float expm1.
#include "tables/gen/real.h"

int main() {
  std::puts(R"(// Made by build/tables/generate_expm1_f32_pairs > tables/expm1_f32_pairs.h
// Numbers 2j, 2j + 1: the significand bits of high, the float nearest to 2^(j/64), without its exponent, for 2^m high is those
// of 2^m or-ed to them; and low, the float nearest to 2^(j/64) - high.
#pragma once

#include <array>

namespace vorx {

inline constexpr std::array<float, 128> expm1_f32_pairs = {)");
  for (int j = 0; j < 64; j++) {
    real v = exp2(real(j) / real(64));
    float high = v.to_float(), low = (v - real(high)).to_float();
    std::printf("%af, %af,%c", std::bit_cast<float>(std::bit_cast<uint32_t>(high) & 0x7fffff), low, j % 4 == 3 ? '\n' : ' ');
  }
  std::puts("};\n\n}  // namespace vorx");
}
