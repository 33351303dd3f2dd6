// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <unistd.h>

#include <atomic>
#include <cmath>
#include <csignal>
#include <cstdlib>
#include <sstream>
#include <thread>

#include <nlohmann/json.hpp>

#include "host/CancellableProgress.h"
#include "host/Command.h"
#include "host/CommandLine.h"
#include "spatial/ModelVariogramFile.h"
#include "spatial/Stats_ModelVariogram.h"
#include "tests/host/HostTesting.h"
#include "tests/support/Scratch.h"

namespace tallyscope {
namespace {

using Json = nlohmann::ordered_json;

Answer RunVariogram(std::vector<CString> arguments) {
  return RunProgram("variogram", std::move(arguments));
}

Json RunJson(std::vector<CString> arguments) {
  arguments.emplace_back("--json");
  const Answer answer = RunProgram(arguments);
  EXPECT_EQ(answer.code, kExitDone) << answer.err;
  return Json::parse(answer.out);
}

Json RunVariogramJson(std::vector<CString> arguments) {
  arguments.insert(arguments.begin(), "variogram");
  return RunJson(std::move(arguments));
}

struct GstatRow {
  std::size_t lag;  // number of the class
  int pairs;
  double gamma;
};

// `each`: how often a pair counts in the curve. In a direction that is once, and the sum of the cells' weights, which
// may round to just below the count, is cut to an integer.
void ExpectRows(const Json& curve, double width, int each, const std::vector<GstatRow>& rows) {
  for (const auto& row : rows) {
    const auto& lags = curve["lag"];
    const double lag = (static_cast<double>(row.lag) + 0.5) * width;
    const auto at = static_cast<std::size_t>(std::find(lags.begin(), lags.end(), lag) - lags.begin());
    ASSERT_LT(at, lags.size()) << lag;
    const int cut = each * row.pairs - curve["pairCount"][at].get<int>();
    EXPECT_TRUE(cut == 0 || (each == 1 && cut == 1)) << lag << ": " << curve["pairCount"][at];
    EXPECT_NEAR(curve["momentOfInertia"][at], row.gamma, 1e-12 * row.gamma) << lag;
  }
}

// gstat's classes take their upper end, ours the lower one, so its ends are put a little lower. In examples/:
//   Rscript -e 'library(sp); library(gstat); options(digits = 15); m <- read.csv("meuse.csv"); coordinates(m) <- ~x+y
//     b <- 30 * (1:50) - 1e-9; variogram(zinc ~ 1, m, boundaries = b, cutoff = 1500)
//     variogram(zinc ~ 1, m, boundaries = b, cutoff = 1500, alpha = c(0, 40), tol.hor = 20)
//     variogram(zinc ~ 1, m, boundaries = b, cutoff = 1500, covariogram = TRUE)'
TEST(VariogramCommand, MeuseAgreesWithGstat) {
  const auto json = RunVariogramJson({Example("meuse.csv"), "--field", "zinc", "--range", "1500", "--direction", "0",
                                      "--width", "40", "--direction", "40", "--width", "41"});
  EXPECT_EQ(json["pairs"], 6506);
  ASSERT_EQ(json["curves"].size(), 3u);
  ExpectRows(json["curves"][0], 30, 2,
             {{1, 6, 41943.8333333333},
              {2, 35, 43573.2285714286},
              {3, 38, 64654.5131578947},
              {10, 117, 78670.7222222222},
              {25, 169, 136305.4467455621},
              {40, 136, 146001.6948529412},
              {49, 125, 144925.1440000000}});
  ExpectRows(json["curves"][1], 30, 1,
             {{1, 1, 1740.5}, {5, 15, 55412.2}, {10, 38, 74457.3947368421}, {20, 37, 210591.4189189189}});
  ExpectRows(json["curves"][2], 30, 1,
             {{2, 6, 4297.25}, {6, 24, 34342.7916666667}, {11, 35, 59724.8}, {31, 68, 116305.1764705882}});
  const double covariances[] = {22848.7117655220, 84589.2545919429, 36430.5975606550, 99830.6295630749};
  for (std::size_t i = 0; i < 4; ++i) {
    EXPECT_NEAR(json["curves"][0]["covariance"][i], covariances[i], 1e-12 * 134743);  // the field's variance
  }
}

// As above with V of walker.csv, coordinates(w) <- ~X+Y: boundaries = 2 * (1:50) - 1e-9 for all directions.
TEST(VariogramCommand, WalkerAgreesWithGstat) {
  const auto json = RunVariogramJson({Example("walker.csv"), "--field", "V", "--range", "100"});
  EXPECT_EQ(json["pairs"], 37874);
  ExpectRows(json["curves"][0], 2, 2,
             {{1, 38, 30680.8972368421},
              {2, 108, 36114.3440740741},
              {6, 472, 57342.8086440678},
              {25, 1000, 98839.4507650000},
              {49, 1171, 96999.8486549957}});
}

TEST(VariogramCommand, JsonHasItsShape) {
  const auto keys = [](const Json& object) {
    std::string joined;
    for (const auto& item : object.items()) joined += item.key() + " ";
    return joined;
  };
  const auto json =
      RunVariogramJson({Example("quakes.csv"), "--field", "mag", "--x", "long", "--y", "lat", "--z", "depth", "--range",
                        "100", "--direction", "30", "--dip", "-10", "--direction", "200", "--width", "180"});
  EXPECT_EQ(keys(json), "field stations valid range lags azimuths dips pairs curves model ");
  EXPECT_EQ(json["field"], "mag");
  EXPECT_EQ(json["stations"], 1000);
  EXPECT_EQ(json["valid"], 1000);
  EXPECT_EQ(json["range"], 100);
  EXPECT_EQ(json["lags"], 25);
  EXPECT_EQ(json["azimuths"], 36);
  EXPECT_EQ(json["dips"], 18);
  EXPECT_EQ(json["model"], nullptr);
  ASSERT_EQ(json["curves"].size(), 3u);
  EXPECT_EQ(keys(json["curves"][0]), "direction dip width lag pairCount momentOfInertia covariance ");
  EXPECT_EQ(json["curves"][0]["width"], 180) << "all directions come first";
  EXPECT_EQ(json["curves"][1]["direction"], 30);
  EXPECT_EQ(json["curves"][1]["dip"], -10);
  EXPECT_EQ(json["curves"][1]["width"], 20) << "without --width";
  EXPECT_EQ(json["curves"][2]["momentOfInertia"], json["curves"][0]["momentOfInertia"]) << "180 means all directions";
  long long count = 0;
  for (const auto& pairs : json["curves"][0]["pairCount"]) count += pairs.get<int>();
  EXPECT_EQ(count, 2 * json["pairs"].get<long long>());
}

TEST(VariogramCommand, OddWidthsCountByTheirIntegerHalf) {
  const auto json = RunVariogramJson({Example("meuse.csv"), "--field", "zinc", "--range", "1000", "--direction", "17",
                                      "--width", "30", "--direction", "17", "--width", "31"});
  EXPECT_EQ(json["curves"][1]["pairCount"], json["curves"][2]["pairCount"]);
}

// Slope and intercept of R, whose line of the lag on the semivariance is turned round because the latter spreads more:
//   lag <- 30 * floor(v$dist / 30) + 15; g <- coef(lm(lag ~ v$gamma)); c(1 / g[2], -g[1] / g[2])
TEST(VariogramCommand, FitWritesTheDefaultModel) {
  const CScratch scratch;
  const auto file = scratch.Path("zinc.mvf");
  const auto json = RunVariogramJson({Example("meuse.csv"), "--field", "zinc", "--range", "1500", "--fit", "-o", file});
  EXPECT_NEAR(json["model"]["isotropicNugget"], 29969.088724703379, 1e-9 * 29969);
  ASSERT_EQ(json["model"]["nests"].size(), 1u);
  EXPECT_NEAR(json["model"]["nests"][0]["sill"], 137.682167020605, 1e-9 * 137);
  EXPECT_EQ(json["model"]["curves"][0]["lag"], json["curves"][0]["lag"]);
  EXPECT_EQ(ReadAll(file),
            "! Qorvane Tallyscope - Model Variogram\n\nModel Begin\n\tIsotropicNugget = 29969.08872\n\tNest Begin\n"
            "\t\tType = \"Linear\"\n\t\tNugget = 0\n\t\tSlope = 137.682167\n\t\tPrimaryRange = 1000\n"
            "\t\tMinorRange = 1000\n\t\tDepthRange = 1000\n\t\tStrike = 0\n\t\tPlunge = 0\n\t\tDip = 0\n\tNest End\n"
            "Model End\n");
  EXPECT_EQ(scratch.List().size(), 1u);
}

TEST(VariogramCommand, ModelStandsAtTheLagsOfTheSample) {
  const CScratch scratch;
  CStats_ModelVariogram model;
  model.SetIsotropicNugget(10000);
  model.AddNest() = CModelVariogram::Spherical({.sill = 120000, .primaryRange = 900, .minorRange = 400, .strike = 40});
  model.Update(2);
  ASSERT_TRUE(SaveToFile(model, scratch.Path("zinc.mvf")).IsGood());
  const auto json = RunVariogramJson({Example("meuse.csv"), "--field", "zinc", "--range", "900", "--direction", "40",
                                      "--model", scratch.Path("zinc.mvf")});
  ASSERT_EQ(json["model"]["curves"].size(), 2u);
  for (std::size_t i = 0; i < 2; ++i) {
    const auto& curve = json["model"]["curves"][i];
    ASSERT_EQ(curve["lag"], json["curves"][i]["lag"]);
    for (std::size_t k = 0; k < curve["lag"].size(); ++k) {
      const double lag = curve["lag"][k];
      const auto values = i == 0 ? model.GetAveragedValues(lag) : model.GetValues(40, 0, lag);
      EXPECT_EQ(curve["momentOfInertia"][k], values.variogram);
      EXPECT_EQ(curve["covariance"][k], values.covariance);
    }
  }
}

TEST(VariogramCommand, GridsHoldEveryPairTwice) {
  for (const char* kind : {"polar", "cartesian"}) {
    const std::vector<CString> arguments = {Example("meuse.csv"), "--field", "zinc", "--range", "1500", "--grid", kind};
    const auto json = RunVariogramJson(arguments);
    const bool polar = json["grid"]["kind"] == "polar";
    ASSERT_EQ(json["grid"]["pairCount"].size(), 1u);
    const auto& rows = json["grid"]["pairCount"][0];
    EXPECT_EQ(rows.size(), polar ? 72u : 40u);
    EXPECT_EQ(rows[0].size(), polar ? 50u : 40u);
    long long count = 0;
    for (std::size_t i = 0; i < rows.size(); ++i) {
      for (std::size_t k = 0; k < rows[i].size(); ++k) {
        count += rows[i][k].get<int>();
        const auto& opposite = polar ? rows[(i + 36) % 72][k] : rows[39 - i][39 - k];
        EXPECT_EQ(rows[i][k], opposite);
      }
    }
    // The square has corners beyond the range.
    EXPECT_TRUE(polar ? count == 2 * 6506 : count > 2 * 6506) << count;
    const Answer text = RunVariogram(arguments);
    EXPECT_NE(text.out.find(polar ? "Polar grid: 50 lags x 72 azimuths" : "Cartesian grid: 40 x 40"), CString::npos)
        << text.out;
  }
}

TEST(VariogramCommand, TextIsATable) {
  const Answer answer = RunVariogram({Example("meuse.csv"), "--field", "zinc", "--range", "1500", "--direction", "30",
                                      "--covariance", "--fit", "--error-variance", "100"});
  EXPECT_EQ(answer.code, kExitDone) << answer.err;
  for (const char* words :
       {"'zinc': 155 stations of 155 with a value, 6506 pairs in 50 lags up to 1500\n", "Error variance, from ",
        "Linear, Slope = 137.68217\n", "All directions\nlag   pair count  moment of inertia      model  covariance",
        "\n45            12          41943.833  36164.786   22848.712", "\nDirection 30, width 20\n"}) {
    EXPECT_NE(answer.out.find(words), CString::npos) << words << "\n" << answer.out;
  }
}

TEST(VariogramCommand, RefusalsAreOneSentence) {
  const auto meuse = Example("meuse.csv");
  struct Case {
    std::vector<CString> arguments;
    int code;
    const char* words;
  };
  for (const Case& c : {
           Case{{meuse, "--field", "zinc", "--width", "20"}, kExitWrongCall, "behind the --direction"},
           Case{{meuse, "--field", "zinc", "--dip", "20", "--direction", "0"}, kExitWrongCall, "behind the --dir"},
           Case{{meuse, "--field", "zinc", "--fit", "--model", "a.mvf"}, kExitWrongCall, "one of them"},
           Case{{meuse, "--field", "zinc", "-o", "a.mvf"}, kExitWrongCall, "-o goes with --fit"},
           Case{{meuse, "--field", "zinc", "--fit", "-o", "-"}, kExitWrongCall, "name of a file"},
           Case{{meuse, "--field", "zinc", "--range", "-5"}, kExitWrongCall, "is no number above 0"},
           Case{{meuse, "--field", "zinc", "--samples", "0"}, kExitWrongCall, "--samples"},
           Case{{meuse, "--field", "zinc", "--direction", "361"}, kExitWrongCall, "--direction"},
           Case{{meuse, "--field", "zinc", "--direction", "0", "--width", "1"}, kExitWrongCall, "--width"},
           Case{{meuse}, kExitWrongCall, "--field"},
           Case{{meuse, "--field", "zink"}, kExitBadInput, "did you mean zinc"},
           Case{{meuse, "--field", "zinc", "--direction", "0", "--dip", "5"}, kExitBadInput, "needs three axes"},
           Case{{meuse, "--field", "zinc", "--model", "none.mvf"}, kExitBadInput, "The file does not exist."},
           Case{{meuse, "--field", "zinc", "--fit", "-o", "/no/such/folder/a.mvf"},
                kExitBadInput,
                "writing to the file"},
       }) {
    const Answer answer = RunVariogram(c.arguments);
    EXPECT_EQ(answer.code, c.code) << c.words;
    EXPECT_TRUE(answer.out.empty()) << answer.out;
    EXPECT_NE(answer.err.find(c.words), CString::npos) << answer.err;
    if (c.code == kExitBadInput) {
      EXPECT_EQ(answer.err.find('\n'), answer.err.size() - 1) << answer.err;
    }
  }
}

TEST(VariogramCommand, TellsHowStationsLie) {
  const CScratch scratch;
  const std::string line = "on one line: there are no pairs in other directions.\n";
  const std::string place = "in one place: no distance is above 0.\n";
  struct Case {
    const char* table;
    std::string words;
  };
  for (const Case& c : {
           Case{"x,y,v\n0.1,0.3,1\n0.2,0.6,2\n0.7,2.1,4\n-0.3,-0.9,4\n", line},
           Case{"x,y,z,v\n0,5,1,1\n1,5,2,2\n7,5,8,4\n", line},
           Case{"x,y,v\n500001,6,1\n500002,6,2\n9,9,\n500003,6,2\n", line},
           Case{"x,y,v\n5,6,1\n5,6,2\n5,6,4\n", place},
           Case{"x,y,v\n0,0,1\n1,0,2\n2,0.0001,4\n", ""},
           Case{"x,y,v\n0,0,1\n1,3,2\n2,7,4\n1e300,5,4\n", ""},
           Case{"x,y,v\n1e300,5,4\n0,0,1\n1,3,2\n2,7,4\n", ""},
           Case{"x,y,z,v\n0,0,0,1\n1,0,0,2\n2,0,1,4\n", ""},
           Case{"x,y,v\n0,0,1\n1,0,2\n", ""},
       }) {
    const auto file = scratch.Write("table.csv", c.table);
    const Answer answer = RunVariogram({file, "--field", "v", "--range", "10"});
    EXPECT_EQ(answer.code, kExitDone);
    EXPECT_EQ(answer.err, c.words.empty() ? "" : "All stations of " + file + " with a value lie " + c.words) << c.table;
  }
  const Answer none = RunVariogram({scratch.Write("table.csv", "a,v\n1,2\n3,4\n"), "--field", "v"});
  EXPECT_EQ(none.code, kExitBadInput);
  EXPECT_EQ(none.out, "");
  EXPECT_NE(none.err.find(" has no axes, and a variogram needs distances; --x and --y name the axes.\n"),
            CString::npos);
}

TEST(VariogramCommand, CtrlCLeavesNothingBehind) {
  const CScratch scratch;
  std::string table = "x,y,v\n";
  unsigned seed = 1;
  for (int i = 0; i < 30000; ++i) {
    for (const char end : {',', ',', '\n'}) table += std::to_string((seed = seed * 1664525u + 1013904223u) >> 16) + end;
  }
  const auto file = scratch.Write("table.csv", table);
  // The key is pressed for as long as the command runs; outside of its work it does nothing here.
  const auto before = std::signal(SIGINT, SIG_IGN);
  std::atomic<bool> running = true;
  std::thread user([&running] {
    while (running) ::kill(::getpid(), SIGINT);
  });
  const Answer answer = RunVariogram({file, "--field", "v", "--range", "100000", "--fit", "-o", scratch.Path("v.mvf")});
  running = false;
  user.join();
  EXPECT_EQ(std::signal(SIGINT, before), SIG_IGN) << "the handler is put back";
  EXPECT_EQ(answer.code, kExitCancelled);
  EXPECT_EQ(answer.out, "");
  EXPECT_EQ(answer.err, "Cancelled.\n");
  EXPECT_EQ(scratch.List(), std::vector<std::string>{"table.csv"});
}

TEST(ModelCommand, DescribesAndSamples) {
  const CScratch scratch;
  const auto file = scratch.Write("a.mvf",
                                  "IsotropicNugget = 2\nNest Begin\nType = Spherical\nNugget = 0.5\n"
                                  "PositiveVariance = 10\nPrimaryRange = 500\nMinorRange = 250\nStrike = 30\n");
  auto json = RunJson({"model", file});
  EXPECT_EQ(json["totalNugget"], 2.5);
  EXPECT_EQ(json["totalSill"], 13);
  EXPECT_EQ(json["dimension"], 2);
  EXPECT_EQ(json["nests"][0]["type"], "Spherical");
  EXPECT_EQ(json["nests"][0]["minorRange"], 250);
  EXPECT_EQ(json["curve"]["range"], 750) << "half as far again as the longest range";
  EXPECT_EQ(json["curve"]["lag"].size(), 51u);
  EXPECT_EQ(json["curve"]["direction"], nullptr);

  json = RunJson({"model", file, "--direction", "30", "--range", "1000"});
  EXPECT_EQ(json["curve"]["lag"][13], 250);
  EXPECT_NEAR(json["curve"]["momentOfInertia"][13], 2.5 + 6.875, 1e-12);
  EXPECT_EQ(json["curve"]["momentOfInertia"][50], 12.5);
  json = RunJson({"model", file, "--direction", "0", "--dip", "90", "--dimension", "3", "--range", "10"});
  EXPECT_EQ(json["curve"]["momentOfInertia"][1], 12.5) << "no range in depth";

  const Answer text = RunProgram({"model", file, "--direction", "120"});
  for (const char* words : {"Isotropic nugget 2\nSpherical, Sill = 10, Range = 500\n",
                            "Total nugget 2.5, total sill 13\n", "Direction 120\nlag"}) {
    EXPECT_NE(text.out.find(words), CString::npos) << text.out;
  }
  EXPECT_EQ(RunJson({"model", scratch.Write("empty.mvf", "Model Begin\nModel End\n")})["curve"]["range"], 2000);
  // A line that says nothing among others is told.
  const Answer odd = RunProgram({"model", scratch.Write("odd.mvf", "Nest Begin\n\nSil = 4\n")});
  EXPECT_EQ(odd.code, kExitDone);
  EXPECT_EQ(odd.err,
            scratch.Path("odd.mvf") + ", line 3: 'Sil = 4' says nothing to a model variogram and is skipped.\n");
}

TEST(ModelCommand, RefusesAFileThatIsNoModel) {
  const CScratch scratch;
  const auto empty = scratch.Write("empty.mvf", "\n");
  const std::string expected = "'Model Begin', 'IsotropicNugget = NUMBER' or 'Nest Begin' was expected.\n";
  for (const auto& [file, words] :
       {std::pair{Example("meuse.csv"),
                  ", line 1: 'x,y,cadmium,copper,lead,zinc,elev,dist,o...' is no line of a model "
                  "variogram; "},
        std::pair{empty, " is no model variogram; "}}) {
    for (const std::vector<CString>& arguments :
         {std::vector<CString>{"model", file},
          {"variogram", Example("meuse.csv"), "--field", "zinc", "--model", file}}) {
      const Answer answer = RunProgram(arguments);
      EXPECT_EQ(answer.code, kExitBadInput);
      EXPECT_EQ(answer.out, "");
      EXPECT_EQ(answer.err, file + words + expected);
    }
  }
}

TEST(ModelCommand, RefusalsAreOneSentence) {
  EXPECT_EQ(RunProgram({"model", "none.mvf"}).code, kExitBadInput);
  EXPECT_EQ(RunProgram({"model", "none.mvf", "--dip", "5"}).code, kExitWrongCall);
  EXPECT_EQ(RunProgram({"model", "none.mvf", "--direction", "5", "--dip", "5"}).code, kExitWrongCall);
  EXPECT_EQ(RunProgram({"model", "none.mvf", "--dimension", "1"}).code, kExitWrongCall);
}

}  // namespace
}  // namespace tallyscope
