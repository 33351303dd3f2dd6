// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

#include "bands/BandWalk.h"

namespace tallyscope {

class CDSPConvolution;

// One line under a window. Works through it block by block, so it needs room for a block and not for the line. Every
// way through adds the same terms in the same order, so they agree to the last bit.
class CLineFilter {
 public:
  CLineFilter(const CDSPConvolution& options, const std::vector<double>& taps);

  void Run(const DSPLine& line);

 private:
  struct Tap {
    double weight;
    int offset;
  };

  void LoadBlock(const DSPLine& line, int first, int count);
  void SumBlock(int count);
  void FilterCentred(int first, int at, int lineCount);
  void StoreBlock(const DSPLine& line, int first, int count);

  const CDSPConvolution& options_;
  std::vector<Tap> taps_;  // those that weigh anything
  double total_ = 0;       // of their weights
  int half_;
  bool anyNull_ = false;         // among the loaded samples; off the line counts as null
  std::vector<double> samples_;  // the block and half_ to each side; nulls are 0
  std::vector<double> nulls_;    // 1 for a null, else 0
  std::vector<double> sums_;
  std::vector<double> missing_;
};

}  // namespace tallyscope
