// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <vector>

#include "bands/Burg.h"
#include "statistics/bvector.h"

namespace tallyscope {

// Fills the gaps of a line by prediction from the stretches on both sides, each with a predictor of its own that is
// fitted to the hundred samples next to the gap at most. A gap between two stretches is blended, so that each side
// rules near its edge; one at an end of the line has one side only. Samples beyond the line count as 0.
//
// A stretch that can't be fitted (one sample) ends the work, and the gaps that are left keep what they hold. Linear in
// the line's length.
class GapPredictor {
 public:
  static constexpr int kLongestFit = 100;
  static constexpr int kOrderPercent = 10;  // of the samples fitted, limited to 3 to 60

  // A set bit of `gaps`, which has a bit for each sample, marks a sample to fill. It should hold 0.
  void Fill(std::span<float> line, const bvector& gaps);

 private:
  bool Fit(int first, int length, int order);
  void PredictForward(int first, int end);
  void PredictBackward(int first, int end, bool blend);

  std::span<float> line_;
  BurgPredictor predictor_;
};

}  // namespace tallyscope
