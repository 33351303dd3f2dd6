// SPDX-License-Identifier: MIT
#pragma once

class QComboBox;

namespace tallyscope {

// A combo box of fields' names, as wide as they need but no wider than a window has room for: a name may have hundreds
// of characters. Where it has no room its middle is left out, also in the list.
QComboBox* MakeFieldBox();

}  // namespace tallyscope
