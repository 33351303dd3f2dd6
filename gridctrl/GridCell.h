// SPDX-License-Identifier: MIT
#pragma once

#include "platform/core/Colour.h"
#include "platform/ui/Wnd.h"

namespace tallyscope {

struct CCellID {
  int row = -1;
  int col = -1;
  bool operator==(const CCellID&) const = default;
};

enum class CellAlignment { kLeft, kCentre, kRight };

// The request for one cell (code kNotifyCellRequest): the parent fills in text, alignment and background, as it wants.
struct GV_DISPINFO : NMHDR {
  int row = 0;
  int col = 0;
  CString text;
  CellAlignment alignment = CellAlignment::kLeft;
  COLORREF background = 0xffffff;
  bool hasBackground = false;  // set by the parent when it gives a background
};

// Clicks (codes kNotifyClick, kNotifyDblClick, kNotifyRClick) on a cell; -1 where there is none.
struct NM_GRIDVIEW : NMHDR {
  int row = -1;
  int col = -1;
};

}  // namespace tallyscope
