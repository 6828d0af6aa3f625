// The results as a table on the screen and as a CSV file: medians of the repetitions, and their spread.
#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

#include "tools/command_line.h"

namespace vorx::bench {

class table : public benchmark::BenchmarkReporter {
 public:
  // Also into the file, unless its name is empty; its head names the processor, the command and the commit.
  table(const std::string& csv, std::string command, std::string commit);
  bool ReportContext(const Context&) override { return true; }
  void ReportRuns(const std::vector<Run>& runs) override;
  void Finalize() override;
  void close() { csv_.close(); }  // fails if the file could not be written

 private:
  using repetitions = std::map<std::string, std::vector<double>>;  // by quantity
  output_file csv_;
  std::string command_, commit_;
  std::map<std::string, repetitions> entries_;  // by symbol
};

}  // namespace vorx::bench
