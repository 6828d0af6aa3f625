// The library as a file: its sections, symbols and dynamic entries, and where it is loaded.
#pragma once

#include <dlfcn.h>
#include <elf.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "tools/invoke.h"

namespace vorx {

class library_file {
 public:
  struct section {
    std::string_view name;
    const Elf32_Shdr* header;
  };
  struct symbol {
    std::string_view name;
    const Elf32_Sym* entry;
  };

  library_file() {
    Dl_info info;
    if (!dladdr(library_symbol(entry_points().front().symbol()), &info)) return;
    base = static_cast<char*>(info.dli_fbase);
    std::ifstream file(info.dli_fname, std::ios::binary);
    bytes_.assign(std::istreambuf_iterator<char>(file), {});
    for (int i = 0; i < header().e_shnum; i++) {
      const auto* s = at<Elf32_Shdr>(header().e_shoff) + i;
      const auto* names = at<Elf32_Shdr>(header().e_shoff) + header().e_shstrndx;
      sections.push_back({at<char>(names->sh_offset + s->sh_name), s});
    }
  }

  const Elf32_Ehdr& header() const { return *at<Elf32_Ehdr>(0); }
  template <class T>
  const T* at(size_t offset) const {
    return reinterpret_cast<const T*>(bytes_.data() + offset);
  }
  const Elf32_Shdr* find(std::string_view name) const {
    for (const section& s : sections)
      if (s.name == name) return s.header;
    return nullptr;
  }
  // All symbols of .symtab or .dynsym but the empty first.
  std::vector<symbol> symbols(std::string_view table) const {
    std::vector<symbol> all;
    if (const Elf32_Shdr* s = find(table))
      for (size_t i = 1; i < s->sh_size / sizeof(Elf32_Sym); i++) {
        const auto* entry = at<Elf32_Sym>(s->sh_offset) + i;
        all.push_back({at<char>(sections[s->sh_link].header->sh_offset + entry->st_name), entry});
      }
    return all;
  }
  std::vector<Elf32_Dyn> dynamic() const {
    const Elf32_Shdr* s = find(".dynamic");
    const auto* first = at<Elf32_Dyn>(s->sh_offset);
    return {first, first + s->sh_size / sizeof(Elf32_Dyn)};
  }
  std::vector<Elf32_Phdr> segments() const {
    const auto* first = at<Elf32_Phdr>(header().e_phoff);
    return {first, first + header().e_phnum};
  }

  std::vector<section> sections;
  char* base = nullptr;

 private:
  std::vector<char> bytes_;
};

}  // namespace vorx
