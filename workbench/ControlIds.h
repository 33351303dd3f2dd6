// SPDX-License-Identifier: MIT
#pragma once

// Ids of dialogs, pages and controls of the workbench.

namespace tallyscope {

inline constexpr int kIconApplication = 128;

inline constexpr int kDialogTallyscope = 163;
inline constexpr int kPageUnivariateStats = 168;
inline constexpr int kPageBivariateStats = 171;
inline constexpr int kPageSpatialStats = 181;
inline constexpr int kDialogStatsBasic = 175;
inline constexpr int kDialogFindValue = 4005;

enum ControlId : int {
  kControlMode = 1001,
  kControlKeyField,
  kControlAncField,
  kControlPush,
  kControlPop,
  kControlShowSpreadsheet,
  kControlHelp,
  kControlGrid,
  kControlStatus,
  kControlSelected,

  kControlOccurrence = 1101,
  kControlComparison,
  kControlValue,

  kControlTotal = 1201,
  kControlValid,
  kControlInvalid,
  kControlMinimum,
  kControlMaximum,
  kControlMean,
  kControlVariance,
  kControlStdDeviation,
  kControlRatio,
  kControlSkewness,
  kControlDirection,
  kControlMedian,
  kControlModeFigure,
  kControlLowerQuartile,
  kControlUpperQuartile,
  kControlInterquartileRange,
  kControlCopy,

  // Rows of a range: minimum, maximum and mean follow each other.
  kControlXMinimum = 1301,
  kControlXMaximum,
  kControlXMean,
  kControlYMinimum,
  kControlYMaximum,
  kControlYMean,
  kControlZMinimum,
  kControlZMaximum,
  kControlZMean,
  kControlCovariance,
  kControlCorrelation,
  kControlInertia,
  kControlRank,
  kControlIntercept,
  kControlSlope,
  kControlExpectation,
};

// Items of the spreadsheet's menu.
enum MenuId : int {
  kMenuSortAscending = 100,
  kMenuSortDescending = 101,
  kMenuFitHeadings = 102,
  kMenuFitData = 103,
  kMenuFitBoth = 104,
  kMenuDefaultWidth = 105,
  kMenuStatistics = 106,
  kMenuFindValue = 107,
};

}  // namespace tallyscope
