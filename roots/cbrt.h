// cbrt(x): the real cube root, from a table of the roots of the middles of intervals. Native: the bits of x divided by -3 give an
// estimate of x^(-1/3), and polynomials correct it.
#pragma once

#include "roots/cube_roots.h"
#include "tables/cbrtd_tab.h"
#include "tables/cbrtf_tab.h"

namespace vorx {

struct cbrt_f32_constants : cube_root_f32_constants {
  // (1 + u)^(1/3) - 1 on |u| <= 1/65, binomial: absolute error 2^-32.8 (tables/fits/polynomials.sollya)
  rep32 c4 = c(0xbd288f47, -0.0411522649f);
  rep32 c3 = c(0x3d7cd6ea, 0.0617283955f);
  rep32 c2 = c(0xbde38e39, -0.111111112f);
  rep32 c1 = c(0x3eaaaaab, 0.333333343f);
  std::array<float, 192> table = cbrtf_tab;
};

struct cbrt_f64_constants : cube_root_f64_constants {
  // ((1 + u)^(1/3) - 1) / u, relative error 2^-52.2 (tables/fits/cbrt_f64.sollya)
  rep64 c7 = c(0x3f937a08bb6a3d76, 0.01902021068468459);
  rep64 c6 = c(0xbf980ac5a22a37b9, -0.023478591940651692);
  rep64 c5 = c(0x3f9ee710caea5584, 0.030178320298167374);
  rep64 c4 = c(0xbfa511e8cc07a6fa, -0.041152262598030690);
  rep64 c3 = c(0x3faf9add3c0e1908, 0.061728395062390417);
  rep64 c2 = c(0xbfbc71c71c71cd94, -0.11111111111113409);
  rep64 c1 = c(0x3fd5555555555555, 0.33333333333333331);
  std::array<double, 384> table = cbrtd_tab;
};

// Accurate: float 0.51 ULP, double 0.52 ULP, also of negative numbers. cbrt(+-0) = +-0, cbrt(+-inf) = +-inf, NaN for NaN.
template <class E, class C>
struct cbrt_kernel : kernel<E, C> {
  using typename kernel<E, C>::constants;
  using V = typename E::vector;
  using T = typename E::scalar;
  static constexpr double max_ulp = E::lanes == 4 ? 0.52 : 0.525;
  static constexpr T seams[] = {E::lanes == 4 ? T(0x1p-126) : T(0x1p-1022)};

  static V path(V x, const constants& k) {
    auto [root, third] = cube_root(x, k);
    return root * as_float((third << format<E>::fraction_bits) | as_int(x & k.sign));
  }
  static i32x4 special(V x, const constants& k) { return not_normal(x, k); }
  static int rare(const T* x, T* result) {
    if (is_zero_or_not_finite(*x)) return *result = *x + *x, ordinary;
    return cube_root_of_subnormal<cbrt_kernel, -1>(*x, result);
  }
};
using cbrt_f32 = cbrt_kernel<f32, cbrt_f32_constants>;
using cbrt_f64 = cbrt_kernel<f64, cbrt_f64_constants>;

struct cbrt_f32_native_constants : reciprocal_cube_root_estimate_constants<f32> {
  // w^(-2/3), relative error 2^-13.5 (tables/fits/cbrt_native.sollya)
  rep32 c2 = c(0x3e51aa40, 0.204751015f);
  rep32 c1 = c(0xbf7444ea, -0.954176545f);
  rep32 c0 = c(0x3fdde8ad, 1.73366320f);
};

// Native: relative error 8.3e-5 for normal x; +-0 for +-0.
struct cbrt_f32_native : kernel<f32, cbrt_f32_native_constants> {
  static constexpr double max_ulp = 1385;
  static f32x4 path(f32x4 x, const constants& k) {
    f32x4 r = estimate_reciprocal_cube_root(x, k);
    f32x4 s = x * r * r, w = s * r;
    return s * horner(w, k.c2, k.c1, k.c0);
  }
};

struct cbrt_f64_native_constants : reciprocal_cube_root_f64_constants {
  // w^(-2/3) for the second w, relative error 2^-37.8 (tables/fits/cbrt_native.sollya)
  rep64 d1 = c(0xbfe555555555f35b, -0.66666666667115793);
  rep64 d0 = c(0x3ffaaaaaaaab40ca, 1.6666666666752001);
};

// Native: relative error 4.1e-12 for normal x; +-0 for +-0.
struct cbrt_f64_native : kernel<f64, cbrt_f64_native_constants> {
  static constexpr double max_ulp = 3.65e4;
  static f64x2 path(f64x2 x, const constants& k) {
    f64x2 r = refined_reciprocal_cube_root(x, k);
    f64x2 s = x * r * r, w = s * r;
    return s * horner(w, k.d1, k.d0);
  }
};

}  // namespace vorx
