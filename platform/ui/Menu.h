// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "platform/core/String.h"

namespace tallyscope {

// A popup menu as its items; the modal seam shows it (Modal.h).
class CMenu {
 public:
  struct Item {
    int id = 0;  // 0: a separator
    CString text;
    bool checked = false;
    bool enabled = true;
  };

  void AppendItem(int id, const CString& text, bool checked = false, bool enabled = true);
  void AppendSeparator();
  const std::vector<Item>& GetItems() const { return items_; }

 private:
  std::vector<Item> items_;
};

}  // namespace tallyscope
