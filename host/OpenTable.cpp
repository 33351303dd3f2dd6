// SPDX-License-Identifier: MIT
#include "host/OpenTable.h"

#include <new>

#include "host/AxisGuess.h"
#include "host/GeoEas.h"
#include "host/TextSource.h"

namespace tallyscope {

namespace {

// A sentence for content that is no text at all; empty for what may be one.
CString RefuseBinary(CTextSource& source, const CString& file) {
  constexpr std::size_t kHead = std::size_t{64} << 10;
  const auto head = source.Look(0, kHead).substr(0, kHead);
  if (head.starts_with("\xFF\xFE") || head.starts_with("\xFE\xFF")) {
    return file + " is UTF-16 text, which isn't read: save it as UTF-8.";
  }
  if (head.starts_with("PK\x03\x04"))
    return file + " is a ZIP archive or an office document: save the table as CSV text.";
  const auto zero = head.find('\0');
  if (zero == std::string_view::npos) return {};
  return file + " is no text file: byte " + std::to_string(zero + 1) + " is zero.";
}

void GiveAxes(const CString& file, const ReaderOptions& options, OpenedTable& opened) {
  const AxisChoice choice = ChooseAxes(*opened.table, file, options);
  if (!choice.error.empty()) {
    opened.error = choice.error;
    opened.table.reset();
    return;
  }
  opened.table->SetAxes(choice.columns);
  opened.axes = choice.description;
}

OpenedTable ReadSource(CTextSource& source, const CString& file, const ReaderOptions& options,
                       CProgressSink* progress) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  OpenedTable opened;
  opened.error = RefuseBinary(source, file);
  if (!opened.error.empty()) return opened;
  const std::size_t start =
      source.Look(0, kByteOrderMark.size()).starts_with(kByteOrderMark) ? kByteOrderMark.size() : 0;
  const auto head = ReadGeoEasHead(source, start);
  TextLayout layout;
  layout.at = start;
  opened = ReadTextTable(source, file, options, head.value_or(layout), progress);
  if (head) opened.format = "GeoEAS";
  return opened;
}

OpenedTable OpenSource(CTextSource& source, const CString& file, const ReaderOptions& options,
                       CProgressSink* progress) {
  OpenedTable opened = ReadSource(source, file, options, progress);
  const bool cancelled = !opened.table && opened.error.empty();
  // Whatever was found in a file that changed meanwhile, or couldn't be read to its end, is of no account.
  if (!cancelled && !source.IsUnchanged()) {
    opened = {};
    opened.error = source.GetFailure(file);
  }
  if (opened.table) GiveAxes(file, options, opened);
  return opened;
}

OpenedTable Guarded(CTextSource& source, const CString& file, const ReaderOptions& options, CProgressSink* progress) {
  try {
    return OpenSource(source, file, options, progress);
  } catch (const std::bad_alloc&) {
    OpenedTable opened;
    opened.error = "There is not enough memory for " + file + ".";
    return opened;
  }
}

}  // namespace

OpenedTable OpenTable(const CString& path, const ReaderOptions& options, CProgressSink* progress) {
  CTextSource source;
  OpenedTable opened;
  try {
    if (!source.Open(path, opened.error)) return opened;
  } catch (const std::bad_alloc&) {
    opened.error = "There is not enough memory for " + path + ".";
    return opened;
  }
  return Guarded(source, path, options, progress);
}

OpenedTable OpenTableText(std::string_view text, const CString& file, const ReaderOptions& options,
                          CProgressSink* progress) {
  CTextSource source(text);
  return Guarded(source, file, options, progress);
}

}  // namespace tallyscope
