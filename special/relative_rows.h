// Functions as w (1 + b0 + b1 d + ... + b6 d^6), from rows of eight doubles: w has 26 bits, so that its product with half a
// significand is exact, and the rest is small.
#pragma once

#include "frame/head_and_tail.h"
#include "frame/kernel.h"

namespace vorx {

// w and b0 + b1 d + ... of the rows at these offsets, in bytes, in the low words.
VORX_INLINE head_and_tail<f64x2> relative_row(const double* table, i64x2 offsets, f64x2 d) {
  auto c56 = gather_pairs(table + 6, offsets);
  f64x2 z = d * d;
  f64x2 b = c56.second * d + c56.first;
  auto c34 = gather_pairs(table + 4, offsets);
  b = b * z + (c34.second * d + c34.first);
  auto c12 = gather_pairs(table + 2, offsets);
  b = b * z + (c12.second * d + c12.first);
  auto c0 = gather_pairs(table, offsets);
  return {c0.first, b * d + c0.second};
}

// a w (1 + b): the head is exact.
VORX_INLINE head_and_tail<f64x2> times_relative(f64x2 a, head_and_tail<f64x2> row, f64x2 upper_half) {
  auto [head, tail] = cut(a, upper_half);
  return {head * row.head, tail * row.head + a * row.head * row.tail};
}

}  // namespace vorx
