// SPDX-License-Identifier: MIT
#include "host/TableFormats.h"

#include <string_view>

#include "host/GeoEas.h"
#include "host/TextSource.h"
#include "host/TextTable.h"

namespace tallyscope {

namespace {

// The first bytes of a source.
std::string_view GetHead(CTextSource& source) {
  constexpr std::size_t kHead = std::size_t{64} << 10;
  return source.Look(0, kHead).substr(0, kHead);
}

// Where a text begins: behind the mark that some programs put in front of UTF-8.
std::size_t GetTextStart(CTextSource& source) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  return GetHead(source).starts_with(kByteOrderMark) ? kByteOrderMark.size() : 0;
}

class CRefusal : public CTableReader {
 public:
  explicit CRefusal(const CString& sentence) { Refuse(sentence); }
  bool Start(std::size_t, LayerStart&) override { return false; }
  RowsEnd Fill(CTableBuilder&, CProgressSink*) override { return RowsEnd::kFault; }
};

using Reader = std::unique_ptr<CTableReader>;

bool IsUtf16(CTextSource& source) {
  const auto head = GetHead(source);
  return head.starts_with("\xFF\xFE") || head.starts_with("\xFE\xFF");
}
Reader RefuseUtf16(CTextSource&, const CString& file, const ReaderOptions&) {
  return std::make_unique<CRefusal>(file + " is UTF-16 text, which isn't read: save it as UTF-8.");
}

bool IsZip(CTextSource& source) {
  return GetHead(source).starts_with("PK\x03\x04");
}
Reader RefuseZip(CTextSource&, const CString& file, const ReaderOptions&) {
  return std::make_unique<CRefusal>(file + " is a ZIP archive or an office document: save the table as CSV text.");
}

bool HoldsZero(CTextSource& source) {
  return GetHead(source).find('\0') != std::string_view::npos;
}
Reader RefuseZero(CTextSource& source, const CString& file, const ReaderOptions&) {
  const auto place = GetHead(source).find('\0') + 1;
  return std::make_unique<CRefusal>(file + " is no text file: byte " + std::to_string(place) + " is zero.");
}

bool IsGeoEas(CTextSource& source) {
  return ReadGeoEasHead(source, GetTextStart(source)).has_value();
}
Reader OpenGeoEas(CTextSource& source, const CString& file, const ReaderOptions& options) {
  return MakeTextReader(source, file, options, ReadGeoEasHead(source, GetTextStart(source)).value_or(TextLayout()));
}

bool IsAnything(CTextSource&) {
  return true;
}
Reader OpenText(CTextSource& source, const CString& file, const ReaderOptions& options) {
  return MakeTextReader(source, file, options, {.at = GetTextStart(source)});
}

constexpr TableFormat kFormats[] = {{"UTF-16 text", IsUtf16, RefuseUtf16},
                                    {"ZIP archive", IsZip, RefuseZip},
                                    {"binary data", HoldsZero, RefuseZero},
                                    {"GeoEAS", IsGeoEas, OpenGeoEas},
                                    {"delimited text", IsAnything, OpenText}};

}  // namespace

std::span<const TableFormat> GetTableFormats() {
  return kFormats;
}

const TableFormat& FindTableFormat(CTextSource& source) {
  const TableFormat* format = kFormats;
  while (!format->probe(source)) ++format;
  return *format;
}

}  // namespace tallyscope
