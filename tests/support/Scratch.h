// SPDX-License-Identifier: MIT
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace tallyscope {

inline std::string ReadAll(const std::string& path) {
  std::ostringstream text;
  text << std::ifstream(path, std::ios::binary).rdbuf();
  return text.str();
}

// A folder of its own, gone with the object.
class CScratch {
 public:
  CScratch() {
    char name[] = "scratch_XXXXXX";
    folder = ::mkdtemp(name);
  }
  CScratch(const CScratch&) = delete;
  CScratch& operator=(const CScratch&) = delete;
  ~CScratch() { std::filesystem::remove_all(folder); }

  std::string Path(const std::string& name) const { return folder + "/" + name; }
  std::string Write(const std::string& name, const std::string& text) const {
    std::ofstream(Path(name), std::ios::binary) << text;
    return Path(name);
  }
  std::vector<std::string> List() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) names.push_back(entry.path().filename());
    return names;
  }

  std::string folder;
};

}  // namespace tallyscope
