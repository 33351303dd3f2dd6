// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

#include "bands/BandWalk.h"
#include "bands/BoxMeans.h"

namespace tallyscope {

class CDSPConvolution;

// One line under a window. Works through it block by block, so it needs room for a block and not for the line.
//
// The weighted sum takes the taps in order. Taps outside and samples inside keep that order for every sample. A box
// goes from sum to sum instead: in one pass over a block of floats whose sums are exact in any order; otherwise, where
// the order could be seen in the narrowed result, that sample is summed in order after all. So every way gives the same
// bits.
class CLineFilter {
 public:
  CLineFilter(const CDSPConvolution& options, const std::vector<double>& taps);

  void Run(const DSPLine& line);

 private:
  struct Tap {
    double weight;
    int offset;
  };
  struct Block {
    int first;      // in the line
    int count;      // samples
    int lineCount;  // of the whole line
  };

  bool MeanBlock(const DSPLine& line, const Block& block);
  void FilterBlock(const DSPLine& line, const Block& block);
  void LoadBlock(const DSPLine& line, const Block& block);
  void LoadNulls(const DSPLine& line, const Block& block, int from, int to);
  void SumTaps(const Block& block);
  void SumBox(const Block& block, double bound);
  void SlideEnds(const Block& block);
  void SumInOrder(const Block& block, int at);
  void SettleBox(const Block& block, double bound);
  std::uint64_t FindUnfiltered(const DSPLine& line, const Block& block, int at, int count) const;
  void StoreBlock(const DSPLine& line, const Block& block);
  void StoreNulls(const DSPLine& line, const Block& block);

  int GetReach(const Block& block, int at) const;
  bool IsNearEnd(const Block& block, int at) const;
  template <class Visit>
  void VisitEnds(const Block& block, Visit visit) const;

  const CDSPConvolution& options_;
  std::vector<Tap> taps_;  // those that weigh anything
  double total_ = 0;       // of their weights
  int half_;
  bool box_;                     // every weight is 1
  bool slides_;                  // a box that is wide enough to go from sum to sum
  bool plain_;                   // a sample that is no null has a result
  bool anyNull_ = false;         // among the loaded samples; off the line counts as null
  bool floats_ = false;          // the line's samples are floats
  std::vector<double> samples_;  // the block and half_ to each side; nulls are 0
  std::vector<double> nulls_;    // 1 for a null, else 0
  std::vector<double> sums_;
  std::vector<double> missing_;
  std::vector<double> room_;
  CBoxMeans means_;
};

}  // namespace tallyscope
