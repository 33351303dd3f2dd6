// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <vector>

#include "platform/core/String.h"

namespace tallyscope {

// What stands in the table for a cell such as "<0.01". A cell ">1000" is a null or, with the other two, its limit.
enum class Censored {
  kNull,   // a null whose raw value is the limit
  kHalf,   // half the limit
  kLimit,  // the limit
};

// How a table is read. What is left open here is told from the file itself.
struct ReaderOptions {
  CString x{};  // field names of the axes; empty: guessed from the headings. x and y go together
  CString y{};
  CString z{};
  bool noAxes = false;
  std::vector<CString> nulls{};     // further nulls: a number matches every cell of that value, a text the same text
  std::optional<char> delimiter{};  // ' ' stands for any run of blanks and tabs
  std::optional<char> decimal{};    // '.' or ','
  std::optional<bool> headings{};   // whether the first line holds the names
  Censored censored = Censored::kNull;
};

}  // namespace tallyscope
