// SPDX-License-Identifier: MIT
// Any stored file name that is looked for in a small tree of folders: what is found is there, a search ends, and a file
// that the user has shown brings its neighbours. The first line chooses what the user shows; the next ones, up to an
// empty one, are search folders ("*" stands for the tree); the rest is the name, as stored or as it stands.
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "files/UFindLostFile.h"
#include "fuzz/Demand.h"
#include "fuzz/Lines.h"

namespace tallyscope {
namespace {

constexpr std::array<const char*, 6> kFiles = {"run.txt",      "2020/run.txt",      "2020/model.mvf",
                                               "data/2020/au", "data/2020/run.txt", "data/long name.tar.gz"};

// The tree in a folder of the machine's, gone when the program ends.
class Tree {
 public:
  Tree() {
    auto pattern = (std::filesystem::temp_directory_path() / "tallyscope_lost_XXXXXX").string();
    Demand(::mkdtemp(pattern.data()) != nullptr, "a folder is at hand");
    root_ = pattern;
    for (const char* file : kFiles) {
      std::filesystem::create_directories(std::filesystem::path(Path(file)).parent_path());
      std::ofstream(Path(file)) << file;
    }
  }
  Tree(const Tree&) = delete;
  Tree& operator=(const Tree&) = delete;
  ~Tree() {
    std::error_code error;
    std::filesystem::remove_all(root_, error);
  }
  const std::string& GetRoot() const { return root_; }
  std::string Path(const std::string& file) const { return root_ + "/" + file; }

 private:
  std::string root_;
};

const Tree& GetTree() {
  static const Tree tree;
  return tree;
}

// A user who always shows the same.
class Shower : public CLostFileAsker {
 public:
  std::optional<CString> shown;
  int questions = 0;

  bool Confirm(const CString&, const CString&) override {
    ++questions;
    return shown.has_value();
  }
  std::optional<CString> AskOpen(const CString&, const CString&, unsigned, const CString&, int&) override {
    return shown;
  }
  void ShowStatus(const CString&) override {}
};

CString ReadStoredName(std::string_view bytes) {
  CArchive archive(std::vector<std::uint8_t>(bytes.begin(), bytes.end()));
  CUFilename file;
  file.Serialize(archive);
  return archive.IsFailed() ? CString(bytes) : file.GetFullPath();
}

CString NameOf(const CString& path) {
  return CUFilename(path).GetNameAndExtension();
}

void CheckFound(const CUFindLostFile& search, bool found) {
  CFileStatus status;
  Demand(search.IsFound() == found, "it says what it says");
  if (found) Demand(GetFileStatus(search.GetFound().GetFullPath(), status), "what is found is there");
}

void CheckNeighbours(CUFindLostFile& search, const CString& shown) {
  const CString home = shown.substr(0, shown.size() - NameOf(shown).size());
  for (const char* file : kFiles) {
    const CString path = GetTree().Path(file);
    if (path != home + NameOf(path)) continue;
    Demand(search.Locate("/far/away/" + NameOf(path)), "neighbours of what was shown are found");
    CheckFound(search, true);
  }
}

}  // namespace
}  // namespace tallyscope

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tallyscope;
  std::string_view text(reinterpret_cast<const char*>(data), size);
  CUFindLostFile search;
  Shower user;
  const auto choice = static_cast<std::size_t>(std::atoi(std::string(TakeLine(text)).c_str()));
  if (choice < kFiles.size()) user.shown = GetTree().Path(kFiles[choice]);
  while (!text.empty()) {
    const auto folder = TakeLine(text);
    if (folder.empty()) break;
    search.AddFolder(folder[0] == '*' ? GetTree().GetRoot() + CString(folder.substr(1)) : CString(folder));
  }
  const CString wanted = ReadStoredName(text);
  const bool located = search.Locate(wanted);
  CheckFound(search, located);
  if (located && search.GetFound().GetFullPath() != wanted) {
    Demand(search.GetFound().GetFullPath().ends_with(NameOf(wanted)), "it has the name of what was looked for");
  }
  search.SetAsker(&user);
  int filter = 1;
  const bool found = search.Find(wanted, "", 0, "All Files (*.*)|*.*||", filter);
  CheckFound(search, found);
  Demand(found == (located || user.shown), "it is found where it was, or where the user showed");
  Demand(user.questions == (located ? 0 : 1), "and nobody is asked needlessly");
  if (user.shown && !located) CheckNeighbours(search, *user.shown);
  return 0;
}
