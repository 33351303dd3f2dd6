// SPDX-License-Identifier: MIT
#include "gridctrl/GridPainter.h"

#include <gtest/gtest.h>

#include <QFontDatabase>
#include <QImage>
#include <QPainter>

#include "tests/gridctrl/GridTesting.h"

namespace tallyscope {
namespace {

constexpr COLORREF kStates[] = {0x80c0ff, 0xffc0c0, 0xc0c0ff};

QPalette Dark() {
  QPalette palette(QColor(53, 53, 53), QColor(53, 53, 53));
  palette.setColor(QPalette::Base, QColor(30, 30, 30));
  palette.setColor(QPalette::Text, Qt::white);
  palette.setColor(QPalette::ButtonText, Qt::white);
  return palette;
}

TEST(GridColours, TextCanBeReadOnEveryBackground) {
  EXPECT_NEAR(Contrast(Qt::black, Qt::white), 21, 1e-9);
  EXPECT_EQ(Contrast(Qt::red, Qt::red), 1);
  EXPECT_NEAR(Contrast(QColor(0x77, 0x77, 0x77), Qt::white), 4.48, 0.01) << "the well-known grey just below 4.5";
  for (const QPalette& palette : {QPalette(QColor(240, 240, 240)), Dark()}) {
    const GridColours colours(palette, QPalette::Active);
    EXPECT_EQ(colours.Background(kNormalBackground), colours.base) << "normal follows the palette";
    EXPECT_GE(Contrast(colours.base, colours.text), 4.5);
    for (const COLORREF state : kStates) {
      const QColor background = colours.Background(state);
      const QColor ink = ReadableOn(background, colours.text);
      EXPECT_GE(Contrast(background, ink), 4.5);
      EXPECT_LT(ink.lightness(), 64) << "dark on light in both palettes";
    }
  }
  EXPECT_EQ(GridColours(Dark(), QPalette::Active).Background(0x80c0ff), QColor(255, 192, 128));
}

TEST(GridText, NumbersAreMeasuredAsTheyAreDrawn) {
  for (const auto& family : {QFontDatabase::systemFont(QFontDatabase::GeneralFont), QFont("URW Bookman", 11)}) {
    const GridText text(family);
    const QFontMetricsF metrics(family);
    for (const char* number : {"1022", "-1e+32", "333611", "0.123456789", "1,234.5"}) {
      EXPECT_NEAR(text.Width(number), metrics.horizontalAdvance(number), 1.01) << number;
    }
    EXPECT_EQ(text.Width("1111"), text.Width("8888"));
    EXPECT_EQ(text.Width("12345678"), text.NumberWidth(8));
  }
}

TEST(GridText, WhatDoesNotFitEndsWithAnEllipsis) {
  const GridText text{QFont()};
  for (const QString whole : {"123456789.123", "a rather long heading"}) {
    EXPECT_EQ(text.Fitted(whole, text.Width(whole)), whole);
    for (int room = text.Width(whole) - 1; room > 0; room -= 7) {
      const QString cut = text.Fitted(whole, room);
      if (cut.size() < 2) continue;
      EXPECT_LE(text.Width(cut), room);
      EXPECT_TRUE(cut.endsWith(QChar(0x2026)));
      EXPECT_TRUE(whole.startsWith(cut.left(cut.size() - 1)));
    }
  }
}

// A picture of a small grid at a scale, and what the colours of its pixels say.
struct Picture {
  GridGeometry geometry;
  GridText text{QFont()};
  GridScene scene{geometry, text, GridColours(Dark(), QPalette::Active)};
  double scale;
  QImage image;

  explicit Picture(double scale, QPointF origin = QPointF()) : scale(scale) {
    geometry.SetHeights(23, 19);
    geometry.SetRows(6);
    geometry.SetWidths({41, 63, 63});
    geometry.SetView(QSize(200, 120));
    scene.padding = 4;
    scene.request = [](GV_DISPINFO& info) {
      info.hasBackground = info.row > 0 && info.col > 0;
      info.background = info.row == 2 ? 0xffc0c0 : kNormalBackground;
    };
    image = QImage(QSize(220, 140) * scale, QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::magenta);
    QPainter painter(&image);
    painter.translate(origin);
    PaintGrid(painter, QRect(0, 0, 200, 120), scene);
  }
  int Count(const QColor& colour, int x, int fromY, int toY) const {
    int count = 0;
    for (int y = fromY; y < toY; ++y) count += image.pixelColor(x, y) == colour ? 1 : 0;
    return count;
  }
  // How often the colour changes down a column of pixels, and one.
  int Runs(int x, int fromY, int toY) const {
    int runs = 1;
    for (int y = fromY + 1; y < toY; ++y) runs += image.pixel(x, y) != image.pixel(x, y - 1) ? 1 : 0;
    return runs;
  }
};

TEST(GridPainter, LinesAreOneDevicePixelAtEveryScale) {
  for (const double scale : {1.0, 1.25, 1.5, 2.0, 3.0}) {
    for (const QPointF origin : {QPointF(0, 0), QPointF(3, 5)}) {
      const Picture picture(scale, origin);
      const int x = static_cast<int>((60 + origin.x()) * scale);
      const int top = static_cast<int>(std::ceil((24 + origin.y()) * scale));
      const int bottom = static_cast<int>(std::floor((117 + origin.y()) * scale));
      EXPECT_EQ(picture.Count(picture.scene.colours.line, x, top, bottom), 4) << scale << " at " << origin.x();
      EXPECT_EQ(picture.Runs(x, top, bottom), 9) << scale << ": nothing of a cell shows beyond its line";
    }
  }
}

TEST(GridPainter, StatesFillTheirCellsAndNormalOnesThePalettesBase) {
  const Picture picture(2);
  EXPECT_EQ(picture.image.pixelColor(140, 60), QColor(30, 30, 30));
  EXPECT_EQ(picture.image.pixelColor(140, 2 * (23 + 19 + 9)), QColor(192, 192, 255));
  EXPECT_EQ(picture.image.pixelColor(2 * 190, 2 * 60), QColor(30, 30, 30)) << "beside the last column";
  EXPECT_EQ(picture.image.pixelColor(2 * 20, 2 * 60), picture.scene.colours.heading);
}

}  // namespace
}  // namespace tallyscope
