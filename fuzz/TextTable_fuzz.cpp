// SPDX-License-Identifier: MIT
// Any bytes as a table: nothing breaks, a refusal says why, and what was read is read again when it is written out.
#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "fuzz/Demand.h"
#include "host/OpenTable.h"
#include "host/TextEncoding.h"
#include "tests/support/TableText.h"

namespace tallyscope {
namespace {

// The first byte chooses the options.
ReaderOptions ChooseOptions(std::uint8_t choice) {
  ReaderOptions options;
  if ((choice & 1) != 0) options.delimiter = ",;\t|"[choice >> 1 & 3];
  if ((choice & 8) != 0) options.decimal = '.';
  if ((choice & 16) != 0) options.nulls = {"-999", "none"};
  if ((choice & 32) != 0) options.headings = (choice & 1) != 0;
  options.censored = static_cast<Censored>((choice >> 6) % 3);
  return options;
}

bool AreSame(const CHostColumn& a, const CHostColumn& b, std::size_t row) {
  if (a.IsValid(row) != b.IsValid(row)) return false;
  return !a.IsValid(row) ||
         std::bit_cast<std::uint64_t>(a.GetValues()[row]) == std::bit_cast<std::uint64_t>(b.GetValues()[row]);
}

void CheckRoundTrip(const CHostTable& table, int stations) {
  const std::string text = WriteCsv(table, stations, "NA");
  const auto again = OpenTableText(text, "again", {.delimiter = ',', .decimal = '.', .headings = true}, nullptr);
  Demand(again.table != nullptr, "what was written can be read");
  Demand(again.table->GetSize() == stations, "it has as many rows");
  Demand(again.table->GetColumnCount() == table.GetColumnCount(), "it has as many columns");
  for (std::size_t i = 0; i < table.GetFileColumns().size(); ++i) {
    const auto& before = table.GetFileColumns()[i];
    const auto& after = again.table->GetFileColumns()[i];
    Demand(before.name == after.name, "the names are the same");
    Demand(before.labels == after.labels, "the labels are the same");
    for (std::size_t row = 0; row < static_cast<std::size_t>(stations); ++row) {
      Demand(AreSame(before, after, row), "the cells are the same");
    }
  }
}

}  // namespace
}  // namespace tallyscope

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tallyscope;
  if (size == 0) return 0;
  const auto options = ChooseOptions(data[0]);
  const std::string_view text(reinterpret_cast<const char*>(data) + 1, size - 1);
  const auto opened = OpenTableText(text, "input", options, nullptr);
  Demand((opened.table == nullptr) != opened.error.empty(), "there is a table or a refusal");
  if (!opened.table) return 0;
  for (const auto& column : opened.table->GetFileColumns()) {
    Demand(IsUtf8(column.name), "names are UTF-8");
    for (const auto& label : column.labels) Demand(IsUtf8(label), "labels are UTF-8");
  }
  // A heading over several lines can look like the head of another format.
  const auto& columns = opened.table->GetFileColumns();
  const auto isBroken = [](const CHostColumn& column) { return column.name.find_first_of("\r\n") != CString::npos; };
  if (std::any_of(columns.begin(), columns.end(), isBroken)) return 0;
  // With a decimal comma a label "1.5" is no number, which it would be in the text that is written.
  if (options.decimal) CheckRoundTrip(*opened.table, opened.table->GetSize());
  return 0;
}
