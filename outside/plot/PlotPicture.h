// SPDX-License-Identifier: MIT
#pragma once

#include "platform/core/Geometry.h"
#include "platform/core/Status.h"

class QImage;

namespace tallyscope {

class CUPlotX_Container;

// Draws a container with the colours of light paper, whatever the desktop's: a picture goes into a report. The
// container's own size and colours come back afterwards. `scale` is the image's pixels to one of the size. A picture
// that there is no memory for is said so, and `image` stays.
Status MakePicture(CUPlotX_Container& container, CSize size, double scale, QImage& image);

// Writes it by the file's ending: .png, .svg or .pdf (the last two as vectors). A file that was there stays when the
// picture can't be made or written.
Status SavePicture(CUPlotX_Container& container, CSize size, const CString& path, double scale = 1);

}  // namespace tallyscope
