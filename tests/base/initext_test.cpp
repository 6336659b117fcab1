#include "base/initext.h"

#define SI_NO_CONVERSION
#define SI_IMPLEMENTATION
#include <gtest/gtest.h>
#include <SimpleIni.h>

#include <ostream>
#include <random>
#include <string>

#include "base/basesupport.h"

namespace spectrane {
namespace {

#ifdef _WIN32
const std::string kLineBreak = "\r\n";
#else
const std::string kLineBreak = "\n";
#endif

struct FindRow {
  const char* Name;
  std::string Text;
  const char* Section;
  const char* Key;
  std::optional<std::string> Expected;
};
void PrintTo(const FindRow& row, std::ostream* out) {
  *out << row.Section << "/" << row.Key << " in " << row.Text;
}

class IniFindTest : public testing::TestWithParam<FindRow> {};

TEST_P(IniFindTest, GivesTheValue) {
  const FindRow& row = GetParam();
  const IniText text(row.Text);
  EXPECT_EQ(text.Find(row.Section, row.Key), row.Expected);
  EXPECT_EQ(text.Raw(), row.Text);
}

const FindRow kFindRows[] = {
    {"Plain", "[A]\nk=v\n", "A", "k", "v"},
    {"NoLineBreakAtTheEnd", "[A]\nk=v", "A", "k", "v"},
    {"CrLf", "[A]\r\nk=v\r\nl=w\r\n", "A", "k", "v"},
    {"CrOnly", "[A]\rk=v\rl=w\r", "A", "l", "w"},
    {"MixedLineBreaks", "[A]\r\nk=v\nl=w\rm=x", "A", "m", "x"},
    {"LettersOfEitherCase", "[Main Window]\nWindows States=2\n", "mAIN wINDOW", "WINDOWS states", "2"},
    {"CaseFoldsAsciiOnly", "[A]\n\xC3\x84=v\n", "A", "\xC3\xA4", std::nullopt},
    {"BlanksAround", "  [ A ]  \n \tk\t =  v w \t\n", "A", "k", "v w"},
    {"EmptyValue", "[A]\nk=\n", "A", "k", ""},
    {"BlankValue", "[A]\nk=  \n", "A", "k", ""},
    {"EqualsInTheValue", "[A]\nk=a=b=\n", "A", "k", "a=b="},
    {"SemicolonInTheValue", "[A]\nk=a ;b\n", "A", "k", "a ;b"},
    {"QuotesStay", "[A]\nk=\"a\"\n", "A", "k", "\"a\""},
    {"BackslashesStay", "[A]\nk=C:\\new\\table\\x.wls\n", "A", "k", "C:\\new\\table\\x.wls"},
    {"CommaStays", "[A]\nk=1,2,3\n", "A", "k", "1,2,3"},
    {"PercentStays", "[A]\nk=%20\n", "A", "k", "%20"},
    {"NoMultiLineValues", "[A]\nk=<<<E\nx=1\nE\n", "A", "k", "<<<E"},
    {"TextBehindTheHead", "[A] note\nk=v\n", "A", "k", "v"},
    {"HashInTheKey", "[A]\n1# Position=True\n", "A", "1# Position", "True"},
    {"ByteOrderMark", "\xEF\xBB\xBF[A]\nk=v\n", "A", "k", "v"},
    {"CommentSemicolon", "[A]\n;k=v\n", "A", ";k", std::nullopt},
    {"CommentHash", "[A]\n#k=v\n", "A", "#k", std::nullopt},
    {"CommentIndented", "[A]\n  ;k=v\n", "A", "k", std::nullopt},
    {"NoSuchKey", "[A]\nk=v\n", "A", "l", std::nullopt},
    {"NoSuchSection", "[A]\nk=v\n", "B", "k", std::nullopt},
    {"KeyOfAnotherSection", "[A]\nk=v\n[B]\nl=w\n", "A", "l", std::nullopt},
    {"KeyPrefix", "[A]\nkk=v\n", "A", "k", std::nullopt},
    {"KeyInFrontOfAllSections", "k=v\n[A]\n", "", "k", std::nullopt},
    {"NoEquals", "[A]\nk\n", "A", "k", std::nullopt},
    {"NothingInFrontOfEquals", "[A]\n=x\n =y\n", "A", "", std::nullopt},
    {"DoubledKey", "[A]\nk=first\nk=second\n", "A", "k", "first"},
    {"DoubledKeyOtherCase", "[A]\nK=first\nk=second\n", "A", "k", "first"},
    {"DoubledSectionFirstCounts", "[A]\nk=first\n[B]\n[a]\nk=second\n", "A", "k", "first"},
    {"DoubledSectionSecondIsNotSeen", "[A]\nk=first\n[B]\n[A]\nl=second\n", "A", "l", std::nullopt},
    {"UnclosedHead", "[A]\nk=v\n[B\nl=w\n", "A", "l", "w"},
    {"UnclosedHeadOpensNothing", "[A]\n[B\nl=w\n", "B", "l", std::nullopt},
    {"EmptyText", "", "A", "k", std::nullopt},
    {"OnlyLineBreaks", "\n\r\n\r", "A", "k", std::nullopt},
    {"OnlyByteOrderMark", "\xEF\xBB\xBF", "A", "k", std::nullopt},
};
INSTANTIATE_TEST_SUITE_P(Rows, IniFindTest, testing::ValuesIn(kFindRows), NameOfRow<FindRow>);

struct WithRow {
  const char* Name;
  std::string Before;
  std::vector<SettingValue> Values;
  std::string After;
};
void PrintTo(const WithRow& row, std::ostream* out) {
  *out << row.Before;
}

class IniWithTest : public testing::TestWithParam<WithRow> {};

TEST_P(IniWithTest, ChangesNothingElse) {
  const WithRow& row = GetParam();
  const std::string after = IniText(row.Before).With(row.Values);
  EXPECT_EQ(after, row.After);
  EXPECT_EQ(IniText(after).With(row.Values), after) << "putting the same again changed the text";
}

const WithRow kWithRows[] = {
    {"EmptyText", "", {{"A", "k", "v"}}, "[A]" + kLineBreak + "k=v" + kLineBreak},
    {"OneWriteOfSeveralSections",
     "",
     {{"A", "k", "1"}, {"B", "k", "2"}, {"a", "l", "3"}},
     "[A]" + kLineBreak + "k=1" + kLineBreak + "l=3" + kLineBreak + "[B]" + kLineBreak + "k=2" + kLineBreak},
    {"ChangedValue", "[A]\nk=1\nl=2\n", {{"A", "k", "10"}}, "[A]\nk=10\nl=2\n"},
    {"ChangedValueKeepsTheLineAroundIt", "[A]\n  K = 1\nl=2\n", {{"a", "k", "10"}}, "[A]\n  K = 10\nl=2\n"},
    {"ChangedValueTakesTheBlanksBehindIt", "[A]\nk=1   \n", {{"A", "k", "2"}}, "[A]\nk=2\n"},
    {"ValueBecomesEmpty", "[A]\nk=1\n", {{"A", "k", ""}}, "[A]\nk=\n"},
    {"EmptyValueIsFilled", "[A]\nk=\nl=2\n", {{"A", "k", "1"}}, "[A]\nk=1\nl=2\n"},
    {"SameValueKeepsEveryByte", "[A]\r\n k = 1 \r\n", {{"A", "k", "1"}}, "[A]\r\n k = 1 \r\n"},
    {"SameEmptyValueKeepsEveryByte", "[A]\nk= \n", {{"A", "k", ""}}, "[A]\nk= \n"},
    {"LastLineWithoutBreak", "[A]\nk=1", {{"A", "k", "2"}}, "[A]\nk=2"},
    {"LastLineWithoutBreakAndANewKey", "[A]\nk=1", {{"A", "k", "2"}, {"A", "l", "3"}}, "[A]\nk=2\nl=3\n"},
    {"LastEmptyValueWithoutBreakAndANewKey",
     "[A]\nk=",
     {{"A", "l", "3"}, {"A", "k", "2"}},
     "[A]\nk=2\nl=3\n"},
    {"HeadWithoutBreak", "[A]", {{"A", "k", "1"}}, "[A]" + kLineBreak + "k=1" + kLineBreak},
    {"NewKeyGoesBehindTheLastOfItsSection",
     "[A]\nk=1\n\n; about B\n[B]\nl=2\n",
     {{"A", "m", "3"}},
     "[A]\nk=1\nm=3\n\n; about B\n[B]\nl=2\n"},
    {"NewKeyOfASectionWithoutKeys", "[A]\n\n[B]\nl=2\n", {{"A", "m", "3"}}, "[A]\nm=3\n\n[B]\nl=2\n"},
    {"NewKeysInOrder", "[A]\nk=1\n[B]\n", {{"A", "m", "3"}, {"A", "l", "2"}}, "[A]\nk=1\nm=3\nl=2\n[B]\n"},
    {"NewSectionAtTheEnd", "[A]\nk=1\n", {{"B", "l", "2"}}, "[A]\nk=1\n[B]\nl=2\n"},
    {"NewSectionBehindALineWithoutBreak", "[A]\r\nk=1", {{"B", "l", "2"}}, "[A]\r\nk=1\r\n[B]\r\nl=2\r\n"},
    {"CrLfStays", "[A]\r\nk=1\r\n", {{"A", "k", "2"}, {"A", "l", "3"}}, "[A]\r\nk=2\r\nl=3\r\n"},
    {"CrStaysInFrontOfMore", "[A]\rk=1\r[B]\rl=2\r", {{"A", "m", "3"}}, "[A]\rk=1\rm=3\r[B]\rl=2\r"},
    {"CrStays", "[A]\rk=1\r", {{"A", "l", "3"}}, "[A]\rk=1\rl=3\r"},
    {"EmptyLineBehindANewKeyOfAnOlderLineBreakStays",
     "; head\r[A]\nk=1\n\n[B]\n",
     {{"A", "l", "3"}, {"A", "m", "4"}},
     "; head\r[A]\nk=1\nl=3\r\nm=4\r\n\n[B]\n"},
    {"LineBreakInFront", "\n[A]\nk=1\n", {{"A", "l", "3"}}, "\n[A]\nk=1\nl=3\n"},
    {"EmptyLineOfCrLfInFront", "\r\n[A]\r\nk=1\r\n", {{"A", "l", "3"}}, "\r\n[A]\r\nk=1\r\nl=3\r\n"},
    {"LfCrIsTwoLineBreaks", "[A]\n\rk=1\n\r", {{"A", "l", "3"}}, "[A]\n\rk=1\nl=3\n\r"},
    {"ByteOrderMarkStays", "\xEF\xBB\xBF[A]\nk=1\n", {{"A", "k", "2"}}, "\xEF\xBB\xBF[A]\nk=2\n"},
    {"OnlyByteOrderMark",
     "\xEF\xBB\xBF",
     {{"A", "k", "2"}},
     "\xEF\xBB\xBF[A]" + kLineBreak + "k=2" + kLineBreak},
    {"CommentsOrderAndStrangeLinesStay",
     "; head\n#x\n\n[B]\nz=1\na = \"q\"\nno equals\n=x\n[unclosed\n[A]\nk=1\nk=2\n[A]\nk=3\n\n\n",
     {{"A", "k", "9"}},
     "; head\n#x\n\n[B]\nz=1\na = \"q\"\nno equals\n=x\n[unclosed\n[A]\nk=9\nk=2\n[A]\nk=3\n\n\n"},
    {"NewKeyOfADoubledSectionGoesIntoTheFirst",
     "[A]\nk=1\n[B]\n[A]\nl=2\n",
     {{"A", "l", "9"}},
     "[A]\nk=1\nl=9\n[B]\n[A]\nl=2\n"},
    {"TheLastOfTwoValuesCounts", "[A]\nk=1\n", {{"A", "k", "2"}, {"a", "K", "3"}}, "[A]\nk=3\n"},
    {"NothingToPut", "[A\nk", {}, "[A\nk"},
    {"SectionNamesDifferInCaseOnly",
     "[Multi WaveLength]\nWaveLength No=3\n",
     {{"Multi Wavelength", "File Path", "/x"}},
     "[Multi WaveLength]\nWaveLength No=3\nFile Path=/x\n"},
};
INSTANTIATE_TEST_SUITE_P(Rows, IniWithTest, testing::ValuesIn(kWithRows), NameOfRow<WithRow>);

TEST(IniText, NamesAreTheSameInCapitalAndSmallLetters) {
  for (char c = 'A'; c <= 'Z'; ++c) {
    EXPECT_TRUE(SameName(std::string(1, c), std::string(1, static_cast<char>(c + 32)))) << c;
  }
  EXPECT_FALSE(SameName("@", "`"));
  EXPECT_FALSE(SameName("[", "{"));
  EXPECT_FALSE(SameName("A", "AA"));
}

// A second reader of the same form, written elsewhere, must find the same in files of ordinary shape.
TEST(IniText, AnotherReaderFindsTheSame) {
  std::mt19937 random(42);
  for (int round = 0; round < 200; ++round) {
    std::string raw;
    for (int section = 0; section < 4; ++section) {
      raw += "[Section " + std::to_string(section) + "]\n";
      for (unsigned line = 0; line < random() % 6; ++line) {
        raw += "Key " + std::to_string(line) + (random() % 2 ? "=" : " = ") + "v " +
               std::to_string(random() % 1000) + (random() % 3 ? "\n" : "  \n");
        if (random() % 4 == 0) raw += "; note\n\n";
      }
    }
    std::vector<SettingValue> values;
    for (int i = 0; i < 5; ++i) {
      values.push_back({"section " + std::to_string(random() % 6), "key " + std::to_string(random() % 8),
                        "new " + std::to_string(i)});
    }
    const IniText text(IniText(raw).With(values));
    CSimpleIniA other(true, false, false);
    ASSERT_EQ(other.LoadData(text.Raw()), SI_OK);
    for (int section = 0; section < 6; ++section) {
      for (int key = 0; key < 8; ++key) {
        const std::string sectionName = "Section " + std::to_string(section);
        const std::string keyName = "Key " + std::to_string(key);
        const char* expected = other.GetValue(sectionName.c_str(), keyName.c_str());
        const auto found = text.Find(sectionName, keyName);
        ASSERT_EQ(found.has_value(), expected != nullptr) << sectionName << "/" << keyName << "\n"
                                                          << text.Raw();
        if (expected != nullptr) {
          ASSERT_EQ(*found, expected) << text.Raw();
        }
      }
    }
  }
}

}  // namespace
}  // namespace spectrane
