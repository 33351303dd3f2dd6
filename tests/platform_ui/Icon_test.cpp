// SPDX-License-Identifier: MIT
#include "platform/ui/Icon.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <QPalette>

namespace tallyscope {
namespace {

const char* const kNames[] = {
    "push", "pop", "show",       "hide",    "help",      "app",     "zoom-in",         "zoom-out",
    "pan",  "fit", "horizontal", "pointer", "rectangle", "polygon", "include-exclude", "undo",
    "redo", "all", "none",       "invert",  "copy",      "save",    "settings"};

// The strongest ink of a picture, and how many of its pixels have any.
struct Ink {
  QColor colour = Qt::transparent;
  int pixels = 0;
};

Ink InkOf(const QIcon& icon, QIcon::Mode mode = QIcon::Normal, double scale = 1) {
  const QImage image = icon.pixmap(QSize(24, 24), scale, mode).toImage().convertToFormat(QImage::Format_ARGB32);
  Ink ink;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      const QColor pixel = image.pixelColor(x, y);
      if (pixel.alpha() > ink.colour.alpha()) ink.colour = pixel;
      ink.pixels += pixel.alpha() > 127 ? 1 : 0;
    }
  }
  return ink;
}

struct Icons : testing::Test {
  const QPalette before = QApplication::palette();
  ~Icons() override { QApplication::setPalette(before); }
};

TEST_F(Icons, EachHasADrawing) {
  for (const CString name : kNames) {
    const QIcon icon = MakeIcon(name);
    ASSERT_FALSE(icon.isNull()) << name;
    EXPECT_GT(InkOf(icon).pixels, 20) << name;
    EXPECT_LT(InkOf(icon).pixels, 24 * 24 * 9 / 10) << name;
  }
  EXPECT_TRUE(MakeIcon("no such icon").isNull());
}

TEST_F(Icons, FollowThePaletteEvenWhenMadeBefore) {
  const QIcon icon = MakeIcon("all");
  const QColor light(230, 230, 230), grey(110, 110, 110);
  QPalette dark = before;
  dark.setColor(QPalette::WindowText, light);
  dark.setColor(QPalette::Disabled, QPalette::WindowText, grey);
  EXPECT_EQ(InkOf(icon).colour.rgb(), before.color(QPalette::WindowText).rgb());
  QApplication::setPalette(dark);
  EXPECT_EQ(InkOf(icon).colour.rgb(), light.rgb());
  EXPECT_EQ(InkOf(icon, QIcon::Disabled).colour.rgb(), grey.rgb());
  EXPECT_EQ(InkOf(MakeIcon("app")).colour.rgb(), InkOf(MakeIcon("app"), QIcon::Disabled).colour.rgb())
      << "the program's own keeps its colours";
}

TEST_F(Icons, AreDrawnAnewAtEachScale) {
  const QIcon icon = MakeIcon("zoom-in");
  for (const double scale : {1.0, 1.5, 2.0, 4.0}) {
    const QPixmap pixmap = icon.pixmap(QSize(24, 24), scale);
    EXPECT_EQ(pixmap.size(), QSize(24, 24) * scale);
    EXPECT_EQ(pixmap.devicePixelRatio(), scale);
  }
  const double fine = InkOf(icon, QIcon::Normal, 4).pixels / 16.0;
  EXPECT_NEAR(InkOf(icon, QIcon::Normal, 1).pixels, fine, fine * 0.35) << "the stroke grows with it";
}

}  // namespace
}  // namespace tallyscope
