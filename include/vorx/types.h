/* Vector types of the callers' headers, in C and C++.
 *
 * vorx_float8 is eight floats in two SSE registers: x.lane[i] is lane i (in C++ also x[i]), x.xmm[j] register j. Initialise lanes
 * with {{a, b, ...}}. Types of two and three lanes occupy whole registers; what their registers carry beyond the last lane is
 * ignored. vorx_long and vorx_ulong types have lanes of 64 bits, as in OpenCL C. One lane is float, double or an integer. */
#ifndef VORX_TYPES_H
#define VORX_TYPES_H

#if !defined(__i386__) || !defined(__SSE2__) || !defined(__GNUC__)
#error "vorx: the library is for 32-bit x86; compile with gcc or clang and -m32 -msse4.1"
#endif

#include <emmintrin.h>
#include <stdint.h>

#ifdef __cplusplus
#define VORX_LANE_ACCESS(LANE)                \
  LANE& operator[](int i) { return lane[i]; } \
  constexpr const LANE& operator[](int i) const { return lane[i]; }
#else
#define VORX_LANE_ACCESS(LANE)
#endif

#define VORX_VECTOR(NAME, LANE, LANES, REGISTERS) \
  typedef union vorx_##NAME##LANES {              \
    LANE lane[LANES];                             \
    __m128 xmm[REGISTERS];                        \
    VORX_LANE_ACCESS(LANE)                        \
  } vorx_##NAME##LANES;
#define VORX_VECTORS_OF_4_BYTES(NAME, LANE) \
  VORX_VECTOR(NAME, LANE, 2, 1)             \
  VORX_VECTOR(NAME, LANE, 3, 1)             \
  VORX_VECTOR(NAME, LANE, 4, 1)             \
  VORX_VECTOR(NAME, LANE, 8, 2)             \
  VORX_VECTOR(NAME, LANE, 16, 4)
#define VORX_VECTORS_OF_8_BYTES(NAME, LANE) \
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
#undef VORX_VECTOR
#undef VORX_LANE_ACCESS

/* Functions of these headers are always inlined: so their vectors stay in registers on the way to an entry point, and no object
 * file depends on how another compiler passes a vector by value. */
#ifdef __cplusplus
#define VORX_FUNCTION inline __attribute__((always_inline))
#else
#define VORX_FUNCTION static inline __attribute__((always_inline, unused))
#endif

#endif
