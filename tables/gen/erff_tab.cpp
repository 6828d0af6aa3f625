// The cubics of float erf. Five rows are given; no fit gives their bits, and they differ from this one by less than 1e-15.
#include "tables/gen/cubic_rows.h"

#include <map>

int main() {
  constexpr int rows = 114;
  const std::map<int, cubic> given = {
      {0, {{0, 1.1283791739501194, -3.2405707223770887e-06, -0.37592641422435652}}},
      {1, {{-1.5647663117900601e-08, 1.1283809891243748, -7.5425170519114349e-05, -0.3749556309093981}}},
      {56, {{-0.0025612464628095737, 1.1548388202126183, -0.0976134517213567, -0.24006182138310109}}},
      {112, {{0.99985690286119167, 0.00010529730246271952, -2.5853025753491036e-05, 2.1178270492008155e-06}}},
  };
  constexpr cubic last = {{1, 0, 0, 0}};
  require(given.at(0).c[1], 0x3ff20dd75219a6f2, "row 0, coefficient of x");
  require(given.at(0).c[2], 0xbecb2f12984e1f1f, "row 0, coefficient of x^2");
  require(given.at(0).c[3], 0xbfd80f2da9b2f44b, "row 0, coefficient of x^3");
  require(start_of_row(rows - 1) == 4, "the last row starts at 4");

  auto f = [](const real& x) { return erf(x); };
  const real slope = real(2) / sqrt(real::pi());
  std::puts(R"(// Made by build/tables/generate_erff_tab > tables/erff_tab.h
// Row i: coefficients of x^0 to x^3 of erf x between the floats 0x3cf80000 + (i << 19) and 0x3cf80000 + (i + 1 << 19), with the
// smallest relative error; row 0 from 0 on; the last row is for everything from 4 on.
#pragma once

#include <array>

namespace vorx {

inline constexpr std::array<double, 114 * 4> erff_tab = {)");
  for (int i = 0; i < rows - 1; i++) {
    cubic row = fit_row(f, slope, i);
    if (auto at = given.find(i); at != given.end()) {
      require(distance(at->second, row, i == 0 ? 0 : start_of_row(i), start_of_row(i + 1)) < 1e-15, "a given row is the fit");
      row = at->second;
    }
    print(row);
  }
  print(last);
  std::puts("};\n\n}  // namespace vorx");
}
