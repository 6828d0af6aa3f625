// Pairs for double log1p, with the bias of the exponent folded in.
#include "tables/gen/real.h"

int main() {
  const double ln2_hi = std::bit_cast<double>(0x3fe62e42fefa0000), ln2_lo = std::bit_cast<double>(0x3d7cf79abc9e0000);
  std::puts(R"(// Made by build/tables/generate_log1pd_tab > tables/log1pd_tab.h
// Row j - 512, j = 512, ..., 1024: hi, lo with hi + lo = -ln(j/1024) - 1023 (ln2_hi + ln2_lo), the two parts of ln 2 as the
// kernel has them, so that adding E ln 2 with the biased exponent E = 1023 takes the bias back exactly. -ln(j/1024) is its
// nearest multiple of 2^-36 in hi and the nearest multiple of 2^-75 of the rest in lo: both sums with E ln 2 are exact.
#pragma once

namespace vorx {

struct alignas(16) log1pd_row {
  double hi, lo;
};
inline constexpr log1pd_row log1pd_tab[513] = {)");
  for (int j = 512; j <= 1024; j++) {
    real v = -log(real(j) / real(1024));
    real vh = v.nearest_multiple(-36), vl = (v - vh).nearest_multiple(-75);
    double hi = (vh - real(1023) * real(ln2_hi)).to_double(), lo = (vl - real(1023) * real(ln2_lo)).to_double();
    if (j == 512) {
      require(hi, std::bit_cast<uint64_t>(-708.3964185305813), "hi, j = 512");
      require(lo, std::bit_cast<uint64_t>(-1.6828200473689525e-09), "lo, j = 512");
    }
    std::printf("{%a, %a},%c", hi, lo, j % 2 ? '\n' : ' ');
  }
  std::puts("};\n\n}  // namespace vorx");
}
