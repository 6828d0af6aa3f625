// tanh(x).
#pragma once

#include <array>

#include "frame/kernel.h"
#include "frame/rare.h"
#include "special/cubic_rows.h"
#include "tables/tanhf_tab.h"

namespace vorx {

struct tanh_f32_constants : cubic_rows_constants {
  rep32 last_row = bits32(133 << 19);
  rep32 magnitude = bits32(0x7fffffff);
  rep32 sign = bits32(0x80000000);
  rep32 limit = bits32(0x7f000000);
  alignas(16) std::array<double, 134 * 4> table = tanhf_tab;
};

// Accurate: 1.03 ULP; a table of cubics, evaluated in double. Special results: tanh(-0) = -0, exactly +-1 from 10 on and for
// infinities, NaN for NaN.
struct tanh_f32 : kernel<f32, tanh_f32_constants> {
  static constexpr double max_ulp = 1.03;
  static constexpr float seams[] = {-10.0f, -0.03125f, 0.03125f, 10.0f, 0x1.1p127f};

  static f32x4 path(f32x4 x, const constants& k) {
    i32x4 offsets = cubic_row_offsets(as_int(x) & k.sixteenths, k.last_row, k);
    return cubic_of_rows(x & k.magnitude, offsets, k.table.data()) | (x & k.sign);
  }
  // From 1.8e38 on, and NaN.
  static i32x4 special(f32x4 x, const constants& k) { return (as_int(x) & k.sixteenths) > k.limit; }

  static int rare(const float* x, float* result) {
    *result = *x != *x ? opaque(*x) + *x : from_bits(0x3f800000 | (bits_of(*x) & 0x80000000));
    return ordinary;
  }
};

}  // namespace vorx
