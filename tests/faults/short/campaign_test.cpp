// A few minutes' worth of what dev/soak.sh does for as long as one likes, in some seconds.

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include "faults/bench/campaign.h"

namespace spectrane::testing_faults {
namespace {

/// The tests keep the folder to themselves, also where they end early.
struct CampaignFolder {
  QTemporaryDir Folder{QString::fromStdString(testing::TempDir()) + QStringLiteral("/campaign-XXXXXX")};
  campaign::Place At(int haste) const { return {QStringLiteral(SPECTRANE_BIN), Folder.path(), haste}; }
};

TEST(FaultCampaign, NothingIsLostAndNothingInventedInScriptsWithFaults) {
  const CampaignFolder folder;
  const campaign::CampaignResult result = campaign::RunScripts(folder.At(10), 40, 4, 5.0);
  EXPECT_EQ(result.Scripts, 4);
  EXPECT_TRUE(result.AllHeld()) << "the seeds and their stories stand above";
  EXPECT_GT(result.Troubles, 4);
}

TEST(FaultCampaign, S01_APulledCableLeavesTheProcessorIdle) {
  const CampaignFolder folder;
  EXPECT_TRUE(campaign::PullToQuiet(folder.At(1), 2));
}

}  // namespace
}  // namespace spectrane::testing_faults
