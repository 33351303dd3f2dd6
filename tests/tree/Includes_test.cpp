// SPDX-License-Identifier: MIT
// The includes of the whole tree against the table of folders in docs/architecture.md.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "tests/tree/FolderTable.h"
#include "tests/tree/SourceFiles.h"

namespace tallyscope {
namespace {

using Graph = std::map<std::string, std::set<std::string>>;

const FolderTable& GetTable() {
  static const auto table = ReadFolderTable(ReadTreeFile("docs/architecture.md"));
  return table;
}

// The two are one layer: a session knows the search, a search reads data sets.
std::string LayerOf(const std::string& folder) {
  return folder == "statistics" || folder == "spatial" ? "statistics and spatial" : folder;
}

// The nodes of one circle in their order, the first again at the end; empty when there is none.
std::vector<std::string> FindCircle(const Graph& graph) {
  enum State { kNew, kOpen, kDone };
  std::map<std::string, State> states;
  std::vector<std::string> road;
  const auto visit = [&](const auto& self, const std::string& node) -> bool {
    if (states[node] == kDone) return false;
    road.push_back(node);
    if (states[node] == kOpen) return true;
    states[node] = kOpen;
    const auto edges = graph.find(node);
    if (edges != graph.end()) {
      for (const auto& next : edges->second) {
        if (self(self, next)) return true;
      }
    }
    states[node] = kDone;
    road.pop_back();
    return false;
  };
  for (const auto& [node, edges] : graph) {
    if (visit(visit, node)) return {std::find(road.begin(), road.end(), road.back()), road.end()};
  }
  return {};
}

std::string Joined(const std::vector<std::string>& names) {
  std::string text;
  for (const auto& name : names) text += (text.empty() ? "" : " -> ") + name;
  return text;
}

TEST(Includes, TheTableIsReadAsItStands) {
  const auto table = ReadFolderTable(
      "Words.\n\n| folder | what lives there | may include |\n|---|---|---|\n| `a/core/` | x | the standard library |\n"
      "| `b/` | x | `a/core` |\n| `platform/ui/` | x | `b`, Qt |\n| `c/d/`, `c/e/` | `f` | `platform` |\n"
      "| `g/` | x | `c` |\n| `h/` | x | everything above |\n| `tests/` | x | |\n\n| `z/` | x | `b` |\n");
  const std::vector<std::string> folders = {"a/core", "b", "platform/ui", "c/d", "c/e", "g", "h"};
  EXPECT_EQ(table.folders, folders);
  EXPECT_EQ(table.may.at("a/core"), std::set<std::string>{"a/core"});
  EXPECT_EQ(table.may.at("c/e"), (std::set<std::string>{"Qt", "a/core", "b", "c/d", "c/e", "platform/ui"}));
  EXPECT_EQ(table.may.at("h").count("g"), 1U);
  EXPECT_EQ(table.may.at("g").count("h"), 0U);
  EXPECT_EQ(table.may.at("b").count("Qt"), 0U);
}

TEST(Includes, NoneRunsUpTheHouse) {
  const auto& table = GetTable();
  ASSERT_GE(table.folders.size(), 12U);
  int ours = 0;
  for (const auto& file : GetSourceFiles()) {
    const auto folder = file.GetFolder();
    if (!table.HasFolder(folder)) {
      EXPECT_TRUE(file.path.starts_with("tests/") || file.path.starts_with("bench/") || file.path.starts_with("fuzz/"))
          << file.path << " is in no folder of the table";
      continue;
    }
    const auto& may = table.may.at(folder);
    for (const auto& include : FindIncludes(file)) {
      const auto place = file.path + ":" + std::to_string(include.line) + " includes " + include.target;
      if (!include.isOurs) {
        const bool isQt = include.target.starts_with('Q') || include.target.starts_with("Qt");
        EXPECT_TRUE(!isQt || may.count("Qt") != 0) << place;
        continue;
      }
      ++ours;
      const auto target = include.target.substr(0, include.target.find_last_of('/'));
      EXPECT_TRUE(may.count(target) != 0) << place;
    }
  }
  EXPECT_GT(ours, 500);
}

TEST(Includes, FilesMakeNoCircle) {
  Graph graph;
  for (const auto& file : GetSourceFiles()) {
    for (const auto& include : FindIncludes(file)) {
      if (include.isOurs) graph[file.path].insert(include.target);
    }
  }
  EXPECT_EQ(Joined(FindCircle(graph)), "");
  graph["files/A.h"] = {"files/B.h"};
  graph["files/B.h"] = {"files/A.h"};
  EXPECT_EQ(Joined(FindCircle(graph)), "files/A.h -> files/B.h -> files/A.h");
}

TEST(Includes, FoldersMakeNoCircle) {
  const auto& table = GetTable();
  Graph graph;
  for (const auto& file : GetSourceFiles()) {
    const auto folder = file.GetFolder();
    if (!table.HasFolder(folder)) continue;
    for (const auto& include : FindIncludes(file)) {
      const auto target = include.target.substr(0, include.target.find_last_of('/'));
      if (include.isOurs && LayerOf(target) != LayerOf(folder)) {
        graph[LayerOf(folder)].insert(LayerOf(target));
      }
    }
  }
  EXPECT_EQ(Joined(FindCircle(graph)), "");
}

}  // namespace
}  // namespace tallyscope
