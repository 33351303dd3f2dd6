// SPDX-License-Identifier: MIT
#include "host/OutputTargets.h"

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <optional>
#include <ostream>
#include <utility>

#include <CLI/CLI.hpp>

#include "host/Sentences.h"

namespace tallyscope {

namespace {

// What tells a file from every other: its inode; for one that isn't there yet, the inode of its folder, and its name.
struct FileIdentity {
  dev_t device = 0;
  ino_t inode = 0;
  CString name;  // empty for a file that is there

  friend bool operator==(const FileIdentity&, const FileIdentity&) = default;
};

// Nothing for what can't be met twice: a device, a pipe, a folder that isn't there.
std::optional<FileIdentity> Identify(const CString& path, int stream) {
  if (path.empty()) return std::nullopt;
  struct stat facts {};
  if ((path == "-" ? fstat(stream, &facts) : stat(path.c_str(), &facts)) == 0) {
    if (!S_ISREG(facts.st_mode)) return std::nullopt;
    return FileIdentity{facts.st_dev, facts.st_ino, {}};
  }
  const std::filesystem::path place(path);
  const auto folder = place.has_parent_path() ? place.parent_path() : std::filesystem::path(".");
  if (stat(folder.c_str(), &facts) != 0) return std::nullopt;
  return FileIdentity{facts.st_dev, facts.st_ino, place.filename()};
}

CString Name(const CString& path, const char* stream) {
  return path == "-" ? stream : path;
}

CString DescribeClash(const CommandFiles& files) {
  std::vector<std::pair<FileIdentity, CString>> written;
  for (const auto& path : files.writes) {
    const auto target = Identify(path, STDOUT_FILENO);
    if (!target) continue;
    const CString name = Name(path, "Standard output");
    for (const auto& [other, otherName] : written) {
      if (other == *target) return otherName + " and " + name + " are one file: two things would be written to it";
    }
    for (const auto& input : files.reads) {
      if (Identify(input, STDIN_FILENO) != target) continue;
      const CString same =
          input == path ? CString() : " is the same file as " + Name(input, "standard input") + ", which";
      return name + same + " is read: it would be written over";
    }
    written.emplace_back(*target, name);
  }
  return {};
}

}  // namespace

void AddForceFlag(CLI::App& app, bool& force) {
  app.add_flag("--force", force, "write over a file that is read, or two things to one file");
}

bool MayWrite(const CommandFiles& files, bool force, std::ostream& err) {
  const CString clash = force ? CString() : DescribeClash(files);
  if (clash.empty()) return true;
  Say(err, clash + ". Choose another name, or give --force.");
  return false;
}

}  // namespace tallyscope
