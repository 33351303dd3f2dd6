// SPDX-License-Identifier: MIT
#include "platform/core/OleVariant.h"

#include <bit>
#include <limits>

#include "platform/core/Archive.h"

namespace tallyscope {

namespace {

template <class Integer>
std::int64_t Narrowed(std::int64_t value) {
  return static_cast<Integer>(value);
}

std::int64_t NarrowInteger(std::int64_t value, VARTYPE type) {
  switch (type) {
    case VT_I1:
      return Narrowed<std::int8_t>(value);
    case VT_UI1:
      return Narrowed<std::uint8_t>(value);
    case VT_I2:
      return Narrowed<std::int16_t>(value);
    case VT_UI2:
      return Narrowed<std::uint16_t>(value);
    case VT_BOOL:
      return value != 0 ? -1 : 0;
    case VT_UI4:
    case VT_UINT:
      return Narrowed<std::uint32_t>(value);
    case VT_CY:
      return value;
    default:
      return Narrowed<std::int32_t>(value);
  }
}

bool IsRealType(VARTYPE type) {
  return type == VT_R4 || type == VT_R8 || type == VT_DATE;
}

// Cut towards 0, and limited to the range; 0 for NaN.
template <class Integer>
Integer CutToInteger(double value) {
  using Limits = std::numeric_limits<Integer>;
  if (value != value) return 0;
  if (value >= static_cast<double>(Limits::max())) return Limits::max();
  return value <= static_cast<double>(Limits::min()) ? Limits::min() : static_cast<Integer>(value);
}

// A double beyond the range of floats becomes infinite there, as the narrowing does in hardware.
double NarrowReal(double value, VARTYPE type) {
  return type == VT_R4 ? static_cast<double>(static_cast<float>(value)) : value;
}

template <class Value>
Value Loaded(CArchive& archive) {
  Value value{};
  archive >> value;
  return value;
}

}  // namespace

COleVariant::COleVariant(double value, VARTYPE type)
    : type_(type),
      bits_(IsRealType(type) ? std::bit_cast<std::int64_t>(NarrowReal(value, type))
                             : NarrowInteger(CutToInteger<std::int64_t>(value), type)) {}

COleVariant::COleVariant(std::int64_t value, VARTYPE type)
    : type_(type),
      bits_(IsRealType(type) ? std::bit_cast<std::int64_t>(NarrowReal(static_cast<double>(value), type))
                             : NarrowInteger(value, type)) {}

COleVariant::COleVariant(const CString& text, VARTYPE type) : type_(type), text_(std::make_unique<CString>(text)) {}

COleVariant& COleVariant::operator=(const COleVariant& other) {
  if (this == &other) return *this;
  type_ = other.type_;
  bits_ = other.bits_;
  text_ = other.text_ ? std::make_unique<CString>(*other.text_) : nullptr;
  return *this;
}

COleVariant COleVariant::Null() {
  return COleVariant(0, VT_NULL);
}

bool COleVariant::IsNumber() const {
  switch (type_) {
    case VT_I1:
    case VT_I2:
    case VT_I4:
    case VT_R4:
    case VT_R8:
    case VT_UI1:
    case VT_UI2:
    case VT_UI4:
    case VT_INT:
    case VT_UINT:
      return true;
    default:
      return false;
  }
}

bool COleVariant::IsReal() const {
  return IsRealType(type_);
}

double COleVariant::GetReal() const {
  return IsReal() ? std::bit_cast<double>(bits_) : static_cast<double>(bits_);
}

std::int32_t COleVariant::GetInteger() const {
  return CutToInteger<std::int32_t>(GetReal());
}

const CString& COleVariant::GetText() const {
  static const CString none;
  return text_ ? *text_ : none;
}

void COleVariant::SetReal(double value) {
  *this = COleVariant(value);
}

bool COleVariant::operator==(const COleVariant& other) const {
  if (type_ != other.type_) return false;
  if (IsText()) return GetText() == other.GetText();
  return IsReal() ? GetReal() == other.GetReal() : bits_ == other.bits_;
}

void COleVariant::Serialize(CArchive& archive) {
  archive.IsStoring() ? Store(archive) : Load(archive);
}

void COleVariant::Store(CArchive& archive) const {
  archive << type_;
  switch (type_) {
    case VT_UI1:
      archive << static_cast<std::uint8_t>(bits_);
      break;
    case VT_I2:
    case VT_BOOL:
      archive << static_cast<std::uint16_t>(bits_);
      break;
    case VT_I4:
    case VT_ERROR:
      archive << static_cast<std::int32_t>(bits_);
      break;
    case VT_R4:
      archive << static_cast<float>(GetReal());
      break;
    case VT_R8:
    case VT_DATE:
      archive << GetReal();
      break;
    case VT_CY:
      archive << static_cast<std::int32_t>(bits_) << static_cast<std::int32_t>(bits_ >> 32);
      break;
    case VT_BSTR:
      archive << static_cast<std::int32_t>(GetText().size());
      archive.Write(GetText().data(), GetText().size());
      break;
    default:
      break;
  }
}

void COleVariant::Load(CArchive& archive) {
  const auto type = Loaded<std::uint16_t>(archive);
  switch (type) {
    case VT_UI1:
      *this = COleVariant(Loaded<std::uint8_t>(archive), type);
      break;
    case VT_I2:
    case VT_BOOL:
      *this = COleVariant(static_cast<std::int16_t>(Loaded<std::uint16_t>(archive)), type);
      break;
    case VT_I4:
    case VT_ERROR:
      *this = COleVariant(Loaded<std::int32_t>(archive), type);
      break;
    case VT_R4:
      *this = COleVariant(Loaded<float>(archive));
      break;
    case VT_R8:
    case VT_DATE:
      *this = COleVariant(Loaded<double>(archive), type);
      break;
    case VT_CY: {
      const auto low = static_cast<std::uint32_t>(Loaded<std::int32_t>(archive));
      const auto high = static_cast<std::int64_t>(Loaded<std::int32_t>(archive));
      *this = COleVariant(high * (std::int64_t{1} << 32) + low, type);
      break;
    }
    case VT_BSTR: {
      const auto length = static_cast<std::uint32_t>(Loaded<std::int32_t>(archive));
      *this = COleVariant();
      if (length > archive.GetRemaining()) return archive.Fail();
      CString text(length, '\0');
      archive.Read(text.data(), length);
      *this = COleVariant(text);
      break;
    }
    default:
      *this = COleVariant(0, type);
  }
}

}  // namespace tallyscope
