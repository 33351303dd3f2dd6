// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

#include "bands/BandWalk.h"
#include "bands/BoxMeans.h"
#include "bands/BoxSums.h"

namespace tallyscope {

class CDSPConvolution;

// One line under a window, along one axis of a kernel. Works through the line block by block; what it needs beside is
// room for a block and the part of the window that the line can meet.
//
// The weighted sum takes the taps in order. Taps outside and samples inside keep that order for every sample. A box
// over floats goes from sum to sum instead, and gives the same bits (bands/BoxSums.h).
class CLineFilter {
 public:
  CLineFilter(const CDSPConvolution& options, int axis);

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

  static constexpr int kBlock = 2048;

  void FitTo(int lineCount, bool slides);

  void RunBox(const DSPLine& line);
  void RunBoxBlocks(const DSPLine& line, int first, int end);
  bool MeanBlock(const DSPLine& line, const Block& block);
  void SettleMeans(const DSPLine& line, const Block& block);
  void BoxBlock(const DSPLine& line, const Block& block);
  void LoadBox(const DSPLine& line, const Block& block);
  void FindWindows(const Block& block);
  BoxWindow GetWindow(const Block& block, int at) const;
  int GetReach(const Block& block, int at) const;

  void TapBlock(const DSPLine& line, const Block& block);
  void LoadTaps(const DSPLine& line, const Block& block);
  void LoadNulls(const DSPLine& line, const Block& block, int from, int to);
  double GetMissingWeight(const Tap& tap) const;
  void SumTaps(const Block& block);
  void SumShrinkingTaps(const Block& block);
  void AddTapsBeyond(const Block& block);

  bool IsNearEnd(const Block& block, int at) const;
  bool MeetsEnds(const Block& block) const;
  std::uint64_t FindUnfiltered(const DSPLine& line, const Block& block, int at, int count) const;
  void StoreBlock(const DSPLine& line, const Block& block);
  void StoreNulls(const DSPLine& line, const Block& block);

  const CDSPConvolution& options_;
  int whole_;  // half the width of the kernel
  bool box_;   // every weight is 1

  int lineCount_ = -1;     // that the following are made for
  bool slides_ = false;    // from sum to sum, without taps
  int half_ = 0;           // how far the window goes to each side, as far as the line can meet it
  int beyond_ = 0;         // the same, with what the line can't meet but the divisor needs
  bool plain_ = false;     // a sample that is no null has a result
  std::vector<Tap> taps_;  // those within half_ that weigh anything
  double before_ = 0;      // of the weights to the left of those
  double total_ = 0;       // of the weights of all taps within beyond_

  bool anyNull_ = false;  // among what the block's windows meet; off the line counts as null
  std::vector<double> sums_;
  std::vector<double> missing_;

  std::vector<double> samples_;  // the block and half_ to each side; nulls are 0
  std::vector<double> nulls_;    // 1 for a null, else 0

  CBoxMeans means_;
  CBoxSums boxSums_;
  int firstMet_ = 0;                // in the line
  std::vector<float> floats_;       // what the block's windows meet; nulls are 0
  std::vector<int> nullsBefore_;    // each of floats_; empty without nulls
  std::vector<BoxWindow> windows_;  // over floats_
  std::vector<double> divisors_;
};

}  // namespace tallyscope
