#include "output/quantitationhint.h"

#include <limits>

#include "output/quantitationpicturesupport.h"

namespace spectrane {
namespace {

TEST(QuantitationHints, TellWhichStandardsLackWhat) {
  QuaOption qua = WithStandards({{0.1, 1}, {0.2, 2}, {0.3, 3}, {0.4, 4}, {0.5, 5}}, 1);
  qua.StandardAbsSet = {true};
  qua.StandardConcSet[3] = false;
  qua.StandardConcSet[0] = false;
  EXPECT_EQ(StateOf(qua), QuantitationState::Incomplete);
  EXPECT_EQ(HintOf(qua).Headline, QStringLiteral("0 of 5 standards complete"));
  EXPECT_EQ(
      HintOf(qua).Advice,
      QStringLiteral("Type the concentration of standards 1, 4.\n"
                     "Set the blank, then measure standards 2 to 5 by a click on the absorbance of each."));
  qua.BlankDone = true;
  qua.StandardAbsSet = {true, true, true, true};
  qua.StandardConcSet.fill(true);
  EXPECT_EQ(HintOf(qua).Headline, QStringLiteral("4 of 5 standards complete"));
  EXPECT_EQ(HintOf(qua).Advice, QStringLiteral("Measure standard 5 by a click on its absorbance."));
}

TEST(QuantitationHints, TellWhyAFitWasRejected) {
  const QuaOption one = FittedStandards({{0.5, 10}}, 1);
  EXPECT_EQ(StateOf(one), QuantitationState::Rejected);
  EXPECT_TRUE(HintOf(one).Headline.contains(QStringLiteral("two standards or more")));
  const QuaOption poor = FittedStandards({{0.1, 10}, {0.5, 1}, {0.6, 9}}, 1);
  EXPECT_EQ(StateOf(poor), QuantitationState::Rejected);
  EXPECT_TRUE(HintOf(poor).Headline.contains(QStringLiteral("|r| of 0.8")));
}

TEST(QuantitationHints, AreSilentBesideACurve) {
  EXPECT_EQ(StateOf(FittedStandards({{0.5, 10}}, 0)), QuantitationState::Curve);
  EXPECT_TRUE(HintOf(FittedStandards({{0.5, 10}}, 0)).Headline.isEmpty());
  QuaOption typed = WithStandards({}, 1);
  typed.CurveItem = 2;
  typed.InputK = {0, 3, 0, 0};
  EXPECT_EQ(StateOf(typed), QuantitationState::Curve) << "typed coefficients need no standards";
}

TEST(QuantitationHints, KnowCountsAndValuesOfDamagedFiles) {
  for (const std::int32_t count : {-2147483647, -1, 0, 21, 2147483647}) {
    QuaOption qua = FittedStandards({{0.5, 10}}, 0);
    qua.SampleNumber = count;
    EXPECT_EQ(StateOf(qua), QuantitationState::NoStandards) << count;
    EXPECT_FALSE(HintOf(qua).Headline.isEmpty());
  }
  for (const double value : {std::numeric_limits<double>::quiet_NaN(), 1e308, 10001.0}) {
    QuaOption qua = FittedStandards({{0.5, 10}}, 0);
    qua.StandardConc[0] = value;
    qua.CurveK = {0, value, 0, 0};
    EXPECT_EQ(StateOf(qua), QuantitationState::OffScale) << value;
    EXPECT_FALSE(HintOf(qua).Headline.isEmpty());
  }
}

TEST(QuantitationHints, NumberRowsInFewWords) {
  EXPECT_EQ(RowNumbers({}), QString());
  EXPECT_EQ(RowNumbers({4}), QStringLiteral("5"));
  EXPECT_EQ(RowNumbers({0, 1}), QStringLiteral("1, 2"));
  EXPECT_EQ(RowNumbers({0, 1, 2, 4, 6, 7, 8, 19}), QStringLiteral("1 to 3, 5, 7 to 9, 20"));
}

}  // namespace
}  // namespace spectrane
