// SPDX-License-Identifier: MIT
#pragma once

#include <iosfwd>
#include <vector>

#include "platform/core/String.h"

namespace tallyscope {

// Rows of texts, printed in columns that line up: the first to the left, the others to the right. Texts may come from a
// table as they are.
class CTextGrid {
 public:
  void AddRow(std::vector<CString> cells);
  void Print(std::ostream& out, const CString& indent) const;

 private:
  std::vector<std::vector<CString>> rows_;
};

}  // namespace tallyscope
