// ulp: the accuracy of kernels.
#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <map>
#include <sstream>
#include <thread>

#include <unistd.h>

#include "tools/command_line.h"
#include "tools/ulp/report.h"

using namespace vorx;
using namespace vorx::ulp;

namespace {

// What the command line asks for; empty strings where it does not say.
struct request {
  options how;
  std::vector<std::string> names, interval;
  std::string environment = "nearest", type, variant, family, file, csv, witnesses, profile;
  bool all = false, brief = false;
};

std::vector<arguments> read_inputs(const std::string& name, const entry_point& e) {
  std::ifstream file(name);
  if (!file) throw std::runtime_error("cannot read " + name);
  std::vector<arguments> inputs;
  int number = 0;
  for (std::string line; std::getline(file, line);) {
    number++;
    std::istringstream words(line.substr(0, line.find('#')));
    arguments in{};
    int a = 0;
    for (std::string word; words >> word; a++) {
      auto lane = a < e.of->form.argument_count() ? lane_of(word, e.of->form.arguments[a], e.type) : std::nullopt;
      if (!lane) throw std::runtime_error(name + ":" + std::to_string(number) + ": " + word);
      in[a] = *lane;
    }
    if (a == 0) continue;
    if (a != e.of->form.argument_count()) throw std::runtime_error(name + ":" + std::to_string(number) + ": too few arguments");
    inputs.push_back(in);
  }
  if (inputs.empty()) throw std::runtime_error(name + ": no inputs");
  return inputs;
}

constexpr char description[] =
    R"(Largest error of functions in ULP against MPFR, and where; share of correctly rounded results; faults.

The library is the built one, or that in the environment variable VORX_LIBRARY. The exit status is 1 if a limit of the standard, a
claim of a kernel or the kind of a result (NaN, infinity, sign of zero) is violated, and on an exhaustive run also if a claim is
padded, that is if the largest error is below 80% of it (and it is no bound by definition of the processor's estimates); it is 2 if
the tool cannot do what it is asked to, 130 after an interrupt.)";

void add_options(CLI::App& app, request& r) {
  r.how.threads = static_cast<int>(std::thread::hardware_concurrency());
  r.how.progress = isatty(2);
  auto functions = app.add_option("function", r.names, "Functions, as the catalogue names them");
  auto all = app.add_flag("--all", r.all, "All functions that exist");
  auto family = app.add_option("--family", r.family, "All functions of a family: explog, roots, trig, special, exact");
  functions->excludes(all)->excludes(family);
  all->excludes(family);
  app.add_option("--type", r.type, "One element type instead of both")->check(CLI::IsMember({"f32", "f64"}));
  app.add_option("--variant", r.variant, "One variant instead of both")->check(CLI::IsMember({"accurate", "native"}));
  auto exhaustive =
      app.add_flag("--exhaustive", r.how.exhaustive, "All 2^32 inputs, where there are so many; others are sampled");
  app.add_option("--stride", r.how.stride, "With --exhaustive: every N-th block of 64 inputs only")
      ->check(CLI::Range(1, 1 << 20))
      ->needs(exhaustive);
  app.add_option("--count", r.how.count, "Number of sampled inputs (default 1000000)")
      ->check(CLI::Range(uint64_t{0}, uint64_t{1000000000000}));
  app.add_option("--interval", r.interval,
                 "Inputs from LOW to HIGH only: all of them if they are no more than the count (one argument)")
      ->expected(2)
      ->type_name("LOW HIGH");
  app.add_option("--seed", r.how.seed, "Of the sample (default 1): the same seed and count give the same inputs");
  app.add_option("--width", r.how.width, "Lanes of the entry point under test (default 16)")
      ->check(CLI::IsMember(std::vector<int>(std::begin(widths), std::end(widths))));
  app.add_option("--file", r.file,
                 "Further inputs: on each line the arguments as bits (0x...) or numbers (hexadecimal or decimal)")
      ->check(CLI::ExistingFile);
  app.add_option("--environment", r.environment,
                 "Call with another rounding, or with subnormal results flushed and subnormal arguments read as zero")
      ->check(CLI::IsMember({"nearest", "down", "up", "zero", "flush"}));
  app.add_option("--threads", r.how.threads, "Default: all processors")->check(CLI::Range(1, 256));
  app.add_option("--csv", r.csv, "Writes a row for each kernel");
  app.add_option("--witnesses", r.witnesses, "Writes the worst input of each kernel");
  app.add_option("--profile", r.profile, "Writes the error over the argument into files of this directory, for plots")
      ->check(CLI::ExistingDirectory);
  app.add_flag("--brief", r.brief, "One line for each kernel");
}

// The kernels asked for, as entry points of the width under test.
std::vector<entry_point> kernels_of(const request& r) {
  std::vector<entry_point> kernels;
  auto add_if = [&](auto wanted) {
    for (const entry_point& e : entry_points())
      if (e.width == r.how.width && wanted(e)) kernels.push_back(e);
  };
  for (const std::string& name : r.names) {
    const size_t before = kernels.size();
    add_if([&](const entry_point& e) { return name == e.of->name; });
    if (kernels.size() == before) throw std::runtime_error("no function " + name + ", or it is not there yet");
  }
  add_if([&](const entry_point& e) { return r.all || r.family == e.of->family; });
  std::erase_if(kernels, [&](const entry_point& e) {
    return (!r.type.empty() && r.type != (e.type == element::f32 ? "f32" : "f64")) ||
           (!r.variant.empty() && r.variant != (e.native ? "native" : "accurate"));
  });
  if (kernels.empty()) throw std::runtime_error("no such kernel, or it is not there yet");
  return kernels;
}

// How one kernel is run: what is asked for, with interval and inputs read for its type.
options options_for(const request& r, const entry_point& e) {
  options o = r.how;
  if (!r.interval.empty()) {
    const bool real = e.of->form.argument_count() == 1 && e.of->form.arguments[0] == kind::real;
    auto low = lane_of(r.interval[0], kind::real, e.type), high = lane_of(r.interval[1], kind::real, e.type);
    if (!real || !low || !high) throw std::runtime_error("an interval is two numbers, for functions of one real argument");
    if (!(as_double(e.type, *low) <= as_double(e.type, *high))) throw std::runtime_error("the interval is empty");
    o.interval = {*low, *high};
  }
  if (!r.file.empty()) o.extra = read_inputs(r.file, e);
  return o;
}

// Runs and reports the kernels; returns the exit status.
int measure(const request& r, const std::vector<entry_point>& kernels) {
  output_file csv(r.csv), witnesses(r.witnesses);
  if (csv) write_csv_head(csv.get());
  if (witnesses) write_witness_head(witnesses.get());
  int failed = 0, done = 0;
  for (const entry_point& e : kernels) {
    if (interrupted) break;
    const options o = options_for(r, e);
    const outcome result = run(e, o);
    print_summary(e, result);
    if (!r.brief) print_details(e, result);
    std::fflush(stdout);
    if (csv) write_csv_row(csv.get(), e, result, o);
    if (witnesses) write_witness(witnesses.get(), e, result);
    if (!r.profile.empty() && !write_profile(r.profile, e, result)) throw std::runtime_error("cannot write to " + r.profile);
    failed += verdict(e, result).compare(0, 4, "pass") != 0;
    done++;
  }
  csv.close();
  witnesses.close();
  if (interrupted)
    std::printf("interrupted in the %d. of %zu kernels\n", done, kernels.size());
  else if (done > 1)
    std::printf("%d of %d kernels pass\n", done - failed, done);
  return interrupted ? 130 : failed != 0;
}

}  // namespace

int main(int argc, char** argv) {
  request r;
  return run_tool(
      argc, argv, description, [&](CLI::App& app) { add_options(app, r); },
      [&] {
        if (r.names.empty() && !r.all && r.family.empty()) throw std::runtime_error("no function");
        if (r.how.count == 0 && !r.how.exhaustive && r.interval.empty() && r.file.empty())
          throw std::runtime_error("no inputs: --count 0 goes with --exhaustive or --file");
        const std::map<std::string, uint32_t> control = {
            {"nearest", 0x1f80}, {"down", 0x3f80}, {"up", 0x5f80}, {"zero", 0x7f80}, {"flush", 0x9fc0}};
        caller::mxcsr = control.at(r.environment);
        const std::vector<entry_point> kernels = kernels_of(r);
        std::signal(SIGINT, [](int) { interrupted = true; });
        return measure(r, kernels);
      });
}
