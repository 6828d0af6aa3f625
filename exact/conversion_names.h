// The names of the conversions: direction and saturation are words of the name, template arguments of the kernel.
#pragma once

#include "exact/from_integer.h"
#include "exact/to_integer32.h"
#include "exact/to_integer64.h"

namespace vorx {

#define VORX_TO_INTEGER(INTEGER, KERNEL, WORD, DIRECTION)                   \
  using cvtfpto##INTEGER##WORD##sat_f32 = KERNEL##_f32<DIRECTION, true>;    \
  using cvtfpto##INTEGER##WORD##nosat_f32 = KERNEL##_f32<DIRECTION, false>; \
  using cvtfpto##INTEGER##WORD##sat_f64 = KERNEL##_f64<DIRECTION, true>;    \
  using cvtfpto##INTEGER##WORD##nosat_f64 = KERNEL##_f64<DIRECTION, false>;

#define VORX_FROM_INTEGER(INTEGER, KERNEL, HAS_SIGN, WORD, DIRECTION)       \
  using cvt##INTEGER##tofp##WORD##_f32 = KERNEL##_f32<DIRECTION, HAS_SIGN>; \
  using cvt##INTEGER##tofp##WORD##_f64 = KERNEL##_f64<DIRECTION, HAS_SIGN>;

#define VORX_CONVERSIONS(WORD, DIRECTION)                  \
  VORX_TO_INTEGER(i32, to_i32, WORD, DIRECTION)            \
  VORX_TO_INTEGER(u32, to_u32, WORD, DIRECTION)            \
  VORX_TO_INTEGER(i64, to_i64, WORD, DIRECTION)            \
  VORX_TO_INTEGER(u64, to_u64, WORD, DIRECTION)            \
  VORX_FROM_INTEGER(i32, from_i32, true, WORD, DIRECTION)  \
  VORX_FROM_INTEGER(u32, from_i32, false, WORD, DIRECTION) \
  VORX_FROM_INTEGER(i64, from_i64, true, WORD, DIRECTION)  \
  VORX_FROM_INTEGER(u64, from_i64, false, WORD, DIRECTION)

VORX_CONVERSIONS(rtn, to_nearest)
VORX_CONVERSIONS(rtz, toward_zero)
VORX_CONVERSIONS(down, downward)
VORX_CONVERSIONS(up, upward)

#undef VORX_CONVERSIONS
#undef VORX_FROM_INTEGER
#undef VORX_TO_INTEGER

}  // namespace vorx
