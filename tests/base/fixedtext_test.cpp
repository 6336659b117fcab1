#include "base/fixedtext.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace spectrane {
namespace {

std::string AllBytes() {
  std::string bytes;
  for (int i = 0; i < 256; ++i) bytes += static_cast<char>(i);
  return bytes;
}

struct CodePlace {
  const char* Name;
  const char* Text;
  unsigned char Byte;
};

class FixedTextPlace : public testing::TestWithParam<CodePlace> {};

TEST_P(FixedTextPlace, IsTheSameBothWays) {
  const std::string byte(1, static_cast<char>(GetParam().Byte));
  bool lost = false;
  EXPECT_EQ(ToSingleByte(GetParam().Text, &lost), byte);
  EXPECT_FALSE(lost);
  EXPECT_EQ(FromSingleByte(byte), GetParam().Text);
}

INSTANTIATE_TEST_SUITE_P(
    CodePage, FixedTextPlace,
    testing::Values(CodePlace{"LetterA", "A", 0x41}, CodePlace{"Delete", "\x7F", 0x7F},
                    CodePlace{"EuroSign", "\u20AC", 0x80}, CodePlace{"Unused81", "\xC2\x81", 0x81},
                    CodePlace{"LowQuote", "\u201A", 0x82}, CodePlace{"PerMille", "\u2030", 0x89},
                    CodePlace{"CapitalOE", "\u0152", 0x8C}, CodePlace{"Unused8D", "\xC2\x8D", 0x8D},
                    CodePlace{"CapitalZCaron", "\u017D", 0x8E}, CodePlace{"Unused8F", "\xC2\x8F", 0x8F},
                    CodePlace{"Unused90", "\xC2\x90", 0x90}, CodePlace{"EnDash", "\u2013", 0x96},
                    CodePlace{"TradeMark", "\u2122", 0x99}, CodePlace{"Unused9D", "\xC2\x9D", 0x9D},
                    CodePlace{"CapitalYDiaeresis", "\u0178", 0x9F}, CodePlace{"NoBreakSpace", "\u00A0", 0xA0},
                    CodePlace{"Degree", "\u00B0", 0xB0}, CodePlace{"MicroSign", "\u00B5", 0xB5},
                    CodePlace{"SmallYDiaeresis", "\u00FF", 0xFF}),
    [](const auto& row) { return row.param.Name; });

TEST(FixedText, EveryByteSurvivesReadingAndWriting) {
  bool lost = false;
  EXPECT_EQ(ToSingleByte(FromSingleByte(AllBytes()), &lost), AllBytes());
  EXPECT_FALSE(lost);
}

TEST(FixedText, TheBytes80To9FAreThePublishedCharacters) {
  // The 27 characters of this range in the order of their bytes; 81, 8D, 8F, 90 and 9D have none.
  EXPECT_EQ(ToSingleByte("€‚ƒ„…†‡ˆ‰Š‹ŒŽ‘’“”•–—˜™š›œžŸ"),
            "\x80\x82\x83\x84\x85\x86\x87\x88\x89\x8A\x8B\x8C\x8E\x91\x92\x93\x94\x95\x96\x97\x98\x99\x9A"
            "\x9B\x9C\x9E\x9F");
}

TEST(FixedText, EveryByteHasACharacterOfItsOwn) {
  std::vector<std::string> characters;
  for (const char c : AllBytes()) characters.push_back(FromSingleByte(std::string(1, c)));
  std::sort(characters.begin(), characters.end());
  EXPECT_EQ(std::unique(characters.begin(), characters.end()), characters.end());
}

TEST(FixedText, TheGreekMuBecomesTheMicroSign) {
  bool lost = false;
  EXPECT_EQ(ToSingleByte("\u03BCg/ml", &lost), "\xB5g/ml");
  EXPECT_FALSE(lost);
  EXPECT_EQ(FromSingleByte("\xB5g/ml"), "\u00B5g/ml");
}

struct LostText {
  const char* Name;
  std::string Text;
  const char* Bytes;
};

class FixedTextLost : public testing::TestWithParam<LostText> {};

TEST_P(FixedTextLost, BecomesQuestionMarks) {
  bool lost = false;
  EXPECT_EQ(ToSingleByte(GetParam().Text, &lost), GetParam().Bytes);
  EXPECT_TRUE(lost);
}

INSTANTIATE_TEST_SUITE_P(NoPlace, FixedTextLost,
                         testing::Values(LostText{"Chinese", "a\u6BD4\u8272b", "a??b"},
                                         LostText{"GreekAlpha", "\u03B1", "?"},
                                         LostText{"Emoji", "\U0001F600", "?"},
                                         LostText{"CharacterOfAUsedControl", "\u0080", "?"},
                                         LostText{"LoneContinuation", "a\x80z", "a?z"},
                                         LostText{"CutSequence", "a\xE6\xAF", "a??"},
                                         LostText{"SequenceBrokenByALetter", "\xE6\xAFz", "??z"},
                                         LostText{"OverlongSlash", "\xC0\xAF", "??"},
                                         LostText{"OverlongThreeBytes", "\xE0\x80\xAF", "???"},
                                         LostText{"OverlongFourBytes", "\xF0\x80\x82\xAC", "????"},
                                         LostText{"Surrogate", "\xED\xA0\x80", "???"},
                                         LostText{"AboveTheLastPlane", "\xF4\x90\x80\x80", "????"},
                                         LostText{"ByteFF", "\xFF", "?"}),
                         [](const auto& row) { return row.param.Name; });

TEST(FixedText, TheLostFlagIsLeftAloneWhenNothingIsLost) {
  bool lost = true;
  ToSingleByte("plain", &lost);
  EXPECT_TRUE(lost);
  EXPECT_EQ(ToSingleByte("\u6BD4"), "?");
}

TEST(FixedText, AFieldIsPaddedWithBlanks) {
  EXPECT_EQ(PadField("Kestu", 8), "Kestu   ");
  EXPECT_EQ(PadField("", 3), "   ");
  EXPECT_EQ(PadField("full", 4), "full");
}

TEST(FixedText, AFieldIsCutAtItsWidth) {
  EXPECT_EQ(PadField("longer", 4), "long");
  EXPECT_EQ(PadField(std::string(300, 'x'), 256), std::string(256, 'x'));
}

TEST(FixedText, TheWidthCountsBytesOfTheFieldNotOfTheText) {
  // Three characters of 2, 3 and 2 bytes in the program are three bytes on disk.
  EXPECT_EQ(PadField("\u00B5\u20AC\u00E4", 3), "\xB5\x80\xE4");
  EXPECT_EQ(PadField("\u00B5\u20AC\u00E4", 2), "\xB5\x80");
}

TEST(FixedText, ALoneCharacterOfALongFieldIsFoundAtEveryPlace) {
  for (std::size_t at = 0; at < 100; ++at) {
    std::string field(100, ' ');
    field[at] = 'x';
    EXPECT_EQ(TrimField(field), std::string(at, ' ') + "x");
  }
}

TEST(FixedText, OnlyBlanksAtTheRightAreTrimmed) {
  EXPECT_EQ(TrimField("  a b  "), "  a b");
  EXPECT_EQ(TrimField("a\t  "), "a\t");
  EXPECT_EQ(TrimField(std::string("a\0  ", 4)), std::string("a\0", 2));
  EXPECT_EQ(TrimField("a\xA0 "), "a\u00A0");
  EXPECT_EQ(TrimField("     "), "");
  EXPECT_EQ(TrimField(""), "");
}

TEST(FixedText, AFieldOfAnyBytesIsWrittenAsItWasRead) {
  const std::string field = AllBytes();
  EXPECT_EQ(PadField(TrimField(field), 256), field);
}

}  // namespace
}  // namespace spectrane
