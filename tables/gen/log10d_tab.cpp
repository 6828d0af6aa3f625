// -log10 of the table points of double log10, with a switch of the exponent between 724 and 725.
#include "tables/gen/real.h"

int main() {
  std::puts(R"(// Made by build/tables/generate_log10d_tab > tables/log10d_tab.h
// Entry j - 512, j = 512, ..., 1024: -log10(j/512) up to j = 724, -log10(j/1024) above (the split point is near sqrt 2), rounded
// to nearest. -0 for j = 512 and +0 for j = 1024: neither changes the sum it is added to.
#pragma once

namespace vorx {

alignas(16) inline constexpr double log10d_tab[513] = {)");
  for (int j = 512; j <= 1024; j++) {
    double t = (-log10(real(j) / real(j <= 724 ? 512 : 1024))).to_double();
    if (j == 512) t = -0.0;
    if (j == 1024) t = 0.0;
    if (j == 700) require(t, std::bit_cast<uint64_t>(-0.13582807903842609), "j = 700");
    if (j == 725) require(t, std::bit_cast<uint64_t>(0.14996195006881827), "j = 725");
    print(t);
    std::putchar(j % 4 == 3 ? '\n' : ' ');
  }
  std::puts("};\n\n}  // namespace vorx");
}
