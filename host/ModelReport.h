// SPDX-License-Identifier: MIT
#pragma once

#include <iosfwd>

#include <nlohmann/json_fwd.hpp>

#include "platform/core/String.h"

namespace tallyscope {

class CStats_ModelVariogram;

// The parts of a model and its totals, as the program prints them.
void PrintModel(const CStats_ModelVariogram& model, std::ostream& out);
nlohmann::ordered_json DescribeModel(const CStats_ModelVariogram& model);

// A model from its file, brought up to date for so many dimensions. False, and the sentence has been said, when the
// file can't be read or none of its lines is one of a model's. The first line of another kind among those is told.
bool ReadModelForCommand(const CString& file, int dimension, CStats_ModelVariogram& model, std::ostream& err);

}  // namespace tallyscope
