// SPDX-License-Identifier: MIT
#pragma once

#include "platform/core/String.h"

namespace tallyscope {

// Texts of the user interface that are known by a number. LoadString of an unknown number is an empty string.
inline constexpr int kStringFillNull = 1;
inline constexpr int kStringDetrend = 2;
inline constexpr int kStringHistogramEqualize = 3;
inline constexpr int kStringPowerFunction = 4;
inline constexpr int kStringLogFunction = 5;
inline constexpr int kStringAgc = 6;
inline constexpr int kStringGaussian = 7;
inline constexpr int kStringMovingAverage = 8;
inline constexpr int kStringScale = 9;
inline constexpr int kStringTranslate = 10;
inline constexpr int kStringProgressiveTranslate = 11;
inline constexpr int kStringProgressiveTranslateReverse = 12;
inline constexpr int kStringLinearCutoff = 13;
inline constexpr int kStringWidth = 14;
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
inline constexpr int kStringStationIndex = 43;
inline constexpr int kStringKeyField = 44;
inline constexpr int kStringFrequency = 45;
inline constexpr int kStringU = 46;
inline constexpr int kStringV = 47;
inline constexpr int kStringLinearRegression = 48;
inline constexpr int kStringConditionalExpectation = 49;
inline constexpr int kStringQuantileCurve = 50;
inline constexpr int kStringAxisX = 51;
inline constexpr int kStringAxisY = 52;
inline constexpr int kStringAxisTitle = 54;
inline constexpr int kStringPositivelySkewed = 55;
inline constexpr int kStringNegativelySkewed = 56;
inline constexpr int kStringHorizontalDifference = 95;
inline constexpr int kStringPropertySheet = 32783;
inline constexpr int kStringExpandSelection = 32784;
inline constexpr int kStringCollapseSelection = 32785;
inline constexpr int kStringTipHorizontal = 32789;
inline constexpr int kStringTipZoomIn = 32790;
inline constexpr int kStringTipZoomOut = 32791;
inline constexpr int kStringTipPan = 32792;
inline constexpr int kStringTipPointer = 32793;
inline constexpr int kStringTipRectangle = 32794;
inline constexpr int kStringTipPolygon = 32795;
inline constexpr int kStringTipExclude = 32796;
inline constexpr int kStringTipUnselectAll = 32797;
inline constexpr int kStringTipUndo = 32798;
inline constexpr int kStringTipInvert = 32799;
inline constexpr int kStringTipRedo = 32800;
inline constexpr int kStringTipSelectAll = 32801;
inline constexpr int kStringTipFit = 32802;
inline constexpr int kStringTipColourField = 32803;
inline constexpr int kStringTipSizeField = 32804;

CString LoadString(int id);

// Fills "%1!s!" in a text with `first`.
CString FormatMessage(const CString& text, const CString& first);

}  // namespace tallyscope
