// Prints, for every entry point, digests of its results and of the exception flags that it raises, on the same arguments in every
// run: to compare libraries from different compilers (VORX_LIBRARY names the library).
#include "tests/arguments.h"

using namespace vorx;

namespace {

struct digest {
  uint64_t value = 0xcbf29ce484222325;
  void add(uint64_t word) {
    value = (value ^ word) * 0x100000001b3;
    value ^= value >> 29;
  }
};

}  // namespace

int main() {
  const int vectors = 1500;
  for (const entry_point& e : entry_points()) {
    lane_caller call(e);
    argument_source source(e);
    digest results, flags;
    for (int v = 0; v < vectors; v++) {
      argument_lane in[16];
      result_lane out[16];
      for (int i = 0; i < e.width; i++) in[i] = source.next();
      if (std::string violation = call(in, out); !violation.empty()) {
        std::printf("%s: %s\n", e.symbol().c_str(), violation.c_str());
        return 1;
      }
      for (int i = 0; i < e.width; i++)
        for (uint64_t r : out[i]) results.add(r);
      flags.add(call.flags());
    }
    std::printf("%s %016llx %016llx\n", e.symbol().c_str(), static_cast<unsigned long long>(results.value),
                static_cast<unsigned long long>(flags.value));
  }
}
