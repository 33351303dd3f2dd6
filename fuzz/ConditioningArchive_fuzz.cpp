// SPDX-License-Identifier: MIT
// Any bytes as an archive of conditioning: nothing breaks, no room is made for what isn't there, and what was read
// whole is stored and read again as the same.
#include <cstddef>
#include <cstdint>
#include <vector>

#include "conditioning/Stats_Conditioning.h"
#include "fuzz/Demand.h"
#include "platform/core/Archive.h"

namespace tallyscope {
namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes Store(CStats_Conditioning& rules) {
  CArchive archive;
  rules.Serialize(archive);
  return archive.GetBytes();
}

bool Load(CStats_Conditioning& rules, Bytes bytes) {
  CArchive archive(std::move(bytes));
  rules.Serialize(archive);
  return !archive.IsFailed();
}

}  // namespace
}  // namespace tallyscope

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tallyscope;
  CStats_Conditioning rules;
  Load(rules, Bytes(data, data + size));
  Demand(rules.nullValues.size() + rules.nullRanges.size() + rules.nullStrings.size() + rules.operators.size() <= size,
         "no more records than bytes");
  double number = 5;
  rules.ProcessValue(number);
  for (const auto& step : rules.operators) step.GetValueS();
  CStats_Conditioning again;
  const auto stored = Store(rules);
  Demand(Load(again, stored), "what was stored can be loaded");
  Demand(Store(again) == stored, "and is the same");
  return 0;
}
