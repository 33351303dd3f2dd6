// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace tallyscope {

// Text of names, headings, captions and sentences, always UTF-8.
using CString = std::string;

}  // namespace tallyscope
