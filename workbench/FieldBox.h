// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

class QComboBox;

namespace tallyscope {

class CStats_Data;

// A combo box of fields' names, as wide as they need but no wider than a window has room for: a name may have hundreds
// of characters, and a table a hundred thousand fields. Where a name has no room its middle is left out, also in the
// list.
QComboBox* MakeFieldBox();

// A table's columns as such a box lists them: the axes, then the fields.
QStringList GetFieldNames(CStats_Data& data);

// Replaces what the box lists and chooses the first.
void FillFieldBox(QComboBox& box, const QStringList& names);

}  // namespace tallyscope
