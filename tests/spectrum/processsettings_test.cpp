#include "spectrum/processsettings.h"

#include "base/basesupport.h"
#include "spectrum/comparesettings.h"

namespace spectrane {
namespace {

template <typename Owner>
Owner LoadedFrom(const TemporaryFolder& folder, std::span<const SettingRow<Owner>> rows, Owner first) {
  Setting store(folder.Path());
  EXPECT_TRUE(LoadSettings<Owner>(store, rows, first));
  return first;
}

struct ProcessSectionRow {
  const char* Name;
  std::span<const ProcessRow> Rows;
  ProcessSettings First;
  /// What a first start writes, the lines that only this section has included.
  std::string Section, SourceColour, More;
};

class ProcessSections : public testing::TestWithParam<ProcessSectionRow> {};

INSTANTIATE_TEST_SUITE_P(
    All, ProcessSections,
    testing::Values(
        ProcessSectionRow{"Smooth", kSmoothSettingRows, {}, "Spectrum Smooth", "Curve Color=255\n", ""},
        ProcessSectionRow{"Dev", kDevSettingRows, {}, "Spectrum Dev", "Curve Color=255\n", "File name=\n"},
        ProcessSectionRow{"Caculate", kCaculateSettingRows, FirstCaculateSettings(), "Spectrum Caculate",
                          "Curve Color 0=8421631\n", "Curve Color 1=8454143\nFile name 0=\nFile name 1=\n"}),
    NameOfRow<ProcessSectionRow>);

TEST_P(ProcessSections, AFirstStartWritesItsValues) {
  const ProcessSectionRow& row = GetParam();
  const TemporaryFolder folder;
  EXPECT_EQ(LoadedFrom<ProcessSettings>(folder, row.Rows, row.First), row.First);
  EXPECT_EQ(ReadBytes(folder.Path("config.ini")),
            '[' + row.Section +
                "]\nDisplay Mode=1\nAbs Top=1\nAbs Bottom=0\nTrans Top=100\nTrans Bottom=0\n"
                "Start Wavelength=190\nEnd Wavelength=1100\nResult Color=33023\nScale Color=16711680\n" +
                row.SourceColour +
                "Mark Color=8388736\nPeak Color=8388863\nValley Color=32768\nPeak Enable=True\n"
                "Valley Enable=True\nPeak Detail Enable=True\nValley Detail Enable=False\n"
                "Grid Enable=True\nData Table Enable=True\nPeak Height=0.01\n" +
                row.More);
}

TEST_P(ProcessSections, EachKeyFillsItsOwnField) {
  const ProcessSectionRow& row = GetParam();
  const bool two = row.Section == kCaculateSection;
  const TemporaryFolder folder;
  WriteBytes(folder.Path("config.ini"),
             '[' + row.Section +
                 "]\nDisplay Mode=2\nAbs Top=2\nAbs Bottom=-0.25\nTrans Top=110\nTrans Bottom=5\n"
                 "Start Wavelength=200.5\nEnd Wavelength=900\nResult Color=1\nScale Color=2\n" +
                 (two ? "Curve Color 0=3\nCurve Color 1=4\nFile name 0=a b.wls\nFile name 1=c.wls\n"
                      : "Curve Color=3\nFile name=a b.wls\n") +
                 "Mark Color=5\nPeak Color=6\nValley Color=7\nPeak Enable=False\nValley Enable=False\n"
                 "Peak Detail Enable=False\nValley Detail Enable=True\nGrid Enable=False\n"
                 "Data Table Enable=False\nPeak Height=0.25\n");
  ProcessSettings expected = row.First;
  expected.Shown.Option = {200.5, 900, 2, -0.25, 110, 5, 0, 0, 0, 0, 0, 0, 0, 2};
  expected.Shown.CurveColor = 1;
  expected.Shown.DataTableEnable = false;
  expected.Shown.ScaleColor = 2;
  expected.SourceColor[0] = 3;
  if (two) expected.SourceColor[1] = 4;
  expected.Shown.MarkColor = 5;
  expected.Shown.PeakColor = 6;
  expected.Shown.ValleyColor = 7;
  expected.Shown.PeakEnable = expected.Shown.ValleyEnable = expected.Shown.GridEnable = false;
  expected.Shown.PeakDetailEnable = false;
  expected.Shown.ValleyDetailEnable = true;
  expected.Shown.PeakHeight = 0.25;
  if (row.Section != kSmoothSection) expected.FileName[0] = "a b.wls";
  if (two) expected.FileName[1] = "c.wls";
  EXPECT_EQ(LoadedFrom<ProcessSettings>(folder, row.Rows, row.First), expected);
}

TEST_P(ProcessSections, AnEnergyModeAndWrongColoursLeaveTheDefault) {
  const ProcessSectionRow& row = GetParam();
  const TemporaryFolder folder;
  WriteBytes(folder.Path("config.ini"),
             '[' + row.Section + "]\nDisplay Mode=3\nResult Color=-1\nScale Color=16777216\nAbs Top=x\n");
  EXPECT_EQ(LoadedFrom<ProcessSettings>(folder, row.Rows, row.First), row.First);
}

TEST(CompareSettingsTest, AFirstStartWritesItsValues) {
  const TemporaryFolder folder;
  EXPECT_EQ(LoadedFrom<CompareSettings>(folder, kCompareSettingRows, {}), CompareSettings());
  // Red + 256 green + 65536 blue of the ten colours; the second and the fourth are one colour.
  EXPECT_EQ(ReadBytes(folder.Path("config.ini")),
            "[Spectrum Compare]\nDisplay Mode=1\nAbs Top=1\nAbs Bottom=0\nTrans Top=100\nTrans Bottom=0\n"
            "Start Wavelength=190\nEnd Wavelength=1100\nScale Color=16711680\nGrid Enable=True\n"
            "File name 0=\nCurve Color 0=8421631\nFile name 1=\nCurve Color 1=8454143\n"
            "File name 2=\nCurve Color 2=8454016\nFile name 3=\nCurve Color 3=8454143\n"
            "File name 4=\nCurve Color 4=33023\nFile name 5=\nCurve Color 5=16744703\n"
            "File name 6=\nCurve Color 6=8388736\nFile name 7=\nCurve Color 7=32768\n"
            "File name 8=\nCurve Color 8=8388863\nFile name 9=\nCurve Color 9=16744448\n");
}

TEST(CompareSettingsTest, EachRowHasItsOwnNameAndColour) {
  const TemporaryFolder folder;
  std::string text = "[Spectrum Compare]\nDisplay Mode=2\nGrid Enable=False\nScale Color=77\n";
  CompareSettings expected;
  expected.Option.DisplayMode = 2;
  expected.GridEnable = false;
  expected.ScaleColor = 77;
  for (int i = 0; i < 10; ++i) {
    const std::string number = std::to_string(i);
    text += "File name " + number + "=f" + number + ".wls\nCurve Color " + number + "=" + number + "\n";
    expected.FileName[static_cast<std::size_t>(i)] = "f" + number + ".wls";
    expected.CurveColor[static_cast<std::size_t>(i)] = i;
  }
  WriteBytes(folder.Path("config.ini"), text);
  EXPECT_EQ(LoadedFrom<CompareSettings>(folder, kCompareSettingRows, {}), expected);
}

}  // namespace
}  // namespace spectrane
