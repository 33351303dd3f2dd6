// SPDX-License-Identifier: MIT
#pragma once

#include <utility>

#include "platform/core/String.h"

namespace tallyscope {

// Whether something was done and, if not, why: one sentence for who asked.
//   if (const Status status = SavePicture(...); !status.IsGood()) err << status.GetError() << "\n";
class [[nodiscard]] Status {
 public:
  static Status Good() { return Status(CString()); }
  static Status Bad(CString sentence) { return Status(std::move(sentence)); }

  bool IsGood() const { return error_.empty(); }
  const CString& GetError() const { return error_; }  // empty while good

 private:
  explicit Status(CString error) : error_(std::move(error)) {}

  CString error_;
};

}  // namespace tallyscope
