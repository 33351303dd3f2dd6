// SPDX-License-Identifier: MIT
#include "outside/plot/PlotDrawing.h"

namespace tallyscope {

void DrawOutline(CDC& dc, const DrawRect& rect, COLORREF colour) {
  dc.SelectPen({PenStyle::kSolid, 1, colour});
  dc.MoveTo(rect.left, rect.top);
  dc.LineTo(rect.right, rect.top);
  dc.LineTo(rect.right, rect.bottom);
  dc.LineTo(rect.left, rect.bottom);
  dc.LineTo(rect.left, rect.top);
}

CString ShortenText(CDC& dc, const CString& text, int room) {
  if (dc.GetTextExtent(text).cx <= room) return text;
  auto head = text.size() / 2;
  auto tail = text.size() - head;
  CString shortened;
  do {
    if (head > 0) --head;
    if (tail > 0) --tail;
    while (head > 0 && (text[head] & 0xC0) == 0x80) --head;
    std::size_t from = text.size() - tail;
    while (from < text.size() && (text[from] & 0xC0) == 0x80) ++from;
    shortened = text.substr(0, head) + "…" + text.substr(from);
  } while (head + tail > 2 && dc.GetTextExtent(shortened).cx > room);
  return shortened;
}

}  // namespace tallyscope
