// SPDX-License-Identifier: MIT
#include "host/OpenTable.h"

#include <new>

#include "host/AxisGuess.h"
#include "host/TableBuilder.h"
#include "host/TableFormats.h"
#include "host/TextSource.h"
#include "statistics/ProgressSink.h"

namespace tallyscope {

namespace {

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
  if (progress != nullptr) progress->SetTask("Reading the table", 0);
  const auto reader = FindTableFormat(source).open(source, file, options);
  OpenedTable opened;
  LayerStart start;
  RowsEnd end = RowsEnd::kFault;
  if (reader->Start(0, start)) {
    CTableBuilder builder(start.names, start.rules, options.censored);
    builder.Expect(start.rows);
    end = reader->Fill(builder, progress);
    opened.warnings = reader->GetWarnings();
    const auto stations = static_cast<int>(builder.GetRowCount());
    if (end == RowsEnd::kDone) opened.table = std::make_unique<CHostTable>(builder.Finish(opened.warnings), stations);
  }
  if (end == RowsEnd::kFault) opened.error = reader->GetError();
  opened.format = reader->DescribeFormat();
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
