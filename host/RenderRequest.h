// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <iosfwd>
#include <iterator>
#include <vector>

#include "host/SelectionPlan.h"
#include "platform/core/String.h"
#include "statistics/Tallyscope.h"

namespace tallyscope {

class CHostTable;

enum class RenderPage { kUniScatter, kUniHistogram, kBiScatter, kMap };

// A page that can be drawn: the analysis that it is of, and what can be asked of it.
struct RenderPageKind {
  RenderPage page;
  const char* name;  // on the command line
  CTallyscope::eAnalysisMode mode;
  bool takesField;
  bool takesColour;
  bool takesSize;
};

inline constexpr RenderPageKind kRenderPages[] = {
    {RenderPage::kUniScatter, "uni-scatter", CTallyscope::eUnivariate, true, true, false},
    {RenderPage::kUniHistogram, "uni-histogram", CTallyscope::eUnivariate, true, false, false},
    {RenderPage::kBiScatter, "bi-scatter", CTallyscope::eBivariate, true, true, true},
    {RenderPage::kMap, "map", CTallyscope::eSpatial, false, true, true}};

inline const RenderPageKind& GetRenderPageKind(RenderPage page) {
  return *std::find_if(std::begin(kRenderPages), std::end(kRenderPages),
                       [&](const RenderPageKind& kind) { return kind.page == page; });
}

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
