// SPDX-License-Identifier: MIT
#pragma once

namespace tallyscope {

// Controls of a graph page, the same on all of them.
inline constexpr int kGraphFrame = 1184;  // the canvas
inline constexpr int kGraphZoomH = 2011;
inline constexpr int kGraphZoomIn = 2009;
inline constexpr int kGraphZoomOut = 2010;
inline constexpr int kGraphPan = 11194;
inline constexpr int kGraphFit = 11195;
inline constexpr int kGraphSelect = 11190;
inline constexpr int kGraphSelectRect = 11191;
inline constexpr int kGraphSelectPoly = 11192;
inline constexpr int kGraphExclude = 11196;
inline constexpr int kGraphClearSelection = 1199;
inline constexpr int kGraphUndoSelection = 1200;
inline constexpr int kGraphInvertSelection = 1202;
inline constexpr int kGraphRedoSelection = 1046;
inline constexpr int kGraphSelectAll = 1045;
inline constexpr int kGraphColour = 1197;
inline constexpr int kGraphColourLabel = 1201;
inline constexpr int kGraphSize = 1198;
inline constexpr int kGraphSizeLabel = 1203;

// Templates of the dialogs and pages.
inline constexpr int kPageUnivariateScatter = 167;
inline constexpr int kPageUnivariateHistogram = 169;
inline constexpr int kPageBivariateScatter = 170;
inline constexpr int kPageSpatialScatter = 172;
inline constexpr int kDialogAxis = 176;

// Controls of the axis dialog.
inline constexpr int kAxisFrom = 1084;
inline constexpr int kAxisTo = 1085;
inline constexpr int kAxisBand = 1086;
inline constexpr int kAxisLinear = 1210;
inline constexpr int kAxisLogarithmic = 1211;

}  // namespace tallyscope
