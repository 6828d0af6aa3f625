// The tables of cbrt and rcbrt: the root or its reciprocal of 2^rem c, as head and tail, for rem = 0, 1, 2 and the middles c of
// 32 intervals of the significand.
#pragma once

#include "tables/gen/real.h"

inline real middle(int i) { return real(1 + i / 32.0 + 1 / 64.0); }

// row(rem, i, 2^rem c) prints a row.
template <class Row>
void for_each_middle(Row row) {
  for (int rem = 0; rem < 3; rem++)
    for (int i = 0; i < 32; i++) row(rem, i, real(1 << rem) * middle(i));
}
