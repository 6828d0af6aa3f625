// What cbrt and rcbrt share. |x| = 2^(3n) 2^rem m with rem in {0, 1, 2} and m = c (1 + u) in [1, 2), c the middle of one of 32
// intervals; the root of 2^rem c, or its reciprocal, as head and tail from a table, and a polynomial in u. The sign is carried
// into the scale 2^n.
#pragma once

#include "exact/fields.h"

namespace vorx {

// n and rem without a division: the biased exponent, moved by a multiple of 3, times 21846 / 2^16 rounded down. An exponent of 0,
// which only zeros and subnormal numbers have, picks a row of the table as well.
struct cube_exponent {
  i32x4 third, rem;  // n and the bias of the type; rem
};
VORX_INLINE cube_exponent divide_exponent_by_three(i32x4 biased, const auto& k) {
  i32x4 moved = biased + k.exponent_shift;
  i32x4 third = multiply_high_words(moved, k.one_third);
  return {third, moved - third - (third + third)};
}

template <class E>
struct cube_root_constants : normal_constants<E> {
  rep32 exponent_shift = bits32(2 * format<E>::bias);
  rep32 one_third = bits32(21846);
  typename E::constant sign = pattern<E>(0x80000000, 0x8000000000000000);
};

struct cube_root_f32_constants : cube_root_constants<f32> {
  rep32 row = bits32(31 << 3);
  rep32 significand = bits32(0x007fffff);
  rep32 minus_one = c(0xbf800000, -1.0f);
  rep32 interval = bits32(0x007e0000);
  rep32 minus_first_middle = c(0xbf820000, -1.015625f);
  rep32 one = c(0x3f800000, 1.0f);
};

// root (1 + u)^(+-1/3), to be scaled by 2^(+-n), and n with the bias.
struct cube_root_f32_parts {
  f32x4 root;
  i32x4 third;
};
VORX_INLINE cube_root_f32_parts cube_root(f32x4 x, const auto& k) {
  i32x4 a = as_int(x) & k.magnitude;
  auto [third, rem] = divide_exponent_by_three(shift_right_logical(a, 23), k);
  i32x4 offset = (rem << 8) + (shift_right_logical(a, 15) & k.row);
  auto [hi, lo] = gather_pairs(k.table.data(), offset);

  f32x4 minus_m = (x & k.significand) | k.minus_one, minus_c = (x & k.interval) | k.minus_first_middle;
  f32x4 u = (minus_m - minus_c) * (k.one / minus_c);  // the quotient has the bits that a table of -1/c would have
  return {(horner(u, k.c4, k.c3, k.c2, k.c1) * (u * hi) + lo) + hi, third};
}

struct cube_root_f64_constants : cube_root_constants<f64> {
  rep64 row = bits64(31 << 5);
  rep64 significand = bits64(0x000fffffffffffff);
  rep64 one = c(0x3ff0000000000000, 1.0);
};

struct cube_root_f64_parts {
  f64x2 root;
  i64x2 third;
};
VORX_INLINE cube_root_f64_parts cube_root(f64x2 x, const auto& k) {
  i64x2 a = as_int(x) & k.magnitude;
  auto [third, rem] = divide_exponent_by_three(as_i32(shift_right_logical(a, 52)), k);
  i32x4 offset = as_i32((as_i64(rem) << 10) + (shift_right_logical(a, 42) & k.row));
  auto low = reinterpret_cast<const double*>(row_address<0>(k.table.data(), offset, 0));
  auto high = reinterpret_cast<const double*>(row_address<2>(k.table.data(), offset, 0));
  f64x2 a0 = load_aligned(low), b0 = load_aligned(high), a1 = load_aligned(low + 2), b1 = load_aligned(high + 2);
  f64x2 hi = lower_lanes(a0, b0), lo = upper_lanes(a0, b0);

  f64x2 m = (x & k.significand) | k.one;
  f64x2 u = (m - lower_lanes(a1, b1)) * upper_lanes(a1, b1);  // the difference is exact
  return {(horner(u, k.c7, k.c6, k.c5, k.c4, k.c3, k.c2, k.c1) * (u * hi) + lo) + hi, as_i64(third)};
}

template <class T>
VORX_INLINE bool is_zero_or_not_finite(T x) {
  return x == 0 || is_not_finite(bits_of(x));
}
// The result of kernel K for a subnormal number, by its path: scaled by a power of 8, and the root scaled back exactly.
template <class K, int direction, class T>
VORX_INLINE int cube_root_of_subnormal(T x, T* result) {
  constexpr int n = sizeof(T) == 4 ? 8 : 18;
  auto root = K::path(all(x * power_of_two<T>(3 * n)), constant_pool<typename K::constants>);
  return *result = root.v[0] * power_of_two<T>(direction * n), ordinary;
}

// ---- native: r close to x^(-1/3), with the sign of x ----

// The bits of |x| as a number, times -1/3, and a constant that makes w = x r^3 cover [1.333, 1.580]: no other one makes the ratio
// of the ends smaller. Doubles do this on their high words; what is in the low words of r does not matter.
template <class E>
struct reciprocal_cube_root_estimate_constants {
  typename E::constant magnitude = pattern<E>(0x7fffffff, 0x7fffffffffffffff);
  rep32 minus_one_third = c(0xbeaaaaab, -0.333333343f);
  rep32 bits_at_zero = E::lanes == 4 ? c(0x4ea971c0, 1421402112.0f) : c(0x4eaa838d, 1430374016.0f);
};
VORX_INLINE i32x4 minus_one_third_of_bits(i32x4 a, const auto& k) {
  return to_int(to_float(a) * k.minus_one_third + k.bits_at_zero);
}
VORX_INLINE f32x4 estimate_reciprocal_cube_root(f32x4 x, const reciprocal_cube_root_estimate_constants<f32>& k) {
  f32x4 a = x & k.magnitude;
  return as_float(minus_one_third_of_bits(as_int(a), k)) | (x ^ a);
}

struct reciprocal_cube_root_f64_constants : reciprocal_cube_root_estimate_constants<f64> {
  // w^(-1/3), relative error 2^-19.8 (tables/fits/cbrt_native.sollya)
  rep64 c3 = c(0xbfa96b7e204bf865, -0.049648229067302187);
  rep64 c2 = c(0x3fd3d3e4b5dbf6c8, 0.30980794677439549);
  rep64 c1 = c(0xbfe93a8c79248034, -0.7883970609727897);
  rep64 c0 = c(0x3ff86d3e60a35321, 1.5266708159371734);
};
VORX_INLINE f64x2 refined_reciprocal_cube_root(f64x2 x, const reciprocal_cube_root_f64_constants& k) {
  f64x2 a = x & k.magnitude;
  f64x2 r = as_float(as_i64(minus_one_third_of_bits(words(a), k))) | (x ^ a);
  return r * horner(x * r * r * r, k.c3, k.c2, k.c1, k.c0);
}

}  // namespace vorx
