// The conversions as a C program writes them: a loop over the lanes, a cast in each. Compiled without vectorisation
// (CMakeLists.txt), so that the loops are the scalar code that their name promises.
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <map>
#include <string>

#include "tools/bench/peers.h"

namespace vorx::bench {
namespace {

enum direction { to_nearest, toward_zero, downward, upward };
const char* const names_of_directions[] = {"rtn", "rtz", "down", "up"};

// 2^bits of the type's value range: the smallest number above it, exact in float and double.
template <class Integer, class Real>
constexpr Real limit = 2 * static_cast<Real>(Integer{1} << (std::numeric_limits<Integer>::digits - 1));

// The cast rounds toward zero; rint, floor and ceil are one instruction each. Without saturation a C program casts, with it a
// program compares before.
template <direction how, bool saturated, class Integer, class Real>
Integer to_integer(Real x) {
  if (how == to_nearest) x = std::rint(x);
  if (how == downward) x = std::floor(x);
  if (how == upward) x = std::ceil(x);
  if (saturated) {
    if (x >= limit<Integer, Real>) return std::numeric_limits<Integer>::max();
    if (x < static_cast<Real>(std::numeric_limits<Integer>::min())) return std::numeric_limits<Integer>::min();
    if (x != x) return 0;
  }
  return static_cast<Integer>(x);
}

// The cast rounds to nearest. The other directions compare with what was cast, as integers, and correct by one unit: two changes
// of the rounding mode would take longer.
template <direction how, class Integer, class Real>
Real to_real(Integer n) {
  using bits = std::conditional_t<sizeof(Real) == 4, uint32_t, uint64_t>;
  const Real x = static_cast<Real>(n);
  if (how == to_nearest || std::numeric_limits<Integer>::digits <= std::numeric_limits<Real>::digits) return x;
  const bool beyond = x >= limit<Integer, Real>;
  const bool above = beyond || static_cast<Integer>(x) > n, below = !beyond && static_cast<Integer>(x) < n;
  bits unit = 0;  // to be added to the bits of x
  if (how == downward && above) unit = x > 0 ? bits(-1) : bits(1);
  if (how == upward && below) unit = x > 0 ? bits(1) : bits(-1);
  if (how == toward_zero && (x > 0 ? above : below)) unit = bits(-1);
  return std::bit_cast<Real>(std::bit_cast<bits>(x) + unit);
}

template <auto convert, class From, class To>
void loop(const From* first, const From* behind_last, To* result) {
  for (; first != behind_last; first++) *result++ = convert(*first);
}

using table = std::map<std::pair<std::string, element>, const void*>;

template <direction how, class Integer, class Real>
void add(table& t, const std::string& integer) {
  const element e = sizeof(Real) == 4 ? element::f32 : element::f64;
  auto put = [&](const std::string& name, auto* f) { t[{name, e}] = reinterpret_cast<const void*>(f); };
  const std::string direction = names_of_directions[how];
  put("cvtfpto" + integer + direction + "sat", &loop<&to_integer<how, true, Integer, Real>, Real, Integer>);
  put("cvtfpto" + integer + direction + "nosat", &loop<&to_integer<how, false, Integer, Real>, Real, Integer>);
  put("cvt" + integer + "tofp" + direction, &loop<&to_real<how, Integer, Real>, Integer, Real>);
}

template <direction how>
void add_all(table& t) {
  add<how, int32_t, float>(t, "i32"), add<how, int32_t, double>(t, "i32");
  add<how, uint32_t, float>(t, "u32"), add<how, uint32_t, double>(t, "u32");
  add<how, int64_t, float>(t, "i64"), add<how, int64_t, double>(t, "i64");
  add<how, uint64_t, float>(t, "u64"), add<how, uint64_t, double>(t, "u64");
}

}  // namespace

peer conversion_loop(const function& f, element e) {
  static const table loops = [] {
    table t;
    add_all<to_nearest>(t), add_all<toward_zero>(t), add_all<downward>(t), add_all<upward>(t);
    return t;
  }();
  auto found = loops.find({f.name, e});
  return found == loops.end() ? peer{} : peer{found->second, peer_kind::scalar_loop};
}

}  // namespace vorx::bench
