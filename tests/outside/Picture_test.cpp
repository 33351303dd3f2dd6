// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include <QBuffer>
#include <QImage>
#include <QPainter>
#include <QSvgGenerator>
#include <QXmlStreamReader>

#include "outside/plot/PlotDrawing.h"
#include "outside/plot/PlotPicture.h"
#include "platform/ui/PainterDC.h"
#include "platform/ui/SegmentClip.h"
#include "tests/outside/PlotTesting.h"
#include "tests/support/RecorderDC.h"
#include "tests/support/Scratch.h"

namespace tallyscope {
namespace {

CString Save(PlotStage& stage, const CString& path, double scale = 1) {
  return SavePicture(stage.container, {320, 200}, path, scale).GetError();
}

TEST(Picture, IsWrittenByItsEnding) {
  const CScratch scratch;
  PlotStage stage;
  ASSERT_EQ(Save(stage, scratch.Path("a.png")), "");
  EXPECT_EQ(QImage(QString::fromStdString(scratch.Path("a.png"))).size(), QSize(320, 200));
  ASSERT_EQ(Save(stage, scratch.Path("a.svg")), "");
  const auto svg = ReadAll(scratch.Path("a.svg"));
  EXPECT_NE(svg.find("<svg"), std::string::npos);
  EXPECT_NE(svg.find("<poly"), std::string::npos) << "lines, not pixels";
  EXPECT_EQ(svg.find("<image"), std::string::npos);
  ASSERT_EQ(Save(stage, scratch.Path("a.PDF")), "");
  EXPECT_EQ(ReadAll(scratch.Path("a.PDF")).substr(0, 5), "%PDF-");
  EXPECT_EQ(stage.container.GetClientRect(), (CRect{0, 0, 400, 300})) << "the container is as it was";
}

TEST(Picture, ThatCannotBeMadeLeavesTheOldFile) {
  const CScratch scratch;
  PlotStage stage;
  scratch.Write("old.png", "old");
  scratch.Write("old.jpg", "old");
  const struct {
    const char* name;
    double scale;
    const char* sentence;
  } rows[] = {{"old.jpg", 1, "old.jpg is not."},
              {"none/a.png", 1, "none/a.png can't be written"},
              {"old.png", 1e5, "320 x 200 pixels can't be written: there is not enough memory."}};
  for (const auto& row : rows) {
    EXPECT_NE(Save(stage, scratch.Path(row.name), row.scale).find(row.sentence), CString::npos) << row.name;
  }
  EXPECT_EQ(ReadAll(scratch.Path("old.png")) + ReadAll(scratch.Path("old.jpg")), "oldold");
  EXPECT_EQ(scratch.List().size(), 2u) << "nothing else is left";
  EXPECT_EQ(stage.container.GetClientRect(), (CRect{0, 0, 400, 300}));
  QImage image(1, 1, QImage::Format_RGB32);
  EXPECT_FALSE(MakePicture(stage.container, {320, 200}, 1e5, image).IsGood());
  EXPECT_EQ(image.width(), 1);
}

// Every text of a drawing comes from a table.
TEST(Picture, DrawingsHoldAnyText) {
  const struct {
    const char* text;
    const char* read;
  } rows[] = {{"Pb & Zn", "Pb & Zn"},
              {"</title><script>alert(1)</script>", "</title><script>alert(1)</script>"},
              {"a \"b\" 'c' ]]> &lt; &#1;", "a \"b\" 'c' ]]> &lt; &#1;"},
              {"b\x01l\x1f\x7f\n\xc2\x85.", "b l    ."},
              {"\xef\xbf\xbe\xef\xbf\xbf \xff\xed\xa0\x80", "\xef\xbf\xbd\xef\xbf\xbd \xef\xbf\xbd"}};
  const CScratch scratch;
  for (const auto& row : rows) {
    PlotStage stage;
    stage.plot.titleX = row.text;
    stage.plot.titleY = stage.plot.emptyReason = row.text;
    ASSERT_EQ(SavePicture(stage.container, {900, 700}, scratch.Path("a.svg")).GetError(), "");
    QXmlStreamReader xml(QByteArray::fromStdString(ReadAll(scratch.Path("a.svg"))));
    std::string title;
    std::string texts;
    while (!xml.atEnd()) {
      if (xml.readNext() != QXmlStreamReader::StartElement) continue;
      EXPECT_NE(xml.name(), QString("script"));
      if (xml.name() == QString("title")) title = xml.readElementText().toStdString();
      if (xml.name() == QString("text")) texts += xml.readElementText().toStdString();
    }
    EXPECT_FALSE(xml.hasError()) << xml.errorString().toStdString() << " in " << row.text;
    EXPECT_EQ(title.substr(0, std::string(row.read).size()), row.read);
    int found = 0;
    for (auto at = texts.find(row.read); at != std::string::npos; at = texts.find(row.read, at + 1)) ++found;
    EXPECT_EQ(found, 3) << texts;
  }
}

// A recorder that counts how often it is asked, and what it has measured.
class MeasuringDC : public RecorderDC {
 public:
  using RecorderDC::RecorderDC;
  CSize GetTextExtent(const CString& text) override {
    ++count;
    bytes += text.size();
    return RecorderDC::GetTextExtent(text);
  }
  int count = 0;
  std::size_t bytes = 0;
};

TEST(ShortenText, TakesFewMeasuresAndLeavesCharactersWhole) {
  std::string mixed;
  while (mixed.size() < 16000) mixed += "aé…𝄞";
  for (const std::size_t length : {3u, 20u, 400u, 1024u, 1025u, 16000u}) {
    for (const int room : {0, 7, 100, 333, 5000, 100000}) {
      std::size_t end = length;  // whole characters
      while (end < mixed.size() && (mixed[end] & 0xC0) == 0x80) ++end;
      const auto text = mixed.substr(0, end);
      MeasuringDC dc({100, 100});
      const auto shown = ShortenText(dc, text, room);
      EXPECT_LE(dc.count, 12) << length << " " << room;
      EXPECT_LE(dc.bytes, 12 * 1100u);
      EXPECT_EQ(QString::fromStdString(shown).toStdString(), shown) << "no character is split";
      EXPECT_FALSE(QString::fromStdString(shown).contains(QChar::ReplacementCharacter));
      const int width = static_cast<int>(shown.size()) * 6;
      EXPECT_TRUE(width <= room || shown.size() <= 7) << shown;
      if (shown == text) continue;
      EXPECT_NE(shown.find("…"), CString::npos);
      EXPECT_TRUE(end > 1024 || width + 2 * 4 * 6 > room) << "no more than needed is left out";
    }
  }
}

TEST(PainterDC, MarksOfOneColourAreOnePathOfADrawing) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  QSvgGenerator generator;
  generator.setOutputDevice(&buffer);
  generator.setSize({400, 300});
  {
    QPainter painter(&generator);
    CPainterDC dc(painter, {400, 300});
    std::vector<PlotMark> marks;
    for (int i = 0; i < 3000; ++i) marks.push_back({float(i % 100) * 4, float(i / 100) * 9, i < 2000 ? 0u : 0xffu, 1});
    dc.PutMarks(marks);
  }
  EXPECT_EQ(bytes.count("<path"), 2);
  EXPECT_LT(bytes.size(), 3000 * 80);
}

int CountColour(const QImage& image, QRgb colour) {
  int count = 0;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) count += image.pixel(x, y) == colour ? 1 : 0;
  }
  return count;
}

// A plus of arm 1 has five squares, one of arm 4 seventeen; on finer screens each square has more pixels, and none is
// mixed with its ground.
TEST(PainterDC, MarksLieOnWholePixelsAtEveryScale) {
  for (const double scale : {1.0, 1.5, 2.0}) {
    QImage image(static_cast<int>(40 * scale), static_cast<int>(40 * scale), QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::white);
    {
      CPainterDC dc(image);
      const PlotMark marks[] = {{10, 10, 0xff, 1}, {25.4F, 25.4F, 0xff0000, 4}, {NAN, 3, 0, 1}, {1e30F, 3, 0, 1}};
      dc.PutMarks(marks);
    }
    const int square = static_cast<int>(std::lround(scale)) * static_cast<int>(std::lround(scale));
    EXPECT_EQ(CountColour(image, qRgb(255, 0, 0)), 5 * square) << scale;
    EXPECT_EQ(CountColour(image, qRgb(0, 0, 255)), 17 * square) << scale;
    EXPECT_EQ(CountColour(image, qRgb(255, 255, 255)), image.width() * image.height() - 22 * square) << scale;
  }
}

// The pixels of one mark after the other, told by their distance from its middle.
void PutPlainly(QImage& image, const PlotMark& mark) {
  const int x = static_cast<int>(std::floor(mark.x + 0.5F));
  const int y = static_cast<int>(std::floor(mark.y + 0.5F));
  for (int row = 0; row < image.height(); ++row) {
    for (int column = 0; column < image.width(); ++column) {
      const int across = std::abs(column - x);
      const int along = std::abs(row - y);
      if ((across == 0 && along <= mark.arm) || (along == 0 && across <= mark.arm)) {
        image.setPixel(column, row, qRgb(GetRValue(mark.colour), GetGValue(mark.colour), GetBValue(mark.colour)));
      }
    }
  }
}

TEST(PainterDC, MarksOfOneArmAndOfManyLieAsTheyDoOneByOne) {
  std::mt19937 random(11);
  const auto place = [&random] { return static_cast<float>(static_cast<int>(random() % 200) - 20) * 0.25F; };
  for (int most = 1; most <= 6; ++most) {
    std::vector<PlotMark> marks;
    for (int i = 0; i < 200; ++i) {
      const int arm = most == 1 ? 1 : static_cast<int>(random()) % most;
      marks.push_back({place(), place(), static_cast<COLORREF>(random() & 0xffffff), std::abs(arm)});
    }
    QImage image(40, 40, QImage::Format_RGB32);
    image.fill(Qt::white);
    QImage plain = image;
    {
      CPainterDC dc(image);
      dc.PutMarks(marks);
    }
    for (const auto& mark : marks) PutPlainly(plain, mark);
    EXPECT_EQ(image, plain) << "arms up to " << most;
  }
}

TEST(PainterDC, AClipCutsMarksAndFills) {
  QImage image(40, 40, QImage::Format_RGB32);
  image.fill(Qt::white);
  {
    CPainterDC dc(image);
    const DrawClip outer(dc, {0, 0, 20, 20});
    const DrawClip inner(dc, {10, 10, 40, 40});
    std::vector<PlotMark> marks;
    for (float at = 0; at < 40; ++at) marks.push_back({at, at, 0xff, 2});
    dc.PutMarks(marks);
    dc.FillSolidRect({0, 15, 40, 16}, 0xff0000);
  }
  for (int y = 0; y < 40; ++y) {
    for (int x = 0; x < 40; ++x) {
      if (x >= 10 && y >= 10 && x < 20 && y < 20) continue;
      EXPECT_EQ(image.pixel(x, y), qRgb(255, 255, 255)) << x << " " << y;
    }
  }
  EXPECT_EQ(image.pixel(12, 12), qRgb(255, 0, 0));
  EXPECT_EQ(image.pixel(12, 15), qRgb(0, 0, 255));
}

// Far ends cost nothing and change nothing of what is seen.
TEST(PainterDC, LinesThatRunFarAreDrawnAsTheirSeenParts) {
  const auto draw = [](double far) {
    QImage image(200, 100, QImage::Format_RGB32);
    image.fill(Qt::white);
    CPainterDC dc(image);
    const DrawClip clip(dc, {10, 10, 190, 90});
    dc.SelectPen({PenStyle::kSolid, 3, 0xff});
    const DrawPoint points[] = {{-far, 50 - far / 10}, {100, 60}, {100 + far, 60 - far / 5}, {NAN, 5}};
    dc.Polyline(points);
    dc.MoveTo(150, -far);
    dc.LineTo(150, far);
    const DrawPoint off[] = {{far, far}, {far + 5, far}, {far, far + 5}};
    dc.SelectSolidBrush(0xff);
    dc.Polygon(off);
    return image;
  };
  const QImage near = draw(300);
  EXPECT_GT(CountColour(near, qRgb(255, 0, 0)), 300);
  for (const double far : {3e3, 3e5, 3e9, 3e15}) {
    const QImage image = draw(far);
    int differing = 0;
    for (int y = 0; y < 100; ++y) {
      for (int x = 0; x < 200; ++x)
        differing += std::abs(qGreen(image.pixel(x, y)) - qGreen(near.pixel(x, y))) > 128 ? 1 : 0;
    }
    EXPECT_LT(differing, 40) << far << ": the same slopes through the same places";
  }
}

TEST(SegmentClip, CutsAtTheSides) {
  const DrawRect rect{0, 0, 10, 10};
  const struct {
    DrawPoint from, to, cutFrom, cutTo;
    bool seen;
  } rows[] = {{{-5, 5}, {15, 5}, {0, 5}, {10, 5}, true},
              {{2, 3}, {4, 5}, {2, 3}, {4, 5}, true},
              {{-5, -5}, {15, 15}, {0, 0}, {10, 10}, true},
              {{5, 20}, {5, -20}, {5, 10}, {5, 0}, true},
              {{-5, 5}, {5, 15}, {0, 10}, {0, 10}, true},
              {{-5, 6}, {5, 16}, {-5, 6}, {5, 16}, false},
              {{11, 0}, {11, 10}, {11, 0}, {11, 10}, false},
              {{0, 0}, {0, 10}, {0, 0}, {0, 10}, true},
              {{3, 3}, {3, 3}, {3, 3}, {3, 3}, true},
              {{3, 13}, {3, 13}, {3, 13}, {3, 13}, false},
              {{1, 1}, {INFINITY, 1}, {1, 1}, {INFINITY, 1}, false}};
  for (const auto& row : rows) {
    DrawPoint from = row.from;
    DrawPoint to = row.to;
    EXPECT_EQ(ClipSegment(from, to, rect), row.seen) << row.from.x << " " << row.from.y;
    EXPECT_EQ(from, row.cutFrom);
    EXPECT_EQ(to, row.cutTo);
  }
}

TEST(PainterDC, RectanglesThatTouchLeaveNoGap) {
  QImage image(150, 15, QImage::Format_RGB32);
  image.setDevicePixelRatio(1.5);
  image.fill(Qt::white);
  {
    CPainterDC dc(image);
    for (int i = 0; i < 37; ++i) dc.FillSolidRect({i * 100 / 37.0, 0, (i + 1) * 100 / 37.0, 10}, 0xff);
  }
  EXPECT_EQ(CountColour(image, qRgb(255, 0, 0)), 150 * 15);
}

}  // namespace
}  // namespace tallyscope
