// ulp: the accuracy of kernels. See usage().
#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <sstream>
#include <thread>

#include <unistd.h>

#include "tools/ulp/report.h"

using namespace vorx;
using namespace vorx::ulp;

namespace {

[[noreturn]] void usage(const std::string& complaint = "") {
  if (!complaint.empty()) {
    std::fprintf(stderr, "ulp: %s (--help says what there is)\n", complaint.c_str());
    std::exit(2);
  }
  std::fputs(R"(usage: ulp [options] function... | --all | --family NAME
Largest error of a function in ULP against MPFR, and where; share of correctly rounded results; faults.
  --type f32|f64           one element type (default: both)
  --variant accurate|native one variant (default: both)
  --exhaustive             all 2^32 inputs, where there are so many; others are sampled
  --stride N               with --exhaustive: every N-th block of 64 inputs only
  --count N                number of sampled inputs (default 1000000)
  --interval LOW HIGH      inputs from there only: all of them if they are no more than the count (one argument)
  --seed N                 of the sample (default 1): the same seed and count give the same inputs
  --width N                lanes of the entry point under test (default 16)
  --file NAME              further inputs: on each line the arguments as bits (0x...) or numbers (hexadecimal or decimal)
  --threads N              (default: all processors)
  --csv NAME               writes a row for each kernel
  --witnesses NAME         writes the worst input of each kernel
  --profile DIRECTORY      writes the error over the argument, for plots
  --brief                  one line for each kernel
The library is the built one, or that in the environment variable VORX_LIBRARY. The exit status is 1 if a limit of the standard, a
claim of a kernel or the kind of a result (NaN, infinity, sign of zero) is violated, and on an exhaustive run also if a claim is
padded, that is if the largest error is below 80% of it.
)",
             stderr);
  std::exit(2);
}

// What the command line asks for; empty strings where it does not say.
struct request {
  options how;
  std::vector<std::string> names, interval;
  std::string type, variant, family, file, csv, witnesses, profile;
  bool all = false, brief = false;
};

std::vector<arguments> read_inputs(const std::string& name, const entry_point& e) {
  std::ifstream file(name);
  if (!file) usage("cannot read " + name);
  std::vector<arguments> inputs;
  int number = 0;
  for (std::string line; std::getline(file, line);) {
    number++;
    std::istringstream words(line.substr(0, line.find('#')));
    arguments in{};
    int a = 0;
    for (std::string word; words >> word; a++) {
      auto lane = a < e.of->form.argument_count() ? lane_of(word, e.of->form.arguments[a], e.type) : std::nullopt;
      if (!lane) usage(name + ":" + std::to_string(number) + ": " + word);
      in[a] = *lane;
    }
    if (a == 0) continue;
    if (a != e.of->form.argument_count()) usage(name + ":" + std::to_string(number) + ": too few arguments");
    inputs.push_back(in);
  }
  return inputs;
}

std::FILE* open_for_writing(const std::string& name) {
  if (name.empty()) return nullptr;
  std::FILE* f = std::fopen(name.c_str(), "w");
  if (!f) usage("cannot write " + name);
  return f;
}

request parse(int argc, char** argv) {
  request r;
  r.how.threads = static_cast<int>(std::thread::hardware_concurrency());
  r.how.progress = isatty(2);
  for (int i = 1; i < argc; i++) {
    const std::string a = argv[i];
    auto value = [&] { return i + 1 < argc ? std::string(argv[++i]) : (usage(a + " needs a value"), std::string()); };
    auto integer = [&] {
      const std::string text = value();
      char* end;
      const uint64_t n = std::strtoull(text.c_str(), &end, 0);
      if (text.empty() || *end != '\0' || text[0] == '-') usage(a + " " + text);
      return n;
    };
    auto one_of = [&](const char* first, const char* second) {
      const std::string text = value();
      if (text != first && text != second) usage(a + " " + text);
      return text;
    };
    if (a == "--all")
      r.all = true;
    else if (a == "--brief")
      r.brief = true;
    else if (a == "--exhaustive")
      r.how.exhaustive = true;
    else if (a == "--type")
      r.type = one_of("f32", "f64");
    else if (a == "--variant")
      r.variant = one_of("accurate", "native");
    else if (a == "--family")
      r.family = value();
    else if (a == "--stride")
      r.how.stride = integer();
    else if (a == "--count")
      r.how.count = integer();
    else if (a == "--interval")
      r.interval = {value(), value()};
    else if (a == "--seed")
      r.how.seed = integer();
    else if (a == "--width")
      r.how.width = static_cast<int>(integer());
    else if (a == "--threads")
      r.how.threads = static_cast<int>(integer());
    else if (a == "--file")
      r.file = value();
    else if (a == "--csv")
      r.csv = value();
    else if (a == "--witnesses")
      r.witnesses = value();
    else if (a == "--profile")
      r.profile = value();
    else if (a[0] == '-')
      usage(a == "--help" ? "" : "unknown option " + a);
    else
      r.names.push_back(a);
  }
  if (r.names.empty() && !r.all && r.family.empty()) usage("no function");
  if (r.how.stride == 0) usage("the stride must be positive");
  if (std::find(std::begin(widths), std::end(widths), r.how.width) == std::end(widths)) usage("no such width");
  return r;
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
    if (kernels.size() == before) usage("no function " + name + ", or it is not there yet");
  }
  add_if([&](const entry_point& e) { return r.all || r.family == e.of->family; });
  std::erase_if(kernels, [&](const entry_point& e) {
    return (!r.type.empty() && r.type != (e.type == element::f32 ? "f32" : "f64")) ||
           (!r.variant.empty() && r.variant != (e.native ? "native" : "accurate"));
  });
  if (kernels.empty()) usage("no kernel of that type and variant");
  return kernels;
}

// How one kernel is run: what is asked for, with interval and inputs read for its type.
options options_for(const request& r, const entry_point& e) {
  options o = r.how;
  if (!r.interval.empty()) {
    const bool real = e.of->form.argument_count() == 1 && e.of->form.arguments[0] == kind::real;
    auto low = lane_of(r.interval[0], kind::real, e.type), high = lane_of(r.interval[1], kind::real, e.type);
    if (!real || !low || !high) usage("an interval is two numbers, for functions of one real argument");
    if (!(as_double(e.type, *low) <= as_double(e.type, *high))) usage("the interval is empty");
    o.interval = {*low, *high};
  }
  if (!r.file.empty()) o.extra = read_inputs(r.file, e);
  return o;
}

// Runs and reports the kernels; returns the exit status.
int measure(const request& r, const std::vector<entry_point>& kernels) {
  std::FILE *csv = open_for_writing(r.csv), *witnesses = open_for_writing(r.witnesses);
  if (csv) write_csv_head(csv);
  if (witnesses) write_witness_head(witnesses);
  int failed = 0, done = 0;
  for (const entry_point& e : kernels) {
    if (interrupted) break;
    const options o = options_for(r, e);
    const outcome result = run(e, o);
    print_summary(e, result);
    if (!r.brief) print_details(e, result);
    std::fflush(stdout);
    if (csv) write_csv_row(csv, e, result, o);
    if (witnesses) write_witness(witnesses, e, result);
    if (!r.profile.empty() && !write_profile(r.profile, e, result)) usage("cannot write to " + r.profile);
    failed += verdict(e, result).compare(0, 4, "pass") != 0;
    done++;
  }
  if (csv) std::fclose(csv);
  if (witnesses) std::fclose(witnesses);
  if (done > 1) std::printf("%d of %d kernels pass\n", done - failed, done);
  return interrupted ? 130 : failed != 0;
}

}  // namespace

int main(int argc, char** argv) {
  const request r = parse(argc, argv);
  const std::vector<entry_point> kernels = kernels_of(r);
  std::signal(SIGINT, [](int) { interrupted = true; });
  return measure(r, kernels);
}
