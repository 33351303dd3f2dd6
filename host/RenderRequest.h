// SPDX-License-Identifier: MIT
#pragma once

#include <iosfwd>
#include <vector>

#include "host/SelectionPlan.h"
#include "platform/core/String.h"

namespace tallyscope {

class CHostTable;

enum class RenderPage { kUniScatter, kUniHistogram, kBiScatter, kMap };

// One plot to be drawn as a picture.
struct RenderRequest {
  CString file;
  RenderPage page = RenderPage::kUniHistogram;
  int field = 0;  // dims
  int field2 = 0;
  int colour = -999;  // -999: none
  int size = -999;
  CSelectionPlan selection;
  bool perceptual = false;  // the colour table
  int width = 1200;         // pixels
  int height = 800;
  CString target;
};

// Draws it with the workbench's own plots, without a display. Returns the exit code. Whoever links the command line
// defines it: the program with plots, tests with a note of what was asked.
int RunRender(CHostTable& table, const RenderRequest& request, std::ostream& err);

}  // namespace tallyscope
