// 2^(j/128) as high and low part for double expm1.
#include "tables/gen/real.h"

int main() {
  std::puts(R"(// Made by build/tables/generate_expm1_f64_pairs > tables/expm1_f64_pairs.h
// Numbers 2j, 2j + 1: the significand bits of high, the double nearest to 2^(j/128), without its exponent, for 2^m high is
// those of 2^m or-ed to them; and low, the double nearest to 2^(j/128) - high.
#pragma once

#include <array>

namespace vorx {

inline constexpr std::array<double, 256> expm1_f64_pairs = {)");
  for (int j = 0; j < 128; j++) {
    real v = exp2(real(j) / real(128));
    double high = v.to_double(), low = (v - real(high)).to_double();
    std::printf("%a, %a,%c", std::bit_cast<double>(std::bit_cast<uint64_t>(high) & 0xfffffffffffff), low, j % 2 ? '\n' : ' ');
  }
  std::puts("};\n\n}  // namespace vorx");
}
