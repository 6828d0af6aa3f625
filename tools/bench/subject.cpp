#include "tools/bench/subject.h"

#include <cmath>
#include <cstring>
#include <functional>
#include <limits>

#include "tools/bench/clock.h"
#include "tools/bench/inlined.h"
#include "tools/bench/peers.h"
#include "tools/bench/statistics.h"
#include "tools/invoke.h"

namespace vorx::bench {

// Lane i of argument a of call n is lane n * width + i of the argument's array.
void fill_records(const entry_point& e, const lane_bytes_of_arguments& arguments, int lanes, char* first_record) {
  const record r = record_of(e.of->form, e.type, e.width);
  for (int a = 0; a < e.of->form.argument_count(); a++) {
    int bytes = e.width * lane_bytes(e.of->form.arguments[a], e.type);
    for (int n = 0; n < lanes / e.width; n++)
      std::memcpy(first_record + n * r.bytes + r.argument[a], &arguments[a][size_t(n * bytes)], size_t(bytes));
  }
}

subject::subject(const entry_point& e, double slice_microseconds)
    : entry_(e),
      record_(record_of(e.of->form, e.type, e.width)),
      slice_ticks_(slice_microseconds * 1e-6 * ticks_per_second()),
      ordinary_(size_t(lanes / e.width + 1) * record_.bytes),
      special_(size_t(lanes / e.width + 1) * record_.bytes) {
  const void* address = library_symbol(e.symbol());
  lane_bytes_of_arguments arguments = ordinary_arguments(*e.of, e.type, lanes);
  fill_records(e, arguments, lanes, ordinary_.data());

  add(quantity::throughput, call_loop(e, address), ordinary_);
  add(quantity::empty, call_loop(e, empty_entry()), ordinary_);
  add(quantity::latency, call_loop(e, address, chaining::result), ordinary_);
  add(quantity::empty_latency, call_loop(e, empty_entry(), chaining::result), ordinary_);
  if (peer p = scalar_peer(*e.of, e.type); p.address) add(quantity::scalar, call_loop(e, p), ordinary_);
  if (e.width * lane_bytes(kind::real, e.type) >= 16 && e.width != 3) {  // whole registers only
    if (peer p = vector_peer(*e.of, e.type, true); p.address) add(quantity::vector_accurate, call_loop(e, p), ordinary_);
    if (peer p = vector_peer(*e.of, e.type, false); p.address) add(quantity::vector_fast, call_loop(e, p), ordinary_);
  }
  add_inlined(arguments);
  add_special(address, arguments);
}

void subject::add(quantity q, call_loop loop, aligned_bytes& records) {
  auto shared = std::make_shared<call_loop>(std::move(loop));
  char* first = records.data();
  char* last = first + lanes / entry_.width * record_.bytes;
  add(q, [shared, first, last] { (*shared)(first, last); });
}

void subject::add(quantity q, std::function<void()> pass) {
  slice& s = slices_[size_t(q)];
  s.pass = std::move(pass);
  double fastest = std::numeric_limits<double>::infinity();
  for (int i = 0; i < 3; i++) {
    uint64_t start = ticks();
    s.pass();
    fastest = std::min(fastest, double(ticks() - start));
  }
  s.passes = std::max(1, static_cast<int>(slice_ticks_ / fastest));
}

void subject::add_inlined(const lane_bytes_of_arguments& arguments) {
  const inlined_kernel* k = inlined_kernel_of(entry_);
  if (k == nullptr || k->loop == nullptr) return;
  std::array<const void*, 3> in = {};
  std::array<void*, 2> out = {};
  lane_arrays_.reserve(in.size() + out.size());
  for (size_t a = 0; a < in.size(); a++) {
    lane_arrays_.emplace_back(arguments[a].size());
    std::memcpy(lane_arrays_.back().data(), arguments[a].data(), arguments[a].size());
    in[a] = lane_arrays_.back().data();
  }
  for (void*& p : out) p = lane_arrays_.emplace_back(lanes * 8).data();
  int registers = lanes * lane_bytes(kind::real, entry_.type) / 16;
  add(quantity::inlined, [k, in, out, registers] { k->loop(in.data(), out.data(), registers); });
}

// The same arguments, with one lane of each call replaced by the first unusual argument that the lane test flags.
void subject::add_special(const void* address, lane_bytes_of_arguments arguments) {
  const inlined_kernel* k = inlined_kernel_of(entry_);
  if (k == nullptr || k->flags == nullptr || entry_.of->form.arguments[0] != kind::real) return;
  for (const unusual& u : unusual_arguments) {
    alignas(16) unsigned char x[3][32] = {};
    for (size_t a = 0; a < 3; a++) std::memcpy(x[a], arguments[a].data(), std::min(sizeof x[a], arguments[a].size()));
    auto single = static_cast<float>(u.value);
    size_t size = entry_.type == element::f32 ? 4 : 8;
    const void* value = size == 4 ? static_cast<const void*>(&single) : &u.value;
    std::memcpy(x[0], value, size);
    const void* in[] = {x[0], x[1], x[2]};
    if (!k->flags(in)) continue;
    for (int n = 0; n < lanes / entry_.width; n++)
      std::memcpy(&arguments[0][size_t(n * entry_.width + n % entry_.width) * size], value, size);
    fill_records(entry_, arguments, lanes, special_.data());
    add(quantity::special, call_loop(entry_, address), special_);
    return;
  }
}

round_result subject::round() {
  round_result r;
  cycles_per_tick_.push_back(cycles_per_tick());
  for (size_t q = 0; q < quantities; q++) {
    const slice& s = slices_[q];
    r[q] = std::numeric_limits<double>::quiet_NaN();
    if (!s.pass) continue;
    s.pass();
    uint64_t start = ticks();
    for (int i = 0; i < s.passes; i++) s.pass();
    r[q] = double(ticks() - start) / s.passes;
  }
  return r;
}

std::map<std::string, double> subject::summary(const std::vector<round_result>& rounds) const {
  const int calls = lanes / entry_.width, lanes_done = calls * entry_.width;
  double frequency = median(cycles_per_tick_);
  auto ticks_of = [&](quantity q) {
    std::vector<double> sample;
    for (const round_result& r : rounds) sample.push_back(r[size_t(q)]);
    return quantile(sample, 0.25);
  };
  double own = ticks_of(quantity::throughput);
  std::map<std::string, double> all = {
      {"cycles", own * frequency / lanes_done},
      {"ns", own / ticks_per_second() * 1e9 / lanes_done},
      {"inlined", ticks_of(quantity::inlined) * frequency / lanes},
      {"empty", ticks_of(quantity::empty) * frequency / calls},
      {"latency", ticks_of(quantity::latency) * frequency / calls},
      {"empty_latency", ticks_of(quantity::empty_latency) * frequency / calls},
      {"special", (ticks_of(quantity::special) - own) * frequency / calls},
      {"scalar_ratio", ticks_of(quantity::scalar) / own},
      {"vector_accurate_ratio", ticks_of(quantity::vector_accurate) / own},
      {"vector_fast_ratio", ticks_of(quantity::vector_fast) / own},
  };
  std::erase_if(all, [](const auto& item) { return !std::isfinite(item.second); });
  return all;
}

}  // namespace vorx::bench
