// SPDX-License-Identifier: MIT
#include "platform/ui/Menu.h"

namespace tallyscope {

void CMenu::AppendItem(int id, const CString& text, bool checked, bool enabled) {
  items_.push_back({id, text, checked, enabled});
}

void CMenu::AppendSeparator() {
  items_.push_back({});
}

}  // namespace tallyscope
