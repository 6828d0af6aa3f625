#include "tools/bench/domains.h"

#include <cmath>
#include <cstring>
#include <limits>
#include <map>
#include <random>
#include <string_view>

namespace vorx::bench {
namespace {

constexpr auto even = domain::even, logarithmic = domain::logarithmic;

struct row {
  const char* functions;  // separated by blanks, "name*" for all that start so
  std::array<domain, 3> arguments;
};
// The first row that names a function counts; the last serves all others.
const row rows[] = {
    {"exp exp2 exp10 expm1 sinh cosh asinh", {{{even, -10, 10}}}},
    {"tanh erf erfc", {{{even, -3, 3}}}},
    {"log log2 log10", {{{logarithmic, 1e-6, 1e6}}}},
    {"log1p", {{{even, -0.9, 10}}}},
    {"pow powr", {{{logarithmic, 1e-2, 1e2}, {even, -8, 8}}}},
    {"pown", {{{logarithmic, 1e-2, 1e2}, {even, -8, 8}}}},
    {"rootn", {{{logarithmic, 1e-6, 1e6}, {even, 2, 9}}}},
    {"sqrt rsqrt cbrt rcbrt inv", {{{logarithmic, 1e-6, 1e6}}}},
    {"div hypot atan2 atan2pi", {{{even, -100, 100}, {even, -100, 100}}}},
    {"sin cos tan sincos sincosreg sinpi cospi tanpi", {{{even, -100, 100}}}},
    {"asin acos asinpi acospi atanh", {{{even, -0.99, 0.99}}}},
    {"acosh", {{{logarithmic, 1.01, 1e3}}}},
    {"tgamma lgamma lgammar", {{{even, 0.5, 20}}}},
    {"ldexp", {{{even, 1, 2}, {even, -20, 20}}}},
    {"fmod remainder remquo", {{{even, -100, 100}, {even, 0.5, 10}}}},
    {"cvtfptou*", {{{even, 0, 1e6}}}},
    {"cvtfpto*", {{{even, -1e6, 1e6}}}},
    {"cvti* nan", {{{even, -2e9, 2e9}}}},
    {"cvtu*", {{{even, 0, 2e9}}}},
    {"*", {{{even, -10, 10}, {even, -10, 10}, {even, -10, 10}}}},
};

bool names(std::string_view functions, std::string_view f) {
  while (!functions.empty()) {
    std::string_view word = functions.substr(0, functions.find(' '));
    functions.remove_prefix(std::min(functions.size(), word.size() + 1));
    if (word == f || (word.ends_with('*') && f.starts_with(word.substr(0, word.size() - 1)))) return true;
  }
  return false;
}

template <class T>
void append(std::vector<unsigned char>& bytes, T value) {
  bytes.resize(bytes.size() + sizeof value);
  std::memcpy(&bytes[bytes.size() - sizeof value], &value, sizeof value);
}

}  // namespace

const std::array<unusual, 6> unusual_arguments = {{
    {"NaN", std::numeric_limits<double>::quiet_NaN()},
    {"1e10", 1e10},
    {"infinity", std::numeric_limits<double>::infinity()},
    {"zero", 0.0},
    {"-2", -2.0},
    {"subnormal", 1e-310},
}};

std::array<domain, 3> domains_of(const function& f) {
  for (const row& r : rows)
    if (names(r.functions, f.name)) return r.arguments;
  return {};
}

lane_bytes_of_arguments ordinary_arguments(const function& f, element e, int lanes) {
  lane_bytes_of_arguments bytes;
  auto domains = domains_of(f);
  std::mt19937 random(1);
  for (int a = 0; a < f.form.argument_count(); a++)
    for (int i = 0; i < lanes; i++) {
      const domain& d = domains[a];
      double part = (random() + 0.5) / 4294967296.0;
      double x = d.how == domain::even ? d.low + part * (d.high - d.low) : d.low * std::pow(d.high / d.low, part);
      int size = lane_bytes(f.form.arguments[a], e);
      if (is_integer(f.form.arguments[a]))
        size == 4 ? append(bytes[a], static_cast<int32_t>(std::floor(x))) : append(bytes[a], static_cast<int64_t>(std::floor(x)));
      else
        size == 4 ? append(bytes[a], static_cast<float>(x)) : append(bytes[a], x);
    }
  return bytes;
}

}  // namespace vorx::bench
