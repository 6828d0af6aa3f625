// log2 and reciprocal of the table points of double log2.
#include "tables/gen/real.h"

int main() {
  std::puts(R"(// Made by build/tables/generate_log2d_tab > tables/log2d_tab.h
// Row i, c = 1 + i/128, i = 0, ..., 128: log2 c as its nearest multiple of 2^-39 and the rest, and 1/c to nearest.
#pragma once

namespace vorx {

struct log2d_row {
  double hi, lo, reciprocal;
};
alignas(16) inline constexpr log2d_row log2d_tab[129] = {)");
  for (int i = 0; i <= 128; i++) {
    real c = real(1) + real(i) / real(128), v = log2(c), hi = v.nearest_multiple(-39);
    double row[] = {hi.to_double(), (v - hi).to_double(), (real(1) / c).to_double()};
    constexpr struct {
      int i;
      double row[3];
    } known[] = {{1, {0.011227255423364113, -1.0999274709132034e-13, 0.9922480620155039}},
                 {64, {0.5849625007213035, -1.4733181985781966e-13, 0.6666666666666666}},
                 {128, {1.0, 0.0, 0.5}}};
    for (const auto& k : known)
      for (int part = 0; part < 3; part++)
        if (k.i == i) require(row[part], std::bit_cast<uint64_t>(k.row[part]), "row");
    std::printf("{%a, %a, %a},\n", row[0], row[1], row[2]);
  }
  std::puts("};\n\n}  // namespace vorx");
}
