// The speed tool: cycles per lane of every entry point, beside the scalar C library and the independent vector library.
//
// All that belongs to one entry point is measured in turns, in slices of some microseconds, so that what disturbs the machine
// disturbs all alike; a repetition takes the lower quartile of its slices, the table the median of the repetitions. Google
// Benchmark runs the repetitions, in random order over the whole run.
#include <benchmark/benchmark.h>

#include <regex>
#include <string>
#include <vector>

#include "tools/bench/clock.h"
#include "tools/bench/subject.h"
#include "tools/bench/table.h"
#include "tools/command_line.h"

using namespace vorx;
using namespace vorx::bench;

namespace {

struct command {
  std::string filter = ".", csv, commit = "unknown";
  int repetitions = 9, rounds = 12;
  double slice_microseconds = 8;
};

void add_options(CLI::App& app, command& c) {
  app.add_option("--filter", c.filter, "Regular expression: entry points whose name it matches somewhere");
  app.add_flag_callback(
      "--quick", [&c] { c.repetitions = 1, c.rounds = 2, c.slice_microseconds = 0; }, "The smallest counts");
  app.add_option("--repetitions", c.repetitions, "Default: 9")->check(CLI::Range(1, 1000));
  app.add_option("--csv", c.csv, "Writes a row for each entry point");
  app.add_option("--commit", c.commit, "What is measured: into the head of that file");
}

std::vector<entry_point> matching(const std::string& filter) {
  std::vector<entry_point> found;
  const std::regex wanted = [&] {
    try {
      return std::regex(filter);
    } catch (const std::regex_error& e) {
      throw std::runtime_error("--filter: " + filter + ": " + e.what());
    }
  }();
  for (const entry_point& e : entry_points())
    if (std::regex_search(e.symbol(), wanted)) found.push_back(e);
  if (found.empty()) throw std::runtime_error("no entry point matches " + filter);
  return found;
}

void measure(benchmark::State& state, const entry_point& e, double slice_microseconds) {
  subject s(e, slice_microseconds);
  std::vector<round_result> rounds;
  for (auto _ : state) {
    rounds.push_back(s.round());
    state.SetIterationTime(rounds.back()[size_t(quantity::throughput)] / ticks_per_second());
  }
  for (auto& [name, value] : s.summary(rounds)) state.counters[name] = value;
}

void run(const command& c, const std::string& command_line) {
  const std::vector<entry_point> entries = matching(c.filter);
  table t(c.csv, command_line, c.commit);
  std::vector<std::string> flags = {"bench", "--benchmark_repetitions=" + std::to_string(c.repetitions),
                                    "--benchmark_enable_random_interleaving=true"};
  std::vector<char*> pointers;
  for (std::string& f : flags) pointers.push_back(f.data());
  int count = static_cast<int>(pointers.size());
  benchmark::Initialize(&count, pointers.data());
  for (const entry_point& e : entries)
    benchmark::RegisterBenchmark(e.symbol().c_str(), [e, &c](benchmark::State& s) { measure(s, e, c.slice_microseconds); })
        ->UseManualTime()
        ->Iterations(c.rounds);
  benchmark::RunSpecifiedBenchmarks(&t);
  t.close();
}

}  // namespace

int main(int argc, char** argv) {
  std::string command_line = "bench";
  for (int i = 1; i < argc; i++) command_line += std::string(" ") + argv[i];
  command c;
  return run_tool(
      argc, argv, "Cycles per lane of every entry point, beside the scalar C library and the independent vector library.",
      [&](CLI::App& app) { add_options(app, c); }, [&] { return run(c, command_line), 0; });
}
