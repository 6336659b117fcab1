#include "tools/systembaseline.h"

#include <filesystem>
#include <fstream>

#include "files/filesupport.h"

namespace spectrane {
namespace {

/// Records of 200.0 nm and up, gain 3, energies from 500 on.
std::string SmallBaselineFile(int stated, int held) {
  std::string bytes =
      HeaderBytes(6) + DoubleBytes(200.0 + stated - 1) + DoubleBytes(200) + DoubleBytes(1) + Long(0);
  for (int i = 0; i < held; ++i) bytes += DoubleBytes(200.0 + i) + Long(3) + Long(500 + i);
  return bytes;
}

class SystemBaselineTest : public ::testing::Test {
 protected:
  std::string Write(const char* name, const std::string& bytes) {
    const std::string path = Folder.Path(name);
    std::ofstream(path, std::ios::binary) << bytes;
    return path;
  }

  TemporaryFolder Folder;
  SystemBaseline Baseline;
  FileFault Fault;
};

TEST_F(SystemBaselineTest, ARangeHasARecordForEachWholeNanometre) {
  const struct {
    double Min;
    double Max;
    std::int32_t Records;
  } cases[] = {{190, 1100, 911}, {325, 1000, 676}, {190.5, 1100.2, 911}, {190, 1101, 912},
               {190, 1102, 912}, {100, 3000, 912}, {500, 500, 1},        {600, 500, 0}};
  for (const auto& each : cases) {
    EXPECT_EQ(SystemBaseline::RecordsOfRange(each.Min, each.Max), each.Records)
        << each.Min << " to " << each.Max;
  }
}

TEST_F(SystemBaselineTest, LoadTakesWhatTheFileHas) {
  ASSERT_TRUE(Baseline.Load(Write("small.bsl", SmallBaselineFile(4, 4)), Fault));
  EXPECT_FALSE(Fault);
  EXPECT_TRUE(Baseline.BaselinePresent());
  EXPECT_EQ(Baseline.BaselineFileName(), "small.bsl");
  EXPECT_EQ(Baseline.Count(), 4);
  EXPECT_EQ(Baseline.LeftOut(), 0);
  EXPECT_EQ(Baseline.BaselineWavelength(3), 203.0);
  EXPECT_EQ(Baseline.BaselineAmp(3), 3);
  EXPECT_EQ(Baseline.BaselineEnergy(3), 503);
  EXPECT_EQ(Baseline.BaselineEnergy(4), 0);
}

TEST_F(SystemBaselineTest, EveryCutIsTakenToItsLastWholeRecordOrNotAtAll) {
  const std::string whole = SmallBaselineFile(3, 3);
  for (std::size_t length = 0; length < whole.size(); ++length) {
    SystemBaseline baseline;
    FileFault fault;
    const bool taken = baseline.Load(Write("cut.bsl", whole.substr(0, length)), fault);
    EXPECT_TRUE(fault) << length;
    const auto held = length < 132 ? 0 : static_cast<std::int32_t>((length - 132) / 16);
    EXPECT_EQ(taken, held > 0) << length;
    EXPECT_EQ(baseline.Count(), held) << length;
    EXPECT_EQ(baseline.BaselinePresent(), held > 0) << length;
  }
}

TEST_F(SystemBaselineTest, WithoutABaselineNothingIsSaved) {
  EXPECT_EQ(Baseline.Save(Folder.Path("new.bsl"), 190, 1100, 1).Error, FileError::NotSavable);
  EXPECT_FALSE(std::filesystem::exists(Folder.Path("new.bsl")));
}

TEST_F(SystemBaselineTest, WhatWasSavedLoadsAgain) {
  ASSERT_TRUE(Baseline.Load(Write("small.bsl", SmallBaselineFile(4, 4)), Fault));
  ASSERT_FALSE(Baseline.Save(Folder.Path("new.bsl"), 200, 203, 46000.25));
  SystemBaseline again;
  ASSERT_TRUE(again.Load(Folder.Path("new.bsl"), Fault));
  EXPECT_EQ(again.Count(), 4);
  EXPECT_EQ(again.BaselineEnergy(3), 503);
}

TEST_F(SystemBaselineTest, AFileOfWhichAPartCouldBeReadIsNotReplacedUnderAnyOfItsNames) {
  const std::string path = Write("half.bsl", SmallBaselineFile(4, 2));
  ASSERT_TRUE(Baseline.Load(path, Fault));
  EXPECT_EQ(Fault.Error, FileError::Damaged);
  std::filesystem::create_symlink(path, Folder.Path("link.bsl"));
  for (const char* name : {"half.bsl", "link.bsl"})
    EXPECT_EQ(Baseline.Save(Folder.Path(name), 190, 1100, 1).Error, FileError::HalfRead) << name;
  EXPECT_FALSE(Baseline.Save(Folder.Path("other.bsl"), 190, 1100, 1));
  ASSERT_TRUE(Baseline.Load(Folder.Path("other.bsl"), Fault));
  EXPECT_FALSE(Baseline.Save(path, 190, 1100, 1)) << "what is here now was read as a whole";
}

}  // namespace
}  // namespace spectrane
