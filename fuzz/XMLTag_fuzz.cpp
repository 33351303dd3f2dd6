// SPDX-License-Identifier: MIT
// Any text can be an opening tag, a name or a value; what was escaped reads back as it was.
#include <cstdlib>
#include <vector>

#include "files/XMLElement.h"
#include "files/XMLText.h"

using namespace tallyscope;

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* bytes, std::size_t size) {
  const CString text(reinterpret_cast<const char*>(bytes), size);
  XMLElement element(nullptr, text.c_str(), 0);
  std::vector<char> buffer(static_cast<std::size_t>(element.GetName(nullptr)) + 1);
  if (element.GetName(buffer.data()) > element.GetName(nullptr)) std::abort();
  if (DecodeXml(text).size() > text.size()) std::abort();
  if (text.find("&#") == CString::npos && DecodeXml(EncodeXml(text)) != text) std::abort();
  XMLAttribute* const attribute = element.FindAttribute(text, true);
  attribute->SetValue(text, true);
  buffer.resize(static_cast<std::size_t>(attribute->GetValue(static_cast<char*>(nullptr))) + 1);
  attribute->GetValue(buffer.data());
  attribute->GetValueInt();
  attribute->GetValueFloat();
  return 0;
}
