// The scalar side of the logarithms: special results, and one-lane logarithms for what the vector paths do not take.
#pragma once

#include <limits>

#include "frame/rare.h"
#include "tables/log1pd_tab.h"
#include "tables/logf_rare_tab.h"

namespace vorx {

template <class T>
VORX_INLINE bool is_positive_finite(T x) {
  return bits_of(x) - 1 < bits_of(std::numeric_limits<T>::infinity()) - 1;
}

// The logarithm of everything else: -inf for a zero, NaN for a negative number or -inf, +inf and NaN for themselves.
template <class T>
VORX_INLINE int special_logarithm(T x, T* result) {
  if (x == 0) return *result = pole<T>(), singularity;
  if (x < 0) return *result = invalid<T>(), domain_error;
  return *result = opaque(x) * x, ordinary;
}

// x = 2^k m for a positive finite float, ln m in double. The kernels need it where |ln x| > 81: there the error of the series,
// below 2^-42, is below 2^-47 of the logarithm. Near 1, k is 0.
struct scalar_split {
  double k, ln_m;
};
VORX_INLINE scalar_split split_float(float x) {
  uint64_t bits = bits_of(static_cast<double>(x));          // normal, a subnormal x too
  uint64_t centred = bits + (uint64_t(1) << (52 - 7 - 1));  // so that m is within half a step of a table point, from 1 - 2^-8 on
  int k = static_cast<int>(centred >> 52) - 1023;
  const logf_rare_row& row = logf_rare_tab[(centred >> 45) & 127];
  double m = from_bits(bits - (static_cast<uint64_t>(static_cast<uint32_t>(k)) << 52));

  double r = m * row.reciprocal - 1;  // exact: 24 bits times 24 bits; |r| < 2^-7.9
  double p = r + r * r * horner(r, 1.0 / 5, -1.0 / 4, 1.0 / 3, -1.0 / 2);
  return {static_cast<double>(k), (static_cast<double>(row.hi) + row.lo) + p};
}

// ln x = head + tail for a positive finite double: head a multiple of 2^-36, tail below 2^-9. For |ln x| > 700, where the kernels
// need it, head + tail is rounded correctly but for 2^-20 ULP.
struct ln_parts {
  double head, tail;
};
VORX_INLINE ln_parts ln_in_parts(double x) {
  int scaled = 0;
  if (x < scalar(0x0010000000000000, 2.2250738585072014e-308)) x *= power_of_two<double>(54), scaled = 54;
  uint64_t bits = bits_of(x);
  double e = static_cast<int>(bits >> 52) - scaled;

  double m = from_bits((bits & 0x000fffffffffffff) | 0x3f50000000000000);  // in [2^-10, 2^-9)
  int index = static_cast<int>(1 / m + 0.5);
  double j = index;
  double m_hi = from_bits(bits_of(m) & 0xfffffffffc000000);
  double r = (m_hi * j - 1) + (m - m_hi) * j;
  const log1pd_row& row = log1pd_tab[index - 512];
  return {e * scalar(0x3fe62e42fefa0000, 0.6931471805582987) + row.hi,  // exact
          (e * scalar(0x3d7cf79abc9e0000, 1.6465949582866463e-12) + row.lo) +
              (r + r * r * horner(r, 1.0 / 5, -1.0 / 4, 1.0 / 3, -1.0 / 2))};
}

}  // namespace vorx
