// SPDX-License-Identifier: MIT
#pragma once

#include "platform/core/Colour.h"

namespace tallyscope {

// What a plot is drawn in beside its data's colours. As made, it is light paper.
struct PlotColours {
  COLORREF paper = 0xffffff;
  COLORREF text = 0x000000;
  COLORREF frame = 0x606060;
  COLORREF grid = 0xe8e8e8;
  COLORREF faint = 0x707070;  // of a sentence in place of data

  bool IsDark() const;
  // A data colour as it shows on this paper: black becomes the text's colour; a colour with less contrast than 3 to 1
  // in the dark is made lighter, hue kept. On light paper colours stay as they are.
  COLORREF ForPaper(COLORREF colour) const;

  bool operator==(const PlotColours&) const = default;
};

// Those of the desktop's palette, light or dark; light without a desktop.
PlotColours GetPaletteColours();

}  // namespace tallyscope
