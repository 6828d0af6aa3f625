#include "tools/bench/table.h"

#include <cstdio>
#include <fstream>

#include "frame/catalogue.h"
#include "tools/bench/statistics.h"

namespace vorx::bench {
namespace {

struct column {
  const char* name;     // in the CSV, and of the quantity
  const char* heading;  // on the screen; null for a column of the CSV only
  bool with_spread;
};
const column columns[] = {
    {"cycles", "cycles/lane", true},
    {"ns", nullptr, false},
    {"inlined", "inlined", false},
    {"latency", "latency", false},
    {"special", "special", false},
    {"empty", "empty", false},
    {"empty_latency", nullptr, false},
    {"scalar_ratio", "x scalar", true},
    {"vector_accurate_ratio", "x vec 1.0", true},
    {"vector_fast_ratio", "x vec 3.5", true},
};

std::string processor() {
  std::ifstream info("/proc/cpuinfo");
  for (std::string line; std::getline(info, line);)
    if (line.starts_with("model name")) return line.substr(line.find(':') + 2);
  return "unknown";
}

}  // namespace

table::table(const std::string& csv, std::string command, std::string commit)
    : csv_(csv), command_(std::move(command)), commit_(std::move(commit)) {}

void table::ReportRuns(const std::vector<Run>& runs) {
  for (const Run& run : runs)
    if (run.run_type == Run::RT_Iteration)
      for (const auto& [name, value] : run.counters) entries_[run.run_name.function_name][name].push_back(value);
}

void table::Finalize() {
  std::FILE* file = csv_.get();
  std::printf("%-34s", "medians (+- spread)");
  for (const column& c : columns)
    if (c.heading) std::printf(c.with_spread ? " %16s" : " %9s", c.heading);
  std::printf("\n");
  if (file) {
    std::fprintf(file, "# processor: %s\n# commit: %s\n# command: %s\n", processor().c_str(), commit_.c_str(), command_.c_str());
    std::fprintf(file, "function,family,type,width,variant");
    for (const column& c : columns) std::fprintf(file, c.with_spread ? ",%s,%s_spread" : ",%s", c.name, c.name);
    std::fprintf(file, "\n");
  }
  for (const entry_point& e : entry_points()) {
    auto entry = entries_.find(e.symbol());
    if (entry == entries_.end()) continue;
    std::printf("%-34s", e.symbol().c_str());
    if (file)
      std::fprintf(file, "%s,%s,%s,%d,%s", e.of->name, e.of->family, e.type == element::f32 ? "float" : "double", e.width,
                   e.native ? "native" : "accurate");
    for (const column& c : columns) {
      const std::vector<double>& sample = entry->second[c.name];
      bool known = !sample.empty();
      if (c.heading && !known) std::printf(c.with_spread ? " %16s" : " %9s", "-");
      if (c.heading && known) {
        std::printf(c.with_spread ? " %8.2f" : " %9.1f", median(sample));
        if (c.with_spread) std::printf(" +-%4.1f%%", 100 * spread(sample));
      }
      if (file && known) std::fprintf(file, c.with_spread ? ",%.4g,%.2g" : ",%.4g", median(sample), spread(sample));
      if (file && !known) std::fprintf(file, c.with_spread ? ",," : ",");
    }
    std::printf("\n");
    if (file) std::fprintf(file, "\n");
  }
}

}  // namespace vorx::bench
