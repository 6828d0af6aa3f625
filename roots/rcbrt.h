// rcbrt(x) = 1 / cbrt(x), like cbrt with the reciprocal roots in the table.
#pragma once

#include "roots/cube_roots.h"
#include "tables/rcbrtd_tab.h"
#include "tables/rcbrtf_tab.h"

namespace vorx {

struct rcbrt_f32_constants : cube_root_f32_constants {
  // (1 + u)^(-1/3) - 1 on |u| <= 1/65, binomial: absolute error 2^-33.3 (tables/fits/polynomials.sollya)
  rep32 c4 = c(0x3e137d5e, 0.144032925f);
  rep32 c3 = c(0xbe30fcd7, -0.172839507f);
  rep32 c2 = c(0x3e638e39, 0.222222224f);
  rep32 c1 = c(0xbeaaaaab, -0.333333343f);
  rep32 twice_bias = bits32(254u << 23);
  std::array<float, 192> table = rcbrtf_tab;
};

struct rcbrt_f64_constants : cube_root_f64_constants {
  // ((1 + u)^(-1/3) - 1) / u, relative error 2^-49.9 (tables/fits/cbrt_f64.sollya)
  rep64 c7 = c(0xbfb9b6851139da12, -0.10044128103786701);
  rep64 c6 = c(0x3fbc6a49ab4e8cb1, 0.11099682266517409);
  rep64 c5 = c(0xbfbff4c3140b7658, -0.12482852210401896);
  rep64 c4 = c(0x3fc26fabaeabe394, 0.14403291729811640);
  rep64 c3 = c(0xbfc61f9add3c7d06, -0.17283950617363802);
  rep64 c2 = c(0x3fcc71c71c71d9e7, 0.22222222222235574);
  rep64 c1 = c(0xbfd5555555555555, -0.33333333333333331);
  rep64 twice_bias = bits64(2046ull << 52);
  std::array<double, 384> table = rcbrtd_tab;
};

// Accurate: float 0.51 ULP, double 0.55 ULP, also of negative numbers. rcbrt(+-0) = +-inf, rcbrt(+-inf) = +-0, NaN for NaN.
template <class E, class C>
struct rcbrt_kernel : kernel<E, C> {
  using typename kernel<E, C>::constants;
  using V = typename E::vector;
  using T = typename E::scalar;
  static constexpr double max_ulp = E::lanes == 4 ? 0.52 : 0.56;
  static constexpr T seams[] = {E::lanes == 4 ? T(0x1p-126) : T(0x1p-1022)};

  static V path(V x, const constants& k) {
    auto [root, third] = cube_root(x, k);
    return root * as_float((as_int(k.twice_bias) - (third << format<E>::fraction_bits)) | as_int(x & k.sign));
  }
  static i32x4 special(V x, const constants& k) { return not_normal(x, k); }
  static int rare(const T* x, T* result) {
    if (is_zero_or_not_finite(*x)) return *result = 1 / *x, *x == 0 ? singularity : ordinary;
    return cube_root_of_subnormal<rcbrt_kernel, 1>(*x, result);
  }
};
using rcbrt_f32 = rcbrt_kernel<f32, rcbrt_f32_constants>;
using rcbrt_f64 = rcbrt_kernel<f64, rcbrt_f64_constants>;

struct rcbrt_f32_native_constants : reciprocal_cube_root_estimate_constants<f32> {
  // w^(-1/3), relative error 2^-15.0 (tables/fits/cbrt_native.sollya)
  rep32 c2 = c(0x3dbe1770, 0.0928181410f);
  rep32 c1 = c(0xbef21cdc, -0.472876430f);
  rep32 c0 = c(0x3fafe049, 1.37403214f);
};

// Native: relative error 2.9e-5 for normal x; unspecified elsewhere.
struct rcbrt_f32_native : kernel<f32, rcbrt_f32_native_constants> {
  static constexpr double max_ulp = 435;
  static constexpr float domain[] = {0x1p-126f, 0x1.fffffep127f};
  static f32x4 path(f32x4 x, const constants& k) {
    f32x4 r = estimate_reciprocal_cube_root(x, k);
    return r * horner(x * r * r * r, k.c2, k.c1, k.c0);
  }
};

struct rcbrt_f64_native_constants : reciprocal_cube_root_f64_constants {
  // w^(-1/3) for the second w, relative error 2^-39.1 (tables/fits/cbrt_native.sollya)
  rep64 d1 = c(0xbfd555555555e065, -0.33333333333530951);
  rep64 d0 = c(0x3ff555555555948b, 1.3333333333369264);
};

// Native: relative error 1.7e-12 for normal x; unspecified elsewhere.
struct rcbrt_f64_native : kernel<f64, rcbrt_f64_native_constants> {
  static constexpr double max_ulp = 1.36e4;
  static constexpr double domain[] = {0x1p-1022, 0x1.fffffffffffffp1023};
  static f64x2 path(f64x2 x, const constants& k) {
    f64x2 r = refined_reciprocal_cube_root(x, k);
    return r * horner(x * r * r * r, k.d1, k.d0);
  }
};

}  // namespace vorx
