// SPDX-License-Identifier: MIT
#pragma once

#include <QPoint>

namespace tallyscope {

class CPP_Base_Graph;

// The menu of a plot: its picture and its data, to the clipboard or to a file; the colour table.
void RunGraphMenu(CPP_Base_Graph& page, QPoint global);

}  // namespace tallyscope
