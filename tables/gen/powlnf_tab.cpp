// Reciprocals and logarithms of the table points of the float powers.
#include "tables/gen/real.h"

int main() {
  std::puts(R"(// Made by build/tables/generate_powlnf_tab > tables/powlnf_tab.h
// Row j, j = 0, ..., 127, for significands from 1 + j/128 on: with i = (j + 1) / 2 cut to an integer,
// 1/c = round(16384 / (64 + i)) / 256; ln c as its nearest multiple of 2^-13 and the rest.
#pragma once

namespace vorx {

struct powlnf_row {
  float hi, lo, reciprocal, unused;
};
alignas(16) inline constexpr powlnf_row powlnf_tab[128] = {)");
  for (int j = 0; j < 128; j++) {
    const int i = (j + 1) / 2;
    real reciprocal = floor(real(16384) / real(64 + i) + real(0.5)) / real(256);
    real v = i == 0 ? real(0) : -log(reciprocal), hi = v.nearest_multiple(-13);
    float row[] = {hi.to_float(), (v - hi).to_float(), reciprocal.to_float()};
    constexpr struct {
      int i;
      float row[3];
    } known[] = {{0, {0, 0, 1.0f}}, {1, {0x1.02p-6f, 1.28665567e-06f, 0.984375f}}, {64, {0x1.62ep-1f, 3.19461833e-05f, 0.5f}}};
    for (const auto& k : known)
      for (int part = 0; part < 3; part++)
        if (k.i == i) require(row[part], std::bit_cast<uint32_t>(k.row[part]), "row");
    require(i != 32 || row[2] == 0.66796875f, "reciprocal of row 32");
    require(i != 63 || row[2] == 0.50390625f, "reciprocal of row 63");
    std::printf("{%a, %a, %a, 0},%c", row[0], row[1], row[2], j % 2 ? '\n' : ' ');
  }
  std::puts("};\n\n}  // namespace vorx");
}
