#include "link/replybuffer.h"

#include <gtest/gtest.h>

namespace spectrane {
namespace {

TEST(ReplyBuffer, EmptyIsNotWhole) {
  EXPECT_FALSE(ReplyBuffer().Whole());
}

TEST(ReplyBuffer, EverySplitPointOfAReplyGivesTheSameText) {
  const std::string reply = "ge 3\r\n100\r\n200\r\n300\r\n>";
  for (std::size_t split = 0; split <= reply.size(); ++split) {
    ReplyBuffer buffer;
    buffer.Add(std::string_view(reply).substr(0, split));
    EXPECT_EQ(buffer.Whole(), split == reply.size()) << split;
    buffer.Add(std::string_view(reply).substr(split));
    EXPECT_TRUE(buffer.Whole()) << split;
    EXPECT_EQ(buffer.Text(), reply) << split;
  }
}

TEST(ReplyBuffer, OneByteAtATimeIsWholeOnlyAtThePrompt) {
  const std::string reply = "getwl\r\n546.0\r\n>";
  ReplyBuffer buffer;
  for (std::size_t i = 0; i < reply.size(); ++i) {
    buffer.Add(std::string_view(reply).substr(i, 1));
    EXPECT_EQ(buffer.Whole(), i + 1 == reply.size()) << i;
  }
  EXPECT_EQ(buffer.Text(), reply);
}

TEST(ReplyBuffer, PromptFollowedByMoreTextInTheSamePieceDoesNotEnd) {
  ReplyBuffer buffer;
  buffer.Add("a>b");
  EXPECT_FALSE(buffer.Whole());
  buffer.Add(">");
  EXPECT_TRUE(buffer.Whole());
  EXPECT_EQ(buffer.Text(), "a>b>");
}

TEST(ReplyBuffer, PieceThatEndsInAPromptEnds) {
  ReplyBuffer buffer;
  buffer.Add("ge 1\r\n12>");
  EXPECT_TRUE(buffer.Whole());
}

TEST(ReplyBuffer, ByteZeroAndHighBytesAreKept) {
  ReplyBuffer buffer;
  const std::string text("\0\xff\x80>", 4);
  buffer.Add(text);
  EXPECT_TRUE(buffer.Whole());
  EXPECT_EQ(buffer.Text(), text);
}

TEST(ReplyBuffer, AFloodIsCappedAndNeverBecomesWhole) {
  ReplyBuffer buffer;
  for (int i = 0; i < 300; ++i) buffer.Add(std::string(1024, 'x'));
  buffer.Add(">");
  EXPECT_EQ(buffer.Text().size(), ReplyBuffer::kLimit);
  EXPECT_FALSE(buffer.Whole());
  buffer.Clear();
  buffer.Add(">");
  EXPECT_TRUE(buffer.Whole());
}

TEST(ReplyBuffer, AReplyOfExactlyTheLimitIsWholeAndOneMoreIsNot) {
  ReplyBuffer exact;
  exact.Add(std::string(ReplyBuffer::kLimit - 1, 'x') + ">");
  EXPECT_TRUE(exact.Whole());
  ReplyBuffer over;
  over.Add(std::string(ReplyBuffer::kLimit - 1, 'x') + ">>");
  EXPECT_FALSE(over.Whole());
}

}  // namespace
}  // namespace spectrane
