#include "cli/progressbar.h"

#include <gtest/gtest.h>

#include <sstream>

namespace spectrane {
namespace {

TEST(ProgressBar, ShowsHowFarItIsAndWhatIsLeft) {
  EXPECT_EQ(ProgressBar::Line(0, 30, 65), "[                              ] 0 of 30, 1 min 05 s left");
  EXPECT_EQ(ProgressBar::Line(15, 30, 2), "[###############               ] 15 of 30, 2.0 s left");
  EXPECT_EQ(ProgressBar::Line(30, 30, 0), "[##############################] 30 of 30");
  EXPECT_EQ(ProgressBar::Line(100000, 100000, 0).size(), 49u) << "no overflow";
}

TEST(ProgressBar, TheTimeLeftIsThePlanFirstAndThePaceLater) {
  EXPECT_DOUBLE_EQ(ProgressBar::SecondsLeft(0, 100, 0, 60), 60);
  EXPECT_DOUBLE_EQ(ProgressBar::SecondsLeft(0, 100, 20, 60), 40);
  EXPECT_DOUBLE_EQ(ProgressBar::SecondsLeft(0, 100, 90, 60), 0) << "the first point takes long";
  // Half of 1.5 s are trusted: the plan says 54 s for the rest, the pace 13.5 s.
  EXPECT_DOUBLE_EQ(ProgressBar::SecondsLeft(10, 100, 1.5, 60), 0.5 * 54 + 0.5 * 13.5);
  EXPECT_DOUBLE_EQ(ProgressBar::SecondsLeft(50, 100, 100, 60), 100);
  EXPECT_DOUBLE_EQ(ProgressBar::SecondsLeft(100, 100, 100, 60), 0);
}

TEST(ProgressBar, IsForATerminalAlone) {
  std::ostringstream out;
  const ManualClock clock;
  {
    ProgressBar bar(out, clock, "sample", 10, 5);
    bar.Show(0);
    bar.Show(10);
  }
  EXPECT_EQ(out.str(), "");
}

}  // namespace
}  // namespace spectrane
