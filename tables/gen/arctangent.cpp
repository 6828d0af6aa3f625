// Arctangents of the points of the double kernels, in radians and in half revolutions.
#include "tables/gen/real.h"

namespace {

void print_row(const real& angle, double c) {
  real hi = angle.to_double();
  std::printf("{%a, %a, %a},\n", hi.to_double(), (angle - hi).to_double(), c);
}

// The points c: zero, then sixteen in each binade from 1/16 to 16, and one that stands for infinity.
void print_table(const char* name, const real& unit) {
  std::printf("inline constexpr arctangent_row %s[260] = {\n", name);
  for (int left = 0; left < 2; left++)
    for (int i = 0; i < 130; i++) {
      double c = std::bit_cast<double>(static_cast<uint64_t>(0x3faf + i) << 48);
      if (i == 0) c = 0;
      if (i == 129) c = 0x1p60;
      real angle = atan(real(c));
      print_row((left ? real::pi() - angle : angle) / unit, c);
    }
  std::puts("};\n");
}

}  // namespace

int main() {
  std::puts(R"(// Made by build/tables/generate_arctangent > tables/arctangent.h
// Row i: atan c as its nearest double and the rest, and c: 0 for i = 0, sixteen points in each binade from 1/16 to below 16, and
// 2^60, which stands for infinity, for i = 129. Row 130 + i: pi - atan c. In radians, and in half revolutions.
#pragma once

namespace vorx {

struct alignas(32) arctangent_row {
  double hi, lo, c;
};)");
  print_table("arctangent_f64", real(1));
  print_table("arctangent_in_half_revolutions_f64", real::pi());
  std::puts("}  // namespace vorx");
}
