// SPDX-License-Identifier: MIT
#include "host/TextGrid.h"

#include <algorithm>
#include <ostream>
#include <utility>

#include "host/Sentences.h"

namespace tallyscope {

namespace {

// Characters, not bytes, of a UTF-8 text.
std::size_t GetWidth(const CString& text) {
  return static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

}  // namespace

void CTextGrid::AddRow(std::vector<CString> cells) {
  for (auto& cell : cells) cell = Shown(cell);
  rows_.push_back(std::move(cells));
}

void CTextGrid::Print(std::ostream& out, const CString& indent) const {
  std::vector<std::size_t> widths;
  for (const auto& row : rows_) {
    widths.resize(std::max(widths.size(), row.size()));
    for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], GetWidth(row[i]));
  }
  for (const auto& row : rows_) {
    CString line = indent;
    for (std::size_t i = 0; i < row.size(); ++i) {
      const CString pad(widths[i] - GetWidth(row[i]), ' ');
      line += i == 0 ? row[i] + pad : "  " + pad + row[i];
    }
    line.erase(line.find_last_not_of(' ') + 1);
    out << line << "\n";
  }
}

}  // namespace tallyscope
