// The entry points of the conversions.
#include "exact/kernels.h"

#include "frame/entries.h"

namespace vorx {
#include "exact/conversions.inc"
}
