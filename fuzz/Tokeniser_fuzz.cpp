// SPDX-License-Identifier: MIT
// Any line gives tokens that lie in it, one behind the other, and the cutting ends.
#include <cstdlib>

#include "files/UTokeniser.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* bytes, std::size_t size) {
  tallyscope::CUTokeniser tokeniser;
  tokeniser.SetLine(tallyscope::CString(reinterpret_cast<const char*>(bytes), size));
  int end = 0;
  for (const auto& token : tokeniser.GetTokens()) {
    if (token.start < end || token.length < 0) std::abort();
    end = token.start + token.length;
    if (static_cast<std::size_t>(end) > size) std::abort();
    if (token.type < tallyscope::CUTokeniser::kWord || token.type > tallyscope::CUTokeniser::kComment) std::abort();
  }
  return 0;
}
