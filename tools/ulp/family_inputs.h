// Random inputs that suit a function: pairs of arguments whose result is in range, and hard cases, whose exact result is next to
// the middle between two numbers.
#pragma once

#include <optional>
#include <random>

#include "frame/catalogue.h"
#include "tools/ulp/number.h"

namespace vorx::ulp {

// Nothing where the function needs no such help.
std::optional<arguments> family_input(const entry_point& kernel, std::mt19937_64& random);

}  // namespace vorx::ulp
