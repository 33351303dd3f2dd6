// SPDX-License-Identifier: MIT
#pragma once

#include "platform/core/Geometry.h"
#include "platform/core/String.h"

class QImage;

namespace tallyscope {

class CUPlotX_Container;

// Draws a container with the colours of light paper, whatever the desktop's: a picture goes into a report. The
// container's own size and colours come back afterwards.
QImage MakePicture(CUPlotX_Container& container, CSize size, double scale);

// Writes it by the file's ending: .png, .svg or .pdf (the last two as vectors). False, with a sentence, when it can't
// be written; a file that was there stays then. `scale` is the image's pixels to one of the size.
bool SavePicture(CUPlotX_Container& container, CSize size, const CString& path, CString& error, double scale = 1);

}  // namespace tallyscope
