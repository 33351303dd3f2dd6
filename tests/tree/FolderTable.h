// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

namespace tallyscope {

// What each folder may include, as the table of a page has it. A folder may include what those that it names may, and
// those of one row each other.
struct FolderTable {
  std::vector<std::string> folders;                  // in the order of the rows
  std::map<std::string, std::set<std::string>> may;  // "Qt" among them

  bool HasFolder(const std::string& folder) const { return may.count(folder) != 0; }
};

FolderTable ReadFolderTable(const std::string& page);

}  // namespace tallyscope
