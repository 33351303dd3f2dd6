// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <vector>

#include "host/NullRules.h"
#include "platform/core/String.h"

namespace tallyscope {

class CProgressSink;
class CTableBuilder;

enum class RowsEnd { kDone, kCancelled, kFault };

// What is known of a table before its rows are read.
struct LayerStart {
  std::vector<CString> names;  // of its columns, all different
  CNullRules rules;            // what its cells mean
  std::size_t rows = 0;        // about so many are to come
};

// One way to read tables: the tables that a source holds, and how their cells get into columns. It is made for a source
// by a row of the list in TableFormats.h, and must not outlive it. A table is read once:
//   LayerStart start;
//   if (!reader.Start(0, start)) Say(reader.GetError());
//   CTableBuilder columns(start.names, start.rules, censored);
//   if (reader.Fill(columns, progress) == RowsEnd::kFault) Say(reader.GetError());
// All of it may throw bad_alloc.
class CTableReader {
 public:
  virtual ~CTableReader() = default;

  // The names of the tables in the source, at least one. A text holds one, which has no name.
  virtual std::vector<CString> ListLayers() { return {CString()}; }

  // Finds the columns of one of them. False, with a sentence, when it can't be read.
  virtual bool Start(std::size_t layer, LayerStart& start) = 0;
  // Puts its rows into the columns, a batch at a time; between batches the sink is asked, every few milliseconds.
  virtual RowsEnd Fill(CTableBuilder& columns, CProgressSink* progress) = 0;

  // When it is done, or can't be done.
  virtual CString DescribeFormat() const { return {}; }  // "comma-separated text"
  const std::vector<CString>& GetWarnings() const {
    return warnings_;
  }  // sentences on what was not as one would expect

  const CString& GetError() const { return error_; }  // one sentence

 protected:
  bool Refuse(const CString& sentence) {  // false
    error_ = sentence;
    return false;
  }

  std::vector<CString> warnings_;

 private:
  CString error_;
};

}  // namespace tallyscope
