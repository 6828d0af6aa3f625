// Lanes as bit patterns, and calls of entry points on them: what every test of results is written in.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <ostream>
#include <string>
#include <vector>

#include "tools/invoke.h"

namespace vorx {

using argument_lane = std::array<uint64_t, 3>;  // the bits of one lane of every argument; unused ones are zero
using result_lane = std::array<uint64_t, 2>;

// Fewer inputs where the machine is slow (an emulated processor).
inline bool quick() { return std::getenv("VORX_QUICK") != nullptr; }

// The width whose results the others are compared with.
inline int reference_width(element type) { return type == element::f32 ? 4 : 2; }

// "0x3f800000 0x00000001"
inline std::string hex(const uint64_t* bits, const kind* kinds, int count, element type) {
  std::string text;
  for (int i = 0; i < count; i++) {
    char word[24];
    std::snprintf(word, sizeof word, "%s0x%0*llx", i ? " " : "", 2 * lane_bytes(kinds[i], type),
                  static_cast<unsigned long long>(bits[i]));
    text += word;
  }
  return text;
}
inline std::string hex(const entry_point& e, const argument_lane& a) {
  return hex(a.data(), e.of->form.arguments, e.of->form.argument_count(), e.type);
}
inline std::string hex(const entry_point& e, const result_lane& r) {
  return hex(r.data(), e.of->form.results, e.of->form.result_count(), e.type);
}

// Calls an entry point with `width` lanes and takes `width` lanes back.
class lane_caller {
 public:
  explicit lane_caller(const entry_point& e) : entry_(e), call_(e, library_symbol(e.symbol())) {}

  // Empty, or what the entry point did that it must not do.
  std::string operator()(const argument_lane* in, result_lane* out, const call_options& options = {}) {
    const shape& s = entry_.of->form;
    for (int a = 0; a < s.argument_count(); a++) {
      size_t bytes = static_cast<size_t>(lane_bytes(s.arguments[a], entry_.type));
      for (int i = 0; i < entry_.width; i++) std::memcpy(arguments_[a] + i * bytes, &in[i][a], bytes);
    }
    const void* const from[] = {arguments_[0], arguments_[1], arguments_[2]};
    void* const to[] = {results_[0], results_[1]};
    std::string violation = call_(from, to, options);
    for (int r = 0; r < s.result_count(); r++) {
      size_t bytes = static_cast<size_t>(lane_bytes(s.results[r], entry_.type));
      for (int i = 0; i < entry_.width; i++) std::memcpy(&(out[i][r] = 0), results_[r] + i * bytes, bytes);
    }
    for (int r = s.result_count(); r < 2; r++)
      for (int i = 0; i < entry_.width; i++) out[i][r] = 0;
    return violation;
  }

  uint32_t flags() const { return call_.flags(); }  // exception flags that the last call raised
  const entry_point& entry() const { return entry_; }
  const layout& where_things_are() const { return call_.where_things_are(); }

 private:
  entry_point entry_;
  invoker call_;
  char arguments_[3][128], results_[2][128];
};

// All entry points of a function that exist, or those of one width.
inline std::vector<entry_point> entry_points_of(const function& f, int width = 0) {
  std::vector<entry_point> found;
  for (const entry_point& e : entry_points())
    if (e.of == &f && (width == 0 || e.width == width)) found.push_back(e);
  return found;
}

// The functions that exist, as the parameter of a test suite whose cases carry their names.
inline std::vector<const function*> functions() {
  std::vector<const function*> ready;
  for (const function& f : catalogue())
    if (f.ready) ready.push_back(&f);
  return ready;
}
inline std::string name_of(const testing::TestParamInfo<const function*>& f) { return f.param->name; }
inline void PrintTo(const function* f, std::ostream* out) { *out << f->name; }

}  // namespace vorx

#define VORX_EVERY_FUNCTION(SUITE) INSTANTIATE_TEST_SUITE_P(Every, SUITE, testing::ValuesIn(vorx::functions()), vorx::name_of)
