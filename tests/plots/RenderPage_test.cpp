// SPDX-License-Identifier: MIT
// Pictures from the command line, whole: the table is read, the plot drawn, the file written.
#include <gtest/gtest.h>

#include <QImage>

#include "tests/host/HostTesting.h"
#include "tests/support/Scratch.h"

namespace tallyscope {
namespace {

int CountPixels(const QImage& image, const std::function<bool(QRgb)>& test) {
  int count = 0;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) count += test(image.pixel(x, y)) ? 1 : 0;
  }
  return count;
}
bool IsRed(QRgb colour) {
  return colour == qRgb(255, 0, 0);
}

bool IsReddish(QRgb colour) {  // as antialiased lines are
  return qRed(colour) > 200 && qGreen(colour) < 130 && qBlue(colour) < 130;
}

struct RenderPages : testing::Test {
  QImage Draw(const std::vector<CString>& arguments, const std::string& name = "picture.png") {
    std::vector<CString> all{Example("meuse.csv"), "--width", "500", "--height", "400", "-o", scratch.Path(name)};
    all.insert(all.end(), arguments.begin(), arguments.end());
    const Answer answer = RunProgram("render", all);
    EXPECT_EQ(answer.code, 0) << answer.err;
    EXPECT_EQ(answer.out + answer.err, "");
    return QImage(QString::fromStdString(scratch.Path(name)));
  }
  const CScratch scratch;
};

TEST_F(RenderPages, EachPageIsDrawnWithItsSelection) {
  for (const auto& page : std::vector<std::vector<CString>>{{"--page", "uni-scatter", "--field", "zinc"},
                                                            {"--page", "uni-histogram", "--field", "zinc"},
                                                            {"--page", "bi-scatter", "--field", "zinc"},
                                                            {"--page", "map"}}) {
    const QImage plain = Draw(page);
    ASSERT_EQ(plain.size(), QSize(500, 400));
    EXPECT_EQ(plain.pixel(1, 1), qRgb(255, 255, 255));
    EXPECT_EQ(CountPixels(plain, IsReddish), 0) << page[1];
    auto selected = page;
    selected.insert(selected.end(), {"--select", "zinc in 1000..1500", "--select", "lead in ..45"});
    EXPECT_GT(CountPixels(Draw(selected), IsReddish), 40) << page[1];
  }
}

TEST_F(RenderPages, SelectedMarksOnTheMapAreCounted) {
  const QImage image = Draw({"--page", "map", "--select", "zinc in 1800.."});
  EXPECT_EQ(CountPixels(image, IsRed), 9) << "one station, a pixel larger than the others";
}

TEST_F(RenderPages, ColoursBringTheirLegend) {
  const auto coloured = [](QRgb colour) { return qRed(colour) != qGreen(colour) || qGreen(colour) != qBlue(colour); };
  EXPECT_EQ(CountPixels(Draw({"--page", "map"}), coloured), 0);
  const QImage even = Draw({"--page", "map", "--colour", "zinc", "--perceptual"});
  EXPECT_GT(CountPixels(even, [](QRgb colour) { return colour == qRgb(0x44, 0x01, 0x54); }), 10);
  EXPECT_GT(CountPixels(Draw({"--page", "map", "--colour", "zinc"}), IsReddish), 50) << "the end of the bar";
}

TEST_F(RenderPages, DrawingsAreVectors) {
  Draw({"--page", "bi-scatter", "--field", "zinc", "--field2", "lead"}, "picture.svg");
  const auto svg = ReadAll(scratch.Path("picture.svg"));
  EXPECT_EQ(svg.find("<image"), std::string::npos);
  EXPECT_NE(svg.find("Linear regression"), std::string::npos);
  EXPECT_NE(svg.find("zinc"), std::string::npos);
  Draw({"--page", "map"}, "picture.pdf");
  EXPECT_EQ(ReadAll(scratch.Path("picture.pdf")).substr(0, 5), "%PDF-");
}

TEST_F(RenderPages, AFileThatCannotBeWrittenIsSaid) {
  for (const auto* name : {"missing/picture.png", "picture.bmp"}) {
    const Answer answer = RunProgram("render", {Example("meuse.csv"), "--page", "map", "-o", scratch.Path(name)});
    EXPECT_EQ(answer.code, 1);
    EXPECT_NE(answer.err.find(name), std::string::npos) << answer.err;
  }
  EXPECT_TRUE(scratch.List().empty());
}

TEST_F(RenderPages, TablesThatShowNothingAreDrawnAllTheSame) {
  const struct {
    const char* name;
    const char* text;
  } tables[] = {{"null.csv", "x,y,a,b\n1,2,,\n3,4,,\n"},
                {"one.csv", "x,y,a,b\n1,2,3,4\n"},
                {"even.csv", "x,y,a,b\n1,2,3,4\n1,2,3,4\n1,2,3,4\n"},
                {"huge.csv", "x,y,a,b\n1e300,2,1e300,4\n-1e300,2,-1e300,4\n"},
                {"huger.csv", "x,y,a,b\n1e308,1e308,1e308,4\n-1e308,-1e308,-1e308,4\n0,0,0,1.7e308\n9,9,9,-1.7e308\n"},
                {"bare.csv", "x,y,a,b\n"}};
  for (const auto& [name, text] : tables) {
    const auto file = scratch.Write(name, text);
    for (const std::string page : {"uni-scatter", "uni-histogram", "bi-scatter", "map"}) {
      const auto target = scratch.Path(name + page + ".png");
      std::vector<CString> arguments{file, "--page", page, "-o", target};
      if (page != "uni-histogram") arguments.insert(arguments.end(), {"--colour", "a"});
      if (page == "map" || page == "bi-scatter") arguments.insert(arguments.end(), {"--size", "b"});
      const Answer answer = RunProgram("render", arguments);
      EXPECT_TRUE(answer.code == 0 || !answer.err.empty()) << name << " " << page;
      if (answer.code != 0) continue;
      EXPECT_FALSE(QImage(QString::fromStdString(target)).isNull()) << name << " " << page;
    }
  }
}

}  // namespace
}  // namespace tallyscope
