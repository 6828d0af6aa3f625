/* A function on whole arrays: what the generated tables and the tests that run them agree on. */
#pragma once

#include <stddef.h>

struct array_function {
  const char* name;
  int arguments;
  size_t lane_bytes;
  int lanes;                    /* of its entry point */
  int decides_for_whole_vector; /* a large argument may change the last bits of its neighbours */
  /* Up to three arguments, the result, the number of elements. */
  void (*array)(const void*, const void*, const void*, void*, size_t);
  void (*one_lane)(const void*, const void*, const void*, void*, size_t);
  void (*bare_loop)(const void*, const void*, const void*, void*, size_t); /* over aligned full vectors */
};
