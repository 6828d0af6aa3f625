// -ln of the table points of double log, with a switch of the exponent between 724 and 725.
#include "tables/gen/real.h"

int main() {
  std::puts(R"(// Made by build/tables/generate_logd_tab > tables/logd_tab.h
// Entry j - 512, j = 512, ..., 1024: -ln(j/512) up to j = 724, -ln(j/1024) above (the split point is near sqrt 2), rounded
// to nearest. -0 for j = 512 and +0 for j = 1024: neither changes the sum it is added to.
#pragma once

namespace vorx {

alignas(16) inline constexpr double logd_tab[513] = {)");
  for (int j = 512; j <= 1024; j++) {
    double t = (-log(real(j) / real(j <= 724 ? 512 : 1024))).to_double();
    if (j == 512) t = -0.0;
    if (j == 1024) t = 0.0;
    if (j == 724) require(t, std::bit_cast<uint64_t>(-0.34646676734620857), "j = 724");
    if (j == 725) require(t, std::bit_cast<uint64_t>(0.3453001507447783), "j = 725");
    print(t);
    std::putchar(j % 4 == 3 ? '\n' : ' ');
  }
  std::puts("};\n\n}  // namespace vorx");
}
