// SPDX-License-Identifier: MIT
#include "platform/core/StringTable.h"

#include <algorithm>
#include <iterator>

namespace tallyscope {

namespace {

struct Row {
  int id;
  const char* text;
};

constexpr Row kRows[] = {
    {kStringFillNull, "Fill Null"},
    {kStringDetrend, "Detrend"},
    {kStringHistogramEqualize, "Histogram Equalize"},
    {kStringPowerFunction, "Power Function"},
    {kStringLogFunction, "Log Function"},
    {kStringAgc, "AGC"},
    {kStringGaussian, "Gaussian"},
    {kStringMovingAverage, "Moving Average"},
    {kStringScale, "Scale"},
    {kStringTranslate, "Translate"},
    {kStringProgressiveTranslate, "Progressive Translate"},
    {kStringProgressiveTranslateReverse, "Progressive Translate (Reverse)"},
    {kStringLinearCutoff, "Linear Cutoff"},
    {kStringWidth, "Width"},
    {kStringOk, "Ok"},
    {kStringHelp, "Help"},
    {kStringUnivariate, "Univariate"},
    {kStringBivariate, "Bivariate"},
    {kStringSpatial, "Spatial"},
    {kStringVariogram, "Variogram"},
    {kStringTallyscope, "Tallyscope"},
    {kStringStatistics, "Statistics"},
    {kStringSortAscending, "Sort Ascending"},
    {kStringSortDescending, "Sort Descending"},
    {kStringFindValue, "Find value..."},
    {kStringFitHeadings, "Fit to headings"},
    {kStringFitData, "Fit to data"},
    {kStringFitBoth, "Fit to data and headings"},
    {kStringDefaultWidth, "Default width"},
    {kStringSummaryTitle, "%1!s! - Summary statistics"},
    {kStringStationIndex, "Station Index"},
    {kStringKeyField, "Key Field"},
    {kStringFrequency, "Frequency"},
    {kStringU, "U"},
    {kStringV, "V"},
    {kStringLinearRegression, "Linear regression"},
    {kStringConditionalExpectation, "Conditional expectation"},
    {kStringQuantileCurve, "q-q quantile curve"},
    {kStringAxisX, "X"},
    {kStringAxisY, "Y"},
    {kStringAxisTitle, "%1!s! Axis Properties"},
    {kStringPositivelySkewed, "Positively skewed"},
    {kStringNegativelySkewed, "Negatively skewed"},
    {kStringHorizontalDifference, "Horizontal Difference"},
    {kStringPropertySheet, "Property Sheet"},
    {kStringExpandSelection, "Expand to previous selection"},
    {kStringCollapseSelection, "Collapse to current selection"},
    {kStringTipHorizontal, "Horizontal zooming and panning"},
    {kStringTipZoomIn, "Zoom in"},
    {kStringTipZoomOut, "Zoom out"},
    {kStringTipPan, "Pan"},
    {kStringTipPointer, "Pointer"},
    {kStringTipRectangle, "Rectangle selection"},
    {kStringTipPolygon, "Polygon selection"},
    {kStringTipExclude, "Include/Exclude selection"},
    {kStringTipUnselectAll, "Unselect all"},
    {kStringTipUndo, "Undo last selection"},
    {kStringTipInvert, "Invert selection"},
    {kStringTipRedo, "Redo previous selection"},
    {kStringTipSelectAll, "Select all"},
    {kStringTipFit, "Fit to data"},
    {kStringTipColourField, "Colour modulation field"},
    {kStringTipSizeField, "Size modulation field"},
};

}  // namespace

CString LoadString(int id) {
  const auto* found = std::find_if(std::begin(kRows), std::end(kRows), [id](const Row& row) { return row.id == id; });
  return found == std::end(kRows) ? CString() : CString(found->text);
}

CString FormatMessage(const CString& text, const CString& first) {
  static constexpr const char kMark[] = "%1!s!";
  CString filled = text;
  const auto at = filled.find(kMark);
  if (at != CString::npos) filled.replace(at, sizeof(kMark) - 1, first);
  return filled;
}

}  // namespace tallyscope
