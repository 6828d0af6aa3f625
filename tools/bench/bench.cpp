// The speed tool: cycles per lane of every entry point, beside the scalar C library and the independent vector library.
//
//   bench [--filter=REGEX] [--quick] [--repetitions=N] [--csv=FILE] [--commit=NAME]
//
// All that belongs to one entry point is measured in turns, in slices of some microseconds, so that what disturbs the machine
// disturbs all alike; a repetition takes the lower quartile of its slices, the table the median of the repetitions. Google
// Benchmark runs the repetitions, in random order over the whole run.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <regex>
#include <string>
#include <vector>

#include "tools/bench/clock.h"
#include "tools/bench/subject.h"
#include "tools/bench/table.h"

using namespace vorx;
using namespace vorx::bench;

namespace {

// What the command line says; everything else is passed on to Google Benchmark.
struct command {
  std::string filter = ".", csv, commit = "unknown";
  int repetitions = 9, rounds = 12;
  double slice_microseconds = 8;
};

bool value_of(const char* argument, const char* flag, std::string& value) {
  size_t n = std::strlen(flag);
  if (std::strncmp(argument, flag, n) != 0 || argument[n] != '=') return false;
  value = argument + n + 1;
  return true;
}

command parse(int argc, char** argv) {
  command c;
  std::string number;
  for (int i = 1; i < argc; i++) {
    const char* a = argv[i];
    if (std::strcmp(a, "--quick") == 0)
      c.repetitions = 1, c.rounds = 2, c.slice_microseconds = 0;
    else if (value_of(a, "--repetitions", number))
      c.repetitions = std::max(1, std::atoi(number.c_str()));
    else if (!value_of(a, "--filter", c.filter) && !value_of(a, "--csv", c.csv) && !value_of(a, "--commit", c.commit)) {
      std::fprintf(stderr, "usage: bench [--filter=REGEX] [--quick] [--repetitions=N] [--csv=FILE] [--commit=NAME]\n");
      std::exit(2);
    }
  }
  return c;
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

}  // namespace

int main(int argc, char** argv) {
  command c = parse(argc, argv);
  std::string command_line;
  for (int i = 0; i < argc; i++) command_line += std::string(i ? " " : "") + (i ? argv[i] : "bench");

  std::vector<std::string> flags = {argv[0], "--benchmark_repetitions=" + std::to_string(c.repetitions),
                                    "--benchmark_enable_random_interleaving=true"};
  std::vector<char*> pointers;
  for (std::string& f : flags) pointers.push_back(f.data());
  int count = static_cast<int>(pointers.size());
  benchmark::Initialize(&count, pointers.data());

  const std::regex wanted(c.filter);
  for (const entry_point& e : entry_points()) {
    if (!std::regex_search(e.symbol(), wanted)) continue;
    benchmark::RegisterBenchmark(e.symbol().c_str(), [e, &c](benchmark::State& s) { measure(s, e, c.slice_microseconds); })
        ->UseManualTime()
        ->Iterations(c.rounds);
  }
  table t(c.csv, command_line, c.commit);
  size_t run = benchmark::RunSpecifiedBenchmarks(&t);
  if (run == 0) std::fprintf(stderr, "no entry point matches %s\n", c.filter.c_str());
  return run == 0;
}
