#include "tools/ulp/run.h"

namespace vorx::ulp {
namespace {

entry_point with_width(entry_point e, int width) {
  e.width = width;
  return e;
}

// What a hostile neighbour holds, in turn: 1, -infinity, a signalling NaN, a subnormal, a huge number.
uint64_t hostile(kind k, element type, uint64_t turn) {
  static constexpr uint64_t f32[] = {0x3f800000, 0xff800000, 0x7fa00001, 0x80000001, 0x7f7fffff};
  static constexpr uint64_t f64[] = {0x3ff0000000000000, 0xfff0000000000000, 0x7ff4000000000001, 0x8000000000000001,
                                     0x7fefffffffffffff};
  static constexpr uint64_t integer[] = {1, 0x8000000080000000, 0, ~0ull, 0x7fffffff7fffffff};
  if (k != kind::real) return integer[turn % 5];
  return type == element::f32 ? f32[turn % 5] : f64[turn % 5];
}

}  // namespace

runner::runner(const entry_point& kernel, int width)
    : at_width_(with_width(kernel, width)),
      beside_hostile_(with_width(kernel, 4)),
      whole_vector_(claims_of(kernel).whole_vector),
      judge_(kernel),
      wide_(at_width_),
      four_(beside_hostile_) {}

void runner::operator()(const std::vector<arguments>& inputs, std::vector<double>* errors) {
  const shape& form = at_width_.of->form;
  const int n_arguments = form.argument_count(), n_results = form.result_count(), width = at_width_.width;
  const size_t count = inputs.size();
  among_peers_.resize(count);
  if (errors) errors->resize(count);

  for (size_t i = 0; i < count; i += static_cast<size_t>(width)) {
    for (int lane = 0; lane < width; lane++) {
      const arguments& in = inputs[std::min(i + static_cast<size_t>(lane), count - 1)];
      for (int a = 0; a < n_arguments; a++) wide_.set(a, lane, in[a]);
    }
    wide_();
    for (size_t j = i; j < std::min(i + static_cast<size_t>(width), count); j++)
      for (int r = 0; r < n_results; r++) among_peers_[j][r] = wide_.get(r, static_cast<int>(j - i));
  }
  for (size_t i = 0; i < count; i++) {
    double e = judge_(inputs[i], among_peers_[i]);
    if (errors) (*errors)[i] = e;
  }
  for (size_t i = 0; i < count; i += 3) {
    const int bad = static_cast<int>(turn_ % 4);
    turn_++;
    auto input_of = [&](int lane) { return i + static_cast<size_t>(lane - (lane > bad)); };
    for (int lane = 0; lane < 4; lane++)
      for (int a = 0; a < n_arguments; a++)
        four_.set(a, lane,
                  lane == bad ? hostile(form.arguments[a], at_width_.type, turn_ / 4 + static_cast<uint64_t>(a) * (turn_ / 20))
                              : inputs[std::min(input_of(lane), count - 1)][a]);
    four_();
    for (int lane = 0; lane < 4; lane++) {
      size_t j = input_of(lane);
      if (lane == bad || j >= count) continue;
      results beside{};
      bool differs = false;
      for (int r = 0; r < n_results; r++) {
        beside[r] = four_.get(r, lane);
        differs |= beside[r] != among_peers_[j][r];
      }
      if (differs) judge_.neighbour_matters(inputs[j], among_peers_[j], beside, whole_vector_);
    }
  }
}

}  // namespace vorx::ulp
