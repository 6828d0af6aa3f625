// The standard's limits, from tools/limits.csv.
#pragma once

#include <string>

#include "frame/catalogue.h"

namespace vorx::ulp {

// The largest error allowed to an accurate function: ULP; 0.5 where results must be correctly rounded, 0 where exact; infinite
// where the standard sets no limit.
double limit_of(const function& f, element type);

}  // namespace vorx::ulp
