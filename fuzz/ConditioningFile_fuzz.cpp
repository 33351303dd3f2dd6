// SPDX-License-Identifier: MIT
// Any bytes as a file of conditioning parameters: nothing breaks, and what is written of it is read again as the same.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "conditioning/ConditioningFile.h"

namespace tallyscope {
namespace {

bool CanBeWritten(const CString& text) {
  return text.find_first_of("\"\n") == CString::npos && !text.ends_with('\r');
}

// Whether the form has a way to write all of it.
bool IsWritable(const CStats_Conditioning& rules) {
  for (const auto& text : rules.nullStrings) {
    if (!CanBeWritten(text)) return false;
  }
  return CanBeWritten(rules.nullString) && CanBeWritten(rules.backgroundString);
}

}  // namespace
}  // namespace tallyscope

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tallyscope;
  const auto rules = ParseConditioning({reinterpret_cast<const char*>(data), size});
  double number = 5;
  CString text = "x";
  rules.ProcessValue(number);
  rules.ProcessValue(text);
  if (!IsWritable(rules)) return 0;
  // Ten digits are final after one round.
  const CString once = FormatConditioning(rules);
  const CString twice = FormatConditioning(ParseConditioning(once));
  if (once == twice) return 0;
  std::fprintf(stderr, "Written:\n%s\nRead and written again:\n%s\n", once.c_str(), twice.c_str());
  std::abort();
}
