// SPDX-License-Identifier: MIT
#include "tests/tree/FolderTable.h"

#include <algorithm>
#include <sstream>
#include <string_view>

namespace tallyscope {

namespace {

constexpr std::string_view kHead = "| folder | what lives there | may include |";
constexpr std::string_view kWindows = "platform/ui";  // the first folder that isn't the core's

std::vector<std::string> CutCells(const std::string& row) {
  std::vector<std::string> cells;
  std::istringstream text(row.substr(1));
  std::string cell;
  while (std::getline(text, cell, '|')) cells.push_back(cell);
  return cells;
}

// What stands between backquotes, without a last "/".
std::vector<std::string> FindNames(const std::string& cell) {
  std::vector<std::string> names;
  for (auto at = cell.find('`'); at != std::string::npos;) {
    const auto end = cell.find('`', at + 1);
    auto name = cell.substr(at + 1, end - at - 1);
    if (name.ends_with('/')) name.pop_back();
    names.push_back(name);
    at = cell.find('`', end + 1);
  }
  return names;
}

bool IsOrBelow(const std::string& folder, const std::string& name) {
  return folder == name || folder.starts_with(name + "/");
}

// The folders that a cell allows, of those in the table: by name ("platform" is all below it), or in words.
std::set<std::string> ReadCell(const std::string& cell, const std::string& own, const FolderTable& table) {
  std::set<std::string> allowed;
  const auto& all = table.folders;
  const auto windows = std::find(all.begin(), all.end(), kWindows);
  if (cell.find("everything above") != std::string::npos) {
    allowed.insert(all.begin(), std::find(all.begin(), all.end(), own));
    allowed.insert("Qt");
  } else if (cell.find("everything") != std::string::npos) {
    allowed.insert(all.begin(), all.end());
    allowed.insert("Qt");
  }
  if (cell.find("the core") != std::string::npos) allowed.insert(all.begin(), windows);
  if (cell.find("Qt") != std::string::npos) allowed.insert("Qt");
  for (const auto& name : FindNames(cell)) {
    std::copy_if(all.begin(), all.end(), std::inserter(allowed, allowed.end()),
                 [&](const std::string& folder) { return IsOrBelow(folder, name); });
  }
  return allowed;
}

void TakeWhatTheyMay(FolderTable& table) {
  for (bool grows = true; grows;) {
    grows = false;
    for (auto& [folder, may] : table.may) {
      const auto before = may;
      for (const auto& each : before) {
        if (table.HasFolder(each)) may.insert(table.may[each].begin(), table.may[each].end());
      }
      grows = grows || may.size() > before.size();
    }
  }
}

}  // namespace

FolderTable ReadFolderTable(const std::string& page) {
  FolderTable table;
  std::vector<std::vector<std::string>> rows;  // folders
  std::vector<std::string> cells;              // what they may include
  std::istringstream lines(page.substr(std::min(page.find(kHead), page.size())));
  for (std::string line; std::getline(lines, line) && line.starts_with('|');) {
    const auto row = CutCells(line);
    if (row.size() < 3 || row[2] == " ") continue;
    rows.push_back(FindNames(row[0]));
    cells.push_back(row[2]);
    table.folders.insert(table.folders.end(), rows.back().begin(), rows.back().end());
  }
  for (std::size_t i = 0; i < rows.size(); ++i) {
    for (const auto& folder : rows[i]) {
      table.may[folder] = ReadCell(cells[i], rows[i].front(), table);
      table.may[folder].insert(rows[i].begin(), rows[i].end());
    }
  }
  TakeWhatTheyMay(table);
  return table;
}

}  // namespace tallyscope
