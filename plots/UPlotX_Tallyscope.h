// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <vector>

#include "outside/colour/Modulation.h"
#include "outside/plot/UPlotX.h"
#include "statistics/Dim.h"
#include "statistics/Tallyscope.h"
#include "statistics/bvector.h"

namespace tallyscope {

class CStats_Calculator;
class CStats_Data;
class CStats_Rgn;
class CStats_Spatial;

// Base of the workbench's plots: what they read (the session's calculators and table, none of them owned), colour and
// size modulation by a field, the selection and its gestures. Where something happens they tell their container.
class CUPlotX_Tallyscope : public CUPlotX {
 public:
  CUPlotX_Tallyscope();

  CStats_Calculator* calculator = nullptr;
  CStats_Spatial* spatial = nullptr;  // holds the selection
  CStats_Data* data = nullptr;

  // What has been picked: a station, bin or lag; -1 nothing near, -2 no gesture running.
  int hover = -2;
  double hoverX = 0;  // world, where the pick was made: the mark stands here when the index names no valid station
  double hoverY = 0;
  // What a resting pointer is on, which the status line names; -1 nothing. Drawn thinner than the hover mark.
  int glance = -1;

  int colourDim = kNoDim;
  std::vector<COLORREF> colourTable;  // 256
  double colourLow = 0;               // range of the colour dim, which Prepare makes; high below low: not made
  double colourHigh = -1;
  int sizeDim = kNoDim;
  double sizeLow = 0;
  double sizeHigh = -1;

  bool allowDialogX = true;  // a double click on the axis opens its dialog
  bool allowDialogY = true;

  // The selection. Each ends with the figures of the selection up to date and everything that shows it told.
  virtual void AddSelRegion(std::unique_ptr<CStats_Rgn> region);
  virtual void RestoreLastSelRegion();  // redo
  virtual void ClearLastSelRegion();    // undo
  virtual void ClearAllSelRegion();

  // By the index of the page's list: 0 none, then the axes, then the fields. The range is forgotten.
  virtual void SetColourDim(int index);
  virtual void SetSizeDim(int index);

  virtual void Write2Registry(const CString& prefix);
  virtual void ReadFromRegistry(const CString& prefix);

  // The bit vector to draw by; null while the selection isn't shown.
  const bvector* GetShownSelection() const;

  bool Prepare(CProgressSink* progress) override;

  // Modulation of this drawing: off without a dim, before its range is made, or when all values are equal.
  ColourModulation GetColourModulation() const;
  SizeModulation GetSizeModulation() const;

  // Picking without a gesture: for the resting pointer and the keyboard.
  // Index under a point of the client area; -1 nothing near.
  virtual int PickAt(CPoint /*point*/) { return -1; }
  virtual int GetHoverCount() const { return 0; }  // how many indices the arrow keys walk through
  // Puts the hover mark on an index, as a pick on it would.
  virtual void SetHover(int index);
  // World, where an index stands; false where it has no place (a null).
  virtual bool GetPlace(int /*index*/, double& /*x*/, double& /*y*/) { return false; }
  // A sentence for the status line: "station 37: x 181072, y 333611, zinc 1022".
  virtual CString Describe(int /*index*/) { return {}; }
  // The region that Space makes of an index; null where there is none.
  virtual std::unique_ptr<CStats_Rgn> MakeRegionOf(int index);

  // The table behind the plot as tab-separated lines with headings.
  virtual CString GetDataText() { return {}; }

  // `colour` as it shows on the plot's paper: black turns to the palette's text, others get contrast in a dark palette.
  // Ask once a colour, outside of loops.
  COLORREF ForPaper(COLORREF colour) const;
  COLORREF GetTextColour() const;  // of legends

  // The legend of the modulation beside a picture.
  int GetSideRoom() override;
  void RenderSide(CDC& dc) override;

 protected:
  // "station 37: x 181072, y 333611" and then these dims and those of the modulation.
  CString DescribeStation(int station, std::vector<int> dims);
  // Whether the figures a plot stands on are there.
  bool IsReady() const { return calculator != nullptr && spatial != nullptr && data != nullptr; }
  // Tells that the hover mark has moved.
  void TellHovered();
  // After a change of the selection, before it is told.
  virtual void TakeSelection() {}

 private:
  // A field that has been looked through for a range: one without numbers leaves none, and isn't looked through again.
  struct Ranged {
    CStats_Data* data = nullptr;
    int dim = kNoDim;
    bool operator==(const Ranged&) const = default;
  };

  // Fills a range (low, high) by the minimum and maximum of the dim, unless it stands. False after a cancel.
  bool PrepareRange(int dim, double& low, double& high, Ranged& ranged, CProgressSink* progress);
  int DimFromModulation(int index) const;
  void TellSelectionChanged();

  Ranged colourRanged_;
  Ranged sizeRanged_;
};

}  // namespace tallyscope
