// The conversions against exact integer references: every direction, saturation, boundary, tie and double-rounding case.
// The accuracy tool tries all 2^32 sources where there are so many.
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "tests/lanes.h"
#include "tools/float_format.h"

using namespace vorx;

namespace {

enum class direction { nearest, zero, down, up };

struct conversion {
  entry_point entry;
  direction way;
  bool saturated = false;
  bool has_sign = false;  // of the integer type
  int bits = 0;           // of the integer type
  bool to_integer = false;

  explicit conversion(const entry_point& e) : entry(e) {
    std::string name = e.of->name;
    to_integer = name.starts_with("cvtfpto");
    std::string type = name.substr(to_integer ? 7 : 3, 3);
    has_sign = type[0] == 'i';
    bits = type[1] == '3' ? 32 : 64;
    saturated = name.ends_with("sat") && !name.ends_with("nosat");
    way = name.find("rtz") != std::string::npos    ? direction::zero
          : name.find("down") != std::string::npos ? direction::down
          : name.find("up") != std::string::npos   ? direction::up
                                                   : direction::nearest;
  }
};

// One per name and type, at one width.
std::vector<conversion> conversions(bool to_integer, int width = 4) {
  std::vector<conversion> all;
  for (const entry_point& e : entry_points())
    if (std::string(e.of->name).starts_with("cvt") && e.width == width)
      if (conversion c(e); c.to_integer == to_integer) all.push_back(c);
  return all;
}

// ---- references ----

double rounded(double x, direction way) {
  switch (way) {
    case direction::zero:
      return std::trunc(x);
    case direction::down:
      return std::floor(x);
    case direction::up:
      return std::ceil(x);
    default:
      return std::nearbyint(x);
  }
}

uint64_t reference_to_integer(const conversion& c, double x) {
  const uint64_t top = uint64_t(1) << (c.bits - 1), largest = c.has_sign ? top - 1 : 2 * top - 1;
  if (std::isnan(x)) {
    if (!c.saturated) return top;
    return c.bits == 32 && !c.has_sign && !std::signbit(x) ? largest : 0;
  }
  double r = rounded(x, c.way), limit = std::ldexp(1.0, c.has_sign ? c.bits - 1 : c.bits);
  if (!c.has_sign && !c.saturated) r = std::fabs(r);
  if (r >= limit) return c.saturated ? largest : top;
  if (!c.has_sign && r < 0) return 0;
  if (c.has_sign && r < -limit) return top;
  uint64_t magnitude = static_cast<uint64_t>(std::fabs(r));
  uint64_t value = r < 0 ? 0 - magnitude : magnitude;
  return c.bits == 32 ? value & 0xffffffff : value;
}

// The bits of a floating-point number: the integer cut to its leading bits, moved outward by what the rest says.
uint64_t reference_from_integer(const conversion& c, uint64_t source) {
  const float_format& format = format_of(c.entry.type);
  const int fraction = format.fraction_bits();
  if (c.bits == 32)
    source = c.has_sign ? static_cast<uint64_t>(static_cast<int64_t>(static_cast<int32_t>(source))) : source & 0xffffffff;
  bool negative = c.has_sign && static_cast<int64_t>(source) < 0;
  uint64_t n = negative ? 0 - source : source;
  if (n == 0) return 0;
  int exponent = 63 - __builtin_clzll(n), cut = exponent - fraction;
  uint64_t bits = (static_cast<uint64_t>(format.bias() + exponent) << fraction) +
                  ((cut > 0 ? n >> cut : n << -cut) - (uint64_t(1) << fraction));
  if (cut > 0) {
    uint64_t rest = n & ((uint64_t(1) << cut) - 1), half = uint64_t(1) << (cut - 1);
    bool outward = c.way == direction::nearest ? rest > half || (rest == half && (bits & 1))
                   : c.way == direction::up    ? rest != 0 && !negative
                   : c.way == direction::down  ? rest != 0 && negative
                                               : false;
    bits += outward;  // carries into the exponent where it must
  }
  return negative ? bits | format.sign : bits;
}

// ---- sources ----

std::mt19937_64 random_bits(1);

// Floating-point sources whose rounding or range is in question, then random ones of all exponents; as bits.
std::vector<uint64_t> real_sources(element type) {
  const float_format& format = format_of(type);
  std::vector<uint64_t> s;
  auto around = [&](double x) {
    for (double sign : {1.0, -1.0})
      for (int d = -3; d <= 3; d++) s.push_back((bits_of(type, sign * x) + static_cast<uint64_t>(d)) & format.mask());
  };
  for (int e = -4; e <= 66; e++)
    for (double offset : {-1.5, -1.0, -0.5, -0.25, 0.0, 0.25, 0.5, 1.0, 1.5, 2.5}) around(std::ldexp(1.0, e) + offset);
  for (double x : {0.0, 0.4, 2.5, 4294967295.5, 2147483648.5, 2147483647.5, 9.3e18, 1.9e19}) around(x);
  for (double x : {HUGE_VAL, std::nan(""), as_double(type, 1)}) around(x);
  for (int i = 0; i < (quick() ? 2000 : 40000); i++) s.push_back(random_bits() & format.mask());
  for (int i = 0; i < (quick() ? 2000 : 40000); i++)
    around(std::ldexp(static_cast<double>(random_bits() >> 40) + 0.5, static_cast<int>(random_bits() % 46) - 6));
  return s;
}

// Integers at and beside powers of two, ties of every position with and without a bit far below, and random ones of all lengths.
std::vector<uint64_t> integer_sources() {
  std::vector<uint64_t> s;
  for (int e = 0; e < 64; e++)
    for (uint64_t d = 0; d < 5; d++)
      for (uint64_t x : {uint64_t(1) << e, uint64_t(3) << e}) s.push_back(x + d), s.push_back(x - d), s.push_back(0 - x - d);
  for (int i = 0; i < (quick() ? 3000 : 60000); i++) {
    int leading = random_bits() % 2 ? 24 : 53, cut = static_cast<int>(random_bits() % 40) + 1;
    uint64_t x = ((random_bits() >> (64 - leading)) << cut) + (uint64_t(1) << (cut - 1));
    uint64_t below = uint64_t(1) << (random_bits() % cut);
    for (uint64_t y : {x, x + 1, x - 1, x + below, x - below}) s.push_back(y), s.push_back(0 - y);
    s.push_back(random_bits() >> (random_bits() % 64));
    s.push_back(0 - s.back());
  }
  return s;
}

// ---- the comparison ----

uint64_t reference(const conversion& c, uint64_t source) {
  return c.to_integer ? reference_to_integer(c, as_double(c.entry.type, source)) : reference_from_integer(c, source);
}

// Runs sources through one entry point. Returns how many were compared.
size_t compare(const conversion& c, const std::vector<uint64_t>& sources) {
  lane_caller call(c.entry);
  const size_t lanes = static_cast<size_t>(c.entry.width);
  size_t compared = 0, wrong = 0;
  for (size_t at = 0; at + lanes <= sources.size(); at += lanes) {
    argument_lane in[16];
    result_lane got[16];
    for (size_t i = 0; i < lanes; i++) in[i] = {sources[at + i]};
    EXPECT_EQ(call(in, got), "") << c.entry.symbol();
    for (size_t i = 0; i < lanes; i++, compared++) {
      const uint64_t want = reference(c, sources[at + i]);
      if (got[i][0] != want && wrong++ < 5)
        ADD_FAILURE() << c.entry.symbol() << " of " << std::hex << sources[at + i] << " is " << got[i][0] << ", not " << want;
    }
  }
  return compared;
}

}  // namespace

TEST(Conversions, ToInteger) {
  const auto floats = real_sources(element::f32), doubles = real_sources(element::f64);
  const auto all = conversions(true);
  ASSERT_EQ(all.size(), 64u);
  for (const conversion& c : all)
    EXPECT_GT(compare(c, c.entry.type == element::f32 ? floats : doubles), quick() ? 20000u : 500000u);
}

TEST(Conversions, FromInteger) {
  const auto sources = integer_sources();
  const auto all = conversions(false);
  ASSERT_EQ(all.size(), 32u);
  for (const conversion& c : all) EXPECT_GT(compare(c, sources), quick() ? 20000u : 500000u);
}

// Floating-to-integer conversions round as their name says, whatever the caller's mode.
TEST(Conversions, CallersRoundingModeDoesNotMatter) {
  size_t compared = 0;
  for (const conversion& c : conversions(true)) {
    lane_caller call(c.entry);
    for (uint32_t mode = 0; mode < 4; mode++)
      for (double x : {2.5, -2.5, 0.5, -0.4, 3.7, -3.7, 8388607.5, -8388607.5, 2147483000.5, 0x1.8p33, -0x1.fffffep62, 1e19,
                       HUGE_VAL, -HUGE_VAL, std::nan("")}) {
        const uint64_t source = bits_of(c.entry.type, x);
        std::array<argument_lane, 4> in;
        std::array<result_lane, 4> got;
        in.fill({source});
        ASSERT_EQ(call(in.data(), got.data(), {.mxcsr = 0x1f80 | mode << 13}), "") << c.entry.symbol();
        for (const result_lane& lane : got)
          EXPECT_EQ(lane[0], reference(c, source)) << c.entry.symbol() << " of " << x << " in mode " << mode;
        compared++;
      }
  }
  EXPECT_EQ(compared, 64u * 4 * 15);
}
