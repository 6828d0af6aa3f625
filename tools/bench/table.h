// The results as a table on the screen and as a CSV file: medians of the repetitions, and their spread.
#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

namespace vorx::bench {

class table : public benchmark::BenchmarkReporter {
 public:
  // Also into the file, unless its name is empty; its head names the processor, the command and the commit.
  table(std::string csv, std::string command, std::string commit);
  bool ReportContext(const Context&) override { return true; }
  void ReportRuns(const std::vector<Run>& runs) override;
  void Finalize() override;

 private:
  using repetitions = std::map<std::string, std::vector<double>>;  // by quantity
  std::string csv_, command_, commit_;
  std::map<std::string, repetitions> entries_;  // by symbol
};

}  // namespace vorx::bench
