/* A compiled call of an entry point: what the generated callers and the test that runs them agree on. */
#pragma once

struct caller {
  const char* name;
  const char* entry;
  int one_for_all; /* the second argument is one scalar for all lanes */
  /* Addresses of up to three arguments, of the result, of the second result. */
  void (*run)(const void*, const void*, const void*, void*, void*);
};
