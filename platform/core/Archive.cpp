// SPDX-License-Identifier: MIT
#include "platform/core/Archive.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

namespace tallyscope {

namespace {

constexpr std::size_t kWideMark = 0xfffe;
constexpr std::size_t kLongMark = 0xffff;

template <class Unsigned>
void Store(CArchive& archive, Unsigned value) {
  std::uint8_t bytes[sizeof value];
  for (std::size_t i = 0; i < sizeof value; ++i) bytes[i] = static_cast<std::uint8_t>(value >> 8 * i);
  archive.Write(bytes, sizeof value);
}

template <class Unsigned>
Unsigned Load(CArchive& archive) {
  std::uint8_t bytes[sizeof(Unsigned)];
  archive.Read(bytes, sizeof bytes);
  Unsigned value = 0;
  for (std::size_t i = 0; i < sizeof bytes; ++i)
    value = static_cast<Unsigned>(value | static_cast<Unsigned>(bytes[i]) << 8 * i);
  return value;
}

}  // namespace

CArchive::CArchive(std::vector<std::uint8_t> bytes) : storing_(false), bytes_(std::move(bytes)) {}

CArchive& CArchive::operator<<(std::uint8_t value) {
  Store(*this, value);
  return *this;
}

CArchive& CArchive::operator<<(std::uint16_t value) {
  Store(*this, value);
  return *this;
}

CArchive& CArchive::operator<<(std::int32_t value) {
  Store(*this, static_cast<std::uint32_t>(value));
  return *this;
}

CArchive& CArchive::operator<<(float value) {
  Store(*this, std::bit_cast<std::uint32_t>(value));
  return *this;
}

CArchive& CArchive::operator<<(double value) {
  Store(*this, std::bit_cast<std::uint64_t>(value));
  return *this;
}

CArchive& CArchive::operator>>(std::uint8_t& value) {
  value = Load<std::uint8_t>(*this);
  return *this;
}

CArchive& CArchive::operator>>(std::uint16_t& value) {
  value = Load<std::uint16_t>(*this);
  return *this;
}

CArchive& CArchive::operator>>(std::int32_t& value) {
  value = static_cast<std::int32_t>(Load<std::uint32_t>(*this));
  return *this;
}

CArchive& CArchive::operator>>(float& value) {
  value = std::bit_cast<float>(Load<std::uint32_t>(*this));
  return *this;
}

CArchive& CArchive::operator>>(double& value) {
  value = std::bit_cast<double>(Load<std::uint64_t>(*this));
  return *this;
}

CArchive& CArchive::operator<<(const CString& text) {
  const std::size_t length = text.size();
  *this << static_cast<std::uint8_t>(std::min<std::size_t>(length, 0xff));
  if (length >= 0xff) *this << static_cast<std::uint16_t>(length < kWideMark ? length : kLongMark);
  if (length >= kWideMark) *this << static_cast<std::int32_t>(length);
  Write(text.data(), length);
  return *this;
}

CArchive& CArchive::operator>>(CString& text) {
  std::size_t length = Load<std::uint8_t>(*this);
  if (length == 0xff) length = Load<std::uint16_t>(*this);
  if (length == kWideMark) Fail();
  if (length == kLongMark) length = Load<std::uint32_t>(*this);
  if (failed_ || length > GetRemaining()) {
    Fail();
    text.clear();
    return *this;
  }
  text.resize(length);
  Read(text.data(), length);
  return *this;
}

void CArchive::Write(const void* bytes, std::size_t count) {
  const auto* first = static_cast<const std::uint8_t*>(bytes);
  bytes_.insert(bytes_.end(), first, first + count);
}

void CArchive::Read(void* bytes, std::size_t count) {
  if (count == 0) return;
  if (count > GetRemaining()) {
    Fail();
    std::memset(bytes, 0, count);
    return;
  }
  std::memcpy(bytes, bytes_.data() + position_, count);
  position_ += count;
}

}  // namespace tallyscope
