// SPDX-License-Identifier: MIT
#include "platform/ui/PainterDC.h"

#include <algorithm>
#include <cmath>

#include <QFontMetricsF>
#include <QImage>
#include <QPaintEngine>
#include <QPainter>
#include <QPainterPath>

#include "platform/core/ShownText.h"
#include "platform/ui/Contrast.h"
#include "platform/ui/SegmentClip.h"
#include "platform/ui/Wnd.h"

namespace tallyscope {

namespace {

constexpr double kBeyond = 64;  // pixels
constexpr double kFar = 1e5;
constexpr int kMostStrokes = 20000;  // ends of strokes in one path

QRectF ToQRect(const DrawRect& rect) {
  return {QPointF(rect.left, rect.top), QPointF(rect.right, rect.bottom)};
}

// A file of XML may hold no control characters, and its writer lets them through.
QString ToDrawn(const CString& text) {
  return ToQString(WithoutControls(text));
}

QPolygonF ToQPolygon(std::span<const DrawPoint> points) {
  QPolygonF polygon;
  polygon.reserve(static_cast<int>(points.size()));
  for (const auto& point : points) polygon << QPointF(point.x, point.y);
  return polygon;
}

// In an image the corner of a thin line is as good cut off as rounded, and that is half the work of stroking a long
// one. Paper may be looked at closely.
constexpr double kCutCorners = 2;  // up to this width

QPen ToQPen(const Pen& pen, bool inImage) {
  if (pen.style == PenStyle::kNone) return QPen(Qt::NoPen);
  QPen made(ToQColor(pen.colour), std::max(pen.width, 1.0));
  if (pen.style == PenStyle::kDash) made.setDashPattern({4, 3});
  if (pen.style == PenStyle::kDot) made.setDashPattern({1, 2});
  made.setCapStyle(pen.ends == PenEnds::kRound && pen.style == PenStyle::kSolid && pen.width > 1 ? Qt::RoundCap
                   : pen.ends == PenEnds::kSquare                                                ? Qt::SquareCap
                                                                                                 : Qt::FlatCap);
  made.setJoinStyle(inImage && pen.width <= kCutCorners ? Qt::BevelJoin : Qt::RoundJoin);
  return made;
}

double RoundToHalf(double at) {
  return std::round(at * 2) / 2;
}

// To the nearest whole number, halves up. Without a call of floor for each of millions.
int RoundUp(float value) {
  const float more = value + 0.5F;
  const int whole = static_cast<int>(more);
  return whole - static_cast<int>(more < static_cast<float>(whole));
}

// A plus of single pixels, all of which are in the image.
void PutPlus(std::uint32_t* middle, std::ptrdiff_t stride, int arm, std::uint32_t colour) {
  middle[0] = colour;
  for (int i = 1; i <= arm; ++i) middle[-i * stride] = middle[-i] = middle[i] = middle[i * stride] = colour;
}

// The same where arms differ from mark to mark: the end of a loop over them couldn't be guessed, so places are written
// again instead.
constexpr int kMostMixed = 4;
void PutPlusOfAnyArm(std::uint32_t* middle, std::ptrdiff_t stride, int arm, std::uint32_t colour) {
  middle[0] = colour;
  for (int i = 1; i <= kMostMixed; ++i) {
    const std::ptrdiff_t at = std::min(i, arm);
    middle[-at * stride] = middle[-at] = middle[at] = middle[at * stride] = colour;
  }
}

bool HaveOneArm(std::span<const PlotMark> marks) {
  int differs = 0;
  for (const auto& mark : marks) differs |= mark.arm ^ marks.front().arm;
  return differs == 0;
}

DrawRect Intersect(const DrawRect& a, const DrawRect& b) {
  return {std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right), std::min(a.bottom, b.bottom)};
}

}  // namespace

CPainterDC::CPainterDC(QImage& image)
    : own_(std::make_unique<QPainter>(&image)),
      painter_(own_.get()),
      image_(&image),
      client_{static_cast<int>(std::lround(image.width() / image.devicePixelRatio())),
              static_cast<int>(std::lround(image.height() / image.devicePixelRatio()))},
      scale_(image.devicePixelRatio()) {
  clips_.push_back({0, 0, image.width() / scale_, image.height() / scale_});
}

CPainterDC::CPainterDC(QPainter& painter, CSize client) : painter_(&painter), client_(client) {
  painter_->save();
  clips_.push_back({0, 0, double(client.cx), double(client.cy)});
}

CPainterDC::~CPainterDC() {
  if (own_ == nullptr) painter_->restore();
}

void CPainterDC::SelectPen(const Pen& pen) {
  pen_ = pen;
  painter_->setPen(ToQPen(pen, image_ != nullptr));
}

void CPainterDC::SelectSolidBrush(COLORREF colour) {
  painter_->setBrush(ToQColor(colour));
}

// A level or upright line lies on whole device pixels; with antialiasing it would smear over two rows.
void CPainterDC::LineTo(double x, double y) {
  const bool straight = x == place_.x || y == place_.y;
  DrawPoint from = place_;
  DrawPoint to{x, y};
  place_ = to;
  if (!ClipSegment(from, to, GetReach())) return;
  painter_->setRenderHint(QPainter::Antialiasing, !straight);
  painter_->drawLine(QPointF(from.x, from.y), QPointF(to.x, to.y));
}

// The clip, and room beyond it for a wide line and its joins: what lies outside is not seen.
DrawRect CPainterDC::GetReach() const {
  return Grown(clips_.back(), kBeyond + 2 * pen_.width);
}

void CPainterDC::FillSolidRect(const DrawRect& rect, COLORREF colour) {
  if (rect.right <= rect.left || rect.bottom <= rect.top) return;
  painter_->setRenderHint(QPainter::Antialiasing, false);
  if (image_ == nullptr) {
    painter_->fillRect(ToQRect(rect), ToQColor(colour));
    return;
  }
  // Edges round by themselves, so that rectangles that touch leave no gap.
  const auto edge = [this](double at) { return std::round(at * scale_) / scale_; };
  DrawRect whole{edge(rect.left), edge(rect.top), edge(rect.right), edge(rect.bottom)};
  whole.right = std::max(whole.right, whole.left + 1 / scale_);
  whole.bottom = std::max(whole.bottom, whole.top + 1 / scale_);
  painter_->fillRect(ToQRect(whole), ToQColor(colour));
}

void CPainterDC::Polygon(std::span<const DrawPoint> points) {
  const DrawRect reach = GetReach();
  if (std::none_of(points.begin(), points.end(), [&](const auto& point) { return Contains(reach, point); })) {
    const DrawRect far = Grown(reach, kFar);  // a large one may lie round all of the clip
    if (!std::all_of(points.begin(), points.end(), [&](const auto& point) { return Contains(far, point); })) return;
  }
  painter_->setRenderHint(QPainter::Antialiasing, true);
  painter_->drawPolygon(ToQPolygon(points));
}

void CPainterDC::Polyline(std::span<const DrawPoint> points) {
  painter_->setRenderHint(QPainter::Antialiasing, true);
  const DrawRect reach = GetReach();
  if (std::all_of(points.begin(), points.end(), [&](const auto& point) { return Contains(reach, point); })) {
    painter_->drawPolyline(ToQPolygon(points));
    return;
  }
  QPolygonF seen;  // a run of segments, each of which starts where the last one ended
  const auto flush = [&] {
    if (seen.size() > 1) painter_->drawPolyline(seen);
    seen.clear();
  };
  for (std::size_t i = 1; i < points.size(); ++i) {
    DrawPoint from = points[i - 1];
    DrawPoint to = points[i];
    if (!ClipSegment(from, to, reach)) {
      flush();
      continue;
    }
    if (seen.isEmpty()) seen << QPointF(from.x, from.y);
    seen << QPointF(to.x, to.y);
    if (!(to == points[i])) flush();  // it leaves here
  }
  flush();
}

CPainterDC::DeviceRect CPainterDC::GetDeviceClip() const {
  const auto& clip = clips_.back();
  return {std::max(0, static_cast<int>(std::lround(clip.left * scale_))),
          std::max(0, static_cast<int>(std::lround(clip.top * scale_))),
          std::min(image_->width(), static_cast<int>(std::lround(clip.right * scale_))),
          std::min(image_->height(), static_cast<int>(std::lround(clip.bottom * scale_)))};
}

void CPainterDC::PutMarks(std::span<const PlotMark> marks) {
  if (image_ != nullptr) {
    PutMarksInImage(marks);
  } else {
    PutMarksByPainter(marks);
  }
}

void CPainterDC::PutMarksInImage(std::span<const PlotMark> marks) {
  const auto clip = GetDeviceClip();
  const int thick = std::max(1, static_cast<int>(std::lround(scale_)));
  const auto scale = static_cast<float>(scale_);
  const auto stride = static_cast<std::ptrdiff_t>(image_->bytesPerLine() / 4);
  auto* pixels = reinterpret_cast<std::uint32_t*>(image_->bits());
  const auto fill = [&](int left, int top, int right, int bottom, std::uint32_t colour) {
    left = std::max(left, clip.left);
    right = std::min(right, clip.right);
    top = std::max(top, clip.top);
    bottom = std::min(bottom, clip.bottom);
    if (left >= right) return;
    for (int y = top; y < bottom; ++y) std::fill(pixels + y * stride + left, pixels + y * stride + right, colour);
  };
  const auto lowest = static_cast<float>(std::min(clip.left, clip.top)) - 1e4F;
  const auto highest = static_cast<float>(std::max(clip.right, clip.bottom)) + 1e4F;
  const bool isMixed = !HaveOneArm(marks);
  for (const auto& mark : marks) {
    const float x = mark.x * scale;
    const float y = mark.y * scale;
    if (!(x > lowest && x < highest && y > lowest && y < highest)) continue;  // NaN too
    const int left = RoundUp(x);
    const int top = RoundUp(y);
    const int arm = mark.arm * thick;
    const auto colour = 0xff000000U | static_cast<std::uint32_t>(GetRValue(mark.colour)) << 16 |
                        static_cast<std::uint32_t>(GetGValue(mark.colour)) << 8 |
                        static_cast<std::uint32_t>(GetBValue(mark.colour));
    const bool isInside =
        left >= clip.left + arm && left + arm < clip.right && top >= clip.top + arm && top + arm < clip.bottom;
    if (thick == 1 && isInside) {
      auto* middle = pixels + top * stride + left;
      if (isMixed && arm <= kMostMixed) {
        PutPlusOfAnyArm(middle, stride, arm, colour);
      } else {
        PutPlus(middle, stride, arm, colour);
      }
      continue;
    }
    fill(left - arm, top, left + thick + arm, top + thick, colour);
    fill(left, top - arm, left + thick, top + thick + arm, colour);
  }
}

// A drawing of vectors holds marks of one colour as the strokes of one path: a million marks of their own would make a
// file that nothing opens.
void CPainterDC::PutMarksByPainter(std::span<const PlotMark> marks) {
  const auto engine = painter_->paintEngine()->type();
  const bool isVector = engine == QPaintEngine::SVG || engine == QPaintEngine::Pdf;
  std::vector<PlotMark> sorted;
  if (isVector) {  // of marks that come together those of one colour follow one another
    sorted.assign(marks.begin(), marks.end());
    std::stable_sort(sorted.begin(), sorted.end(), [](auto& a, auto& b) { return a.colour < b.colour; });
    marks = sorted;
  }
  painter_->setRenderHint(QPainter::Antialiasing, false);
  QPainterPath strokes;
  COLORREF colour = 0;
  const auto flush = [&] {
    if (strokes.isEmpty()) return;
    QPen pen(ToQColor(colour), 1);
    pen.setCapStyle(Qt::FlatCap);
    painter_->strokePath(strokes, pen);
    strokes.clear();
  };
  for (const auto& mark : marks) {
    if (!(std::abs(mark.x) < 1e6F && std::abs(mark.y) < 1e6F) || !IsNewMark(mark)) continue;
    const double x = RoundToHalf(mark.x);
    const double y = RoundToHalf(mark.y);
    if (!isVector) {
      painter_->fillRect(QRectF(x - mark.arm, y, 1 + 2 * mark.arm, 1), ToQColor(mark.colour));
      if (mark.arm > 0) painter_->fillRect(QRectF(x, y - mark.arm, 1, 1 + 2 * mark.arm), ToQColor(mark.colour));
      continue;
    }
    if (mark.colour != colour || strokes.elementCount() > kMostStrokes) flush();
    colour = mark.colour;
    strokes.moveTo(x - mark.arm, y + 0.5);
    strokes.lineTo(x + 1 + mark.arm, y + 0.5);
    if (mark.arm == 0) continue;
    strokes.moveTo(x + 0.5, y - mark.arm);
    strokes.lineTo(x + 0.5, y + 1 + mark.arm);
  }
  flush();
}

// False for one that lies on its like within half a pixel.
bool CPainterDC::IsNewMark(const PlotMark& mark) {
  const auto half = [](float at) {
    return static_cast<std::uint64_t>(static_cast<std::int64_t>(std::lround(at * 2)) + (1 << 24));
  };
  const auto look = static_cast<std::uint64_t>(mark.colour) << 8 | static_cast<std::uint64_t>(mark.arm + 1);
  auto& last = lastMarks_[half(mark.x) << 32 | half(mark.y)];
  if (last == look) return false;
  last = look;
  return true;
}

void CPainterDC::SetTextAlign(TextAlign align, TextLine line) {
  align_ = align;
  line_ = line;
}

void CPainterDC::SetBkMode(bool transparent, COLORREF colour) {
  transparent_ = transparent;
  background_ = colour;
}

void CPainterDC::SelectPointFont(double points, const CString& face, bool bold) {
  font_ = MakePlotFont(points, face, bold);
}

void CPainterDC::TextOut(double x, double y, const CString& text) {
  DrawTextAt(x, y, ToDrawn(text));
}

void CPainterDC::TextOutUpwards(double x, double y, const CString& text) {
  painter_->save();
  painter_->translate(x, y);
  painter_->rotate(-90);
  DrawTextAt(0, 0, ToDrawn(text));
  painter_->restore();
}

void CPainterDC::DrawTextAt(double x, double y, const QString& text) {
  const QFontMetricsF metrics(font_);
  const double width = metrics.horizontalAdvance(text);
  const double left = align_ == TextAlign::kLeft ? x : align_ == TextAlign::kRight ? x - width : x - width / 2;
  const double top = line_ == TextLine::kTop      ? y
                     : line_ == TextLine::kBottom ? y - metrics.height()
                                                  : y - metrics.height() / 2;
  if (!transparent_) painter_->fillRect(QRectF(left - 2, top, width + 4, metrics.height()), ToQColor(background_));
  const QPen pen = painter_->pen();
  painter_->setPen(ToQColor(textColour_));
  painter_->setFont(font_);
  painter_->setRenderHint(QPainter::TextAntialiasing, true);
  painter_->drawText(QPointF(left, top + metrics.ascent()), text);
  painter_->setPen(pen);
}

CSize CPainterDC::GetTextExtent(const CString& text) {
  const QFontMetricsF metrics(font_);
  return {static_cast<int>(std::ceil(metrics.horizontalAdvance(ToDrawn(text)))),
          static_cast<int>(std::ceil(metrics.height()))};
}

void CPainterDC::PushClip(const DrawRect& rect) {
  painter_->save();
  painter_->setClipRect(ToQRect(rect), Qt::IntersectClip);
  clips_.push_back(Intersect(clips_.back(), rect));
}

void CPainterDC::PopClip() {
  painter_->restore();
  clips_.pop_back();
}

// Pixels, not points: 96 to the inch on every device, so that a layout is the same on screen and on paper.
QFont MakePlotFont(double points, const CString& face, bool bold) {
  QFont font(ToQString(face));
  font.setStyleHint(QFont::SansSerif);
  font.setPixelSize(std::max(1, static_cast<int>(std::lround(points * 96 / 72))));
  font.setBold(bold);
  return font;
}

CSize MeasurePlotText(double points, const CString& face, const CString& text) {
  const QFontMetricsF metrics(MakePlotFont(points, face));
  return {static_cast<int>(std::ceil(metrics.horizontalAdvance(ToDrawn(text)))),
          static_cast<int>(std::ceil(metrics.height()))};
}

}  // namespace tallyscope
