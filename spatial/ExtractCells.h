// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "spatial/Extraction.h"

namespace tallyscope {

class CProgressSink;
struct PointIndex;

// The stations of regular cells, of `stations` in all: z in the outermost loop, x in the innermost. A station may lie
// in several. Nothing when the sink cancels, or there are more cells than memory is given to (2^24, or 2 GB of lists
// and bitmaps).
std::optional<Extraction> ExtractCells(const ExtractionSettings& settings, const PointIndex& points, int stations,
                                       CProgressSink* progress);

}  // namespace tallyscope
