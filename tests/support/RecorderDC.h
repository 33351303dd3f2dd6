// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "platform/ui/DC.h"

namespace tallyscope {

// A device that keeps what was drawn on it.
class RecorderDC : public CDC {
 public:
  struct Line {
    Pen pen;
    std::vector<DrawPoint> points;
    DrawRect clip;
  };
  struct Fill {
    DrawRect rect;
    COLORREF colour;
    DrawRect clip;
  };
  struct Text {
    std::string text;
    DrawPoint place;
    COLORREF colour;
    double points;
    std::string face;
    TextAlign align;
    TextLine line;
    DrawRect clip;
  };
  struct Area {
    Pen pen;
    COLORREF brush;
    std::vector<DrawPoint> points;
  };
  struct Mark {
    PlotMark mark;
    DrawRect clip;
  };

  explicit RecorderDC(CSize size) : client_{0, 0, size.cx, size.cy}, clips_{ToDrawRect(client_)} {}

  std::vector<Line> lines;  // a run of LineTo without a MoveTo or a new pen between is one line
  std::vector<Fill> fills;
  std::vector<Text> texts;
  std::vector<Area> areas;
  std::vector<Mark> marks;

  // Lines of a colour, and of a width if one is given.
  std::vector<Line> LinesOf(COLORREF colour, double width = -1) const {
    std::vector<Line> found;
    for (const auto& line : lines) {
      if (line.pen.colour == colour && (width < 0 || line.pen.width == width)) found.push_back(line);
    }
    return found;
  }
  std::vector<Fill> FillsOf(COLORREF colour) const {
    std::vector<Fill> found;
    for (const auto& fill : fills) {
      if (fill.colour == colour) found.push_back(fill);
    }
    return found;
  }
  bool HasText(const std::string& text) const {
    for (const auto& each : texts) {
      if (each.text == text) return true;
    }
    return false;
  }

  void SelectPen(const Pen& pen) override {
    pen_ = pen;
    open_ = false;
  }
  void SelectSolidBrush(COLORREF colour) override { brush_ = colour; }
  void MoveTo(double x, double y) override {
    place_ = {x, y};
    open_ = false;
  }
  void LineTo(double x, double y) override {
    if (!open_) lines.push_back({pen_, {place_}, clips_.back()});
    open_ = true;
    place_ = {x, y};
    lines.back().points.push_back(place_);
  }
  void FillSolidRect(const DrawRect& rect, COLORREF colour) override { fills.push_back({rect, colour, clips_.back()}); }
  void Polygon(std::span<const DrawPoint> points) override {
    areas.push_back({pen_, brush_, {points.begin(), points.end()}});
  }
  void Polyline(std::span<const DrawPoint> points) override {
    lines.push_back({pen_, {points.begin(), points.end()}, clips_.back()});
    open_ = false;
  }
  void PutMarks(std::span<const PlotMark> put) override {
    for (const auto& mark : put) marks.push_back({mark, clips_.back()});
  }
  void SetTextColor(COLORREF colour) override { textColour_ = colour; }
  void SetTextAlign(TextAlign align, TextLine line) override {
    align_ = align;
    textLine_ = line;
  }
  void SetBkMode(bool, COLORREF) override {}
  void SelectPointFont(double points, const CString& face, bool) override {
    fontPoints_ = points;
    face_ = face;
  }
  void TextOut(double x, double y, const CString& text) override {
    texts.push_back({text, {x, y}, textColour_, fontPoints_, face_, align_, textLine_, clips_.back()});
  }
  void TextOutUpwards(double x, double y, const CString& text) override { TextOut(x, y, text); }
  CSize GetTextExtent(const CString& text) override { return {static_cast<int>(text.size()) * 6, 10}; }
  CRect GetClientRect() const override { return client_; }
  double GetScale() const override { return 1; }
  void PushClip(const DrawRect& rect) override {
    const auto& now = clips_.back();
    clips_.push_back({std::max(now.left, rect.left), std::max(now.top, rect.top), std::min(now.right, rect.right),
                      std::min(now.bottom, rect.bottom)});
  }
  void PopClip() override { clips_.pop_back(); }

 private:
  CRect client_;
  std::vector<DrawRect> clips_;
  Pen pen_;
  COLORREF brush_ = 0;
  DrawPoint place_;
  bool open_ = false;
  COLORREF textColour_ = 0;
  TextAlign align_ = TextAlign::kLeft;
  TextLine textLine_ = TextLine::kTop;
  double fontPoints_ = 0;
  std::string face_;
};

}  // namespace tallyscope
