/* Vector types of the callers' headers, in C and C++.
 *
 * vorx_float8 is eight floats in two SSE registers: x.lane[i] is lane i (in C++ also x[i]), x.xmm[j] register j. Initialise lanes
 * with {{a, b, ...}}. Types of two and three lanes occupy whole registers; what their registers carry beyond the last lane is
 * ignored. vorx_long and vorx_ulong types have lanes of 64 bits, as in OpenCL C. One lane is float, double or an integer.
 * In C++ vorx_float8 is vorx::vec<float, 8>, of the same layout. */
#ifndef VORX_TYPES_H
#define VORX_TYPES_H

#if !defined(__i386__) || !defined(__SSE2__) || !defined(__GNUC__)
#error "vorx: the library is for 32-bit x86; compile with gcc or clang and -m32 -msse4.1"
#endif
#if defined(__cplusplus) && __cplusplus < 201103L
#error "vorx: vorx/vorx.h needs C++11 or later, vorx/vorx.hpp C++17"
#endif

#include <emmintrin.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C++" {
namespace vorx {

namespace detail {
template <class Lane>
struct is_lane {
  static constexpr bool value = false;
};
}  // namespace detail

/* So many lanes of float, double, int32_t, uint32_t, int64_t or uint64_t. */
template <class Lane, int Lanes>
union vec {
  static_assert(detail::is_lane<Lane>::value, "lanes are float, double, int32_t, uint32_t, int64_t or uint64_t");
  static_assert(Lanes == 2 || Lanes == 3 || Lanes == 4 || Lanes == 8 || Lanes == 16, "vectors have 2, 3, 4, 8 or 16 lanes");
  Lane lane[static_cast<unsigned>(Lanes)];
  __m128 xmm[(Lanes * sizeof(Lane) + 15) / 16];
  Lane& operator[](int i) { return lane[i]; }
  constexpr const Lane& operator[](int i) const { return lane[i]; }
};

}  // namespace vorx
}
#define VORX_VECTOR(NAME, LANE, LANES, REGISTERS) typedef ::vorx::vec<LANE, LANES> vorx_##NAME##LANES;
#define VORX_LANE(LANE)                 \
  extern "C++" {                        \
  template <>                           \
  struct vorx::detail::is_lane<LANE> {  \
    static constexpr bool value = true; \
  };                                    \
  }
#else
#define VORX_VECTOR(NAME, LANE, LANES, REGISTERS) \
  typedef union vorx_##NAME##LANES {              \
    LANE lane[LANES];                             \
    __m128 xmm[REGISTERS];                        \
  } vorx_##NAME##LANES;
#define VORX_LANE(LANE)
#endif

#define VORX_VECTORS_OF_4_BYTES(NAME, LANE) \
  VORX_LANE(LANE)                           \
  VORX_VECTOR(NAME, LANE, 2, 1)             \
  VORX_VECTOR(NAME, LANE, 3, 1)             \
  VORX_VECTOR(NAME, LANE, 4, 1)             \
  VORX_VECTOR(NAME, LANE, 8, 2)             \
  VORX_VECTOR(NAME, LANE, 16, 4)
#define VORX_VECTORS_OF_8_BYTES(NAME, LANE) \
  VORX_LANE(LANE)                           \
  VORX_VECTOR(NAME, LANE, 2, 1)             \
  VORX_VECTOR(NAME, LANE, 3, 2)             \
  VORX_VECTOR(NAME, LANE, 4, 2)             \
  VORX_VECTOR(NAME, LANE, 8, 4)             \
  VORX_VECTOR(NAME, LANE, 16, 8)

VORX_VECTORS_OF_4_BYTES(float, float)
VORX_VECTORS_OF_4_BYTES(int, int32_t)
VORX_VECTORS_OF_4_BYTES(uint, uint32_t)
VORX_VECTORS_OF_8_BYTES(double, double)
VORX_VECTORS_OF_8_BYTES(long, int64_t)
VORX_VECTORS_OF_8_BYTES(ulong, uint64_t)

#undef VORX_VECTORS_OF_4_BYTES
#undef VORX_VECTORS_OF_8_BYTES
#undef VORX_LANE
#undef VORX_VECTOR

/* Functions of these headers are always inlined: so their vectors stay in registers on the way to an entry point, and no object
 * file depends on how another compiler passes a vector by value. */
#ifdef __cplusplus
#define VORX_FUNCTION inline __attribute__((always_inline))
#else
#define VORX_FUNCTION static __inline__ __attribute__((always_inline, unused))
#endif

#endif
