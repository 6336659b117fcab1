#include "modes/quantitation/quantitationsettings.h"

#include "base/basesupport.h"
#include "base/setting.h"

namespace spectrane {
namespace {

class QuantitationSettingsTest : public testing::Test {
 protected:
  QuantitationSettings Load() {
    Setting store(folder_.Path());
    QuantitationSettings settings;
    EXPECT_TRUE(LoadSettings<QuantitationSettings>(store, kQuantitationSettingRows, settings));
    return settings;
  }
  std::string File() const { return folder_.Path("config.ini"); }
  TemporaryFolder folder_;
};

TEST_F(QuantitationSettingsTest, AFirstStartWritesItsValues) {
  EXPECT_EQ(Load(), QuantitationSettings());
  Setting store(folder_.Path());
  const std::pair<const char*, const char*> expected[] = {
      {"WaveLength Number", "1"}, {"WaveLength 1", "546"},    {"WaveLength 2", "546"},
      {"WaveLength 3", "546"},    {"WaveLength Para 1", "1"}, {"WaveLength Para 2", "0"},
      {"WaveLength Para 3", "0"}, {"Sample Number", "2"},     {"Curve Item", "1"},
      {"Curve K0", "0"},          {"Curve K1", "0"},          {"Curve K2", "0"},
      {"Curve K3", "0"},          {"Fitting Line", "0"},      {"Conc Unit", "mg/ml"},
      {"Custom Conc Unit", ""}};
  for (const auto& [key, value] : expected) {
    EXPECT_EQ(store.GetSetting("Quantitative Measurement", key), value) << key;
  }
}

TEST_F(QuantitationSettingsTest, EachKeyFillsItsOwnField) {
  WriteBytes(File(),
             "[Quantitative Measurement]\nWaveLength Number=2\nWaveLength 1=260\nWaveLength 2=280.5\n"
             "WaveLength 3=320\nWaveLength Para 1=1.5\nWaveLength Para 2=-0.75\nWaveLength Para 3=3\n"
             "Sample Number=5\nCurve Item=2\nCurve K0=0.5\nCurve K1=1.5\nCurve K2=2.5\nCurve K3=3.5\n"
             "Fitting Line=3\nConc Unit=ppm\nCustom Conc Unit=drops\n");
  QuantitationSettings expected;
  expected.WaveLengthNumber = 2;
  expected.WaveLengthList = {260, 280.5, 320};
  expected.WaveLengthPara = {1.5, -0.75, 3};
  expected.SampleNumber = 5;
  expected.CurveItem = 2;
  expected.InputK = {0.5, 1.5, 2.5, 3.5};
  expected.FittingMethod = 3;
  expected.ConcUnit = "ppm";
  expected.CustomConcUnit = "drops";
  EXPECT_EQ(Load(), expected);
}

TEST_F(QuantitationSettingsTest, WhatIsStoredComesBack) {
  QuantitationSettings settings;
  settings.WaveLengthList = {260, 280.5, 320};
  settings.SampleNumber = 20;
  settings.InputK = {-1e-7, 2, 3, 1e300};
  settings.ConcUnit = kConcUnits[0];
  {
    Setting store(folder_.Path());
    ASSERT_TRUE(StoreSettings<QuantitationSettings>(store, kQuantitationSettingRows, settings));
  }
  EXPECT_EQ(Load(), settings);
}

TEST_F(QuantitationSettingsTest, ValuesBeyondTheirRangeLeaveTheDefault) {
  for (const char* lines :
       {"WaveLength Number=0\nSample Number=0\nCurve Item=0\nFitting Line=-1\nWaveLength 1=99\n",
        "WaveLength Number=4\nSample Number=21\nCurve Item=3\nFitting Line=4\nWaveLength 2=3001\n",
        "WaveLength Number=x\nSample Number=1e99\nCurve K0=nan\nWaveLength Para 1=inf\n"}) {
    WriteBytes(File(), std::string("[Quantitative Measurement]\n") + lines);
    EXPECT_EQ(Load(), QuantitationSettings()) << lines;
  }
}

TEST(ConcUnits, StandInTheirOrder) {
  EXPECT_EQ(std::string(kConcUnits.front()), "\xC2\xB5g/ml") << "with the micro sign";
  EXPECT_EQ(std::string(kConcUnits[1]), QuantitationSettings().ConcUnit);
  EXPECT_EQ(std::string(kConcUnits.back()), "IU");
}

}  // namespace
}  // namespace spectrane
