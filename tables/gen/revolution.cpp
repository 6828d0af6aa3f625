// The revolution tables: for each exponent the stretch of bits of 1/(2 pi) that decides the fraction of |x| / (2 pi). Row E of
// the float table is floor(2^(E - 54) / (2 pi)) mod 2^96, row E of the double table floor(2^(E - 883) / (2 pi)) mod 2^192: the
// significand, an integer, times the row has the fraction of x / (2 pi) in its upper bits, and whole revolutions fall off the
// top.
#include "tables/gen/real.h"

namespace {

struct span {
  uint32_t word[6];  // most significant first
};

// floor(2^exponent / (2 pi)) mod 2^(32 words)
span row(int exponent, int words) {
  static const real per_radian = real(1) / (real(2) * real::pi());
  const real word_size = real(0x1p32);
  real n = floor(exp2(real(exponent)) * per_radian);
  span s{};
  for (int i = words; i-- > 0;) {
    real above = floor(n / word_size);
    s.word[i] = static_cast<uint32_t>((n - above * word_size).to_double());
    n = above;
  }
  return s;
}

bool is_zero(const span& s) { return !(s.word[0] | s.word[1] | s.word[2] | s.word[3] | s.word[4] | s.word[5]); }
bool starts_with_one_per_two_pi(const span& s) {
  return s.word[0] == 0x28be60db && s.word[1] == 0x9391054a && s.word[2] == 0x7f09d5f4;
}

}  // namespace

int main() {
  std::puts(R"(// Made by build/tables/generate_revolution > tables/revolution.h
#pragma once

#include <cstdint>

namespace vorx {

// Row E, for biased exponent E: floor(2^(E - 54) / (2 pi)) mod 2^96, most significant word first. One word more, because rows
// are loaded as 16 bytes.
inline constexpr uint32_t revolution_f32[256 * 3 + 1] = {)");
  for (int e = 0; e < 256; e++) {
    span s = row(e - 54, 3);
    require(e >= 54 || is_zero(s), "float rows below 54 are zero");
    require(e != 150 || starts_with_one_per_two_pi(s), "float row 150 is the first 96 bits of 1/(2 pi)");
    std::printf("    0x%08x, 0x%08x, 0x%08x,\n", s.word[0], s.word[1], s.word[2]);
  }
  std::puts(R"(};

// Row E, for biased exponent E: floor(2^(E - 883) / (2 pi)) mod 2^192, most significant word first.
inline constexpr uint64_t revolution_f64[2048 * 3] = {)");
  for (int e = 0; e < 2048; e++) {
    span s = row(e - 883, 6);
    require(e >= 883 || is_zero(s), "double rows below 883 are zero");
    require(e != 1075 || starts_with_one_per_two_pi(s), "double row 1075 starts with the first 96 bits of 1/(2 pi)");
    std::printf("    0x%08x%08x, 0x%08x%08x, 0x%08x%08x,\n", s.word[0], s.word[1], s.word[2], s.word[3], s.word[4], s.word[5]);
  }
  std::puts("};\n\n}  // namespace vorx");
}
