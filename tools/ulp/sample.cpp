#include "tools/ulp/sample.h"

#include <algorithm>

#include "tools/ulp/family_inputs.h"

namespace vorx::ulp {
namespace {

constexpr uint64_t relearn_after = 1 << 14;  // inputs
constexpr size_t worst_kept = 64;

// Bits of the leading part of an argument that tell its class, by number of arguments.
constexpr int class_bits(int argument_count) { return argument_count == 1 ? 12 : argument_count == 2 ? 7 : 5; }

int bytes_of(kind k, element type) { return lane_bytes(k, type); }

uint64_t all_ones(int bytes) { return bytes == 4 ? 0xffffffffull : ~0ull; }

// Special values of one argument.
std::vector<uint64_t> specials(kind k, element type) {
  const float_format& f = format_of(type);
  std::vector<uint64_t> v;
  if (k == kind::real) {
    const uint64_t one = bits_of(type, 1), smallest_normal = f.least_normal();
    for (uint64_t b : {uint64_t{0}, uint64_t{1}, smallest_normal - 1, smallest_normal, smallest_normal + 1, one - 1, one, one + 1,
                       f.infinity - 1, f.infinity, f.infinity + 1, f.infinity | f.quiet, f.infinity | f.quiet | 5})
      v.push_back(b), v.push_back(b | f.sign);
    for (double x : {0.25, 0.5, 0.75, 1.5, 2.0, 2.5, 3.0, 4.0, 7.0, 10.0, 16777215.0, 16777216.0, 16777217.0, 2147483648.0, 1e30})
      for (double s : {x, -x}) v.push_back(bits_of(type, s));
    return v;
  }
  const int bytes = bytes_of(k, type), size = 8 * bytes;
  for (int i = 0; i < size; i++)
    for (uint64_t b : {(1ull << i) - 1, 1ull << i, (1ull << i) + 1})
      v.push_back(b & all_ones(bytes)), v.push_back((0 - b) & all_ones(bytes));
  return v;
}

// n units in the last place further from zero (or nearer), within the numbers of this sign.
uint64_t step(const float_format& f, uint64_t bits, int64_t n) {
  int64_t m = std::clamp<int64_t>(static_cast<int64_t>(f.magnitude(bits)) + n, 0, static_cast<int64_t>(f.infinity) + 1);
  return static_cast<uint64_t>(m) | (bits & f.sign);
}

}  // namespace

sampler::sampler(const entry_point& kernel, uint64_t seed, uint64_t shard, uint64_t shards)
    : kernel_(kernel),
      format_(format_of(kernel.type)),
      seams_(claims_of(kernel).seams),
      random_(seed * 1000003 + shard),
      errors_(size_t{1} << 15, -1.0f) {
  const shape& form = kernel.of->form;
  std::sort(seams_.begin(), seams_.end());
  std::vector<std::vector<uint64_t>> lanes;
  for (int a = 0; a < form.argument_count(); a++) lanes.push_back(specials(form.arguments[a], kernel.type));
  if (form.argument_count() == 1 && form.arguments[0] == kind::real) {
    for (double s : seams_) {
      uint64_t b = bits_of(kernel.type, s);
      for (int n = -64; n <= 64; n++) lanes[0].push_back(step(format_, b, n));
    }
    for (uint64_t power = 1ull << format_.fraction_bits(); power <= format_.infinity; power += 1ull << format_.fraction_bits())
      for (int n = -4; n <= 4; n++)
        for (uint64_t sign : {uint64_t{0}, format_.sign}) lanes[0].push_back(step(format_, power | sign, n));
    for (int i = 0; i < format_.fraction_bits(); i++) lanes[0].push_back(1ull << i), lanes[0].push_back(1ull << i | format_.sign);
  }
  if (form.argument_count() == 3)
    for (auto& l : lanes) l.resize(std::min<size_t>(l.size(), 34));
  uint64_t turn = 0;
  arguments in{};
  for (uint64_t x : lanes[0])
    for (uint64_t y : lanes.size() > 1 ? lanes[1] : std::vector<uint64_t>{0})
      for (uint64_t z : lanes.size() > 2 ? lanes[2] : std::vector<uint64_t>{0})
        if (turn++ % shards == shard) fixed_.push_back(in = {x, y, z});
  next_fixed_ = 0;
}

void sampler::next(std::vector<arguments>& inputs, uint64_t count) {
  inputs.clear();
  for (uint64_t i = 0; i < count; i++) {
    if (i % 2 == 0 && next_fixed_ < fixed_.size())
      inputs.push_back(fixed_[next_fixed_++]);
    else
      inputs.push_back(random_input());
  }
}

void sampler::learn(const std::vector<arguments>& inputs, const std::vector<double>& errors) {
  for (size_t i = 0; i < inputs.size(); i++) {
    float& e = errors_[class_of(inputs[i])];
    e = std::max(e, static_cast<float>(errors[i]));
    if (worst_.size() < worst_kept || errors[i] > worst_.back().first) {
      worst_.emplace_back(errors[i], inputs[i]);
      std::sort(worst_.begin(), worst_.end(), [](const auto& a, const auto& b) { return a.first > b.first; });
      if (worst_.size() > worst_kept) worst_.pop_back();
    }
  }
  learned_ += inputs.size();
  if (learned_ < relearn_after && !weights_.empty()) return;
  learned_ = 0;
  const double largest = std::max(*std::max_element(errors_.begin(), errors_.end()), 1e-6f);
  double sum = 0;
  weights_.clear();
  for (float e : errors_) weights_.push_back(sum += e < 0 ? 0.0005 : 0.001 + std::pow(e / largest, 4));
}

// ---- classes ----

uint64_t sampler::class_of(const arguments& in) const {
  const shape& form = kernel_.of->form;
  const int n = form.argument_count(), bits = class_bits(n);
  uint64_t c = 0;
  for (int a = 0; a < n; a++) {
    const int size = 8 * bytes_of(form.arguments[a], kernel_.type);
    uint64_t part = in[a] >> (size - bits);
    if (form.arguments[a] != kind::real) {
      const bool negative = in[a] >> (size - 1) & 1;
      const uint64_t magnitude = (negative ? 0 - in[a] : in[a]) & all_ones(size / 8);
      part = (static_cast<uint64_t>(std::bit_width(magnitude)) & ((1u << (bits - 1)) - 1)) | (negative ? 1u << (bits - 1) : 0);
    }
    c = c << bits | part;
  }
  return c & (errors_.size() - 1);
}

arguments sampler::from_class(uint64_t c) {
  const shape& form = kernel_.of->form;
  const int n = form.argument_count(), bits = class_bits(n);
  arguments in{};
  for (int a = n - 1; a >= 0; a--, c >>= bits) {
    const int size = 8 * bytes_of(form.arguments[a], kernel_.type);
    const uint64_t part = c & ((1u << bits) - 1);
    if (form.arguments[a] == kind::real) {
      in[a] = part << (size - bits) | (random_() & ((1ull << (size - bits)) - 1));
    } else {
      const int width = static_cast<int>(part & ((1u << (bits - 1)) - 1));
      const uint64_t magnitude = width == 0 ? 0 : (1ull << ((width - 1) & 63) | (random_() & ((1ull << ((width - 1) & 63)) - 1)));
      in[a] = (part >> (bits - 1) ? 0 - magnitude : magnitude) & all_ones(size / 8);
    }
  }
  return in;
}

// ---- random inputs ----

uint64_t sampler::random_number() {
  uint64_t b = random_() & format_.mask();
  switch (random_() % 8) {
    case 0: {  // few bits set: results that are exact or nearly
      int keep = static_cast<int>(random_() % 12);
      return b & ~((1ull << (format_.fraction_bits() - keep)) - 1);
    }
    case 1:  // next to a power of two
      return step(format_, b & (format_.sign | format_.infinity), static_cast<int64_t>(random_() % 17) - 8);
    case 2:
      if (!seams_.empty()) {
        double s = seams_[random_() % seams_.size()];
        b = bits_of(kernel_.type, s);
        return step(format_, b, static_cast<int64_t>(random_() % 129) - 64);
      }
      [[fallthrough]];
    default:
      return b;
  }
}

uint64_t sampler::between_seams() {
  if (seams_.size() < 2) return random_number();
  size_t i = random_() % (seams_.size() - 1);
  double t = static_cast<double>(random_() >> 11) * 0x1p-53, x = seams_[i] + (seams_[i + 1] - seams_[i]) * t;
  return bits_of(kernel_.type, x);
}

uint64_t sampler::random_lane(kind k) {
  if (k == kind::real) return random_number();
  const int bytes = bytes_of(k, kernel_.type);
  uint64_t b = random_() >> (random_() % (8 * static_cast<unsigned>(bytes)));  // all lengths
  if (bytes == 4) b >>= 32 * (random_() % 2);
  return (random_() % 2 ? b : 0 - b) & all_ones(bytes);
}

arguments sampler::near_worst() {
  const shape& form = kernel_.of->form;
  arguments in = worst_[random_() % worst_.size()].second;
  for (int a = 0; a < form.argument_count(); a++) {
    int64_t change = static_cast<int64_t>(random_() >> (1 + random_() % 63));
    if (random_() % 2) change = -change;
    if (form.arguments[a] == kind::real) {
      if (format_.fraction_bits() < 32) change >>= 30;
      in[a] = step(format_, in[a], std::clamp<int64_t>(change, -(1ll << 60), 1ll << 60));
    } else if (random_() % 2) {
      in[a] = (in[a] + static_cast<uint64_t>(change % 16)) & all_ones(bytes_of(form.arguments[a], kernel_.type));
    }
  }
  return in;
}

arguments sampler::random_input() {
  const shape& form = kernel_.of->form;
  const uint64_t strategy = random_() % 16;
  if (strategy >= 14 && !worst_.empty()) return near_worst();
  if (strategy >= 8 && !weights_.empty()) {
    const double at = static_cast<double>(random_() >> 11) * 0x1p-53 * weights_.back();
    return from_class(static_cast<uint64_t>(std::upper_bound(weights_.begin(), weights_.end() - 1, at) - weights_.begin()));
  }
  if (strategy >= 5)
    if (auto in = family_input(kernel_, random_)) return *in;
  arguments in{};
  for (int a = 0; a < form.argument_count(); a++)
    in[a] = strategy >= 3 && form.arguments[a] == kind::real ? between_seams() : random_lane(form.arguments[a]);
  return in;
}

}  // namespace vorx::ulp
