#include "tools/ulp/run.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <mutex>
#include <optional>
#include <random>
#include <thread>

#include "tools/ulp/interpolate.h"
#include "tools/ulp/sample.h"

namespace vorx::ulp {
namespace {

constexpr uint64_t batch = 1 << 14;  // inputs between two looks at the clock and at `interrupted`
constexpr uint64_t shards = 8;       // of a sample, each with a generator of its own: the same inputs however many threads

constexpr uint64_t first_part = 4099;  // stride of the part of all inputs that is tried first

using clock = std::chrono::steady_clock;
double seconds_since(clock::time_point t) { return std::chrono::duration<double>(clock::now() - t).count(); }

// Prints how far a run is, a few times a second, on one line.
class progress {
 public:
  progress(const entry_point& e, uint64_t total, bool wanted) : symbol_(e.symbol()), total_(total), wanted_(wanted) {}
  void add(uint64_t n) {
    std::lock_guard lock(mutex_);
    done_ += n;
    double now = seconds_since(start_);
    if (!wanted_ || now < last_ + 0.25) return;
    last_ = now;
    double left = now * static_cast<double>(total_ - std::min(done_, total_)) / static_cast<double>(done_);
    std::fprintf(stderr, "\r%-32s %5.1f%%  %4.0f s left ", symbol_.c_str(),
                 100 * static_cast<double>(done_) / static_cast<double>(total_), left);
  }
  ~progress() {
    if (last_ > 0) std::fprintf(stderr, "\r%60s\r", "");
  }

 private:
  std::string symbol_;
  uint64_t total_, done_ = 0;
  bool wanted_;
  double last_ = 0;
  clock::time_point start_ = clock::now();
  std::mutex mutex_;
};

// Work items 0, 1, ... on all threads, each item with a runner of its own or each thread; their statistics together. What a
// runner says of an input may depend on the inputs before.
template <class Work>
statistics in_parallel(const entry_point& kernel, const options& o, uint64_t items, bool runner_for_each, double floor,
                       Work work) {
  statistics all;
  std::mutex mutex;
  std::atomic<uint64_t> next{0};
  auto worker = [&] {
    std::optional<runner> r;
    for (uint64_t item; !interrupted && (item = next++) < items;) {
      if (runner_for_each && r) {
        std::lock_guard lock(mutex);
        all.merge(r->found());
      }
      if (runner_for_each || !r) r.emplace(kernel, o.width, floor);
      work(*r, item);
    }
    std::lock_guard lock(mutex);
    if (r) all.merge(r->found());
    mpfr_free_cache();
  };
  std::vector<std::thread> threads;
  for (int t = 1; t < o.threads; t++) threads.emplace_back(worker);
  worker();
  for (std::thread& t : threads) t.join();
  return all;
}

// Every stride-th block of 64 among all 2^32 inputs.
statistics strided_inputs(const entry_point& kernel, const options& o, uint64_t stride, double floor) {
  const uint64_t blocks = ((1ull << 32) / block + stride - 1) / stride, in_batch = batch / block;
  progress bar(kernel, blocks, o.progress);
  return in_parallel(kernel, o, (blocks + in_batch - 1) / in_batch, false, floor, [&](runner& r, uint64_t item) {
    const uint64_t first = item * in_batch, count = std::min(in_batch, blocks - first);
    r.blocks(first * stride, count, stride);
    bar.add(count);
  });
}

// All inputs start with a small part of them, for a first idea of the largest error: it spares the exact values of errors below.
statistics all_inputs(const entry_point& kernel, const options& o) {
  if (o.stride != 1) return strided_inputs(kernel, o, o.stride, 0);
  const double floor = strided_inputs(kernel, o, first_part, 0).largest;
  return strided_inputs(kernel, o, 1, floor);
}

statistics sampled_inputs(const entry_point& kernel, const options& o) {
  progress bar(kernel, o.count, o.progress);
  return in_parallel(kernel, o, shards, true, 0, [&](runner& r, uint64_t shard) {
    sampler s(kernel, o.seed, shard, shards);
    const uint64_t count = o.count / shards + (shard < o.count % shards);
    std::vector<arguments> in;
    std::vector<double> errors;
    for (uint64_t done = 0; done < count && !interrupted; done += in.size()) {
      s.next(in, std::min(batch / 4, count - done));
      r(in, &errors);
      s.learn(in, errors);
      bar.add(in.size());
    }
  });
}

// The numbers of a format in their order: the two zeros are neighbours.
uint64_t rank(const float_format& f, uint64_t bits) {
  return f.is_negative(bits) ? f.sign - 1 - f.magnitude(bits) : f.sign + bits;
}
uint64_t with_rank(const float_format& f, uint64_t n) { return n < f.sign ? f.sign | (f.sign - 1 - n) : n - f.sign; }

// All numbers of the interval if they are no more than o.count, else random ones and both ends.
statistics interval_inputs(const entry_point& kernel, const options& o) {
  const float_format& f = format_of(kernel.type);
  const uint64_t low = rank(f, o.interval[0]), span = rank(f, o.interval[1]) - low, every = span < o.count ? span + 1 : o.count;
  return in_parallel(kernel, o, (every + batch - 1) / batch, true, 0, [&](runner& r, uint64_t item) {
    std::mt19937_64 random(o.seed * 0x9e3779b97f4a7c15 + item);
    std::vector<arguments> in;
    for (uint64_t i = item * batch; i < std::min((item + 1) * batch, every); i++) {
      const uint64_t chosen = span < o.count ? i : i < 2 ? i * span : random() % (span + 1);
      in.push_back({with_rank(f, low + chosen), 0, 0});
    }
    r(in);
  });
}

}  // namespace

std::atomic<bool> interrupted{false};

bool has_32_bits_of_input(const entry_point& e) {
  const shape& form = e.of->form;
  return form.argument_count() == 1 && lane_bytes(form.arguments[0], e.type) == 4;
}

outcome run(const entry_point& kernel, const options& o) {
  outcome result;
  const clock::time_point start = clock::now();
  const bool all = o.exhaustive && o.interval.empty() && has_32_bits_of_input(kernel);
  result.exhaustive = all && o.stride == 1;
  if (!o.interval.empty())
    result.found = interval_inputs(kernel, o);
  else if (all)
    result.found = all_inputs(kernel, o);
  else if (o.count != 0)
    result.found = sampled_inputs(kernel, o);
  if (!o.extra.empty()) {
    runner r(kernel, o.width);
    r(o.extra);
    result.found.merge(r.found());
  }
  result.complete = !interrupted;
  result.seconds = seconds_since(start);
  return result;
}

}  // namespace vorx::ulp
