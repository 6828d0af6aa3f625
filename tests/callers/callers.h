/* A compiled call of an entry point: what the generated callers and the test that runs them agree on. */
#pragma once

#include <stddef.h>

/* What stands at an address. */
#define AT(TYPE, ADDRESS) (*CAST(TYPE*, ADDRESS))

struct caller {
  const char* name;
  const char* entry;
  int one_for_all; /* the second argument is one scalar for all lanes */
  /* Addresses of up to three arguments, of the result, of the second result. */
  void (*run)(const void*, const void*, const void*, void*, void*);
};

/* For callers in functions with a frame that is hard to compile: numbers that the compiler does not know, and how they say what
 * they find. Magnitudes are compared without the sign bits of the lanes. */
#ifdef __cplusplus
extern "C" {
#define ALIGNED(BYTES) alignas(BYTES)
#define CAST(TYPE, X) static_cast<TYPE>(X)
#else
#define ALIGNED(BYTES) _Alignas(BYTES)
#define CAST(TYPE, X) ((TYPE)(X))
#endif
extern volatile size_t callers_room;
extern volatile int callers_one;
void callers_check(int holds);
void callers_check_magnitudes(const void* a, const void* b, size_t lane_bytes, int lanes);
#ifdef __cplusplus
}
#endif
