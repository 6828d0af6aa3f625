// Float functions as cubics in double, a row of four coefficients for each sixteenth of a binade of |x|
// (tables/gen/cubic_rows.h). One row serves everything below its first interval, the last one everything above.
#pragma once

#include "frame/kernel.h"

namespace vorx {

struct cubic_rows_constants {
  rep32 sixteenths = bits32(0x7ff80000);  // exponent and four bits of the significand: the start of the interval of |x|
  rep32 first = bits32(0x3cf80000);       // of row 0: 0.0302734375
  rep32 zero = bits32(0);
  rep32 magnitude = bits32(0x7fffffff);
};

// Where the rows are, in bytes, for four starts of intervals; `last` is the number of the last row, times 2^19.
VORX_INLINE i32x4 cubic_row_offsets(i32x4 starts, i32x4 last, const cubic_rows_constants& k) {
  return shift_right_logical(min(max(starts - k.first, k.zero), last), 14);
}

// c0 + c1 a + c2 a^2 + c3 a^3 for two lanes. The barrier keeps the second halves of the rows in memory until they are wanted:
// there are no registers for both.
VORX_INLINE f64x2 cubic_of_rows(f64x2 a, const char* table, uint32_t row_0, uint32_t row_1) {
  auto at = [table](uint32_t offset) __attribute__((always_inline)) {
    return load_aligned(reinterpret_cast<const double*>(table + offset));
  };
  f64x2 upper_0 = at(row_0 + 16), upper_1 = at(row_1 + 16);
  f64x2 p = upper_lanes(upper_0, upper_1) * a + lower_lanes(upper_0, upper_1);
  asm("" : "+x"(p.v), "+r"(row_0), "+r"(row_1));
  f64x2 lower_0 = at(row_0), lower_1 = at(row_1);
  return (p * a + upper_lanes(lower_0, lower_1)) * a + lower_lanes(lower_0, lower_1);
}

// The same of |x| for float lanes, rounded once: the lower two, and all four.
VORX_INLINE f64x2 lower_cubics_of_rows(f32x4 x, i32x4 offsets, const double* rows, const cubic_rows_constants& k) {
  return cubic_of_rows(to_double(x & k.magnitude), reinterpret_cast<const char*>(rows), extract<0>(offsets), extract<1>(offsets));
}
VORX_INLINE f32x4 cubic_of_rows(f32x4 x, i32x4 offsets, const double* rows, const cubic_rows_constants& k) {
  auto table = reinterpret_cast<const char*>(rows);
  f64x2 low = lower_cubics_of_rows(x, offsets, rows, k);
  in_order(low, offsets);
  in_order(low, x);
  f64x2 high = cubic_of_rows(widen_high(x & behind(low, k).magnitude), table, extract<2>(offsets), extract<3>(offsets));
  return narrow(low, high);
}

}  // namespace vorx
