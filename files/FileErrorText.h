// SPDX-License-Identifier: MIT
#pragma once

#include "platform/core/StdioFile.h"

namespace tallyscope {

// Which file failed and why, for a message box: two sentences with line breaks between.
CString FileErrorText(const CFileException& failure, CStdioFile::OpenMode mode, const CString& fullPath);
// The same with a reason that isn't the system's.
CString FileErrorText(const char* reason, CStdioFile::OpenMode mode, const CString& fullPath);

}  // namespace tallyscope
