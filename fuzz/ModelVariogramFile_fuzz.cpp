// SPDX-License-Identifier: MIT
// Any bytes as a model's file: nothing breaks, and what was read is the same model once it was written.
#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "fuzz/Demand.h"
#include "spatial/ModelVariogramFile.h"
#include "spatial/Stats_ModelVariogram.h"

namespace tallyscope {
namespace {

// Through a file without a place on the disk.
CStats_ModelVariogram Read(std::string_view text) {
  const int file = ::memfd_create("model", 0);
  Demand(file >= 0 && ::write(file, text.data(), text.size()) == static_cast<ssize_t>(text.size()),
         "a file is at hand");
  CStats_ModelVariogram model;
  CString error;
  Demand(LoadFromFile(model, "/proc/self/fd/" + std::to_string(file), error), "every file can be read");
  ::close(file);
  return model;
}

}  // namespace
}  // namespace tallyscope

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tallyscope;
  auto model = Read({reinterpret_cast<const char*>(data), size});
  const CString text = FormatModel(model);
  Demand(FormatModel(Read(text)) == text, "what was written is read again");
  for (const int dimension : {2, 3}) {
    model.Update(dimension);
    Demand(model.transforms.size() == model.nests.size(), "each nest has its transform");
    model.GetValues(30, 10, 100);
  }
  return 0;
}
