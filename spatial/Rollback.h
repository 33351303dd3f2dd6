// SPDX-License-Identifier: MIT
#pragma once

#include <utility>

namespace tallyscope {

// Puts things back at the end of its scope, by whichever way that is left, unless told to keep them.
template <class PutBack>
class CRollback {
 public:
  explicit CRollback(PutBack putBack) : putBack_(std::move(putBack)) {}
  CRollback(const CRollback&) = delete;
  CRollback& operator=(const CRollback&) = delete;
  ~CRollback() {
    if (!isKept_) putBack_();
  }

  void Keep() { isKept_ = true; }

 private:
  PutBack putBack_;
  bool isKept_ = false;
};

}  // namespace tallyscope
