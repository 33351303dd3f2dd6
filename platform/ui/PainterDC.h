// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

#include <QFont>

#include "platform/ui/DC.h"

class QImage;
class QPainter;

namespace tallyscope {

// A device on a QPainter: a screen, an image, an SVG or a PDF.
class CPainterDC : public CDC {
 public:
  // An image of 32 bits a pixel; its own device pixel ratio is the scale. The painter is made here.
  explicit CPainterDC(QImage& image);
  // Any other; the painter's units are pixels at scale 1 and `client` of them are drawn on.
  CPainterDC(QPainter& painter, CSize client);
  ~CPainterDC() override;

  void SelectPen(const Pen& pen) override;
  void SelectSolidBrush(COLORREF colour) override;
  void MoveTo(double x, double y) override { place_ = {x, y}; }
  void LineTo(double x, double y) override;
  void FillSolidRect(const DrawRect& rect, COLORREF colour) override;
  void Polygon(std::span<const DrawPoint> points) override;
  void Polyline(std::span<const DrawPoint> points) override;
  void PutMarks(std::span<const PlotMark> marks) override;
  void SetTextColor(COLORREF colour) override { textColour_ = colour; }
  void SetTextAlign(TextAlign align, TextLine line) override;
  void SetBkMode(bool transparent, COLORREF colour) override;
  void SelectPointFont(double points, const CString& face, bool bold) override;
  void TextOut(double x, double y, const CString& text) override;
  void TextOutUpwards(double x, double y, const CString& text) override;
  CSize GetTextExtent(const CString& text) override;
  CRect GetClientRect() const override { return {0, 0, client_.cx, client_.cy}; }
  double GetScale() const override { return scale_; }
  void PushClip(const DrawRect& rect) override;
  void PopClip() override;

 private:
  struct DeviceRect {
    int left, top, right, bottom;
  };

  void PutMarksInImage(std::span<const PlotMark> marks);
  void PutMarksByPainter(std::span<const PlotMark> marks);
  bool IsNewMark(const PlotMark& mark);
  DeviceRect GetDeviceClip() const;
  DrawRect GetReach() const;
  void DrawTextAt(double x, double y, const QString& text);

  std::unique_ptr<QPainter> own_;  // null where the painter is the caller's
  QPainter* painter_;
  QImage* image_ = nullptr;
  CSize client_;
  double scale_ = 1;
  std::vector<DrawRect> clips_;
  Pen pen_;
  DrawPoint place_;
  QFont font_;
  COLORREF textColour_ = 0;
  TextAlign align_ = TextAlign::kLeft;
  TextLine line_ = TextLine::kTop;
  bool transparent_ = true;
  COLORREF background_ = 0xffffff;
  // On paper: what the last mark at a place was, so that a crowd of equal marks is written once.
  std::unordered_map<std::uint64_t, std::uint64_t> lastMarks_;
};

// The font that plots write in, and the room that a text takes.
QFont MakePlotFont(double points, const CString& face, bool bold = false);
CSize MeasurePlotText(double points, const CString& face, const CString& text);

}  // namespace tallyscope
