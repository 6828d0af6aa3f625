// Tangents between 0 and pi/4 as head and tail, for double tanpi.
#include "tables/gen/real.h"

int main() {
  std::puts(R"(// Made by build/tables/generate_tanpi_pairs > tables/tanpi_pairs.h
// Row j: tan(pi j / 512) up to j = 127, tan(pi (256 - j) / 512) from there on; rounded to nearest, and the rest.
#pragma once

#include <array>

namespace vorx {

inline constexpr std::array<double, 257 * 2> tanpi_pairs = {)");
  for (int j = 0; j <= 256; j++) {
    const int k = j < 128 ? j : 256 - j;
    real value = tan(real::pi() * real(k) / real(512));
    double head = k == 128 ? 1 : value.to_double();
    double tail = k == 128 ? 0 : (value - real(head)).to_double();
    std::printf("    ");
    print(head);
    std::printf(" ");
    print(tail);
    std::puts("");
  }
  std::puts("};\n\n}  // namespace vorx");
}
