/* Lanes from and to memory, for C. Names as those of the entry points: the function, the suffix that a literal of the lane's type
 * has (f float, nothing double; i int32_t, u uint32_t, l int64_t, ul uint64_t), the number of lanes:
 *
 *   vorx_float8 x = vorx_loadf8(p);             eight floats from memory of any alignment
 *   vorx_storef8(p, x);                         and back
 *   x = vorx_loadnf8(p, n, 1.0f);               the first n lanes from memory, 1 in the others; all eight if n is 8 or more
 *   vorx_storenf8(p, x, n);                     the first n lanes to memory, not a byte more
 *   x = vorx_splatf8(2.0f);                     one value in every lane
 *
 * Three lanes are three in memory. A loop over any number of elements needs nothing else:
 *
 *   for (i = 0; i < n; i += 8) vorx_storenf8(y + i, vorx_expf8(vorx_loadnf8(x + i, n - i, 1.0f)), n - i);
 *
 * The value for the other lanes should be an ordinary argument of the function: log of 0 raises a flag and takes the rare path.
 * vorx/array.h has such loops ready-made. */
#ifndef VORX_MEMORY_H
#define VORX_MEMORY_H

#include <stddef.h>

#include "vorx/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* DO(J) for each register; full registers are moved one by one, which keeps vectors out of memory in gcc, too. */
#define VORX_EACH_1(DO, J) DO(J)
#define VORX_EACH_2(DO, J) VORX_EACH_1(DO, J) VORX_EACH_1(DO, J + 1)
#define VORX_EACH_4(DO, J) VORX_EACH_2(DO, J) VORX_EACH_2(DO, J + 2)
#define VORX_EACH_8(DO, J) VORX_EACH_4(DO, J) VORX_EACH_4(DO, J + 4)
#define VORX_SET(J) x.xmm[J] = all;
#define VORX_LOAD(J) __builtin_memcpy(&x.xmm[J], from + (J) * (16 / sizeof *from), 16);
#define VORX_STORE(J) __builtin_memcpy(to + (J) * (16 / sizeof *to), &x.xmm[J], 16);

#define VORX_MEMORY(VECTOR, SUFFIX, LANE, LANES, REGISTERS, ALL)                     \
  VORX_FUNCTION VECTOR vorx_splat##SUFFIX(LANE value) {                              \
    __m128 all = ALL(value);                                                         \
    VECTOR x;                                                                        \
    VORX_EACH_##REGISTERS(VORX_SET, 0) return x;                                     \
  }                                                                                  \
  VORX_FUNCTION VECTOR vorx_loadn##SUFFIX(const LANE* from, size_t n, LANE others) { \
    VECTOR x = vorx_splat##SUFFIX(others);                                           \
    __builtin_memcpy(&x, from, (n < LANES ? n : LANES) * sizeof(LANE));              \
    return x;                                                                        \
  }                                                                                  \
  VORX_FUNCTION void vorx_storen##SUFFIX(LANE* to, VECTOR x, size_t n) {             \
    __builtin_memcpy(to, &x, (n < LANES ? n : LANES) * sizeof(LANE));                \
  }
/* Vectors that fill their registers. */
#define VORX_FULL(VECTOR, SUFFIX, LANE, LANES, REGISTERS, ALL) \
  VORX_MEMORY(VECTOR, SUFFIX, LANE, LANES, REGISTERS, ALL)     \
  VORX_FUNCTION VECTOR vorx_load##SUFFIX(const LANE* from) {   \
    VECTOR x;                                                  \
    VORX_EACH_##REGISTERS(VORX_LOAD, 0) return x;              \
  }                                                            \
  VORX_FUNCTION void vorx_store##SUFFIX(LANE* to, VECTOR x) { VORX_EACH_##REGISTERS(VORX_STORE, 0) }
/* Vectors that do not; beyond the last lane they get 0. */
#define VORX_PART(VECTOR, SUFFIX, LANE, LANES, REGISTERS, ALL)                           \
  VORX_MEMORY(VECTOR, SUFFIX, LANE, LANES, REGISTERS, ALL)                               \
  VORX_FUNCTION VECTOR vorx_load##SUFFIX(const LANE* from) {                             \
    __m128 all = _mm_setzero_ps();                                                       \
    VECTOR x;                                                                            \
    VORX_EACH_##REGISTERS(VORX_SET, 0) __builtin_memcpy(&x, from, LANES * sizeof(LANE)); \
    return x;                                                                            \
  }                                                                                      \
  VORX_FUNCTION void vorx_store##SUFFIX(LANE* to, VECTOR x) { __builtin_memcpy(to, &x, LANES * sizeof(LANE)); }
#define VORX_MEMORY_OF_4_BYTES(NAME, S2, S3, S4, S8, S16, LANE, ALL) \
  VORX_PART(vorx_##NAME##2, S2, LANE, 2, 1, ALL)                     \
  VORX_PART(vorx_##NAME##3, S3, LANE, 3, 1, ALL)                     \
  VORX_FULL(vorx_##NAME##4, S4, LANE, 4, 1, ALL)                     \
  VORX_FULL(vorx_##NAME##8, S8, LANE, 8, 2, ALL)                     \
  VORX_FULL(vorx_##NAME##16, S16, LANE, 16, 4, ALL)
#define VORX_MEMORY_OF_8_BYTES(NAME, S2, S3, S4, S8, S16, LANE, ALL) \
  VORX_FULL(vorx_##NAME##2, S2, LANE, 2, 1, ALL)                     \
  VORX_PART(vorx_##NAME##3, S3, LANE, 3, 2, ALL)                     \
  VORX_FULL(vorx_##NAME##4, S4, LANE, 4, 2, ALL)                     \
  VORX_FULL(vorx_##NAME##8, S8, LANE, 8, 4, ALL)                     \
  VORX_FULL(vorx_##NAME##16, S16, LANE, 16, 8, ALL)

#define VORX_ALL_DOUBLE(X) _mm_castpd_ps(_mm_set1_pd(X))
#ifdef __cplusplus
#define VORX_ALL_INT(X) _mm_castsi128_ps(_mm_set1_epi32(static_cast<int32_t>(X)))
#define VORX_ALL_LONG(X) _mm_castsi128_ps(_mm_set1_epi64x(static_cast<int64_t>(X)))
#else
#define VORX_ALL_INT(X) _mm_castsi128_ps(_mm_set1_epi32((int32_t)(X)))
#define VORX_ALL_LONG(X) _mm_castsi128_ps(_mm_set1_epi64x((int64_t)(X)))
#endif
VORX_MEMORY_OF_4_BYTES(float, f2, f3, f4, f8, f16, float, _mm_set1_ps)
VORX_MEMORY_OF_4_BYTES(int, i2, i3, i4, i8, i16, int32_t, VORX_ALL_INT)
VORX_MEMORY_OF_4_BYTES(uint, u2, u3, u4, u8, u16, uint32_t, VORX_ALL_INT)
VORX_MEMORY_OF_8_BYTES(double, 2, 3, 4, 8, 16, double, VORX_ALL_DOUBLE)
VORX_MEMORY_OF_8_BYTES(long, l2, l3, l4, l8, l16, int64_t, VORX_ALL_LONG)
VORX_MEMORY_OF_8_BYTES(ulong, ul2, ul3, ul4, ul8, ul16, uint64_t, VORX_ALL_LONG)

#undef VORX_ALL_DOUBLE
#undef VORX_ALL_INT
#undef VORX_ALL_LONG
#undef VORX_MEMORY_OF_4_BYTES
#undef VORX_MEMORY_OF_8_BYTES
#undef VORX_FULL
#undef VORX_PART
#undef VORX_MEMORY
#undef VORX_SET
#undef VORX_LOAD
#undef VORX_STORE
#undef VORX_EACH_1
#undef VORX_EACH_2
#undef VORX_EACH_4
#undef VORX_EACH_8

#ifdef __cplusplus
}
#endif

#endif
