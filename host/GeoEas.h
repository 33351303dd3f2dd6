// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string_view>

#include "host/TextTable.h"

namespace tallyscope {

// The head of a GSLIB / GeoEAS text: a title, the number of variables, a name a line. Nothing for other texts. The
// rules stand in docs/formats/geoeas.md.
std::optional<TextLayout> ReadGeoEasHead(std::string_view text);

}  // namespace tallyscope
