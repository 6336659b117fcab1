#include "modes/multi/multidocument.h"

#include "base/basesupport.h"
#include "files/filesupport.h"
#include "files/samplefiles.h"

namespace spectrane {
namespace {

/// A document with two samples at `wavelengths` wavelengths, as its file has them.
class MultiDocumentTest : public testing::Test {
 protected:
  void OpenTable(std::int32_t wavelengths) { Open(MultiTable(wavelengths)); }
  void Open(const MultiOption& option) {
    const std::vector<MultiRecord> samples = {MultiSample("one", 0.5, 71), MultiSample("two", 1.0, 72)};
    ASSERT_TRUE(WriteSamples(MultiModule(), Path, option, samples));
    ASSERT_TRUE(Document.OpenFile(Path));
  }

  TemporaryFolder Folder;
  std::string Path = Folder.Path("run.mul");
  MultiDocument Document;
};

TEST_F(MultiDocumentTest, BeginsWithOneWavelength) {
  EXPECT_EQ(Document.Option().WorkWLNo, 1);
  for (std::size_t k = 0; k < 15; ++k) {
    EXPECT_EQ(Document.Option().WorkWaveLength[k], 546.0);
    EXPECT_EQ(Document.Option().Parameter[k], 1.0);
  }
  EXPECT_EQ(Document.Settings(), MultiSettings());
  EXPECT_EQ(Document.RecordCount(), 0);
  EXPECT_FALSE(Document.SaveFile(Path)) << "nothing to save";
  EXPECT_EQ(Document.LastFault().Error, FileError::NotSavable);
}

TEST_F(MultiDocumentTest, ShowsTheResultsOfItsFileAsTheyStand) {
  OpenTable(2);
  EXPECT_EQ(Document.RecordCount(), 2);
  EXPECT_EQ(Document.Record(0).Result, 71) << "not 1 * 0.5 + 2 * 0.6";
  EXPECT_FALSE(Document.IsModified());
}

TEST_F(MultiDocumentTest, SavesWhatItOpenedByteForByte) {
  OpenTable(15);
  const std::string before = ReadBytes(Path);
  EXPECT_TRUE(Document.SaveFile(Folder.Path("copy.mul")));
  EXPECT_EQ(ReadBytes(Folder.Path("copy.mul")), before) << "the sixteenth entries as well";
}

TEST_F(MultiDocumentTest, OtherCoefficientsComputeTheResultsAnew) {
  OpenTable(2);
  MultiSettings settings = Document.Settings();
  settings.Parameter[0] = 10;
  EXPECT_TRUE(Document.WouldChange(settings));
  Document.Configure(settings);
  EXPECT_DOUBLE_EQ(Document.Record(0).Result, 6.2);   // 10 * 0.5 + 2 * 0.6
  EXPECT_DOUBLE_EQ(Document.Record(1).Result, 12.2);  // 10 * 1.0 + 2 * 1.1
  EXPECT_EQ(Document.Record(0).Abs, MultiSample("", 0.5, 0).Abs);
  EXPECT_TRUE(Document.IsModified());
  EXPECT_EQ(Document.FileName(), "") << "the file belongs to the old table";
}

TEST_F(MultiDocumentTest, OneTwoAndFifteenWavelengths) {
  const struct {
    std::int32_t Wavelengths;
    double Result;
  } cases[] = {
      {1, 0.5},     // 1 * 0.5
      {2, 1.7},     // + 2 * 0.6
      {15, 172.0},  // 0.5 * (1 + ... + 15) + 0.1 * (1 * 0 + 2 * 1 + ... + 15 * 14) = 60 + 112
  };
  for (const auto& c : cases) {
    OpenTable(c.Wavelengths == 1 ? 3 : 1);
    MultiSettings settings = Document.Settings();
    settings.WorkWLNo = c.Wavelengths;
    Document.Configure(settings);
    EXPECT_NEAR(Document.Record(0).Result, c.Result, 1e-12) << c.Wavelengths;
  }
}

TEST_F(MultiDocumentTest, EntriesThatAreNotInUseChangeNothing) {
  OpenTable(2);
  MultiSettings settings = Document.Settings();
  settings.WorkWaveLength[2] = 700;
  EXPECT_FALSE(Document.WouldChange(settings));
  Document.Configure(settings);
  EXPECT_EQ(Document.Record(0).Result, 71);
  EXPECT_EQ(Document.FileName(), Path);
  EXPECT_FALSE(Document.IsModified());
  settings.WorkWLNo = 3;
  EXPECT_TRUE(Document.WouldChange(settings));
}

TEST_F(MultiDocumentTest, EveryEntryInUseCounts) {
  OpenTable(15);
  for (std::size_t k = 0; k < 15; ++k) {
    MultiSettings wavelength = Document.Settings();
    wavelength.WorkWaveLength[k] += 1;
    EXPECT_TRUE(Document.WouldChange(wavelength)) << k;
    MultiSettings parameter = Document.Settings();
    parameter.Parameter[k] += 1;
    EXPECT_TRUE(Document.WouldChange(parameter)) << k;
  }
  EXPECT_FALSE(Document.WouldChange(Document.Settings()));
}

TEST_F(MultiDocumentTest, AFileThatStatesAnyNumberOfWavelengthsOpens) {
  for (const std::int32_t stated : {0, -1, 16, 2147483647, -2147483647 - 1}) {
    OpenTable(stated);
    EXPECT_EQ(Document.Option().WorkWLNo, stated);
    EXPECT_EQ(Document.RecordCount(), 2);
    EXPECT_TRUE(Document.WouldChange(MultiSettings()));
    MultiSettings settings = Document.Settings();
    settings.WorkWLNo = 1;
    EXPECT_TRUE(Document.WouldChange(settings));
  }
}

TEST_F(MultiDocumentTest, ACutFileGivesItsRowsAndNeverLosesTheOthers) {
  OpenTable(2);
  const std::string whole = ReadBytes(Path);
  WriteBytes(Path, whole.substr(0, whole.size() - 1));
  EXPECT_FALSE(Document.OpenFile(Path));
  EXPECT_EQ(Document.RecordCount(), 1);
  EXPECT_TRUE(Document.IsHalfLoaded());
  Document.SetRecordName(0, "new");
  EXPECT_FALSE(Document.SaveFile(Path));
  EXPECT_TRUE(Document.SaveFile(Folder.Path("other.mul")));
  EXPECT_FALSE(Document.IsHalfLoaded());
}

TEST_F(MultiDocumentTest, OtherOptionsDoNotMakeAHalfReadFileFree) {
  OpenTable(2);
  const std::string whole = ReadBytes(Path);
  const std::string cut = whole.substr(0, whole.size() - 1);
  WriteBytes(Path, cut);
  EXPECT_FALSE(Document.OpenFile(Path));
  MultiSettings settings = Document.Settings();
  settings.WorkWaveLength[0] += 1;
  Document.Configure(settings);
  EXPECT_EQ(Document.FileName(), "");
  EXPECT_FALSE(Document.SaveFile(Path));
  EXPECT_EQ(Document.LastFault().Error, FileError::HalfRead);
  EXPECT_EQ(ReadBytes(Path), cut);
  EXPECT_TRUE(Document.SaveFile(Folder.Path("other.mul")));
  EXPECT_TRUE(Document.SaveFile(Path)) << "saved elsewhere, the document is one of its own";
}

TEST_F(MultiDocumentTest, ANameIsKeptAndMarksTheDocument) {
  OpenTable(1);
  Document.SetRecordName(0, "one");
  EXPECT_FALSE(Document.IsModified()) << "it was its name already";
  Document.SetRecordName(0, "new");
  EXPECT_EQ(Document.Record(0).Name, "new");
  EXPECT_TRUE(Document.IsModified());
}

TEST(MultiTable, IsGoodWithOneToFifteenRealWavelengths) {
  for (const std::int32_t number : {1, 2, 15}) EXPECT_TRUE(IsMultiTableGood(MultiTable(number))) << number;
  for (const std::int32_t number : {0, -1, 16}) EXPECT_FALSE(IsMultiTableGood(MultiTable(number))) << number;
  for (const double bad : {0.0, -1.0, std::nan(""), HUGE_VAL}) {
    MultiOption option = MultiTable(2);
    option.WorkWaveLength[1] = bad;
    EXPECT_FALSE(IsMultiTableGood(option)) << bad;
    option.WorkWLNo = 1;
    EXPECT_TRUE(IsMultiTableGood(option)) << "not in use";
  }
  MultiOption option = MultiTable(2);
  option.Parameter[1] = std::nan("");
  EXPECT_FALSE(IsMultiTableGood(option));
  option.Parameter[1] = -1;
  EXPECT_TRUE(IsMultiTableGood(option));
}

TEST(MultiPattern, HasFewerDecimalsTheLargerTheValueIs) {
  DisplayFormats formats;
  formats.AbsFormat = "0.0000";
  const struct {
    double Value;
    const char* Pattern;
  } cases[] = {{1e9, "0.0"},       {999.951, "0.0"},  {999.95, "0.00"},      {999.9, "0.00"},
               {99.9951, "0.00"},  {99.995, "0.000"}, {99.99, "0.000"},      {9.99951, "0.000"},
               {9.9995, "0.0000"}, {9.999, "0.0000"}, {0, "0.0000"},         {-0.5, "0.0000"},
               {-1000, "0.0000"},  {HUGE_VAL, "0.0"}, {-HUGE_VAL, "0.0000"}, {std::nan(""), "0.0000"}};
  for (const auto& c : cases) EXPECT_EQ(MultiPattern(c.Value, formats), c.Pattern) << c.Value;
}

TEST(MultiSettingRows, AreThoseOfConfigIni) {
  TemporaryFolder folder;
  Setting file(folder.Path());
  file.PutSetting("Multi WaveLength", "WaveLength No", "15");
  file.PutSetting("Multi WaveLength", "WaveLength 1", "201.5");
  file.PutSetting("Multi WaveLength", "WaveLength 15", "215.5");
  file.PutSetting("Multi WaveLength", "Parameter 1", "-1.25");
  file.PutSetting("Multi WaveLength", "Parameter 15", "15");
  MultiSettings settings;
  EXPECT_TRUE(LoadSettings<MultiSettings>(file, kMultiSettingRows, settings));
  EXPECT_EQ(settings.WorkWLNo, 15);
  EXPECT_EQ(settings.WorkWaveLength[0], 201.5);
  EXPECT_EQ(settings.WorkWaveLength[13], 546.0);
  EXPECT_EQ(settings.WorkWaveLength[14], 215.5);
  EXPECT_EQ(settings.Parameter[0], -1.25);
  EXPECT_EQ(settings.Parameter[1], 1.0);
  EXPECT_EQ(settings.Parameter[14], 15.0);
  EXPECT_EQ(file.GetSetting("Multi WaveLength", "WaveLength 14"), "546") << "defaults are written";
  EXPECT_EQ(file.GetSetting("Multi WaveLength", "Parameter 2"), "1");
}

TEST(MultiSettingRows, KeepTheDefaultWhereTheFileHasNonsense) {
  for (const char* number : {"0", "16", "-1", "two"}) {
    TemporaryFolder folder;
    Setting file(folder.Path());
    file.PutSetting("Multi WaveLength", "WaveLength No", number);
    file.PutSetting("Multi WaveLength", "WaveLength 1", "nan");
    file.PutSetting("Multi WaveLength", "Parameter 1", "1,5");
    MultiSettings settings;
    LoadSettings<MultiSettings>(file, kMultiSettingRows, settings);
    EXPECT_EQ(settings, MultiSettings()) << number;
  }
}

}  // namespace
}  // namespace spectrane
