// Table of the scalar float logarithms: reciprocals and logarithms of 128 points of one binade.
#include "tables/gen/real.h"

int main() {
  std::puts(R"(// Made by build/tables/generate_logf_rare_tab > tables/logf_rare_tab.h
// Row i, i = 0, ..., 127: the float nearest 1/(1 + i/128), and ln c = hi + lo of the point c whose reciprocal it exactly is.
#pragma once

namespace vorx {

struct logf_rare_row {
  float reciprocal, hi, lo;
};
inline constexpr logf_rare_row logf_rare_tab[128] = {)");
  for (int i = 0; i < 128; i++) {
    float reciprocal = (real(1) / (real(1) + real(i) / real(128))).to_float();
    real v = i == 0 ? real(0) : -log(real(reciprocal));
    float hi = v.to_float(), lo = (v - real(hi)).to_float();
    std::printf("{%af, %af, %af},%c", reciprocal, hi, lo, i % 2 ? '\n' : ' ');
  }
  std::puts("};\n\n}  // namespace vorx");
}
