// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "host/TextTable.h"

namespace tallyscope {

// The head of a GSLIB / GeoEAS text, which is at byte `at` of the source: a title, the number of variables, a name a
// line. Nothing for other texts. The rules stand in docs/formats/geoeas.md. Throws bad_alloc.
std::optional<TextLayout> ReadGeoEasHead(CTextSource& source, std::size_t at);

}  // namespace tallyscope
