#include "spectrum/scansettings.h"

#include <gtest/gtest.h>

#include "base/basesupport.h"

namespace spectrane {
namespace {

class ScanSettingsTest : public testing::Test {
 protected:
  ScanSettings Load() {
    Setting store(folder_.Path());
    ScanSettings settings;
    EXPECT_TRUE(LoadSettings<ScanSettings>(store, kScanSettingRows, settings));
    return settings;
  }
  TemporaryFolder folder_;
};

TEST_F(ScanSettingsTest, AFirstStartWritesItsValuesInThisOrder) {
  EXPECT_EQ(Load(), ScanSettings());
  EXPECT_EQ(ReadBytes(folder_.Path("config.ini")),
            "[WaveLength Scanning]\nStart WaveLength=350\nEnd WaveLength=1100\nInterval WaveLength=1\n"
            "Display Mode=1\nAbs Bottom=0\nAbs Top=3\nTrans Bottom=0\nTrans Top=100\nEnergy Bottom=0\n"
            "Energy Top=65535\nEnergy Amp=1\nEnergy Filter=1\nEnergy Lamp=1\nQuick Speed=1\n"
            "Peak Height=0.001\nScale Color=16711680\nCurve Color=255\nMark Color=8388736\n"
            "Peak Color=8388863\nValley Color=32768\nPeak Enable=True\nValley Enable=True\n"
            "Peak Detail Enable=False\nValley Detail Enable=False\nGrid Enable=True\nSmooth Enable=True\n"
            "Print Curve=True\nPrint Peak Valley=True\nPrint Data List=False\n");
}

TEST_F(ScanSettingsTest, EachKeyFillsItsOwnField) {
  WriteBytes(folder_.Path("config.ini"),
             "[WaveLength Scanning]\nStart WaveLength=200.5\nEnd WaveLength=900\nInterval WaveLength=4\n"
             "Display Mode=3\nAbs Bottom=-0.25\nAbs Top=2\nTrans Bottom=5\nTrans Top=110\nEnergy Bottom=6\n"
             "Energy Top=7\nEnergy Amp=8\nEnergy Filter=9\nEnergy Lamp=10\nQuick Speed=2\nPeak Height=0.25\n"
             "Scale Color=11\nCurve Color=12\nMark Color=13\nPeak Color=14\nValley Color=15\n"
             "Peak Enable=False\nValley Enable=False\nPeak Detail Enable=True\nValley Detail Enable=True\n"
             "Grid Enable=False\nSmooth Enable=False\nPrint Curve=False\nPrint Peak Valley=False\n"
             "Print Data List=True\n");
  ScanSettings expected;
  expected.Option = {200.5, 900, 2, -0.25, 110, 5, 7, 6, 8, 9, 10, 4, 0, 3};
  expected.QuickSpeed = 2;
  expected.PeakHeight = 0.25;
  expected.ScaleColor = 11;
  expected.CurveColor = 12;
  expected.MarkColor = 13;
  expected.PeakColor = 14;
  expected.ValleyColor = 15;
  expected.PeakEnable = expected.ValleyEnable = expected.GridEnable = expected.SmoothEnable = false;
  expected.PeakDetailEnable = expected.ValleyDetailEnable = true;
  expected.PrintCurve = expected.PrintPeakValley = false;
  expected.PrintDataList = true;
  EXPECT_EQ(Load(), expected);
}

TEST_F(ScanSettingsTest, ValuesBeyondTheirRangeLeaveTheDefault) {
  for (const char* lines : {"Display Mode=0\nQuick Speed=3\nScale Color=-1\nPeak Enable=true\n",
                            "Display Mode=4\nQuick Speed=-1\nScale Color=16777216\nPeak Height=x\n"}) {
    WriteBytes(folder_.Path("config.ini"), std::string("[WaveLength Scanning]\n") + lines);
    EXPECT_EQ(Load(), ScanSettings()) << lines;
  }
}

}  // namespace
}  // namespace spectrane
