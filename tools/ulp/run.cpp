#include "tools/ulp/run.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <mutex>
#include <random>
#include <thread>

#include "tools/ulp/interpolate.h"
#include "tools/ulp/sample.h"

namespace vorx::ulp {
namespace {

constexpr uint64_t batch = 1 << 14;  // inputs between two looks at the clock and at `interrupted`
constexpr uint64_t shards = 8;       // of a sample, each with a generator of its own: the same inputs however many threads

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

// Work items 0, 1, ... on all threads, `items_of_a_runner` consecutive ones with a runner of their own; their statistics
// together. What a runner finds depends on what it found before, so that only runners that always get the same items find the
// same.
template <class Work>
statistics in_parallel(const entry_point& kernel, const options& o, uint64_t items, uint64_t items_of_a_runner, Work work) {
  statistics all;
  std::mutex mutex;
  std::atomic<uint64_t> next{0};
  auto worker = [&] {
    for (uint64_t first; !interrupted && (first = items_of_a_runner * next++) < items;) {
      runner r(kernel, o.width);
      for (uint64_t item = first; !interrupted && item < std::min(first + items_of_a_runner, items); item++) work(r, item);
      std::lock_guard lock(mutex);
      all.merge(r.found());
    }
    mpfr_free_cache();
  };
  std::vector<std::thread> threads;
  for (int t = 1; t < o.threads; t++) threads.emplace_back(worker);
  worker();
  for (std::thread& t : threads) t.join();
  return all;
}

statistics all_inputs(const entry_point& kernel, const options& o) {
  const uint64_t blocks = ((1ull << 32) / block + o.stride - 1) / o.stride, in_batch = batch / block;
  progress bar(kernel, blocks, o.progress);
  return in_parallel(kernel, o, (blocks + in_batch - 1) / in_batch, 256, [&](runner& r, uint64_t item) {
    const uint64_t first = item * in_batch, count = std::min(in_batch, blocks - first);
    r.blocks(first * o.stride, count, o.stride);
    bar.add(count);
  });
}

statistics sampled_inputs(const entry_point& kernel, const options& o) {
  progress bar(kernel, o.count, o.progress);
  return in_parallel(kernel, o, shards, 1, [&](runner& r, uint64_t shard) {
    sampler s(kernel, o.seed, shard, shards);
    std::vector<arguments> in;
    std::vector<double> errors;
    for (uint64_t done = 0; done < o.count / shards && !interrupted; done += in.size()) {
      s.next(in, std::min(batch / 4, o.count / shards - done));
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
  const uint64_t low = rank(f, lane_of(o.interval[0], kind::real, kernel.type));
  const uint64_t high = rank(f, lane_of(o.interval[1], kind::real, kernel.type));
  const uint64_t span = high - low, every = span < o.count ? span + 1 : o.count;
  return in_parallel(kernel, o, (every + batch - 1) / batch, 1, [&](runner& r, uint64_t item) {
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
