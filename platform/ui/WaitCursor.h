// SPDX-License-Identifier: MIT
#pragma once

namespace tallyscope {

// The wait cursor stands while one of these lives. Without a window system it does nothing.
class CWaitCursor {
 public:
  CWaitCursor();
  ~CWaitCursor();
  CWaitCursor(const CWaitCursor&) = delete;
  CWaitCursor& operator=(const CWaitCursor&) = delete;
};

}  // namespace tallyscope
