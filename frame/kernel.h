// What a kernel is: one function for one element type and one accuracy, on one register of lanes (four floats or two doubles).
//
//   struct exp_f32 : kernel<f32, exp_f32_constants> {
//     static f32x4 path(f32x4 x, const constants& k);      the vector path; returns `two<A, B>` where there are two results
//     static i32x4 special(f32x4 x, const constants& k);   optional: the lane test, in the sign bit of the lane
//     static int rare(const float* x, float* result);      with `special`: one lane, exactly; returns a status
//   };
//
// A kernel knows neither widths nor registers nor symbols: entry.h maps it over them. What a lane's result is depends on nothing
// but that lane's arguments, with one exception. The choice between two paths, both good for any ordinary lane, may be made for
// the whole vector: with
//
//     static constexpr bool whole_vector = true;                  said for catalogue.json and the tools
//     static i32x4 large(f32x4 x, const constants& k);            in the sign bit of the lane
//     static f32x4 large_path(f32x4 x);                           out of line, one copy for all widths
//
// one lane that is large sends all lanes through the large path. `special` is then asked there only, so the path must by itself
// be right for every lane that is not large. A kernel may name another one, of the same bits, for some width:
//
//     template <int width> using at = std::conditional_t<width == 2, log2_f64_in_line, log2_f64>;
#pragma once

#include <type_traits>

#include "frame/constants.h"
#include "frame/convention.h"
#include "frame/simd.h"

namespace vorx {

// Element types, as template arguments.
struct f32 {
  using scalar = float;
  using integer = uint32_t;
  using vector = f32x4;
  using integer_vector = i32x4;
  using constant = rep32;
  static constexpr element id = element::f32;
  static constexpr int lanes = 4;  // of one register
};
struct f64 {
  using scalar = double;
  using integer = uint64_t;
  using vector = f64x2;
  using integer_vector = i64x2;
  using constant = rep64;
  static constexpr element id = element::f64;
  static constexpr int lanes = 2;
};

// A replicated bit pattern: the first for f32, the second for f64. For kernels that are one template for both types.
template <class E>
consteval typename E::constant pattern(uint32_t f32_bits, uint64_t f64_bits) {
  if constexpr (E::lanes == 4)
    return bits32(f32_bits);
  else
    return bits64(f64_bits);
}

// The kernel at a width: K, unless it names another one.
template <class K, int W>
struct kernel_at {
  using type = K;
};
template <class K, int W>
requires requires { typename K::template at<W>; }
struct kernel_at<K, W> {
  using type = typename K::template at<W>;
};

// What a rare-case routine says about its result. Kernels drop it.
enum status : int { ordinary = 0, domain_error = 1, singularity = 2, overflow = 3, underflow = 4 };

// Two results of one step.
template <class A, class B>
struct two {
  A first;
  B second;
};

// Two registers of 64-bit integers, the counterpart of four float lanes.
struct i64x4 {
  i64x2 low, high;
};

struct no_constants {};

// The base of every kernel.
template <class E, class C = no_constants>
struct kernel {
  using type = E;
  using constants = C;
};

template <class K>
concept has_lane_test = requires {
  &K::special;
};
template <class K>
concept has_large_path = requires {
  &K::large_path;
};

// A kernel whose lane test needs most of the path says so by a member `test_on_path`: its wide entry points run both together.
template <class K>
concept has_test_on_path = requires {
  K::test_on_path;
};

// Where such a kernel is written in two halves, the test sees to it that nothing is computed twice: `first_half(x..., k)` returns
// what is known when the lane test is, that in a member `flags`, and `second_half(that, k)` the result.
template <class K>
concept in_two_halves = requires {
  &K::first_half;
};

// A float kernel that works in double precision, on the lower two lanes and then on the upper two, may have the first of these as
// a member `lower_half`, with the parameters of `path`: the entry points of one and two lanes take it.
template <class K>
concept has_lower_half = requires {
  &K::lower_half;
};

// A kernel whose lane test flags every lane says so by a member `every_lane_special`: its entry points skip path and test.
template <class K>
concept always_special = requires {
  K::every_lane_special;
};

// One read-only copy of each constants struct, for all widths.
template <class C>
inline constexpr C constant_pool{};

// Takes the address of the constants out of the compiler's sight, so that they stay memory operands: it would otherwise move
// them to registers and spill those.
template <class C>
VORX_INLINE const C* hide(const C* k) {
  asm volatile("" : "+r"(k));
  return k;
}

// The constants once more, for what shall come after a value is ready: the compiler neither mingles the two parts nor keeps
// constants of the first in registers.
template <class V, class C>
VORX_INLINE const C& behind(V& value, const C& constants) {
  const C* k = &constants;
  asm volatile("" : "+r"(k), "+x"(value.v));
  return *k;
}

// One register step of an argument or result, by kind; and the type of one of its lanes.
template <kind K, class E>
struct step {
  using type = typename E::vector;
  using lane = typename E::scalar;
};
template <class E>
struct step<kind::i32, E> {
  using type = i32x4;  // double kernels use lanes 0 and 1
  using lane = int32_t;
};
template <class E>
struct step<kind::u32, E> : step<kind::i32, E> {};
template <class E>
struct step<kind::i64, E> {
  using type = std::conditional_t<E::lanes == 4, i64x4, i64x2>;
  using lane = int64_t;
};
template <class E>
struct step<kind::u64, E> : step<kind::i64, E> {};
template <class E>
struct step<kind::bits, E> {
  using type = typename E::integer_vector;
  using lane = typename E::integer;
};

// Keeps the compiler from computing with a value at compile time: arithmetic on it happens, and raises its flags, at run time.
template <class T>
VORX_INLINE T opaque(T a) {
  asm volatile("" : "+x"(a));
  return a;
}

}  // namespace vorx
