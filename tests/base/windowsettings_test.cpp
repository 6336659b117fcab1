#include "base/windowsettings.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <ostream>
#include <set>
#include <stdexcept>
#include <string>

#include "base/basesupport.h"

namespace spectrane {
namespace {

class WindowSettingsTest : public testing::Test {
 protected:
  bool Load() { return LoadWindowSettings(settings_, folder_.Path(), window_); }
  void Put(const std::string& bytes) { WriteBytes(folder_.Path("config.ini"), bytes); }
  std::string Stored() const { return ReadBytes(folder_.Path("config.ini")); }

  TemporaryFolder folder_;
  Setting settings_{folder_.Path()};
  WindowSettings window_;
};

TEST_F(WindowSettingsTest, AFirstStartWritesEachDefaultKeyInOrder) {
  window_.WindowHeight = 700;
  window_.WindowWidth = 1000;
  EXPECT_TRUE(Load());
  EXPECT_EQ(Stored(),
            "[Option]\nPrecise=0\nAuto Search=0\nOpearator=\nDepartment=\n"
            "[Main Window]\nWindows States=2\nWindows Height=700\nWindows Width=1000\nMenu Style=2\n"
            "Main toolsbar=True\nOperate toolsbar=True\nspectrum toolsbar=True\ndata display toolsbar=True\n"
            "Expand Button=True\nTabWorkspace=True\nstatus toolsbar=True\nBig Icon=False\n"
            "[File]\nFilePath=\nOpen File Path=\n"
            "[Base Line]\nFile Path=" +
                folder_.Path("Baseline.bsl") +
                "\n"
                "[Automatic Sampler]\nZero Position=1\n1# Position=True\n2# Position=True\n3# Position=True\n"
                "4# Position=True\n5# Position=True\n6# Position=True\n7# Position=True\n8# Position=True\n");
}

TEST_F(WindowSettingsTest, ASecondStartChangesNothing) {
  window_.WindowHeight = 700;
  window_.WindowWidth = 1000;
  Load();
  const std::string before = Stored();
  struct stat first {};
  ASSERT_EQ(::stat(folder_.Path("config.ini").c_str(), &first), 0);
  WindowSettings again;
  EXPECT_TRUE(LoadWindowSettings(settings_, folder_.Path(), again));
  struct stat second {};
  ASSERT_EQ(::stat(folder_.Path("config.ini").c_str(), &second), 0);
  EXPECT_EQ(Stored(), before);
  EXPECT_EQ(first.st_ino, second.st_ino) << "the file was replaced for nothing";
  EXPECT_EQ(again.WindowHeight, 700);
}

TEST_F(WindowSettingsTest, StoredValuesAreTaken) {
  Put("[Option]\nPrecise=1\nAuto Search=1\nPort ID=7\nOpearator=Kestu\nDepartment=Lab 3  \n"
      "[Main Window]\nWindows States=0\nWindows Height=600\nWindows Width=800\nMenu Style=6\n"
      "Main toolsbar=False\nOperate toolsbar=False\nspectrum toolsbar=False\ndata display toolsbar=False\n"
      "Expand Button=False\nTabWorkspace=False\nstatus toolsbar=False\nBig Icon=True\n"
      "[File]\nFilePath=/a\nOpen File Path=/b.wls\n[New File]\nFile Type=6\n[Base Line]\nFile Path=/c.bsl\n"
      "[Automatic Sampler]\nZero Position=8\n1# Position=False\n8# Position=False\n");
  EXPECT_TRUE(Load());
  EXPECT_EQ(window_.PrecisionMode, 1);
  EXPECT_EQ(window_.PortSearchMode, 1);
  EXPECT_EQ(window_.PortID, 7);
  EXPECT_EQ(window_.Operator, "Kestu");
  EXPECT_EQ(window_.Department, "Lab 3");
  EXPECT_EQ(window_.WindowState, 0);
  EXPECT_EQ(window_.WindowHeight, 600);
  EXPECT_EQ(window_.WindowWidth, 800);
  EXPECT_EQ(window_.MenuStyle, 6);
  EXPECT_FALSE(window_.MainToolbar || window_.OperateToolbar || window_.SpectrumToolbar ||
               window_.DataDisplayToolbar);
  EXPECT_FALSE(window_.ExpandButton || window_.TabWorkspace || window_.StatusToolbar);
  EXPECT_TRUE(window_.BigIcon);
  EXPECT_EQ(window_.FilePath, "/a");
  EXPECT_EQ(window_.OpenFilePath, "/b.wls");
  EXPECT_EQ(window_.NewFileType, 6);
  EXPECT_EQ(window_.BaselinePath, "/c.bsl");
  EXPECT_EQ(window_.SamplerZeroPosition, 8);
  const std::array<bool, 9> positions = {true, false, true, true, true, true, true, true, false};
  EXPECT_EQ(window_.SamplerPositions, positions);
}

TEST_F(WindowSettingsTest, KeysWithoutADefaultAreNotWritten) {
  Load();
  EXPECT_EQ(settings_.GetSetting("Option", "Port ID"), "");
  EXPECT_EQ(settings_.GetSetting("New File", "File Type"), "");
  EXPECT_EQ(Stored().find("[New File]"), std::string::npos);
}

TEST_F(WindowSettingsTest, AProgramWithoutAWindowWritesNoWindowSize) {
  Load();
  EXPECT_EQ(Stored().find("Windows Height"), std::string::npos);
  EXPECT_EQ(Stored().find("Windows Width"), std::string::npos);
}

TEST_F(WindowSettingsTest, AnEmptyKeyGetsItsDefault) {
  Put("[Option]\nPrecise=\n[Main Window]\nBig Icon=\n");
  EXPECT_TRUE(Load());
  EXPECT_EQ(settings_.GetSetting("Option", "Precise"), "0");
  EXPECT_EQ(settings_.GetSetting("Main Window", "Big Icon"), "False");
}

TEST_F(WindowSettingsTest, ABaselineThatIsChosenAlreadyIsTheDefault) {
  window_.BaselinePath = "/measured/own.bsl";
  EXPECT_TRUE(Load());
  EXPECT_EQ(window_.BaselinePath, "/measured/own.bsl");
  EXPECT_EQ(settings_.GetSetting("Base Line", "File Path"), "/measured/own.bsl");
}

TEST_F(WindowSettingsTest, OtherKeysOfTheFileStay) {
  Put("; mine\n[Time Scanning]\nPeak Height=0.001\n");
  EXPECT_TRUE(Load());
  EXPECT_EQ(Stored().find("; mine\n[Time Scanning]\nPeak Height=0.001\n[Option]\n"), 0u);
}

TEST_F(WindowSettingsTest, AProgramClosedAsAnIconComesUpVisible) {
  Put("[Main Window]\nWindows States=1\n");
  Load();
  EXPECT_EQ(window_.WindowState, 0);
}

TEST_F(WindowSettingsTest, ValuesThatCannotBeStoredHoldAllTheSame) {
  Setting settings(folder_.Path("none"));
  EXPECT_FALSE(LoadWindowSettings(settings, folder_.Path("none"), window_));
  EXPECT_EQ(window_.MenuStyle, 2);
  EXPECT_EQ(window_.BaselinePath, folder_.Path("none/Baseline.bsl"));
  EXPECT_EQ(settings.GetSetting("Main Window", "Menu Style"), "2");
}

TEST_F(WindowSettingsTest, OneFieldIsStoredByItsKey) {
  window_.BigIcon = true;
  EXPECT_TRUE(StoreWindowSetting(settings_, "Main Window", "Big Icon", window_));
  EXPECT_EQ(Stored(), "[Main Window]\nBig Icon=True\n");
  EXPECT_THROW(WindowSettingRow("Main Window", "Big Icons"), std::out_of_range);
}

TEST_F(WindowSettingsTest, EachKeyAndEachFieldStandsOnce) {
  std::set<std::string> names;
  std::set<const void*> fields;
  for (const auto& row : WindowSettingRows()) {
    EXPECT_TRUE(names.insert(std::string(row.Section) + "/" + row.Key).second) << row.Key;
    const void* field = std::visit([this](auto f) -> const void* { return &f(window_); }, row.Field);
    EXPECT_TRUE(fields.insert(field).second) << row.Key;
  }
  EXPECT_EQ(names.size(), 30u);
}

struct BadRow {
  const char* Name;
  const char* Section;
  const char* Key;
  const char* Stored;
};
void PrintTo(const BadRow& row, std::ostream* out) {
  *out << row.Key << "=" << row.Stored;
}

class BadSettingTest : public testing::TestWithParam<BadRow> {};

TEST_P(BadSettingTest, LeavesTheFieldAndTheFile) {
  const BadRow& bad = GetParam();
  const TemporaryFolder folder;
  Setting settings(folder.Path());
  WindowSettings window;
  window.WindowHeight = 700;
  window.PortID = 3;
  window.NewFileType = 2;
  const SettingRow<WindowSettings>& row = WindowSettingRow(bad.Section, bad.Key);
  const std::string before = StoredSetting(row, window).Value;
  settings.PutSetting(bad.Section, bad.Key, bad.Stored);
  LoadWindowSettings(settings, folder.Path(), window);
  EXPECT_EQ(StoredSetting(row, window).Value, before);
  EXPECT_EQ(settings.GetSetting(bad.Section, bad.Key), bad.Stored);
}

const BadRow kBadRows[] = {
    {"NumberText", "Option", "Precise", "abc"},
    {"NumberComma", "Option", "Precise", "1,5"},
    {"NumberTooLarge", "Option", "Precise", "1e400"},
    {"NumberBeyondThirtyTwoBits", "Option", "Precise", "99999999999"},
    {"NumberNegative", "Option", "Precise", "-1"},
    {"NumberBeyondItsValues", "Option", "Precise", "2"},
    {"NumberHexadecimal", "Option", "Precise", "&H1"},
    {"NumberBoolean", "Option", "Precise", "True"},
    {"PortZero", "Option", "Port ID", "0"},
    {"PortNine", "Option", "Port ID", "9"},
    {"PortNegative", "Option", "Port ID", "-1"},
    {"PortName", "Option", "Port ID", "COM3"},
    {"FileTypeSeven", "New File", "File Type", "7"},
    {"WindowStateThree", "Main Window", "Windows States", "3"},
    {"WindowHeightZero", "Main Window", "Windows Height", "0"},
    {"WindowHeightNegative", "Main Window", "Windows Height", "-5"},
    {"WindowHeightHuge", "Main Window", "Windows Height", "1000000"},
    {"MenuStyleSeven", "Main Window", "Menu Style", "7"},
    {"ZeroPositionNine", "Automatic Sampler", "Zero Position", "9"},
    {"ZeroPositionZero", "Automatic Sampler", "Zero Position", "0"},
    {"BooleanSmallLetters", "Main Window", "Big Icon", "true"},
    {"BooleanNumber", "Main Window", "Big Icon", "1"},
    {"BooleanText", "Main Window", "Big Icon", "Truely"},
    {"BooleanFalseSmallLetters", "Main Window", "Main toolsbar", "false"},
};
INSTANTIATE_TEST_SUITE_P(Rows, BadSettingTest, testing::ValuesIn(kBadRows), NameOfRow<BadRow>);

TEST(SettingText, BlanksBehindABooleanDoNotCount) {
  const TemporaryFolder folder;
  WriteBytes(folder.Path("config.ini"), "[Main Window]\nBig Icon=True \n");
  Setting settings(folder.Path());
  WindowSettings window;
  LoadWindowSettings(settings, folder.Path(), window);
  EXPECT_TRUE(window.BigIcon);
}

TEST(SettingText, DoublesAreTheShortestDecimal) {
  EXPECT_EQ(SettingText(0.001), "0.001");
  EXPECT_EQ(SettingText(-0.5), "-0.5");
  EXPECT_EQ(SettingText(1100.0), "1100");
  EXPECT_EQ(SettingText(std::int32_t{-7}), "-7");
  EXPECT_EQ(SettingText(false), "False");
}

struct OneHeight {
  double Height = 0.001;
};

TEST(SettingText, ADoubleKeepsItsLimits) {
  const SettingRow<OneHeight> row = {"A", "k", [](OneHeight& s) -> double& { return s.Height; }, 0.0, 4.0};
  OneHeight sample;
  EXPECT_TRUE(TakeSetting(row, "0.25", sample));
  EXPECT_EQ(sample.Height, 0.25);
  for (const char* text : {"-0.001", "4.001", "", "x", "1,5", "1e400"}) {
    EXPECT_FALSE(TakeSetting(row, text, sample)) << text;
    EXPECT_EQ(sample.Height, 0.25) << text;
  }
  EXPECT_TRUE(TakeSetting(row, "0", sample));
  EXPECT_TRUE(TakeSetting(row, "4", sample));
}

TEST(SettingText, AllRowsOfATableAreStoredTogether) {
  const TemporaryFolder folder;
  Setting settings(folder.Path());
  WindowSettings window;
  window.PortID = 4;
  EXPECT_TRUE(StoreSettings(settings, WindowSettingRows(), window));
  EXPECT_EQ(settings.GetSetting("Option", "Port ID"), "4");
  EXPECT_EQ(settings.GetSetting("Automatic Sampler", "8# Position"), "True");
  EXPECT_EQ(settings.GetSetting("Main Window", "Windows Width"), "");
}

}  // namespace
}  // namespace spectrane
