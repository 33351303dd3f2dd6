// SPDX-License-Identifier: MIT
#pragma once

#include "platform/ui/DC.h"

namespace tallyscope {

// The four sides of a rectangle, a pixel wide.
void DrawOutline(CDC& dc, const DrawRect& rect, COLORREF colour);

// A text in the device's font; one that is too long for the room (pixels), or for anyone to read, loses its middle.
CString ShortenText(CDC& dc, const CString& text, int room);

}  // namespace tallyscope
