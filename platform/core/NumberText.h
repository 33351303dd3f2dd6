// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

#include "platform/core/String.h"

namespace tallyscope {

// Numbers in files always use "." and no thousands mark, whatever the process locale. What a dialog shows, and what is
// typed into it, uses the user's two characters. These functions convert between the two.

// The user's decimal and thousands characters. Either may be several bytes of UTF-8, and thousands may be empty.
struct NumberCharacters {
  CString decimal = ".";
  CString thousands = ",";
};

// From the environment's numeric locale at first use, until set.
const NumberCharacters& GetNumberCharacters();
void SetNumberCharacters(NumberCharacters characters);

// What printf's "%.<precision>g" gives in the "C" locale.
CString FormatGeneral(double value, int precision);

// What printf's "%.<decimals>f" gives in the "C" locale.
CString FormatFixed(double value, int decimals);

// What atof gives in the "C" locale: the longest number that the text starts with, 0 if none.
double ParseLeadingNumber(const CString& text);

// What atoi gives: the whole number that the text starts with, 0 if none; limited to the range of an int.
int ParseLeadingInteger(const CString& text);

// Every "," becomes the user's thousands character, and the last "." the user's decimal character.
CString ToLocale(std::string_view text);

// The user's thousands characters are removed, and the last decimal character becomes ".".
CString FromLocale(std::string_view text);

CString FormatLocale(double value);                 // "%.10g", in the user's characters
CString FormatLocale(double value, int precision);  // "%.<precision>g", in the user's characters
double ParseLocale(std::string_view text);          // FromLocale, then ParseLeadingNumber

// Reads a whole number text in the user's characters; blanks and tabs around it are skipped. Lenient as a dialog needs
// it while one types: an empty text, "." and a lone sign read as 0. False if anything else is left over; `value` then
// holds what was read.
bool ParseStrict(std::string_view text, double& value);

}  // namespace tallyscope
