// SPDX-License-Identifier: MIT
// Any text can be an opening tag, a name or a value; what was escaped reads back as it was.
#include <cstdlib>
#include <vector>

#include "files/XMLElement.h"
#include "files/XMLText.h"

using namespace tallyscope;

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* bytes, std::size_t size) {
  const CString text(reinterpret_cast<const char*>(bytes), size);
  const XMLElement element(nullptr, text.c_str(), 0);
  std::vector<char> buffer(static_cast<std::size_t>(element.GetName(nullptr)) + 1);
  if (element.GetName(buffer.data()) > element.GetName(nullptr)) std::abort();
  if (DecodeXml(text).size() > text.size() && text.find("&#") == CString::npos) std::abort();
  if (text.find("&#") == CString::npos && DecodeXml(EncodeXml(text)) != text) std::abort();
  return 0;
}
