// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

#include "platform/core/String.h"

namespace tallyscope {

bool IsUtf8(std::string_view text);

// Latin-1 as it is met in files: the codes 0x80 to 0x9F, which Latin-1 leaves to control characters, stand for the
// printable ones of Windows-1252.
CString Latin1ToUtf8(std::string_view text);

}  // namespace tallyscope
