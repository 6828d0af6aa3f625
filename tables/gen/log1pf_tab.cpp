// Pairs for float log1p, with the bias of the exponent folded in.
#include "tables/gen/real.h"

int main() {
  const float ln2_hi = std::bit_cast<float>(0x3f317200), ln2_lo = std::bit_cast<float>(0x35bfbe00);
  std::puts(R"(// Made by build/tables/generate_log1pf_tab > tables/log1pf_tab.h
// Row j - 128, j = 128, ..., 256: hi, lo with hi + lo = -ln(j/256) - 127 (ln2_hi + ln2_lo), the two parts of ln 2 as the
// kernel has them, so that adding E ln 2 with the biased exponent E = 127 takes the bias back exactly. -ln(j/256) is its
// nearest multiple of 2^-15 in hi and the nearest multiple of 2^-34 of the rest in lo: both sums with E ln 2 are exact.
#pragma once

namespace vorx {

struct alignas(8) log1pf_row {
  float hi, lo;
};
alignas(16) inline constexpr log1pf_row log1pf_tab[129] = {)");
  for (int j = 128; j <= 256; j++) {
    real v = -log(real(j) / real(256));
    real vh = v.nearest_multiple(-15), vl = (v - vh).nearest_multiple(-34);
    float hi = (vh - real(127) * real(ln2_hi)).to_float(), lo = (vl - real(127) * real(ln2_lo)).to_float();
    if (j == 128) require(hi, 0xc2aeac38, "hi, j = 128"), require(lo, 0xb93cbf08, "lo, j = 128");
    if (j == 256) require(hi, 0xc2b00f1c, "hi, j = 256"), require(lo, 0xb93e3e84, "lo, j = 256");
    std::printf("{%af, %af},%c", hi, lo, j % 2 ? '\n' : ' ');
  }
  std::puts("};\n\n}  // namespace vorx");
}
