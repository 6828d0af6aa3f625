// tan(pi k / 512) as head and tail, for double tanpi.
#include "tables/gen/real.h"

int main() {
  std::puts(R"(// Made by build/tables/generate_tanpi_pairs > tables/tanpi_pairs.h
// Row i: tan(pi (i - 128) / 512), rounded to nearest, and the rest.
#pragma once

#include <array>

namespace vorx {

inline constexpr std::array<double, 256 * 2> tanpi_pairs = {)");
  for (int i = 0; i < 256; i++) {
    real value = tan(real::pi() * real(i - 128) / real(512));
    double head = i == 0 ? -1 : value.to_double();
    double tail = i == 0 ? 0 : (value - real(head)).to_double();
    std::printf("    ");
    print(head);
    std::printf(" ");
    print(tail);
    std::puts("");
  }
  std::puts("};\n\n}  // namespace vorx");
}
