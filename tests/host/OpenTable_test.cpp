// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <random>
#include <string>
#include <thread>

#include "host/OpenTable.h"
#include "host/TableFormats.h"
#include "host/TextSource.h"
#include "statistics/ProgressSink.h"
#include "tests/host/HostTesting.h"
#include "tests/support/Scratch.h"
#include "tests/support/TableText.h"

namespace tallyscope {
namespace {

class OpenTableTest : public testing::Test, protected CScratch {};

std::string ErrorOf(const std::string& path) {
  return OpenTable(path, {}, nullptr).error;
}

TEST_F(OpenTableTest, WhatIsNoTableIsRefusedInASentence) {
  EXPECT_EQ(ErrorOf(Path("none.csv")), "There is no file " + Path("none.csv") + ".");
  EXPECT_EQ(ErrorOf(Path("")), Path("") + " is a folder, not a table.");
  EXPECT_EQ(ErrorOf(Write("empty.csv", "")), Path("empty.csv") + " is empty.");
  EXPECT_EQ(ErrorOf(Write("a.csv", "a,b\n") + "/x.csv"), Path("a.csv") + "/x.csv can't be read: Not a directory.");
  EXPECT_EQ(ErrorOf("/dev/null"), "/dev/null is empty.");
  EXPECT_EQ(ErrorOf("/dev/zero"), "/dev/zero is no text file: byte 1 is zero.") << "which has no end";
  if (geteuid() == 0) return;  // root may read everything
  const auto closed = Write("closed.csv", "a,b\n1,2\n");
  chmod(closed.c_str(), 0);
  EXPECT_EQ(ErrorOf(closed), closed + " can't be read: Permission denied.");
}

TEST(TableFormats, AreToldByTheFirstBytes) {
  using namespace std::string_literals;
  struct Row {
    std::string bytes;
    const char* format;
    std::size_t columns;  // 0: refused
  };
  for (const Row& row : {Row{"\xFF\xFE"
                             "a\0"s,
                             "UTF-16 text", 0},
                         Row{"\xFE\xFF\0a"s, "UTF-16 text", 0}, Row{"PK\x03\x04\0"s, "ZIP archive", 0},
                         Row{"a,b\n\0,1\n"s, "binary data", 0}, Row{"t\n2\na\nb\n1 2\n", "GeoEAS", 2},
                         Row{"\xEF\xBB\xBFt\n1\na\n1\n", "GeoEAS", 1},
                         Row{"\xEF\xBB\xBF"
                             "a,b,c\n1,2,3\n",
                             "delimited text", 3},
                         Row{"v\n1\n", "delimited text", 1}, Row{"?", "delimited text", 0}}) {
    SCOPED_TRACE(row.bytes);
    CTextSource source(row.bytes);
    const auto& format = FindTableFormat(source);
    EXPECT_STREQ(format.name, row.format);
    const CString file = "t";
    const ReaderOptions options;
    const auto reader = format.open(source, file, options);
    EXPECT_EQ(reader->ListLayers().size(), 1u);
    LayerStart start;
    EXPECT_EQ(reader->Start(0, start), row.columns > 0);
    EXPECT_EQ(start.names.size(), row.columns);
    EXPECT_EQ(reader->GetError().empty(), row.columns > 0);
  }
}

// 10 GB in one line, on a disk that keeps holes: a refusal at once, not a hang.
TEST_F(OpenTableTest, EndlessLinesAreRefusedAtOnce) {
  const auto path = Write("hole.csv", "a,b\n1,2\n");
  std::filesystem::resize_file(path, std::uintmax_t{10} << 30);
  EXPECT_EQ(ErrorOf(path), path + " is no text file: byte 9 is zero.");
}

TEST_F(OpenTableTest, StreamsAreReadWhole) {
  const auto path = Path("pipe");
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  std::thread writer([&] {
    std::ofstream pipe(path);
    pipe << "x,y,v\n";
    for (int i = 0; i < 200'000; ++i) pipe << std::to_string(i) + ",1,2.5\n";
  });
  const auto opened = OpenTable(path, {}, nullptr);
  writer.join();
  ASSERT_TRUE(opened.table) << opened.error;
  EXPECT_EQ(opened.table->GetSize(), 200'000);
  EXPECT_EQ(opened.table->GetValue(-1, 199'999), 199'999);
}

// Standard input that is a socket can't be opened by a name.
TEST_F(OpenTableTest, StandardInputMayBeASocket) {
  int ends[2];
  ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, ends), 0);
  const std::string text = "a,b\n1,2\n";
  ASSERT_EQ(write(ends[0], text.data(), text.size()), static_cast<ssize_t>(text.size()));
  close(ends[0]);
  const int before = dup(STDIN_FILENO);
  dup2(ends[1], STDIN_FILENO);
  const auto opened = OpenTable("/dev/stdin", {}, nullptr);
  dup2(before, STDIN_FILENO);
  close(before);
  close(ends[1]);
  ASSERT_TRUE(opened.table) << opened.error;
  EXPECT_EQ(opened.table->GetValue(1, 0), 2);
}

// The window ends at every byte of a row once, and the table must not show where.
TEST_F(OpenTableTest, WhereTheWindowEndsDoesNotShow) {
  const std::string several = "17,12.5,\"a \"\"b\"\"\",x\r\n-3,  .5 ,\"two\nlines\",\r\n\r\n,1e300,\"\",clay\r\n";
  const std::string one = "12.5\r\n1.00000000000000000000000000001\r\n\r\n\"7\"\r\n";
  for (const std::string& block : {several, one}) {
    const std::string rows = block + block + block;
    for (std::size_t shift = 0; shift < block.size(); ++shift) {
      std::string text = (block == one ? "a" : "a,b,c,d") + std::string("\r\n") + rows;
      text += std::string(CTextSource::kWindow - text.size() - block.size() - shift, 'x') + "\r\n" + rows;
      const auto opened = OpenTable(Write("t", text), {}, nullptr);
      const auto expected = OpenTableText(text, Path("t"), {}, nullptr);
      ASSERT_TRUE(opened.table && expected.table) << opened.error << expected.error;
      ASSERT_EQ(opened.table->GetSize(), expected.table->GetSize()) << shift;
      ASSERT_EQ(WriteCsv(*opened.table, opened.table->GetSize()), WriteCsv(*expected.table, expected.table->GetSize()));
      ASSERT_EQ(opened.warnings, expected.warnings);
    }
  }
}

// Cells, blanks and heads far longer than the window.
TEST_F(OpenTableTest, LongCellsFitIntoAShortWindow) {
  const std::string cell(700'000, 'x');
  std::string text = "n,v\n";
  for (int i = 0; i < 4; ++i)
    text += cell + std::to_string(i) + std::string(400'000, ' ') + "," + std::to_string(i) + "\n";
  text += "\"" + cell + "\n";  // a quote that is never closed
  EXPECT_EQ(ErrorOf(Write("t", text)), Path("t") + ", line 6, column 1: the quote that opens here is never closed.");
  text.resize(text.rfind('"'));
  const auto opened = OpenTable(Write("t", text), {}, nullptr);
  ASSERT_TRUE(opened.table) << opened.error;
  EXPECT_EQ(opened.table->GetColumn(0).labels[3], cell + "3");
  std::string head = "title\n300\n";
  for (int i = 0; i < 300; ++i) head += std::string(4000, 'n') + std::to_string(i) + "\n";
  for (int i = 0; i < 600; ++i) head += std::to_string(i) + (i % 300 == 299 ? "\n" : " ");
  const auto grid = OpenTable(Write("t", head), {}, nullptr);
  ASSERT_TRUE(grid.table) << grid.error;
  EXPECT_EQ(grid.format, "GeoEAS");
  EXPECT_EQ(grid.table->GetValue(299, 1), 599);
}

// Does something when the reader begins with a pass.
class CMeddler : public CProgressSink {
 public:
  CMeddler(const char* when, std::function<void()> act) : when_(when), act_(std::move(act)) {}
  bool OnProgress(int) override { return true; }
  void SetTask(const char* text, int) override {
    if (std::string(text) == when_) act_();
  }

 private:
  const char* when_;
  std::function<void()> act_;
};

// A text column with numbers among its labels, which is read twice; far longer than the window.
std::string MakeLabels(int rows) {
  std::string text = "n,v\n";
  for (int i = 0; i < rows; ++i)
    text += (i % 3 == 0 ? "00017" : i % 7 == 0 ? "" : "clay" + std::to_string(i % 5)) + ",12345.5\n";
  return text;
}

TEST_F(OpenTableTest, LabelsAreReadInASecondPass) {
  const auto opened = OpenTable(Write("t", MakeLabels(100'000)), {}, nullptr);
  ASSERT_TRUE(opened.table) << opened.error;
  const auto& column = opened.table->GetColumn(0);
  ASSERT_TRUE(column.IsText());
  EXPECT_EQ(column.labels, (std::vector<CString>{"00017", "clay1", "clay2", "clay4", "clay0", "clay3"}));
  EXPECT_EQ(column.labels[static_cast<std::size_t>(opened.table->GetValue(0, 99'998)) - 1], "clay3");
  EXPECT_FALSE(column.IsValid(7));
  EXPECT_EQ(column.counts.nulls, 9524);
}

// What another program does to the file between the passes, leaving its length and its time as they were, so that the
// content alone can tell.
TEST_F(OpenTableTest, ASecondPassThatDiffersIsRefused) {
  const std::string text = MakeLabels(60'000);
  const std::size_t end = text.rfind("clay");  // of the last row: "clay4,12345.5"
  ASSERT_EQ(text.size() - end, 14u);
  struct Row {
    const char* what;
    std::size_t at;
    std::string put;
    const char* sentence = " changed while it was read.";
  };
  for (const Row& row : {
           Row{"nothing", 0, "", ""},
           Row{"another column", end + 6, "54321.5", ""},
           Row{"one row more", end, "clay4\nclay4\n,"},
           Row{"many rows more", end, "clay4\n,\n,\n,\n"},
           Row{"a row less", end - 1, ","},
           Row{"rows of one cell", end + 5, "\n"},
           Row{"longer cell", end + 5, "x"},
           Row{"another label that is known", end, "clay3"},
           Row{"another label that is not", end, "loam3"},
           Row{"number in place of a text", end, "00017"},
           Row{"text in place of a number", text.rfind("00017"), "0001x"},
           Row{"another number", text.rfind("00017"), "00018"},
           Row{"null in place of a text", end, "     "},
           Row{"null in place of a number", text.rfind("00017"), "     "},
           Row{"limit in place of a number", text.rfind("00017"), "<0017"},
           Row{"a quote", end, "\"", ", line 60001, column 1: the quote that opens here is never closed."},
           Row{"a zero byte", end, std::string(1, '\0'), ", line 60001, column 1: a zero byte, which no text holds."},
       }) {
    SCOPED_TRACE(row.what);
    const auto path = Write("t", text);
    CMeddler meddler("Reading text columns", [&] {
      struct stat facts {};
      stat(path.c_str(), &facts);
      const int file = open(path.c_str(), O_WRONLY);
      EXPECT_EQ(pwrite(file, row.put.data(), row.put.size(), static_cast<off_t>(row.at)),
                static_cast<ssize_t>(row.put.size()));
      const timespec times[] = {facts.st_atim, facts.st_mtim};
      futimens(file, times);
      close(file);
    });
    const auto opened = OpenTable(path, {}, &meddler);
    EXPECT_EQ(opened.table == nullptr, *row.sentence != '\0');
    EXPECT_EQ(opened.error, *row.sentence != '\0' ? path + row.sentence : "");
  }
}

TEST_F(OpenTableTest, AFileThatChangesIsRefused) {
  struct Row {
    const char* what;
    std::function<void(const std::string& path)> act;
    bool refused = true;
  };
  const auto resize = [](std::uintmax_t size) {
    return [size](const std::string& path) { std::filesystem::resize_file(path, size); };
  };
  for (const Row& row : {
           Row{"cut to nothing", resize(0)},
           Row{"cut in the window", resize(1000)},
           Row{"cut behind the window", resize(CTextSource::kWindow + 1000)},
           Row{"made longer", [](const std::string& path) { std::ofstream(path, std::ios::app) << "5\n"; }},
           Row{"written again", [](const std::string& path) { std::ofstream(path, std::ios::in) << "n"; }},
           Row{"replaced as a whole",
               [](const std::string& path) {
                 std::ofstream(path + "2") << "a\n1\n";
                 std::filesystem::rename(path + "2", path);
               },
               false},
           Row{"removed", [](const std::string& path) { std::filesystem::remove(path); }, false},
       }) {
    for (const char* when : {"Reading the table", "Reading text columns"}) {
      SCOPED_TRACE(std::string(row.what) + ", " + when);
      const auto path = Write("t", MakeLabels(60'000));
      std::filesystem::last_write_time(path, std::filesystem::file_time_type::clock::now() - std::chrono::hours(1));
      CMeddler meddler(when, [&] { row.act(path); });
      const auto opened = OpenTable(path, {}, &meddler);
      EXPECT_EQ(opened.error, row.refused ? path + " changed while it was read." : "");
      EXPECT_EQ(opened.table == nullptr, row.refused);
    }
  }
}

// Another program that never rests: whatever comes of it, no code is without its label.
TEST_F(OpenTableTest, AWriterThatNeverRestsHarmsNothing) {
  const auto path = Write("t", MakeLabels(60'000));
  std::atomic<bool> ends{false};
  std::thread writer([&] {
    std::mt19937 random(5);
    const int file = open(path.c_str(), O_WRONLY);
    const std::string rows = MakeLabels(3000).substr(4);
    while (!ends) {
      const off_t at = 4 + static_cast<off_t>(random() % 700'000);
      switch (random() % 4) {
        case 0:
          static_cast<void>(ftruncate(file, at));
          break;
        case 1:
          static_cast<void>(pwrite(file, "x\n\"7\",\n", 8, at));
          break;
        default:
          static_cast<void>(pwrite(file, rows.data(), rows.size() - random() % 100, at));
      }
      if (random() % 8 == 0) std::this_thread::sleep_for(std::chrono::milliseconds(random() % 4));
    }
    close(file);
  });
  int refused = 0;
  const auto until = std::chrono::steady_clock::now() + std::chrono::milliseconds(400);
  for (int i = 0; i < 20 || std::chrono::steady_clock::now() < until; ++i) {
    const auto opened = OpenTable(path, {}, nullptr);
    refused += opened.table ? 0 : 1;
    if (!opened.table) continue;
    for (const auto& column : opened.table->GetFileColumns()) {
      for (std::size_t row = 0; column.IsText() && row < static_cast<std::size_t>(opened.table->GetSize()); ++row) {
        if (!column.IsValid(row)) continue;
        const double code = column.GetValues()[row];
        ASSERT_TRUE(code >= 1 && code <= static_cast<double>(column.labels.size())) << code;
      }
    }
  }
  ends = true;
  writer.join();
  EXPECT_GT(refused, 0);
}

TEST(Examples, AreOpenedAsTheirReadmeSays) {
  struct Case {
    const char* file;
    int stations;
    int columns;
    const char* x;
    int axes;
    int nulls;
  };
  for (const auto& c : {Case{"meuse.csv", 155, 14, "x", 2, 3}, Case{"jura.csv", 259, 11, "Xloc", 2, 0},
                        Case{"walker.csv", 470, 6, "X", 2, 195}, Case{"quakes.csv", 1000, 5, "long", 3, 0}}) {
    SCOPED_TRACE(c.file);
    const auto opened = OpenTable(Example(c.file), {}, nullptr);
    ASSERT_TRUE(opened.table) << opened.error;
    EXPECT_EQ(opened.table->GetSize(), c.stations);
    EXPECT_EQ(opened.table->GetColumnCount(), c.columns);
    EXPECT_EQ(opened.table->GetSpatialSize(), c.axes);
    EXPECT_EQ(opened.table->GetValueName(-1), c.x);
    EXPECT_TRUE(opened.warnings.empty());
    int nulls = 0;
    for (const auto& column : opened.table->GetFileColumns())
      nulls += c.stations - static_cast<int>(column.CountValid());
    EXPECT_EQ(nulls, c.nulls);
  }
}

}  // namespace
}  // namespace tallyscope
