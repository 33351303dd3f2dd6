// SPDX-License-Identifier: MIT
#include "outside/plot/PlotDrawing.h"

#include <algorithm>

#include "platform/core/ShownText.h"

namespace tallyscope {

void DrawOutline(CDC& dc, const DrawRect& rect, COLORREF colour) {
  dc.SelectPen({PenStyle::kSolid, 1, colour});
  dc.MoveTo(rect.left, rect.top);
  dc.LineTo(rect.right, rect.top);
  dc.LineTo(rect.right, rect.bottom);
  dc.LineTo(rect.left, rect.bottom);
  dc.LineTo(rect.left, rect.top);
}

// The more is left out the shorter it gets, so the least that fits is searched by halves: a text's width is measured
// some ten times, however long it is.
CString ShortenText(CDC& dc, const CString& text, int room) {
  const auto fits = [&](const CString& shown) { return dc.GetTextExtent(shown).cx <= room; };
  if (text.size() <= kMostShownBytes && fits(text)) return text;
  const std::size_t half = text.size() / 2;
  const auto shorten = [&](std::size_t less) {
    return LeaveMiddleOut(text, half - std::min(less, half), text.size() - half - std::min(less, text.size() - half));
  };
  // By this much less on both sides of the middle.
  std::size_t low = std::max<std::size_t>(1, half - std::min(half, kMostShownBytes / 2));
  std::size_t high = std::max(low, half);
  while (low < high) {
    const std::size_t middle = low + (high - low) / 2;
    if (fits(shorten(middle))) {
      high = middle;
    } else {
      low = middle + 1;
    }
  }
  return shorten(low);
}

}  // namespace tallyscope
