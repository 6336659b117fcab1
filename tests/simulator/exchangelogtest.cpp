#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "simulator/escapedtext.h"
#include "simulator/exchangelog.h"

namespace spectrane {
namespace {

std::string AllBytes() {
  std::string bytes;
  for (int code = 0; code < 256; ++code) bytes += static_cast<char>(code);
  return bytes;
}

TEST(EscapedText, ReadsBackEveryByte) {
  EXPECT_EQ(Unescape(Escape(AllBytes())), AllBytes());
  EXPECT_EQ(Unescape(Escape(AllBytes(), true)), AllBytes());
}

TEST(EscapedText, IsUnambiguous) {
  EXPECT_EQ(Escape("a\r\n\t\\x41 \x7F\x80"), "a\\r\\n\\t\\\\x41 \\x7F\\x80");
  EXPECT_EQ(Escape("a b", true), "a\\x20b");
}

TEST(EscapedText, RefusesBrokenEscapes) {
  for (const char* text : {"\\", "a\\", "\\q", "\\x", "\\x4", "\\xZZ", "\\x4Z", "\\x-1"}) {
    EXPECT_FALSE(Unescape(text)) << text;
  }
}

TEST(ExchangeLog, LineReadsBack) {
  const ExchangeRecord record{12, 345, "noise-inside 3 4", "ge\t\"2\"", AllBytes()};
  const std::string line = LogLine(record);
  EXPECT_EQ(line.find('\n'), std::string::npos);
  const auto back = ParseLogLine(line);
  ASSERT_TRUE(back);
  EXPECT_EQ(back->Number, 12);
  EXPECT_EQ(back->AtMs, 345);
  EXPECT_EQ(back->Fault, "noise-inside 3 4");
  EXPECT_EQ(back->Request, "ge\t\"2\"");
  EXPECT_EQ(back->Answer, AllBytes());
}

TEST(ExchangeLog, LineHasItsDocumentedShape) {
  EXPECT_EQ(LogLine({1, 20, "", "getwl", "getwl\r\n546.0\r\n>"}),
            "1\t20\t-\t\"getwl\"\t\"getwl\\r\\n546.0\\r\\n>\"");
}

TEST(ExchangeLog, RemarksAndTornLinesAreNoRecords) {
  for (const char* line :
       {"# 12 beam dye-3", "", "1\t2\t-\t\"a\"", "1\t2\t-\t\"a\"\t\"b", "x\t2\t-\t\"a\"\t\"b\""}) {
    EXPECT_FALSE(ParseLogLine(line)) << line;
  }
}

TEST(ExchangeLog, IsOnDiskLineByLine) {
  const std::filesystem::path folder = std::filesystem::path(testing::TempDir()) / "spectrane-exchangelog";
  std::filesystem::create_directories(folder);
  const std::string path = (folder / "log").string();
  ExchangeLog log;
  ASSERT_TRUE(log.Open(path));
  const auto onDisk = [&] {
    std::ifstream file(path);
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);) lines.push_back(line);
    return lines;
  };
  log.Write({1, 5, "", "getd2", "getd2\r\n1\r\n>"});
  ASSERT_EQ(onDisk().size(), 2U);
  EXPECT_EQ(onDisk()[1], "1\t5\t-\t\"getd2\"\t\"getd2\\r\\n1\\r\\n>\"");
  log.Remark(6, "beam dye-1");
  ASSERT_EQ(onDisk().size(), 3U);
  EXPECT_EQ(onDisk()[2], "# 6 beam dye-1");
  EXPECT_FALSE(ExchangeLog().Open((folder / "missing" / "log").string()));
  std::filesystem::remove_all(folder);
}

}  // namespace
}  // namespace spectrane
