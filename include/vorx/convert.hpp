// Conversions between floating point and integers of 32 or 64 bits in C++, lane by lane, with rounding and saturation as
// arguments:
//
//   convert<int4>(x)                                           toward zero, as convert_int4 of OpenCL C
//   convert<double4>(n, rounding::up)
//   convert<uint8>(x, rounding::to_nearest, saturation::on)
//
// Included by vorx/vorx.hpp.
#pragma once

#include "vorx/vorx.hpp"

namespace vorx {

// What becomes of values that the type cannot represent. The entry points' names say rtn, rtz, down and up.
enum class rounding { to_nearest, toward_zero, down, up };

// What values beyond the range of an integer type give: off, what the text of cvtfptoi32rtznosat and so on says; on, the end of
// the range that is nearest.
enum class saturation { off, on };

namespace detail {

#define VORX_IN_ROUNDING(BEFORE, AFTER, CALL)                     \
  if (r == rounding::to_nearest) return BEFORE##rtn##AFTER CALL;  \
  if (r == rounding::toward_zero) return BEFORE##rtz##AFTER CALL; \
  if (r == rounding::down) return BEFORE##down##AFTER CALL;       \
  return BEFORE##up##AFTER CALL;
#define VORX_INTEGER(LANE, KIND)                                                           \
  template <class To, class From>                                                          \
  VORX_FUNCTION enable_if_lane<To, LANE> converted(From x, rounding r, saturation s) {     \
    if (s == saturation::on) {                                                             \
      VORX_IN_ROUNDING(cvtfpto##KIND, sat, (x))                                            \
    }                                                                                      \
    VORX_IN_ROUNDING(cvtfpto##KIND, nosat, (x))                                            \
  }                                                                                        \
  template <class To, class From>                                                          \
  VORX_FUNCTION enable_if_lane<From, LANE, To> converted(From n, rounding r, saturation) { \
    VORX_IN_ROUNDING(cvt##KIND##tofp, , <lane_of<To>>(n))                                  \
  }
template <class Vector, class Lane, class Type = Vector>
using enable_if_lane = std::enable_if_t<std::is_same_v<lane_of<Vector>, Lane>, Type>;
VORX_INTEGER(int32_t, i32)
VORX_INTEGER(uint32_t, u32)
VORX_INTEGER(int64_t, i64)
VORX_INTEGER(uint64_t, u64)
#undef VORX_INTEGER
#undef VORX_IN_ROUNDING

}  // namespace detail

// To floating point to nearest, to integers toward zero, unless the call says otherwise. Rounding and saturation choose the entry
// point when the program is compiled, if they are known then.
template <class To, class From>
VORX_FUNCTION To convert(From x, rounding r = std::is_integral_v<lane_of<To>> ? rounding::toward_zero : rounding::to_nearest,
                         saturation s = saturation::off) {
  static_assert(lanes_of<To> == lanes_of<From>, "a conversion keeps the number of lanes");
  static_assert(std::is_integral_v<lane_of<To>> != std::is_integral_v<lane_of<From>>,
                "conversions are between floating point and integers");
  return detail::converted<To>(x, r, s);
}

}  // namespace vorx
