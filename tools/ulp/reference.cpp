#include "tools/ulp/reference.h"

#include <cstdio>
#include <cstdlib>

namespace vorx::ulp {

result_reference reference_of(const function& f, element type, int r) {
  if (exact_reference exact = exact_reference_of(f.name, type, r); exact.bits) return {nullptr, exact};
  if (const real_reference* real = real_reference_of(f.name, r)) return {real, {}};
  std::fprintf(stderr, "ulp: no reference for result %d of %s\n", r + 1, f.name);
  std::exit(2);
}

}  // namespace vorx::ulp
