// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "platform/ui/DC.h"

namespace tallyscope {

class CUPlotX_Tallyscope;

// What a reader needs to understand colours and sizes: the field, its range, the table. A part whose field is empty has
// no modulation.
struct ModulationLegend {
  CString colourField;
  double colourLow = 0;
  double colourHigh = 0;
  const std::vector<COLORREF>* table = nullptr;
  CString sizeField;
  double sizeLow = 0;
  double sizeHigh = 0;

  bool IsEmpty() const { return colourField.empty() && sizeField.empty(); }
};

// Of a plot that has been prepared.
ModulationLegend MakeModulationLegend(const CUPlotX_Tallyscope& plot);

// Beside a picture: a bar from the bottom up with round values at its ticks, and the five sizes below it.
int GetLegendRoom(const ModulationLegend& legend);
void DrawUprightLegend(CDC& dc, const ModulationLegend& legend, const CRect& room, const CUPlotX_Tallyscope& plot);

// Below a plot in the window: a lying bar between the ends of its range, and the sizes between theirs. Returns the
// pixels that it took.
int DrawLyingLegend(CDC& dc, const ModulationLegend& legend, const CRect& room, COLORREF text);

}  // namespace tallyscope
