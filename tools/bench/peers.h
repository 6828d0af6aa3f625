// The functions that an entry point is measured beside, found at run time: the scalar C library and, where it is installed, the
// independent vector library (libsleef).
#pragma once

#include "tools/bench/call_loop.h"

namespace vorx::bench {

// expf, exp, ...: the C library's function of the same meaning; for a conversion, the loop below.
peer scalar_peer(const function& f, element e);

// What C has for a conversion: a loop of casts over the lanes of a vector.
peer conversion_loop(const function& f, element e);

// The SSE4.1 function on four floats or two doubles: `accurate` with the smallest bound on the error (1.0 ULP or less, erfc 1.5;
// exact functions have one variant), otherwise 3.5 ULP.
peer vector_peer(const function& f, element e, bool accurate);

}  // namespace vorx::bench
