// SPDX-License-Identifier: MIT
// Any lines as the tags of a document's conditioning: the first is the element, the others its children. Nothing
// breaks, a second reading changes nothing, and neither does a reading of what was written, after one round.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "conditioning/Stats_Conditioning.h"
#include "files/XMLElement.h"
#include "fuzz/Demand.h"

namespace tallyscope {
namespace {

void AddChildren(XMLElement& root, std::string_view text) {
  XMLElement* parent = &root;
  while (!text.empty()) {
    const auto end = text.find('\n');
    const std::string line(text.substr(0, end));
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    auto* child = new XMLElement(parent, line.c_str(), 0);
    parent->AddElement(child);
    if (parent == &root) parent = child;
  }
}

// NaN differs from itself, so it is a change each time.
bool HasNaN(const CStats_Conditioning& rules) {
  bool found = std::isnan(rules.backgroundValue) || std::isnan(rules.capMinimum) || std::isnan(rules.capMaximum);
  for (const double value : rules.nullValues) found |= std::isnan(value);
  for (const auto& range : rules.nullRanges) found |= std::isnan(range.minimum) || std::isnan(range.maximum);
  return found;
}

// So do infinities, whose difference is no number.
bool HasInfinity(const CStats_Conditioning& rules) {
  bool found = std::isinf(rules.backgroundValue) || std::isinf(rules.capMinimum) || std::isinf(rules.capMaximum);
  for (const double value : rules.nullValues) found |= std::isinf(value);
  for (const auto& range : rules.nullRanges) found |= std::isinf(range.minimum) || std::isinf(range.maximum);
  return found;
}

}  // namespace
}  // namespace tallyscope

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tallyscope;
  XMLElement root(nullptr, "Document", 0);
  AddChildren(root, {reinterpret_cast<const char*>(data), size});
  CStats_Conditioning rules;
  rules.SetProperties(&root);
  if (HasNaN(rules) || HasInfinity(rules)) return 0;
  Demand(rules.SetProperties(&root) == 0, "a second reading changes nothing");
  XMLElement first(nullptr, "Document", 0);
  rules.GetProperties(&first);
  CStats_Conditioning read;
  read.SetProperties(&first);
  XMLElement second(nullptr, "Document", 0);
  read.GetProperties(&second);
  Demand(read.SetProperties(&second) == 0, "six decimals are final after one round");
  return 0;
}
