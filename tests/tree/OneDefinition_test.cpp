// SPDX-License-Identifier: MIT
// A class of one file lives in an unnamed namespace: two of one name in a program are undefined behaviour, which a
// linker doesn't tell.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "tests/tree/SourceFiles.h"

namespace tallyscope {
namespace {

// What is linked with what: a test binary is its folder and the product, a fuzzer its file and the product.
std::string GroupOf(const SourceFile& file) {
  if (file.path.starts_with("fuzz/") && file.path.ends_with(".cpp")) return file.path;
  return file.path.starts_with("tests/") || file.path.starts_with("bench/") ? file.GetFolder() : "";
}

TEST(OneDefinition, NamesAreFoundWhereAllWhoLinkSeeThem) {
  struct Row {
    const char* source;
    std::vector<std::string> names;
  };
  const Row rows[] = {
      {"namespace a { class C { struct Inner {}; }; struct D; enum class E : int { kOne }; }", {"a::C", "a::E"}},
      {"namespace a { namespace { struct C {}; } struct D final : C {}; }", {"a::D"}},
      {"namespace a::b { template <class T> struct C {}; template <class T> T F(T x) { return x; } }",
       {"a::b::C", "a::b::F(T x )"}},
      {"namespace a { inline int F(int x) { return x; } int G() { struct L {}; return 0; } inline constexpr int k = 3; "
       "}",
       {"a::F(int x )", "a::k"}},
      {"// class A {};\n/* struct B {}; */ namespace a { const char* t = R\"x(class C {};)x\"; char q = '\"'; class D "
       "{}; }",
       {"a::D"}},
      {"#define M \\\n class A {};\nnamespace a { X::X() : a(1), b{2} { int i = 1'000; } struct S { int x; } s; class "
       "C; }",
       {"a::S"}},
      {"extern \"C\" { int f(); } struct Global {}; using namespace a; namespace b = a; class [[nodiscard]] Last {};",
       {"Global", "Last"}},
  };
  for (const auto& row : rows) EXPECT_EQ(FindSharedNames(row.source), row.names) << row.source;
}

TEST(OneDefinition, EachSharedNameStandsInOneFile) {
  std::map<std::string, std::map<std::string, std::set<std::string>>> places;  // by name and group: files
  for (const auto& file : GetSourceFiles()) {
    for (const auto& name : FindSharedNames(file.text)) places[name][GroupOf(file)].insert(file.path);
  }
  EXPECT_GT(places.size(), 200U);
  EXPECT_EQ(places["tallyscope::CStats_Data"][""], std::set<std::string>{"statistics/Stats_Data.h"});
  for (auto& [name, groups] : places) {
    const auto product = groups[""];
    for (auto files : groups) {
      files.second.insert(product.begin(), product.end());
      std::string all;
      for (const auto& file : files.second) all += "\n  " + file;
      EXPECT_LE(files.second.size(), 1U) << name << " is defined in" << all;
    }
  }
}

}  // namespace
}  // namespace tallyscope
