// What the library file exports, needs and contains.
#include <algorithm>
#include <set>

#include "tests/library_file.h"

using namespace vorx;

namespace {

struct Library : testing::Test {
  library_file file;
  void SetUp() override { ASSERT_FALSE(file.sections.empty()); }
  std::vector<Elf32_Dyn> entries(int tag) const {
    std::vector<Elf32_Dyn> found;
    for (const Elf32_Dyn& d : file.dynamic())
      if (d.d_tag == tag) found.push_back(d);
    return found;
  }
};

TEST_F(Library, ExportsTheEntryPointsThatExistAndNothingElse) {
  std::set<std::string> expected, exported;
  for (const entry_point& e : entry_points()) expected.insert(e.symbol());
  ASSERT_EQ(expected.size(), entry_points().size()) << "two entry points of one name";
  for (const auto& s : file.symbols(".dynsym")) {
    EXPECT_NE(s.entry->st_shndx, SHN_UNDEF) << s.name << " is imported";
    EXPECT_EQ(ELF32_ST_TYPE(s.entry->st_info), STT_FUNC) << s.name;
    EXPECT_GT(s.entry->st_size, 0u) << s.name;
    exported.emplace(s.name);
  }
  EXPECT_EQ(exported, expected);
  EXPECT_EQ(entry_points(false).size(), 1956u);
}

// `__ocl_vorx_p8_`, the function, `f` for float, the width, `_native`: read from the right, every name has one meaning.
TEST_F(Library, NamesFollowTheGrammar) {
  for (const entry_point& e : entry_points(false)) {
    std::string name = e.symbol();
    ASSERT_TRUE(name.starts_with("__ocl_vorx_p8_"));
    name.erase(0, std::strlen("__ocl_vorx_p8_"));
    const bool native = name.ends_with("_native");
    if (native) name.resize(name.size() - std::strlen("_native"));
    int meanings = 0;
    for (const function& f : catalogue())
      for (const char* letter : {"f", ""})
        for (int width : widths)
          meanings += name == f.name + std::string(letter) + std::to_string(width) && (f.native || !native);
    EXPECT_EQ(meanings, 1) << e.symbol();
  }
}

// The rows of the conversions are written by hand: what a name says of the integers, its shape says too.
TEST(Catalogue, ShapesOfConversionsSayWhatTheirNamesSay) {
  const std::pair<const char*, kind> integers[] = {
      {"i32", kind::i32}, {"u32", kind::u32}, {"i64", kind::i64}, {"u64", kind::u64}};
  int conversions = 0;
  for (const function& f : catalogue())
    for (const auto& [word, k] : integers) {
      const std::string name = f.name, to = std::string("cvtfpto") + word, from = std::string("cvt") + word + "tofp";
      if (!name.starts_with(to) && !name.starts_with(from)) continue;
      const bool to_integer = name.starts_with(to);
      EXPECT_EQ(f.form.arguments[0], to_integer ? kind::real : k) << name;
      EXPECT_EQ(f.form.results[0], to_integer ? k : kind::real) << name;
      conversions++;
    }
  EXPECT_EQ(conversions, 48);
}

TEST_F(Library, DependsOnNothingAndHidesNothing) {
  EXPECT_TRUE(entries(DT_NEEDED).empty());
  EXPECT_TRUE(entries(DT_TEXTREL).empty());
  ASSERT_EQ(entries(DT_SONAME).size(), 1u);
  const Elf32_Shdr* names = file.find(".dynstr");
  EXPECT_STREQ(file.at<char>(names->sh_offset + entries(DT_SONAME)[0].d_un.d_val), "__ocl_vorx_p8.so");
  // No constructors: loading the library runs no code.
  for (int tag : {DT_INIT, DT_INIT_ARRAY, DT_FINI, DT_FINI_ARRAY}) EXPECT_TRUE(entries(tag).empty()) << tag;
}

TEST_F(Library, HasNoWritableData) {
  for (const auto& [name, header] : file.sections) {
    const bool written_by_the_loader = name == ".dynamic" || name == ".got";
    if (header->sh_flags & SHF_WRITE) EXPECT_TRUE(written_by_the_loader) << name;
    EXPECT_FALSE(header->sh_flags & SHF_WRITE && header->sh_flags & SHF_EXECINSTR) << name;
  }
  // What the loader writes is read-only afterwards, and bound at once.
  auto segments = file.segments();
  auto relro = std::find_if(segments.begin(), segments.end(), [](auto& s) { return s.p_type == PT_GNU_RELRO; });
  auto stack = std::find_if(segments.begin(), segments.end(), [](auto& s) { return s.p_type == PT_GNU_STACK; });
  ASSERT_NE(relro, segments.end());
  ASSERT_NE(stack, segments.end());
  EXPECT_FALSE(stack->p_flags & PF_X);
  for (const Elf32_Phdr& s : segments) {
    if (s.p_type != PT_LOAD || !(s.p_flags & PF_W)) continue;
    EXPECT_LE(relro->p_vaddr, s.p_vaddr);
    EXPECT_GE(relro->p_vaddr + relro->p_memsz, s.p_vaddr + s.p_memsz);
    EXPECT_FALSE(s.p_flags & PF_X);
  }
  auto flags = entries(DT_FLAGS);
  ASSERT_EQ(flags.size(), 1u);
  EXPECT_TRUE(flags[0].d_un.d_val & DF_BIND_NOW);
}

TEST_F(Library, HasNoRelocations) {
  for (const auto& [name, header] : file.sections)
    if (header->sh_flags & SHF_ALLOC)
      EXPECT_FALSE(header->sh_type == SHT_REL || header->sh_type == SHT_RELA || header->sh_type == SHT_RELR) << name;
}

TEST_F(Library, IsSmallerThanFourMebibytes) {
  uint64_t size = 0;
  for (const auto& [name, header] : file.sections)
    if (header->sh_flags & SHF_ALLOC) size += header->sh_size;
  EXPECT_LE(size, 4u << 20);
  std::printf("%llu bytes of code and tables\n", static_cast<unsigned long long>(size));
}

}  // namespace
