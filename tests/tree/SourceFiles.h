// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

namespace tallyscope {

// A source of this tree. Paths are from its root, with "/".
struct SourceFile {
  std::string path;
  std::string text;

  std::string GetFolder() const { return path.substr(0, path.find_last_of('/')); }
};

// All of them, headers too, but for what a build leaves; in the order of their paths.
const std::vector<SourceFile>& GetSourceFiles();

// A page of the tree as it stands.
std::string ReadTreeFile(const std::string& path);

struct IncludeLine {
  int line = 0;  // the first is 1
  std::string target;
  bool isOurs = false;  // in quotes
};
std::vector<IncludeLine> FindIncludes(const SourceFile& file);

// The words and signs of a source, without comments, directives and what stands in quotes.
std::vector<std::string> CutTokens(const std::string& text);

// The names that a source defines for all who link it: types, inline functions and templates of functions outside of
// unnamed namespaces. "tallyscope::CGridCtrl"; functions with their parameters.
std::vector<std::string> FindSharedNames(const std::string& text);

}  // namespace tallyscope
