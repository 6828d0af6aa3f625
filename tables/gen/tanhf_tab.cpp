// The cubics of float tanh. Row 0 is given, with ten digits; that of the generator rounds to the same float function but for one
// result in 15000.
#include "tables/gen/cubic_rows.h"

int main() {
  constexpr int rows = 134;
  constexpr cubic first = {{0, 1.000000008, -3.828228913e-06, -0.3330970826}}, last = {{1, 0, 0, 0}};
  auto f = [](const real& x) { return tanh(x); };
  require(start_of_row(rows - 1) == 10, "the last row starts at 10");
  require(distance(first, fit_row(f, real(1), 0), 0, start_of_row(1)) < 1e-10, "row 0 is the fit, to ten digits");

  std::puts(R"(// Made by build/tables/generate_tanhf_tab > tables/tanhf_tab.h
// Row i: coefficients of x^0 to x^3 of tanh x between the floats 0x3cf80000 + (i << 19) and 0x3cf80000 + (i + 1 << 19), with the
// smallest relative error; row 0 from 0 on; the last row is for everything from 10 on.
#pragma once

#include <array>

namespace vorx {

inline constexpr std::array<double, 134 * 4> tanhf_tab = {)");
  print(first);
  for (int i = 1; i < rows - 1; i++) print(fit_row(f, real(1), i));
  print(last);
  std::puts("};\n\n}  // namespace vorx");
}
