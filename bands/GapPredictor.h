// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <vector>

#include "bands/Burg.h"
#include "statistics/bvector.h"

namespace tallyscope {

// Fills the gaps of a line by prediction from the stretches on both sides, each with a predictor of its own that is
// fitted to the hundred samples next to the gap at most. A gap between two stretches is blended, so that each side
// rules near its edge; one at an end of the line has one side only. Samples beyond the line count as 0.
//
// A stretch that can't be fitted (one sample) ends the work: the gap before it has been predicted from the left, later
// ones keep what they hold. Linear in the line's length.
class GapPredictor {
 public:
  static constexpr int kLongestFit = 100;
  static constexpr int kOrderPercent = 10;  // of the samples fitted, limited to 3 to 60

  // A set bit of `gaps`, which has a bit for each sample, marks a sample to fill. It should hold 0.
  void Fill(std::span<float> line, const bvector& gaps);

 private:
  struct Stretch {
    int first;
    int end;
    bool IsCut() const { return end - first > kLongestFit; }
  };
  using Samples = std::array<double, kLongestFit>;

  Stretch FindStretch(const bvector& gaps, int from) const;
  // For the first samples of a stretch, or the last ones; `samples` is what the task looks at.
  BurgTask MakeTask(const Stretch& stretch, bool atEnd, Samples& samples) const;
  bool FitAround(const Stretch& left, const Stretch& right);
  void StartRight(int first, int end);
  double StepRight(std::size_t at) const;
  void PredictFromRight(int end);
  void PredictFromLeft(int first, int end);
  void PredictFromBoth(int first, int end);
  float StepLeft(int p) const;

  std::span<float> line_;
  BurgPredictor left_;             // of the stretch before the gap
  BurgPredictor right_;            // of the one behind it
  std::vector<double> fromRight_;  // the gap as predicted from its right, and the samples that this starts from
};

}  // namespace tallyscope
