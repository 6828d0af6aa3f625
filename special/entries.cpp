// The entry points of this family: kernels.h is all kernel headers of this directory, symbols come from the rows.
#include "special/kernels.h"

#include "frame/entries.h"

namespace vorx {
#include "special/rows.inc"
}
