// Estimates for consecutive float arguments. Within 64 of them a smooth function is a polynomial: six values of the C library
// give it, two more are held against it, and where they do not agree, or the function changes sign or size, every value is
// computed; but sine, cosine and tangent of arguments so far apart come from the addition theorem where they are not small.
#pragma once

#include "tools/ulp/reference.h"

namespace vorx::ulp {

inline constexpr int block = 64;

// r.quick(x, 0) for the 64 floats whose bits begin at `first`, a multiple of 64.
void estimate_block(const real_reference& r, uint32_t first, double* values);

}  // namespace vorx::ulp
