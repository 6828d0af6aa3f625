// Float functions as cubics in double, a row of four coefficients for each sixteenth of a binade of |x|
// (tables/gen/cubic_rows.h). One row serves everything below its first interval, the last one everything above.
#pragma once

#include "frame/kernel.h"

namespace vorx {

struct cubic_rows_constants {
  rep32 sixteenths = bits32(0x7ff80000);  // exponent and four bits of the significand: the start of the interval of |x|
  rep32 first = bits32(0x3cf80000);       // of row 0: 0.0302734375
  rep32 zero = bits32(0);
};

// Where the rows are, in bytes, for four starts of intervals; `last` is the number of the last row, times 2^19.
VORX_INLINE i32x4 cubic_row_offsets(i32x4 starts, i32x4 last, const cubic_rows_constants& k) {
  return shift_right_logical(min(max(starts - k.first, k.zero), last), 14);
}

// c0 + c1 a + c2 a^2 + c3 a^3 for two lanes.
VORX_INLINE f64x2 cubic_of_rows(f64x2 a, const char* row_0, const char* row_1) {
  auto at = [](const char* p) { return load_aligned(reinterpret_cast<const double*>(p)); };
  f64x2 upper_0 = at(row_0 + 16), upper_1 = at(row_1 + 16);
  f64x2 p = upper_lanes(upper_0, upper_1) * a + lower_lanes(upper_0, upper_1);
  f64x2 lower_0 = at(row_0), lower_1 = at(row_1);
  return (p * a + upper_lanes(lower_0, lower_1)) * a + lower_lanes(lower_0, lower_1);
}

// The same for four lanes, rounded once.
VORX_INLINE f32x4 cubic_of_rows(f32x4 a, i32x4 offsets, const double* table) {
  f64x2 low = cubic_of_rows(widen_low(a), row_address<0>(table, offsets, 0), row_address<1>(table, offsets, 0));
  in_order(low, offsets);
  f64x2 high = cubic_of_rows(widen_high(a), row_address<2>(table, offsets, 0), row_address<3>(table, offsets, 0));
  return narrow(low, high);
}

}  // namespace vorx
