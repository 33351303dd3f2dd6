// SPDX-License-Identifier: MIT
// What the command line asks to be drawn; the drawing itself is tested with the plots.
#include <gtest/gtest.h>

#include <optional>

#include "host/HostTable.h"
#include "host/RenderRequest.h"
#include "tests/host/HostTesting.h"
#include "tests/support/Scratch.h"

namespace tallyscope {

namespace {
std::optional<RenderRequest> asked;
}

int RunRender(CHostTable&, const RenderRequest& request, std::ostream&) {
  asked = request;
  return 0;
}

namespace {

Answer Render(std::vector<CString> arguments) {
  asked.reset();
  arguments.insert(arguments.begin(), Example("meuse.csv"));
  arguments.insert(arguments.end(), {"-o", "picture.png"});
  return RunProgram("render", arguments);
}

TEST(RenderCommand, NamesBecomeDims) {
  ASSERT_EQ(Render({"--page", "bi-scatter", "--field", "zinc", "--field2", "y", "--colour", "om", "--size", "x"}).code,
            0);
  EXPECT_EQ(asked->page, RenderPage::kBiScatter);
  EXPECT_EQ(asked->field, 3);
  EXPECT_EQ(asked->field2, -2);
  EXPECT_EQ(asked->colour, 6);
  EXPECT_EQ(asked->size, -1);
  EXPECT_EQ(asked->target, "picture.png");
  EXPECT_EQ(asked->width, 1200);
  ASSERT_EQ(Render({"--page", "map", "--width", "640", "--height", "480", "--perceptual"}).code, 0);
  EXPECT_EQ(asked->colour, -999);
  EXPECT_EQ(asked->width, 640);
  EXPECT_EQ(asked->height, 480);
  EXPECT_TRUE(asked->perceptual);
}

TEST(RenderCommand, FieldsThatAreNotNamedAreTheFirstTwo) {
  ASSERT_EQ(Render({"--page", "bi-scatter"}).code, 0);
  EXPECT_EQ(asked->field, 0);
  EXPECT_EQ(asked->field2, 1);
  ASSERT_EQ(Render({"--page", "bi-scatter", "--field", "copper"}).code, 0);
  EXPECT_EQ(asked->field, 1);
  EXPECT_EQ(asked->field2, 0);
  const CScratch scratch;
  asked.reset();
  const auto file = scratch.Write("axes.csv", "x,y\n1,2\n3,4\n");
  ASSERT_EQ(RunProgram("render", {file, "--page", "bi-scatter", "--field", "y", "-o", "a.svg"}).code, 0);
  EXPECT_EQ(asked->field, -2);
  EXPECT_EQ(asked->field2, -1);
}

TEST(RenderCommand, WhatDoesNotGoTogetherIsAWrongCall) {
  for (const auto& arguments : std::vector<std::vector<CString>>{{},
                                                                 {"--page", "pie"},
                                                                 {"--page", "map", "--field", "zinc"},
                                                                 {"--page", "uni-scatter", "--field2", "zinc"},
                                                                 {"--page", "uni-scatter", "--size", "zinc"},
                                                                 {"--page", "uni-histogram", "--colour", "zinc"},
                                                                 {"--page", "map", "--width", "5"},
                                                                 {"--page", "map", "--height", "1e9"},
                                                                 {"--page", "map", "--select", "zinc over 3"}}) {
    const Answer answer = Render(arguments);
    EXPECT_EQ(answer.code, 2) << (arguments.empty() ? "nothing" : arguments.back());
    EXPECT_FALSE(asked);
  }
}

TEST(RenderCommand, WhatTheTableHasNotIsSaid) {
  const CScratch scratch;
  const auto plain = scratch.Write("plain.csv", "a,b\n1,2\n3,4\n");
  const auto words = scratch.Write("one.csv", "a\n1\n2\n");
  struct Row {
    std::vector<CString> arguments;
    const char* part;
  };
  for (const auto& row :
       {Row{{Example("meuse.csv"), "--page", "map", "--colour", "zin"}, "zinc"},
        Row{{plain, "--page", "map"}, "--x and --y"}, Row{{words, "--page", "bi-scatter"}, "too few columns"},
        Row{{"nowhere.csv", "--page", "map"}, "nowhere.csv"}}) {
    asked.reset();
    auto arguments = row.arguments;
    arguments.insert(arguments.end(), {"-o", "picture.png"});
    const Answer answer = RunProgram("render", arguments);
    EXPECT_EQ(answer.code, 1) << row.part;
    EXPECT_NE(answer.err.find(row.part), std::string::npos) << answer.err;
    EXPECT_FALSE(asked);
  }
}

}  // namespace
}  // namespace tallyscope
