// Operators on the vector types, lane by lane as OpenCL C has them: + - * / on all lanes, % & | ^ ~ << >> on integers, each with
// a scalar on either side (2 * x: it becomes a lane, then a vector) and as a compound assignment. Comparisons give a mask, a
// vector of int32_t or int64_t (as wide as the lanes) with -1 where they hold and 0 elsewhere, for select, any, all and & | ^ ~.
//
// They are the compilers' own operations on registers: the same rounding as on scalars, nothing contracted unless the program is
// compiled for processors with fused operations (-mfma). What is undefined on scalars (signed integers that overflow, integers
// divided by 0, shifts by the width and more) is undefined in a lane.
#pragma once

#include <utility>

#include "vorx/vector.hpp"

namespace vorx {

namespace detail {

template <class Lane, class Type>
using for_all = std::enable_if_t<is_lane<Lane>::value, Type>;
template <class Lane, class Type>
using for_integers = std::enable_if_t<std::is_integral_v<Lane>, Type>;

// Arithmetic types that the C++ library's functions take as double: integers, float beside double.
template <class... Types>
using if_promoted =
    std::enable_if_t<((std::is_integral_v<Types> || std::is_same_v<Types, float> || std::is_same_v<Types, double>)&&...) &&
                         !(std::is_same_v<Types, float> && ...) && !(std::is_same_v<Types, double> && ...),
                     int>;

template <class Lane, int Lanes>
using mask = vec<std::conditional_t<sizeof(Lane) == 4, int32_t, int64_t>, Lanes>;

// A register whose lanes the compiler knows.
template <class Lane>
struct register_of {
  typedef Lane type __attribute__((vector_size(16)));
};
template <std::size_t J, class Lane, int Lanes>
VORX_FUNCTION typename register_of<Lane>::type operand_at(vec<Lane, Lanes> x) {
  return reinterpret_cast<typename register_of<Lane>::type>(x.xmm[J]);
}
template <std::size_t J>
VORX_FUNCTION int operand_at(int every_lane) {
  return every_lane;
}
template <std::size_t J, class Operation, class... Operands>
VORX_FUNCTION __m128 at(Operation operation, Operands... x) {
  return reinterpret_cast<__m128>(operation(operand_at<J>(x)...));
}
template <class Result, std::size_t... J, class Operation, class... Operands>
VORX_FUNCTION Result at_each(std::index_sequence<J...>, Operation operation, Operands... x) {
  Result r;
  ((r.xmm[J] = at<J>(operation, x...)), ...);
  return r;
}
// An operation on every register of its operands, which are vectors or one number for all lanes.
template <class Result, class Operation, class... Operands>
VORX_FUNCTION Result map(Operation operation, Operands... x) {
  return at_each<Result>(std::make_index_sequence<sizeof(Result) / 16>{}, operation, x...);
}

// What the registers of a vector carry beyond its last lane, as a mask of all bits.
template <class Lane, int Lanes>
VORX_FUNCTION __m128 beyond_last_lane() {
  constexpr int words = Lanes * static_cast<int>(sizeof(Lane)) / 4 % 4;
  return _mm_castsi128_ps(_mm_setr_epi32(0, words == 1 ? -1 : 0, words <= 2 ? -1 : 0, -1));
}

// A divisor has ones there, so that nothing is divided by zero.
template <class Lane, int Lanes>
VORX_FUNCTION vec<Lane, Lanes> divisor(vec<Lane, Lanes> x) {
  if constexpr (sizeof x != sizeof(Lane) * Lanes) {
    const __m128 beyond = beyond_last_lane<Lane, Lanes>(), ones = splat<vec<Lane, Lanes>>(1).xmm[0];
    __m128& last = x.xmm[sizeof x / 16 - 1];
    last = _mm_or_ps(_mm_andnot_ps(beyond, last), _mm_and_ps(beyond, ones));
  }
  return x;
}
template <class Lane, int Lanes>
VORX_FUNCTION vec<Lane, Lanes> operand(vec<Lane, Lanes> x) {
  return x;
}

}  // namespace detail

// Always inlined like the functions around them: no vector is passed in memory, without optimisation either.
#define VORX_LAMBDA(EXPRESSION, ...) \
  [](__VA_ARGS__) __attribute__((always_inline)) { return EXPRESSION; }

#define VORX_VECTOR_WITH_SCALARS(OP, ENABLED, RESULT)                                            \
  template <class T, int N>                                                                      \
  VORX_FUNCTION detail::ENABLED<T, RESULT<T, N>> operator OP(vec<T, N> a, detail::scalar<T> b) { \
    return a OP splat<vec<T, N>>(b);                                                             \
  }                                                                                              \
  template <class T, int N>                                                                      \
  VORX_FUNCTION detail::ENABLED<T, RESULT<T, N>> operator OP(detail::scalar<T> a, vec<T, N> b) { \
    return splat<vec<T, N>>(a) OP b;                                                             \
  }
#define VORX_OPERATOR(OP, SECOND, ENABLED, RESULT)                                               \
  template <class T, int N>                                                                      \
  VORX_FUNCTION detail::ENABLED<T, RESULT<T, N>> operator OP(vec<T, N> a, vec<T, N> b) {         \
    return detail::map<RESULT<T, N>>(VORX_LAMBDA(x OP y, auto x, auto y), a, detail::SECOND(b)); \
  }                                                                                              \
  VORX_VECTOR_WITH_SCALARS(OP, ENABLED, RESULT)
#define VORX_COMPOUND(OP, SCALAR)                                                      \
  template <class T, int N>                                                            \
  VORX_FUNCTION auto operator OP##=(vec<T, N>& a, vec<T, N> b)->decltype(a = a OP b) { \
    return a = a OP b;                                                                 \
  }                                                                                    \
  template <class T, int N>                                                            \
  VORX_FUNCTION auto operator OP##=(vec<T, N>& a, SCALAR b)->decltype(a = a OP b) {    \
    return a = a OP b;                                                                 \
  }
#define VORX_ARITHMETIC(OP, SECOND, ENABLED) \
  VORX_OPERATOR(OP, SECOND, ENABLED, vec)    \
  VORX_COMPOUND(OP, detail::scalar<T>)
#define VORX_SHIFT(OP)                                                                     \
  template <class T, int N>                                                                \
  VORX_FUNCTION detail::for_integers<T, vec<T, N>> operator OP(vec<T, N> a, vec<T, N> b) { \
    return detail::map<vec<T, N>>(VORX_LAMBDA(x OP y, auto x, auto y), a, b);              \
  }                                                                                        \
  template <class T, int N>                                                                \
  VORX_FUNCTION detail::for_integers<T, vec<T, N>> operator OP(vec<T, N> a, int b) {       \
    return detail::map<vec<T, N>>(VORX_LAMBDA(x OP y, auto x, int y), a, b);               \
  }                                                                                        \
  VORX_COMPOUND(OP, int)

VORX_ARITHMETIC(+, operand, for_all)
VORX_ARITHMETIC(-, operand, for_all)
VORX_ARITHMETIC(*, operand, for_all)
VORX_ARITHMETIC(/, divisor, for_all)
VORX_ARITHMETIC(%, divisor, for_integers)
VORX_ARITHMETIC(&, operand, for_integers)
VORX_ARITHMETIC(|, operand, for_integers)
VORX_ARITHMETIC(^, operand, for_integers)
VORX_SHIFT(<<)
VORX_SHIFT(>>)
VORX_OPERATOR(==, operand, for_all, detail::mask)
VORX_OPERATOR(!=, operand, for_all, detail::mask)
VORX_OPERATOR(<, operand, for_all, detail::mask)
VORX_OPERATOR(<=, operand, for_all, detail::mask)
VORX_OPERATOR(>, operand, for_all, detail::mask)
VORX_OPERATOR(>=, operand, for_all, detail::mask)

template <class T, int N>
VORX_FUNCTION vec<T, N> operator-(vec<T, N> a) {
  return detail::map<vec<T, N>>(VORX_LAMBDA(-x, auto x), a);
}
template <class T, int N>
VORX_FUNCTION detail::for_integers<T, vec<T, N>> operator~(vec<T, N> a) {
  return detail::map<vec<T, N>>(VORX_LAMBDA(~x, auto x), a);
}

// Masks for vectors of this type.
template <class Vector>
using mask_of = detail::mask<lane_of<Vector>, lanes_of<Vector>>;

// The lane of a where the mask's lane has its highest bit set, of b where it has not.
template <class T, int N>
VORX_FUNCTION vec<T, N> select(mask_of<vec<T, N>> mask, vec<T, N> a, vec<T, N> b) {
  return detail::map<vec<T, N>>(VORX_LAMBDA(m < 0 ? x : y, auto m, auto x, auto y), mask, a, b);
}
template <class T, int N>
VORX_FUNCTION vec<T, N> select(mask_of<vec<T, N>> mask, vec<T, N> a, detail::scalar<T> b) {
  return select(mask, a, splat<vec<T, N>>(b));
}
template <class T, int N>
VORX_FUNCTION vec<T, N> select(mask_of<vec<T, N>> mask, detail::scalar<T> a, vec<T, N> b) {
  return select(mask, splat<vec<T, N>>(a), b);
}
template <class T, class M, int N>
VORX_FUNCTION detail::for_all<T, vec<T, N>> select(vec<M, N> mask, T a, T b) {
  return select(mask, splat<vec<T, N>>(a), splat<vec<T, N>>(b));
}

namespace detail {
// Bit i is the highest bit of lane i.
template <class T, int N, std::size_t... J>
VORX_FUNCTION unsigned highest_bits(std::index_sequence<J...>, vec<T, N> x) {
  constexpr int in_register = static_cast<int>(16 / sizeof(T));
  const auto bits = [](__m128 r) __attribute__((always_inline)) {
    return static_cast<unsigned>(in_register == 4 ? _mm_movemask_ps(r) : _mm_movemask_pd(_mm_castps_pd(r)));
  };
  return ((bits(x.xmm[J]) << (static_cast<int>(J) * in_register)) | ...) & ((1U << N) - 1);
}
template <class T, int N>
VORX_FUNCTION for_integers<T, unsigned> highest_bits(vec<T, N> x) {
  return highest_bits(std::make_index_sequence<sizeof x / 16>{}, x);
}
}  // namespace detail

// Whether a mask's highest bit is set in any lane, in all lanes.
template <class T, int N>
VORX_FUNCTION bool any(vec<T, N> mask) {
  return detail::highest_bits(mask) != 0;
}
template <class T, int N>
VORX_FUNCTION bool all(vec<T, N> mask) {
  return detail::highest_bits(mask) == (1U << N) - 1;
}

#undef VORX_LAMBDA
#undef VORX_VECTOR_WITH_SCALARS
#undef VORX_OPERATOR
#undef VORX_COMPOUND
#undef VORX_ARITHMETIC
#undef VORX_SHIFT

}  // namespace vorx
