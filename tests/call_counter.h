// Counts how often code of the library is reached: a breakpoint on each of its local functions whose name matches. What is
// reached does not run: it returns at once, so results are not to be looked at while a counter is armed.
#pragma once

#include <signal.h>
#include <sys/mman.h>
#include <ucontext.h>
#include <unistd.h>

#include "tests/library_file.h"

namespace vorx {

class call_counter {
 public:
  template <class Matches>
  explicit call_counter(Matches matches) {
    struct sigaction action {};
    action.sa_sigaction = reached;
    action.sa_flags = SA_SIGINFO;
    sigaction(SIGTRAP, &action, &before_);
    static const library_file file;
    for (const auto& [name, entry] : file.symbols(".symtab"))
      if (ELF32_ST_TYPE(entry->st_info) == STT_FUNC && matches(name)) {
        char* code = file.base + entry->st_value;
        put(code, breakpoint, &replaced_.emplace_back(code, '\0').second);
      }
  }
  ~call_counter() {
    for (auto& [code, original] : replaced_) put(code, original, nullptr);
    sigaction(SIGTRAP, &before_, nullptr);
  }
  call_counter(const call_counter&) = delete;

  size_t functions() const { return replaced_.size(); }
  // Calls since the last time.
  static size_t take() {
    size_t n = count;
    count = 0;
    return n;
  }

 private:
  static constexpr char breakpoint = static_cast<char>(0xcc);
  static inline volatile size_t count = 0;

  static void reached(int, siginfo_t*, void* context) {
    auto& registers = static_cast<ucontext_t*>(context)->uc_mcontext.gregs;
    count = count + 1;
    registers[REG_EIP] = *reinterpret_cast<greg_t*>(registers[REG_ESP]);  // return; the caller removes the arguments
    registers[REG_ESP] += 4;
  }
  static void put(char* code, char instruction, char* original) {
    const auto page = static_cast<uintptr_t>(sysconf(_SC_PAGESIZE));
    void* start = reinterpret_cast<void*>(reinterpret_cast<uintptr_t>(code) & ~(page - 1));
    mprotect(start, page, PROT_READ | PROT_WRITE | PROT_EXEC);
    if (original) *original = *code;
    *code = instruction;
    mprotect(start, page, PROT_READ | PROT_EXEC);
  }

  std::vector<std::pair<char*, char>> replaced_;
  struct sigaction before_ {};
};

}  // namespace vorx
