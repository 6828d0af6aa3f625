// atan(x), in radians.
#pragma once

#include "trig/arctangent.h"
#include "trig/arctangent_native.h"

namespace vorx {

struct atan_f32_constants {
  rep32 magnitude = bits32(0x7fffffff);
  rep32 sign = bits32(0x80000000);
  rep32 one = c(0x3f800000, 1.0f);
  rep32 half_pi = c(0x3fc90fdb, 1.57079637f);
  // atan u on |u| <= 1: relative error 2^-23.9 (tables/fits/polynomials.sollya)
  rep32 a8 = c(0x3b3ac537, 0.00284988969f);
  rep32 a7 = c(0xbc83a25c, -0.0160686299f);
  rep32 a6 = c(0x3d2edd4e, 0.0426915213f);
  rep32 a5 = c(0xbd99b01e, -0.0750429481f);
  rep32 a4 = c(0x3dd9ed24, 0.106409341f);
  rep32 a3 = c(0xbe117200, -0.142036438f);
  rep32 a2 = c(0x3e4cb974, 0.199926198f);
  rep32 a1 = c(0xbeaaaa53, -0.333330721f);
};

// Accurate: 3.22 ULP. atan |x| = pi/2 - atan(1/|x|) above 1. No lane is special: atan(+-0) = +-0, atan(+-inf) = +-pi/2, NaN for
// NaN.
struct atan_f32 : kernel<f32, atan_f32_constants> {
  static constexpr double max_ulp = 3.23;
  static constexpr float seams[] = {-1.0f, 1.0f};

  static f32x4 path(f32x4 x, const constants& k) {
    f32x4 a = x & k.magnitude, s = x & k.sign;
    f32x4 u = min(a, k.one) / max(k.one, a);  // 1 / NaN: the order of the operands keeps the NaN
    i32x4 big = as_int(a) > as_int(k.one);    // a NaN too
    f32x4 c = (as_float(big) & k.half_pi) | s;
    f32x4 v = u ^ (as_float(big) & k.sign) ^ s;
    return v * arctangent_factor(u * u, k) + c;
  }
};

template <class Unit>
struct arctangent_f64_constants : Unit, arctangent_index_f64 {
  rep64 magnitude = bits64(0x7fffffffffffffff);
  rep64 sign = bits64(0x8000000000000000);
  rep64 one = c(0x3ff0000000000000, 1.0);
  rep64 limit = c(0x43f0000000000000, 0x1p64);  // as good as infinity; keeps products with c finite
};

template <class Unit>
struct arctangent_f64_path : kernel<f64, arctangent_f64_constants<Unit>> {
  using typename kernel<f64, arctangent_f64_constants<Unit>>::constants;
  static f64x2 path(f64x2 x, const constants& k) {
    f64x2 a = x & k.magnitude;
    auto [hi, lo, c] = k.rows_of(a, Unit::arctangents);
    a = min(as_float(k.limit), a);  // keeps a NaN
    f64x2 t = (a - c) / (a * c + k.one);
    f64x2 y = k.sum(hi, t, arctangent_rest(t, k) + lo);
    return y ^ (x & k.sign);
  }
};

// Accurate: 0.56 ULP. Special results as for float.
struct atan_f64 : arctangent_f64_path<angle_in_radians_f64> {
  static constexpr double max_ulp = 0.58;
  static constexpr double seams[] = {-0x1.f8p3, -0x1.f8p-5, 0x1.f8p-5, 0x1.f8p3};
};

struct atan_f32_native : native_arctangent_f32<native_arctangent_in_radians_f32> {
  static constexpr double max_ulp = 3620;
};
struct atan_f64_native : native_arctangent_f64<native_arctangent_in_radians_f64> {
  static constexpr double max_ulp = 2.66e6;
};

}  // namespace vorx
