// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>

#include "platform/core/String.h"

namespace tallyscope {

class CArchive;

using VARTYPE = std::uint16_t;

// What a variant may hold. The numbers are those of the archive.
inline constexpr VARTYPE VT_EMPTY = 0;  // nothing yet
inline constexpr VARTYPE VT_NULL = 1;   // a null
inline constexpr VARTYPE VT_I2 = 2;
inline constexpr VARTYPE VT_I4 = 3;
inline constexpr VARTYPE VT_R4 = 4;
inline constexpr VARTYPE VT_R8 = 5;
inline constexpr VARTYPE VT_CY = 6;    // money, in ten-thousandths
inline constexpr VARTYPE VT_DATE = 7;  // days, as a real number
inline constexpr VARTYPE VT_BSTR = 8;
inline constexpr VARTYPE VT_ERROR = 10;  // an error number
inline constexpr VARTYPE VT_BOOL = 11;   // 0 or -1
inline constexpr VARTYPE VT_I1 = 16;
inline constexpr VARTYPE VT_UI1 = 17;
inline constexpr VARTYPE VT_UI2 = 18;
inline constexpr VARTYPE VT_UI4 = 19;
inline constexpr VARTYPE VT_INT = 22;
inline constexpr VARTYPE VT_UINT = 23;
inline constexpr VARTYPE VT_LPSTR = 30;
inline constexpr VARTYPE VT_LPWSTR = 31;

// One value of a type that is told at run time: a number, a text, a null or nothing.
//   COleVariant width(11);              // VT_I4
//   COleVariant cutoff(2.5);            // VT_R8
//   COleVariant byte(7, VT_UI1);
// Numbers are narrowed to their type as it is built, so that what is read is what an archive would bring back: whole
// numbers keep their lowest bits, reals in a type of whole numbers are cut towards 0 first, and VT_R4 rounds to a
// float.
class COleVariant {
 public:
  COleVariant() = default;  // VT_EMPTY
  COleVariant(double value, VARTYPE type = VT_R8);
  COleVariant(float value) : COleVariant(static_cast<double>(value), VT_R4) {}
  COleVariant(std::int64_t value, VARTYPE type);
  COleVariant(int value, VARTYPE type = VT_I4) : COleVariant(static_cast<std::int64_t>(value), type) {}
  COleVariant(const CString& text, VARTYPE type = VT_BSTR);
  COleVariant(const char* text) : COleVariant(CString(text)) {}
  COleVariant(const COleVariant& other) { *this = other; }
  COleVariant(COleVariant&&) noexcept = default;
  COleVariant& operator=(const COleVariant& other);
  COleVariant& operator=(COleVariant&&) noexcept = default;

  static COleVariant Null();  // VT_NULL

  VARTYPE GetType() const { return type_; }
  bool IsText() const { return type_ == VT_BSTR || type_ == VT_LPSTR || type_ == VT_LPWSTR; }
  bool IsNumber() const;  // a plain one: money, dates, errors and truth values are none

  double GetReal() const;           // of any type with a numeric value; 0 for the others
  std::int32_t GetInteger() const;  // the same, cut towards 0 and limited to the range; 0 for NaN
  const CString& GetText() const;   // empty for what is no text
  void SetReal(double value);       // becomes VT_R8

  // Same type, same value; NaN equals nothing.
  bool operator==(const COleVariant& other) const;

  // The type in 16 bits, then its value: 1 byte of VT_UI1; 2 of VT_I2 and VT_BOOL; 4 of VT_I4, VT_R4 and VT_ERROR; 8 of
  // VT_R8, VT_CY and VT_DATE; of VT_BSTR the count of bytes in 32 bits and the bytes. The other types have no value
  // there, and come back without one. A count beyond what remains fails the archive and leaves the variant empty.
  void Serialize(CArchive& archive);

 private:
  bool IsReal() const;
  void Store(CArchive& archive) const;
  void Load(CArchive& archive);

  VARTYPE type_ = VT_EMPTY;
  std::int64_t bits_ = 0;  // the whole number, or the double of a real type
  std::unique_ptr<CString> text_;
};

}  // namespace tallyscope
