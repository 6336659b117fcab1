#include "link/replylines.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace spectrane {
namespace {

std::vector<std::string> LinesOf(std::string_view reply, std::string_view command) {
  std::vector<std::string> all;
  ReplyLines lines(reply, command);
  while (const auto line = lines.Next()) all.emplace_back(*line);
  return all;
}

struct Case {
  const char* Name;
  const char* Command;
  const char* Reply;
  std::vector<std::string> Lines;
};

TEST(ReplyLines, CutsByTheFirstCarriageReturnAndTwoCharactersBehindIt) {
  const Case cases[] = {
      {"line feed behind the CR", "ge 2", "ge 2\r\n11\r\n22\r\n>", {"11", "22"}},
      {"any other character behind the CR", "ge 2", "ge 2\r\r11\r\r22\r\r>", {"11", "22"}},
      {"empty line", "getwl", "getwl\r\n\r\n>", {""}},
      {"no data", "quit", "quit\r\n>", {}},
      {"no line end at all", "check", "check>", {}},
      {"line without a CR", "getwl", "getwl\r\n546.0>", {}},
      {"cut inside the second line", "ge 2", "ge 2\r\n11\r\n2", {"11"}},
      {"CR as the last character", "ge 1", "ge 1\r\n11\r", {"11"}},
      {"line feed before the CR stays in the line", "connect", "connect\n\rok.\n\r>", {"ok.\n"}},
      {"reply shorter than the command", "company", "com", {}},
  };
  for (const Case& c : cases) EXPECT_EQ(LinesOf(c.Reply, c.Command), c.Lines) << c.Name;
}

}  // namespace
}  // namespace spectrane
