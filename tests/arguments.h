// Arguments for any function: first every pair of special values and the neighbours of every seam, then a random mixture that
// visits all exponents, powers of two, seams, small integers and halves, and arguments close to each other.
#pragma once

#include <random>
#include <string_view>
#include <vector>

#include "tests/lanes.h"
#include "tools/claims.h"
#include "tools/float_format.h"

namespace vorx {

class argument_source {
 public:
  // The sequence depends on the function, the type and the variant only.
  explicit argument_source(const entry_point& e) : form_(e.of->form), type_(e.type), format_(format_of(e.type)) {
    uint64_t seed = e.native ? 3 : 5;
    for (char c : std::string_view(e.of->name)) seed = seed * 31 + static_cast<unsigned char>(c);
    random_.seed(seed * 2 + (e.type == element::f64));
    for (double seam : claims_of(e).seams) seams_.push_back(bits_of(type_, seam));
  }

  argument_lane next() {
    const auto first = special_values(form_.arguments[0]);
    const auto second = form_.argument_count() > 1 ? special_values(form_.arguments[1]) : std::vector<uint64_t>{0};
    const size_t pairs = first.size() * second.size(), around_seams = seams_.size() * 129 * 2;
    argument_lane lane{};
    for (int a = 0; a < form_.argument_count(); a++) lane[a] = any(form_.arguments[a], lane[0], a);
    if (size_t i = produced_++; i < pairs) {
      i = i * 1009 % pairs;  // all of them, scattered: 1009 is a prime
      lane[0] = first[i / second.size()];
      lane[1] = second[i % second.size()];
    } else if (i -= pairs; i < around_seams) {
      lane[0] = ((seams_[i / 258] + i % 129 - 64) ^ (i / 129 % 2 ? format_.sign : 0)) & format_.mask();
    }
    return lane;
  }

  // What no other lane may be disturbed by: 1, -infinity, a signalling NaN, a subnormal, a huge value.
  argument_lane hostile() {
    argument_lane lane{};
    for (int a = 0; a < form_.argument_count(); a++) {
      const uint64_t real[] = {one(), format_.infinity | format_.sign, format_.infinity + 0x1234, 0x123, format_.infinity - 1};
      lane[a] = is_integer(form_.arguments[a]) ? any_integer(form_.arguments[a]) : real[random_() % 5];
    }
    return lane;
  }
  // Values from 0.25 up to 1, small integers: nothing that any function treats specially.
  argument_lane ordinary() {
    argument_lane lane{};
    for (int a = 0; a < form_.argument_count(); a++)
      lane[a] = is_integer(form_.arguments[a])
                    ? 1 + random_() % 5
                    : one() - (uint64_t{2} << format_.fraction_bits()) + random_() % (uint64_t{2} << format_.fraction_bits());
    return lane;
  }
  uint64_t random() { return random_(); }

 private:
  uint64_t one() const { return bits_of(type_, 1); }

  std::vector<uint64_t> special_values(kind k) const {
    std::vector<uint64_t> values;
    if (is_integer(k)) {
      const uint64_t mask = lane_bytes(k, type_) == 4 ? 0xffffffff : ~uint64_t{0};
      for (int bit : {0, 1, 5, 23, 24, 25, 30, 31, 32, 52, 53, 54, 62, 63})
        for (int64_t near : {-1, 0, 1})
          for (int64_t factor : {1, -1})
            values.push_back(static_cast<uint64_t>(factor) * ((uint64_t{1} << bit) + static_cast<uint64_t>(near)) & mask);
      return values;
    }
    const uint64_t least_normal = format_.least_normal(), quiet = format_.infinity | format_.quiet;
    const uint64_t infinity = format_.infinity;
    auto of = [this](double x) -> uint64_t { return bits_of(type_, x); };
    for (uint64_t v : {of(0),        uint64_t{1}, uint64_t{0x123}, least_normal - 1, least_normal, one() - 1,
                       one(),        one() + 1,   of(0.5),         of(1.5),          of(2),        of(3),
                       of(100),      of(0x1p23),  of(0x1p52),      of(1e20),         infinity - 1, infinity,
                       infinity + 1, quiet - 1,   quiet,           quiet + 0x1234})
      for (uint64_t s : {uint64_t{0}, format_.sign}) values.push_back(v | s);
    return values;
  }

  uint64_t any_integer(kind k) {
    const int bits = 8 * lane_bytes(k, type_);
    const uint64_t mask = ~uint64_t{0} >> (64 - bits);
    switch (random_() % 4) {
      case 0:
        return pick(special_values(k));
      case 1:
        return (random_() % 601 - 300) & mask;
      case 2:
        return ((random_() & mask) >> random_() % static_cast<unsigned>(bits)) & mask;
      default:
        return (0 - ((random_() & mask) >> random_() % static_cast<unsigned>(bits))) & mask;
    }
  }

  uint64_t any(kind k, uint64_t first, int argument) {
    if (is_integer(k)) return any_integer(k);
    const uint64_t significand = random_() & ((uint64_t{1} << format_.fraction_bits()) - 1), s = random_() & format_.sign;
    const uint64_t offset = random_() % 129 - 64;
    if (argument > 0 && !is_integer(form_.arguments[0]) && random_() % 4 == 0)  // close to the first, or to a multiple of it
      return (first + (random_() % 2 ? offset : (random_() % 129 - 64) << format_.fraction_bits())) & format_.mask();
    switch (random_() % 8) {
      case 0:
      case 1:
        return random_() & format_.mask();
      case 2:
      case 3:  // moderate
        return (one() + ((random_() % 25 - 12) << format_.fraction_bits()) + significand) | s;
      case 4: {  // around a power of two
        const uint64_t exponents = (format_.sign >> format_.fraction_bits()) - 1;
        return (((random_() % exponents << format_.fraction_bits()) + offset) & (format_.sign - 1)) | s;
      }
      case 5:
        if (!seams_.empty()) return (pick(seams_) + offset) & format_.mask();
        [[fallthrough]];
      case 6:  // an integer or half-integer, or close to one
        return bits_of(static_cast<double>(static_cast<int>(random_() % 4097) - 2048) / 2) + random_() % 3;
      default:
        return pick(special_values(k));
    }
  }
  uint64_t pick(const std::vector<uint64_t>& from) { return from[random_() % from.size()]; }

  shape form_;
  element type_;
  float_format format_;
  std::mt19937_64 random_;
  std::vector<uint64_t> seams_;
  size_t produced_ = 0;
};

}  // namespace vorx
