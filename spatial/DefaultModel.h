// SPDX-License-Identifier: MIT
#pragma once

namespace tallyscope {

class CStats_ModelVariogram;
class CStats_SampleVariogram;

// The model that a field starts from: the line on show through the curve of all directions (CStats_Bivariate), as an
// isotropic nugget and one linear nest with ranges of 1000. Where the line falls or begins below 0, its slope or nugget
// is 0; without a curve both are. The grid of the sample must have been computed. The model is brought up to date in
// `dimension`.
void MakeDefaultModel(CStats_SampleVariogram& sample, int dimension, CStats_ModelVariogram& model);

}  // namespace tallyscope
