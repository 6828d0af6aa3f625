#include "tools/ulp/interpolate.h"
#include "tools/ulp/run.h"

namespace vorx::ulp {
namespace {

entry_point with_width(entry_point e, int width) {
  e.width = width;
  return e;
}

// What a hostile neighbour holds, in turn: 1, -infinity, a signalling NaN, a subnormal, a huge number.
uint64_t hostile(kind k, element type, uint32_t turn) {
  static constexpr uint64_t f32[] = {0x3f800000, 0xff800000, 0x7fa00001, 0x80000001, 0x7f7fffff};
  static constexpr uint64_t f64[] = {0x3ff0000000000000, 0xfff0000000000000, 0x7ff4000000000001, 0x8000000000000001,
                                     0x7fefffffffffffff};
  static constexpr uint64_t integer[] = {1, 0x8000000080000000, 0, ~0ull, 0x7fffffff7fffffff};
  if (k != kind::real) return integer[turn % 5];
  return type == element::f32 ? f32[turn % 5] : f64[turn % 5];
}

}  // namespace

runner::runner(const entry_point& kernel, int width, double floor)
    : at_width_(with_width(kernel, width)),
      beside_hostile_(with_width(kernel, 4)),
      whole_vector_(claims_of(kernel).whole_vector),
      judge_(kernel),
      wide_(at_width_),
      four_(beside_hostile_) {
  judge_.floor = floor;
  const shape& form = kernel.of->form;
  if (kernel.type == element::f64 || form.argument_count() > 1 || form.arguments[0] != kind::real) return;
  for (int r = 0; r < form.result_count(); r++) {
    result_reference reference = reference_of(*kernel.of, kernel.type, r);
    if (reference.real && reference.real->quick) estimates_[r] = *reference.real;
  }
}

void runner::operator()(const std::vector<arguments>& inputs, std::vector<double>* errors) {
  call_among_peers(inputs);
  if (errors) errors->resize(inputs.size());
  for (size_t i = 0; i < inputs.size(); i++) {
    double e = judge_(inputs[i], among_peers_[i]);
    if (errors) (*errors)[i] = e;
  }
  call_beside_hostile(inputs);
}

void runner::blocks(uint64_t first, uint64_t count, uint64_t stride) {
  turn_ = static_cast<uint32_t>(first);  // the same neighbours whoever gets these blocks
  inputs_.resize(count * block);
  for (uint64_t b = 0; b < count; b++)
    for (uint64_t i = 0; i < block; i++) inputs_[b * block + i] = {(first + b * stride) * block + i, 0, 0};
  if (!estimates_[0]) return (*this)(inputs_);
  estimated_.resize(inputs_.size());
  for (size_t r = 0; r < 2 && estimates_[r]; r++)
    for (size_t b = 0; b < count; b++) {
      double values[block];
      estimate_block(*estimates_[r], static_cast<uint32_t>(inputs_[b * block][0]), values);
      for (size_t i = 0; i < block; i++) estimated_[b * block + i][r] = values[i];
    }
  call_among_peers(inputs_);
  for (size_t b = 0; b < inputs_.size(); b += block) {
    if (!estimates_[1] && judge_.take_plain(static_cast<uint32_t>(inputs_[b][0]), &among_peers_[b], &estimated_[b])) continue;
    for (size_t i = b; i < b + block; i++) judge_(inputs_[i], among_peers_[i], estimated_[i].data());
  }
  call_beside_hostile(inputs_);
}

void runner::call_among_peers(const std::vector<arguments>& inputs) {
  const shape& form = at_width_.of->form;
  const int n_arguments = form.argument_count(), n_results = form.result_count(), width = at_width_.width;
  const size_t count = inputs.size();
  among_peers_.resize(count);
  for (size_t i = 0; i < count; i += static_cast<size_t>(width)) {
    for (int lane = 0; lane < width; lane++) {
      const arguments& in = inputs[std::min(i + static_cast<size_t>(lane), count - 1)];
      for (int a = 0; a < n_arguments; a++) wide_.set(a, lane, in[a]);
    }
    wide_();
    for (size_t j = i; j < std::min(i + static_cast<size_t>(width), count); j++)
      for (int r = 0; r < n_results; r++) among_peers_[j][r] = wide_.get(r, static_cast<int>(j - i));
  }
}

// Four lanes at a time, one of them hostile: which one, and what it holds, changes from call to call.
void runner::call_beside_hostile(const std::vector<arguments>& inputs) {
  const shape& form = at_width_.of->form;
  const int n_arguments = form.argument_count(), n_results = form.result_count();
  const size_t count = inputs.size();
  for (size_t i = 0; i < count; i += 3, turn_++) {
    const int bad = static_cast<int>(turn_ % 4);
    auto input_of = [&](int lane) { return i + static_cast<size_t>(lane - (lane > bad)); };
    for (int lane = 0; lane < 4; lane++)
      for (int a = 0; a < n_arguments; a++) {
        const uint32_t which = turn_ / 4 + static_cast<uint32_t>(a) * (turn_ / 20);
        four_.set(
            a, lane,
            lane == bad ? hostile(form.arguments[a], at_width_.type, which) : inputs[std::min(input_of(lane), count - 1)][a]);
      }
    four_();
    for (int lane = 0; lane < 4; lane++) {
      const size_t j = input_of(lane);
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
