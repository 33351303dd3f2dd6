// SPDX-License-Identifier: MIT
#pragma once

#include <span>

#include "platform/core/Colour.h"
#include "platform/core/Geometry.h"
#include "platform/core/String.h"

namespace tallyscope {

struct DrawPoint {
  double x = 0;
  double y = 0;
  bool operator==(const DrawPoint&) const = default;
};

struct DrawRect {
  double left = 0;
  double top = 0;
  double right = 0;
  double bottom = 0;
  bool operator==(const DrawRect&) const = default;
};

// A small plus of filled squares: `arm` pixels to each side of the middle one.
struct PlotMark {
  float x = 0;  // the middle
  float y = 0;
  COLORREF colour = 0;
  int arm = 1;
};

enum class PenStyle { kNone, kSolid, kDash, kDot };
enum class PenEnds { kRound, kSquare, kFlat };
// A line of `width` pixels; 0 is the thinnest that the device has.
struct Pen {
  PenStyle style = PenStyle::kSolid;
  double width = 0;
  COLORREF colour = 0;
  PenEnds ends = PenEnds::kRound;
};

// Where a text stands about its point.
enum class TextAlign {
  kLeft,
  kCentre,
  kRight,
};
enum class TextLine {
  kTop,
  kMiddle,
  kBottom,
};

// What plots draw on: a picture on a screen, in an image or on paper, or a recorder. Co-ordinates are pixels of the
// client area at scale 1, from its top left corner; a device with finer pixels shows fractions. Filled rectangles and
// marks sit on whole device pixels, thin straight lines do, others are antialiased.
class CDC {
 public:
  virtual ~CDC() = default;

  virtual void SelectPen(const Pen& pen) = 0;
  virtual void SelectSolidBrush(COLORREF colour) = 0;
  virtual void MoveTo(double x, double y) = 0;
  virtual void LineTo(double x, double y) = 0;  // from the last place, with the pen
  virtual void FillSolidRect(const DrawRect& rect, COLORREF colour) = 0;
  virtual void Polygon(std::span<const DrawPoint> points) = 0;   // pen round brush
  virtual void Polyline(std::span<const DrawPoint> points) = 0;  // pen
  // Many marks at once: straight into the image where there is one.
  virtual void PutMarks(std::span<const PlotMark> marks) = 0;

  virtual void SetTextColor(COLORREF colour) = 0;
  virtual void SetTextAlign(TextAlign align, TextLine line) = 0;
  // Behind texts: nothing, or a rectangle of `colour`.
  virtual void SetBkMode(bool transparent, COLORREF colour = 0xffffff) = 0;
  virtual void SelectPointFont(double points, const CString& face, bool bold = false) = 0;
  virtual void TextOut(double x, double y, const CString& text) = 0;
  virtual void TextOutUpwards(double x, double y, const CString& text) = 0;  // turned to the left by a right angle
  virtual CSize GetTextExtent(const CString& text) = 0;

  virtual CRect GetClientRect() const = 0;
  // Device pixels to a pixel at scale 1.
  virtual double GetScale() const = 0;

  // Narrows the clip; the last PopClip brings back what was. See DrawClip.
  virtual void PushClip(const DrawRect& rect) = 0;
  virtual void PopClip() = 0;
};

// A clip for the length of a block.
class DrawClip {
 public:
  DrawClip(CDC& dc, const DrawRect& rect) : dc_(dc) { dc_.PushClip(rect); }
  ~DrawClip() { dc_.PopClip(); }
  DrawClip(const DrawClip&) = delete;
  DrawClip& operator=(const DrawClip&) = delete;

 private:
  CDC& dc_;
};

inline DrawRect ToDrawRect(const CRect& rect) {
  return {double(rect.left), double(rect.top), double(rect.right), double(rect.bottom)};
}

}  // namespace tallyscope
