// SPDX-License-Identifier: MIT
#pragma once

#include "conditioning/Stats_Conditioning.h"

namespace tallyscope {

// Appends the operator of a text "NAME" or "NAME=VALUE" to a chain; the name in any case, and without a value the
// preset one. A sentence, and nothing appended, for a name or a value that is none.
CString AddOperatorArgument(const CString& text, CStats_Conditioning& rules);

// A sentence on the first operator of a chain that can't run as it is set up; empty when all can.
CString CheckOperators(const CStats_Conditioning& rules);

// As it is given: "AGC=11", or the name alone.
CString FormatOperatorArgument(const CStats_Operator& step);

}  // namespace tallyscope
