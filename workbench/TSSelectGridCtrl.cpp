// SPDX-License-Identifier: MIT
#include "workbench/TSSelectGridCtrl.h"

#include "platform/core/Messages.h"

namespace tallyscope {

void CTSSelectGridCtrl::OnFixedColumnClick(CCellID& cell) {
  if (parent != nullptr) parent->SendMessage(kMessageRowSelect, static_cast<std::uintptr_t>(cell.row));
}

void CTSSelectGridCtrl::OnFixedRowClick(CCellID& cell) {
  if (parent != nullptr) parent->SendMessage(kMessageColSelect, static_cast<std::uintptr_t>(cell.col));
}

}  // namespace tallyscope
