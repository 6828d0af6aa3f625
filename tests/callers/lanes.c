/* Lanes from and to memory in C, of every vector type: what is loaded, what is stored, and no byte around it. C89, so that the
 * headers are compiled in it, too. Compiled with -DCALLERS=name. */
#include <vorx/vorx.h>

#include <string.h>

#include "tests/callers/headers.h"

/* NAME of the vector, LANE, LANES, SUFFIX of the functions; memory starts at one lane, so it is not aligned to registers. */
#define CHECK(NAME, LANE, LANES, SUFFIX)                                                                            \
  {                                                                                                                 \
    LANE from[LANES + 2], to[LANES + 2], kept[LANES + 2];                                                           \
    NAME x;                                                                                                         \
    size_t n;                                                                                                       \
    int i;                                                                                                          \
    for (i = 0; i < LANES + 2; i++) from[i] = (LANE)(i + 7), kept[i] = (LANE)(100 + i);                             \
    x = vorx_load##SUFFIX(from + 1);                                                                                \
    for (i = 0; i < LANES; i++) check(x.lane[i] == from[i + 1], "load", #NAME, i);                                  \
    memcpy(to, kept, sizeof to);                                                                                    \
    vorx_store##SUFFIX(to + 1, x);                                                                                  \
    for (i = 0; i < LANES + 2; i++) check(to[i] == (i == 0 || i > LANES ? kept : from)[i], "store", #NAME, i - 1);  \
    x = vorx_splat##SUFFIX((LANE)5);                                                                                \
    for (i = 0; i < LANES; i++) check(x.lane[i] == (LANE)5, "splat", #NAME, i);                                     \
    for (n = 0; n < LANES + 2; n++) {                                                                               \
      const int all = n < LANES ? (int)n : LANES;                                                                   \
      x = vorx_loadn##SUFFIX(from + 1, n, (LANE)3);                                                                 \
      for (i = 0; i < LANES; i++) check(x.lane[i] == (i < all ? from[i + 1] : (LANE)3), "loadn", #NAME, i);         \
      memcpy(to, kept, sizeof to);                                                                                  \
      vorx_storen##SUFFIX(to + 1, x, n);                                                                            \
      for (i = 0; i < LANES + 2; i++) check(to[i] == (i == 0 || i > all ? kept : from)[i], "storen", #NAME, i - 1); \
    }                                                                                                               \
  }
#define CHECK_TYPE(NAME, LANE, S2, S3, S4, S8, S16) \
  CHECK(vorx_##NAME##2, LANE, 2, S2)                \
  CHECK(vorx_##NAME##3, LANE, 3, S3)                \
  CHECK(vorx_##NAME##4, LANE, 4, S4)                \
  CHECK(vorx_##NAME##8, LANE, 8, S8)                \
  CHECK(vorx_##NAME##16, LANE, 16, S16)

static void check(int holds, const char* what, const char* type, int lane) {
  if (!holds) headers_fault(what, type, lane);
}

void CALLERS(void);
void CALLERS(void) {
  CHECK_TYPE(float, float, f2, f3, f4, f8, f16)
  CHECK_TYPE(double, double, 2, 3, 4, 8, 16)
  CHECK_TYPE(int, int32_t, i2, i3, i4, i8, i16)
  CHECK_TYPE(uint, uint32_t, u2, u3, u4, u8, u16)
  CHECK_TYPE(long, int64_t, l2, l3, l4, l8, l16)
  CHECK_TYPE(ulong, uint64_t, ul2, ul3, ul4, ul8, ul16)
}
