#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

#include "simulator/faultscript.h"

namespace spectrane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

TEST(FaultScript, FiresAtTheOccurrenceOfItsVerb) {
  FaultScript script;
  ASSERT_FALSE(script.Load("ge 2 cut 7"));
  EXPECT_FALSE(script.Due("ge 10"));
  EXPECT_FALSE(script.Due("getwl"));
  EXPECT_FALSE(script.Due("gex"));
  const auto fault = script.Due("ge 30");
  ASSERT_TRUE(fault);
  EXPECT_EQ(fault->Kind, FaultKind::Cut);
  EXPECT_THAT(fault->Numbers, ElementsAre(7));
  EXPECT_FALSE(script.Due("ge 30"));
  EXPECT_EQ(script.Pending(), 0U);
}

TEST(FaultScript, StarCountsEveryRequest) {
  FaultScript script;
  ASSERT_FALSE(script.Load("* 3 no-reply"));
  EXPECT_FALSE(script.Due("check"));
  EXPECT_FALSE(script.Due("company"));
  EXPECT_TRUE(script.Due("connect"));
}

TEST(FaultScript, EveryStays) {
  FaultScript script;
  ASSERT_FALSE(script.Load("setsampler every no-reply"));
  for (int i = 0; i < 5; ++i) EXPECT_TRUE(script.Due("setsampler 3")) << i;
  EXPECT_EQ(script.Pending(), 1U);
  script.Clear();
  EXPECT_FALSE(script.Due("setsampler 3"));
}

TEST(FaultScript, CommentsAndEmptyLinesAreSkipped) {
  FaultScript script;
  ASSERT_FALSE(script.Load("# all of it\n\n  ge 1 cut 3 # why\r\n\t\nrezero 1 twice"));
  EXPECT_EQ(script.Pending(), 2U);
}

TEST(FaultScript, FirstOfTwoDueAppliesAndBothAreSpent) {
  FaultScript script;
  ASSERT_FALSE(script.Load("ge 1 cut\n* 1 twice"));
  EXPECT_EQ(script.Due("ge 1")->Kind, FaultKind::Cut);
  EXPECT_EQ(script.Pending(), 0U);
}

TEST(FaultScript, TextParameterKnowsEscapes) {
  FaultScript script;
  ASSERT_FALSE(script.Load("getwl 1 bad-number \\x20\\x207 1\ngetwl 2 wrong-echo \"\""));
  const auto bad = script.Due("getwl");
  EXPECT_EQ(bad->Text, "  7");
  EXPECT_THAT(bad->Numbers, ElementsAre(1));
  EXPECT_EQ(script.Due("getwl")->Text, "");
}

struct WrongCase {
  const char* Name;
  const char* Script;
  const char* Words;
};

class WrongScript : public testing::TestWithParam<WrongCase> {};

TEST_P(WrongScript, IsRefusedWhole) {
  FaultScript script;
  const auto wrong = script.Load(GetParam().Script);
  ASSERT_TRUE(wrong);
  EXPECT_THAT(*wrong, HasSubstr(GetParam().Words));
  EXPECT_EQ(script.Pending(), 0U);
}

INSTANTIATE_TEST_SUITE_P(
    Lines, WrongScript,
    testing::Values(WrongCase{"unknownKind", "ge 1 cut\nge 2 explode", "line 2: unknown fault: explode"},
                    WrongCase{"tooShort", "ge 1", "line 1: expected"},
                    WrongCase{"occurrenceZero", "ge 0 cut", "occurrence"},
                    WrongCase{"occurrenceText", "ge x cut", "occurrence"},
                    WrongCase{"parameterText", "ge 1 cut seven", "not a whole number: seven"},
                    WrongCase{"parameterNegative", "ge 1 cut -1", "not a whole number: -1"},
                    WrongCase{"parameterTooMany", "ge 1 no-reply 5", "too many parameters"},
                    WrongCase{"badEscape", "ge 1 bad-number \\q", "unknown escape"}),
    [](const auto& wrong) { return wrong.param.Name; });

TEST(FaultScript, RandomDrawsRepeatWithTheirSeedAndMeetTheirRate) {
  FaultScript first;
  FaultScript second;
  FaultScript other;
  first.DrawAtRandom(42, 0.3);
  second.DrawAtRandom(42, 0.3);
  other.DrawAtRandom(43, 0.3);
  std::map<FaultKind, int> kinds;
  int faults = 0;
  bool differs = false;
  for (int i = 0; i < 10'000; ++i) {
    const auto a = first.Due("ge 10");
    const auto b = second.Due("ge 10");
    ASSERT_EQ(a.has_value(), b.has_value());
    differs = differs || a.has_value() != other.Due("ge 10").has_value();
    if (!a) continue;
    ASSERT_EQ(a->Kind, b->Kind);
    ASSERT_EQ(a->Share, b->Share);
    ++faults;
    ++kinds[a->Kind];
  }
  EXPECT_TRUE(differs);
  EXPECT_NEAR(faults, 3000, 250);
  EXPECT_EQ(kinds.size(), 18U);
}

}  // namespace
}  // namespace spectrane
