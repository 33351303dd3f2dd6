// SPDX-License-Identifier: MIT
#pragma once

#include "platform/core/StdioFile.h"

namespace tallyscope {

// Which file failed and why, for a message box: two sentences with line breaks between.
CString FileErrorText(const CFileException& failure, CStdioFile::OpenMode mode, const CString& fullPath);

}  // namespace tallyscope
