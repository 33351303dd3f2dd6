// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

#include "platform/core/String.h"

namespace tallyscope {

// The five characters that XML reserves become entities. An ampersand before a "#" stays, so that a numeric reference
// keeps its meaning.
CString EncodeXml(std::string_view text);

// The other way, numeric references included, which become UTF-8. A reference to no character (0, a surrogate, beyond
// U+10FFFF) gives U+FFFD. An ampersand that begins nothing known is copied. Never longer than its source.
CString DecodeXml(std::string_view text);

}  // namespace tallyscope
