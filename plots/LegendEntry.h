// SPDX-License-Identifier: MIT
#pragma once

#include "platform/ui/DC.h"

namespace tallyscope {

// One curve of a legend: a sample of its line at half the strip's height from `left` on, the name behind it. `strip` is
// the plot's legend strip (CUPlotX::GetLegend).
void DrawLegendEntry(CDC& dc, const CRect& strip, double left, const Pen& pen, const CString& text,
                     COLORREF textColour);

}  // namespace tallyscope
