// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "platform/ui/DC.h"

namespace tallyscope {

// Hands marks to a device in blocks, those of selected stations last and one pixel larger, so that no other lies on
// them. Flush ends the drawing.
class MarkQueue {
 public:
  explicit MarkQueue(CDC& dc) : dc_(dc) { plain_.reserve(kBlock); }

  void Put(const PlotMark& mark) {
    plain_.push_back(mark);
    if (plain_.size() == kBlock) FlushPlain();
  }
  void PutSelected(PlotMark mark) {
    ++mark.arm;
    selected_.push_back(mark);
  }
  void Flush() {
    FlushPlain();
    dc_.PutMarks(selected_);
    selected_.clear();
  }

 private:
  static constexpr std::size_t kBlock = 4096;

  void FlushPlain() {
    dc_.PutMarks(plain_);
    plain_.clear();
  }

  CDC& dc_;
  std::vector<PlotMark> plain_;
  std::vector<PlotMark> selected_;
};

}  // namespace tallyscope
