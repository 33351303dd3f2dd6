// SPDX-License-Identifier: MIT
#pragma once

#include "platform/core/String.h"

namespace tallyscope {

// Texts of the user interface that are known by a number. LoadString of an unknown number is an empty string.
inline constexpr int kStringOk = 27;
inline constexpr int kStringHelp = 28;
inline constexpr int kStringUnivariate = 29;
inline constexpr int kStringBivariate = 30;
inline constexpr int kStringSpatial = 31;
inline constexpr int kStringVariogram = 32;
inline constexpr int kStringTallyscope = 33;
inline constexpr int kStringStatistics = 34;
inline constexpr int kStringSortAscending = 35;
inline constexpr int kStringSortDescending = 36;
inline constexpr int kStringFindValue = 37;
inline constexpr int kStringFitHeadings = 38;
inline constexpr int kStringFitData = 39;
inline constexpr int kStringFitBoth = 40;
inline constexpr int kStringDefaultWidth = 41;
inline constexpr int kStringSummaryTitle = 42;
inline constexpr int kStringPositivelySkewed = 55;
inline constexpr int kStringNegativelySkewed = 56;
inline constexpr int kStringPropertySheet = 32783;
inline constexpr int kStringExpandSelection = 32784;
inline constexpr int kStringCollapseSelection = 32785;

CString LoadString(int id);

// Fills "%1!s!" in a text with `first`.
CString FormatMessage(const CString& text, const CString& first);

}  // namespace tallyscope
