// SPDX-License-Identifier: MIT
// Any text as a path: its parts make the path again, they are found again in what is stored, and any bytes can be read
// as a stored one.
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "files/FolderMemory.h"
#include "files/UFilename.h"
#include "fuzz/Demand.h"
#include "platform/core/Profile.h"

namespace tallyscope {
namespace {

constexpr std::size_t kMostOfPart = 255;

bool AreSame(const CUFilename& a, const CUFilename& b) {
  return a.GetDrive() == b.GetDrive() && a.GetFolder() == b.GetFolder() && a.GetName() == b.GetName() &&
         a.GetExtension() == b.GetExtension() && a.GetDriveAndFolder() == b.GetDriveAndFolder() &&
         a.GetNameAndExtension() == b.GetNameAndExtension() && a.GetFullPath() == b.GetFullPath();
}

CUFilename Load(std::vector<std::uint8_t> bytes, bool mustSucceed) {
  CArchive archive(std::move(bytes));
  CUFilename file;
  file.Serialize(archive);
  Demand(!mustSucceed || (!archive.IsFailed() && archive.GetRemaining() == 0), "what was stored can be loaded");
  return file;
}

void CheckStored(CUFilename file) {
  CArchive archive;
  file.Serialize(archive);
  Demand(AreSame(Load(archive.GetBytes(), true), file), "a stored path is the same");
}

void CheckParts(const CUFilename& file) {
  Demand(file.GetDrive().size() <= 2 && file.GetFolder().size() <= kMostOfPart &&
             file.GetName().size() <= kMostOfPart && file.GetExtension().size() <= kMostOfPart,
         "parts are cut");
  Demand(file.GetDriveAndFolder() == file.GetDrive() + file.GetFolder(), "drive and folder are those parts");
  Demand(file.GetNameAndExtension() == file.GetName() + file.GetExtension(), "so are name and extension");
  Demand(file.GetName().find_first_of("/\\") == CString::npos, "a name has no separator");
  Demand(file.GetExtension().empty() || file.GetExtension()[0] == '.', "an extension starts with its dot");
  Demand(file.GetExtension().find_first_of("/\\") == CString::npos && file.GetExtension().rfind('.') + 1 < 2,
         "and has no other");
  Demand(file.GetFolder().empty() || file.GetFolder().size() == kMostOfPart || IsPathSeparator(file.GetFolder().back()),
         "a folder ends in a separator");
  const bool isCut = file.GetFolder().size() == kMostOfPart || file.GetName().size() == kMostOfPart ||
                     file.GetExtension().size() == kMostOfPart;
  Demand(isCut || file.GetDriveAndFolder() + file.GetNameAndExtension() == file.GetFullPath(),
         "the parts are the path");
}

void CheckFolder(const CString& path) {
  CUFilename folder;
  folder.SetPath(path, true);
  CheckParts(folder);
  Demand(folder.GetNameAndExtension().empty(), "a folder has no name");
  Demand(folder.GetFullPath().starts_with(path) && folder.GetFullPath().size() <= path.size() + 1,
         "a separator is added at most");
  CUFilename again;
  again.SetPath(folder.GetFullPath(), true);
  Demand(AreSame(folder, again), "and once");
  CMemoryProfile profile;
  SetDefaultFolder(profile, "PATH", "Table", path);
  Demand(GetDefaultFolder(profile, "PATH", "Table") == WithSeparator(path), "a remembered folder is that one");
}

}  // namespace
}  // namespace tallyscope

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tallyscope;
  const CString path(reinterpret_cast<const char*>(data), size);
  const CUFilename file(path);
  Demand(file.GetFullPath() == path, "the full path is whole");
  CheckParts(file);
  CheckStored(file);
  CheckFolder(path);
  CheckStored(Load({data, data + size}, false));
  return 0;
}
