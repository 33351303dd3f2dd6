// SPDX-License-Identifier: MIT
// The archive form: in front the version, then what each version added, in its order. Integers take 32 bits,
// doubles 64.
#include "conditioning/Stats_Conditioning.h"

namespace tallyscope {

namespace {

constexpr std::size_t kRangeBytes = 20;
constexpr std::size_t kLeastTextBytes = 1;
constexpr std::size_t kLeastOperatorBytes = 10;

// A value that the archive no longer holds leaves the member as it stands.
template <class Value>
void LoadValue(CArchive& archive, Value& member) {
  Value value{};
  archive >> value;
  if (!archive.IsFailed()) member = std::move(value);
}

void LoadFlag(CArchive& archive, bool& member) {
  std::int32_t value = member ? 1 : 0;
  LoadValue(archive, value);
  member = value != 0;
}

template <class Record>
void LoadRecord(CArchive& archive, Record& record) {
  if constexpr (requires { record.Serialize(archive); }) {
    record.Serialize(archive);
  } else {
    archive >> record;
  }
}

// A count that the rest of the archive can't hold fails it before room is made.
template <class Record>
void LoadList(CArchive& archive, std::size_t leastBytes, std::vector<Record>& list) {
  std::int32_t count = 0;
  archive >> count;
  if (count < 0 || static_cast<std::size_t>(count) > archive.GetRemaining() / leastBytes) archive.Fail();
  if (archive.IsFailed()) return;
  list.clear();
  for (std::int32_t i = 0; i < count; ++i) {
    Record record{};
    LoadRecord(archive, record);
    if (archive.IsFailed()) return;
    list.push_back(std::move(record));
  }
}

template <class Record>
void StoreCount(CArchive& archive, const std::vector<Record>& list) {
  archive << static_cast<std::int32_t>(list.size());
}

void StoreFlag(CArchive& archive, bool value) {
  archive << std::int32_t{value};
}

}  // namespace

void CStats_Conditioning::Serialize(CArchive& archive) {
  archive.IsStoring() ? Store(archive) : Load(archive);
}

void CStats_Conditioning::Store(CArchive& archive) const {
  archive << GetSchemaVersion() << nullValue;
  StoreCount(archive, nullValues);
  for (const double value : nullValues) archive << value;
  StoreCount(archive, nullRanges);
  for (auto range : nullRanges) range.Serialize(archive);
  StoreFlag(archive, convertToBackground);
  archive << backgroundValue;
  StoreFlag(archive, capMinimumOn);
  archive << capMinimum;
  StoreFlag(archive, capMaximumOn);
  archive << capMaximum << kind;
  StoreFlag(archive, caseSensitive);
  StoreFlag(archive, nullDeclared);
  archive << nullString << backgroundString;
  StoreCount(archive, nullStrings);
  for (const auto& text : nullStrings) archive << text;
  StoreFlag(archive, operatorsUsed);
  StoreCount(archive, operators);
  for (auto step : operators) step.Serialize(archive);
}

void CStats_Conditioning::Load(CArchive& archive) {
  std::int32_t version = 0;
  archive >> version;
  if (version < 0) archive.Fail();
  LoadValue(archive, nullValue);
  LoadList(archive, sizeof(double), nullValues);
  LoadList(archive, kRangeBytes, nullRanges);
  LoadFlag(archive, convertToBackground);
  LoadValue(archive, backgroundValue);
  LoadFlag(archive, capMinimumOn);
  LoadValue(archive, capMinimum);
  LoadFlag(archive, capMaximumOn);
  LoadValue(archive, capMaximum);
  if (version < 1) return;
  LoadValue(archive, kind);
  LoadFlag(archive, caseSensitive);
  LoadFlag(archive, nullDeclared);
  LoadValue(archive, nullString);
  LoadValue(archive, backgroundString);
  LoadList(archive, kLeastTextBytes, nullStrings);
  if (version < 2) return;
  LoadFlag(archive, operatorsUsed);
  LoadList(archive, kLeastOperatorBytes, operators);
}

}  // namespace tallyscope
