// SPDX-License-Identifier: MIT
#pragma once

#include <QIcon>

#include "platform/core/String.h"

namespace tallyscope {

// A line icon by name, from our own SVG drawings. It is drawn in the palette's text colour at paint time (greyed when
// disabled), so it is sharp at any scale and right in a dark palette. Names: push, pop, show, hide, help, app, ...
QIcon MakeIcon(const CString& name);

}  // namespace tallyscope
