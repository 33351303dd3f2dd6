// SPDX-License-Identifier: MIT
#pragma once

namespace tallyscope {

// How a computation reports to a host that drives calculators itself. Every computation accepts a null sink. Called on
// the computing thread.
class CProgressSink {
 public:
  virtual ~CProgressSink() = default;
  virtual bool OnProgress(int percent) = 0;                  // false cancels
  virtual void SetTask(const char* text, int reserved) = 0;  // reserved is 0
};

}  // namespace tallyscope
