// What the command lines of all tools have in common: one line for a bad option or a failure and exit status 2, output files that
// are opened before the work and checked after it.
#pragma once

#include <CLI/CLI.hpp>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <stdexcept>
#include <string>

namespace vorx {

// A file to be written. Without a name there is none.
class output_file {
 public:
  explicit output_file(const std::string& name) : name_(name), file_(name.empty() ? nullptr : std::fopen(name.c_str(), "w")) {
    if (!name.empty() && !file_) fail();
  }
  output_file(const output_file&) = delete;
  output_file& operator=(const output_file&) = delete;
  ~output_file() {
    if (file_) std::fclose(file_);
  }

  explicit operator bool() const { return file_ != nullptr; }
  std::FILE* get() const { return file_; }

  // The file is complete only after this: what could not be written shows here.
  void close() {
    if (!file_) return;
    const bool failed = std::ferror(file_) != 0;
    if (std::fclose(std::exchange(file_, nullptr)) != 0 || failed) fail();
  }

 private:
  [[noreturn]] void fail() const { throw std::runtime_error("cannot write " + name_ + ": " + std::strerror(errno)); }

  std::string name_;
  std::FILE* file_;
};

// Runs a tool: `prepare` adds the options, `work` returns the exit status. Whatever goes wrong is one line and status 2, a full
// disk behind the standard output as well.
template <class Prepare, class Work>
int run_tool(int argc, char** argv, const std::string& description, Prepare prepare, Work work) {
  CLI::App app(description);
  try {
    prepare(app);
    app.parse(argc, argv);
    const int status = work();
    if (std::fflush(stdout) != 0 || std::ferror(stdout))
      throw std::runtime_error(std::string("standard output: ") + std::strerror(errno));
    return status;
  } catch (const CLI::Success& help) {
    return app.exit(help);
  } catch (const std::exception& e) {
    std::fprintf(stderr, "%s: %s (--help says what there is)\n", argv[0], e.what());
    return 2;
  }
}

}  // namespace vorx
