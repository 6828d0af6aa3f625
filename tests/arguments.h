// Arguments for any function: first every pair of special values and the neighbours of every seam, then a random mixture that
// visits all exponents, powers of two, seams, small integers and halves, and arguments close to each other.
#pragma once

#include <bit>
#include <random>
#include <string_view>
#include <vector>

#include "tests/lanes.h"
#include "tools/claims.h"

namespace vorx {

class argument_source {
 public:
  // The sequence depends on the function, the type and the variant only.
  explicit argument_source(const entry_point& e)
      : form_(e.of->form), type_(e.type), significand_bits_(e.type == element::f32 ? 23 : 52) {
    uint64_t seed = e.native ? 3 : 5;
    for (char c : std::string_view(e.of->name)) seed = seed * 31 + static_cast<unsigned char>(c);
    random_.seed(seed * 2 + (e.type == element::f64));
    for (double seam : claims_of(e).seams) seams_.push_back(bits_of(seam));
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
      lane[0] = ((seams_[i / 258] + i % 129 - 64) ^ (i / 129 % 2 ? sign() : 0)) & all_bits();
    }
    return lane;
  }

  // What no other lane may be disturbed by: 1, -infinity, a signalling NaN, a subnormal, a huge value.
  argument_lane hostile() {
    argument_lane lane{};
    for (int a = 0; a < form_.argument_count(); a++) {
      const uint64_t real[] = {one(), infinity() | sign(), infinity() + 0x1234, 0x123, infinity() - 1};
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
                    : one() - (uint64_t{2} << significand_bits_) + random_() % (uint64_t{2} << significand_bits_);
    return lane;
  }
  uint64_t random() { return random_(); }

 private:
  uint64_t sign() const { return type_ == element::f32 ? 0x80000000 : uint64_t{1} << 63; }
  uint64_t infinity() const { return type_ == element::f32 ? 0x7f800000 : 0x7ff0000000000000; }
  uint64_t one() const { return type_ == element::f32 ? 0x3f800000 : 0x3ff0000000000000; }
  uint64_t all_bits() const { return sign() | (sign() - 1); }
  uint64_t bits_of(double x) const {
    return type_ == element::f32 ? std::bit_cast<uint32_t>(static_cast<float>(x)) : std::bit_cast<uint64_t>(x);
  }

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
    const uint64_t least_normal = uint64_t{1} << significand_bits_;
    const uint64_t quiet = infinity() + least_normal / 2;
    for (uint64_t v : {uint64_t{0},    uint64_t{1},     uint64_t{0x123}, least_normal - 1, least_normal,   one() - 1,
                       one(),          one() + 1,       bits_of(0.5),    bits_of(1.5),     bits_of(2),     bits_of(3),
                       bits_of(100),   bits_of(0x1p23), bits_of(0x1p52), bits_of(1e20),    infinity() - 1, infinity(),
                       infinity() + 1, quiet - 1,       quiet,           quiet + 0x1234})
      for (uint64_t s : {uint64_t{0}, sign()}) values.push_back(v | s);
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
    const uint64_t significand = random_() & ((uint64_t{1} << significand_bits_) - 1), s = random_() & sign();
    const uint64_t offset = random_() % 129 - 64;
    if (argument > 0 && !is_integer(form_.arguments[0]) && random_() % 4 == 0)  // close to the first, or to a multiple of it
      return (first + (random_() % 2 ? offset : (random_() % 129 - 64) << significand_bits_)) & all_bits();
    switch (random_() % 8) {
      case 0:
      case 1:
        return random_() & all_bits();
      case 2:
      case 3:  // moderate
        return (one() + ((random_() % 25 - 12) << significand_bits_) + significand) | s;
      case 4: {  // around a power of two
        const uint64_t exponents = (sign() >> significand_bits_) - 1;
        return (((random_() % exponents << significand_bits_) + offset) & (sign() - 1)) | s;
      }
      case 5:
        if (!seams_.empty()) return (pick(seams_) + offset) & all_bits();
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
  int significand_bits_;
  std::mt19937_64 random_;
  std::vector<uint64_t> seams_;
  size_t produced_ = 0;
};

}  // namespace vorx
