#include "modes/dna/dnadocument.h"

#include "base/basesupport.h"
#include "files/filesupport.h"
#include "files/samplefiles.h"

namespace spectrane {
namespace {

class DNADocumentTest : public testing::Test {
 protected:
  void Open(const std::vector<DNARecord>& samples = {DNASample("a", 0.5, 0.3, 0.05)},
            const DNAOption& option = DNATable()) {
    ASSERT_TRUE(WriteSamples(DNAModule(), Path, option, samples));
    ASSERT_TRUE(Document.OpenFile(Path));
  }
  DNASettings InMode(DNAMode mode, const DNAValues& values) const {
    return {static_cast<std::int32_t>(mode), values};
  }

  TemporaryFolder Folder;
  std::string Path = Folder.Path("run.dna");
  DNADocument Document;
};

TEST_F(DNADocumentTest, BeginsInTheFirstMode) {
  EXPECT_EQ(Document.Settings(), DNASettings());
  EXPECT_EQ(Document.Option().Option, 1);
  EXPECT_EQ(Document.Option().WaveLength, (std::array<double, 4>{260, 280, 320, 0}));
  EXPECT_EQ(Document.Option().Factor, (std::array<double, 4>{62.9, 36, 1552, 757.3}));
}

TEST_F(DNADocumentTest, SavesWhatItOpenedByteForByte) {
  DNAOption option = DNATable();
  option.WaveLength[3] = 123;
  Open({DNASample("a", 0.5, 0.3, 0.05), DNASample("b", 1, 2, 3)}, option);
  EXPECT_TRUE(Document.SaveFile(Folder.Path("copy.dna")));
  EXPECT_EQ(ReadBytes(Folder.Path("copy.dna")), ReadBytes(Path)) << "spare entries as well";
}

TEST_F(DNADocumentTest, ShowsTheResultsOfItsFileAsTheyStand) {
  Open();
  EXPECT_EQ(Document.Record(0).DNA, 1.5);
  EXPECT_FALSE(Document.Configure(Document.Settings()));
  EXPECT_EQ(Document.Record(0).DNA, 1.5);
  EXPECT_EQ(Document.FileName(), Path);
  EXPECT_FALSE(Document.IsModified());
}

TEST_F(DNADocumentTest, TheSecondModeComputesTheResultsAnew) {
  Open();
  EXPECT_TRUE(Document.Configure(InMode(DNAMode::Mode2, kDNAMode2)));
  const DNARecord& row = Document.Record(0);
  EXPECT_NEAR(row.DNA, 22.095 - 0.87, 1e-12);      // 0.45 * 49.1 - 0.25 * 3.48
  EXPECT_NEAR(row.Protein, 45.75 - 34.11, 1e-12);  // 0.25 * 183 - 0.45 * 75.8
  EXPECT_NEAR(row.Ratio, 1.8, 1e-14);
  EXPECT_EQ(Document.Option().WaveLength, (std::array<double, 4>{260, 230, 320, 0}));
  EXPECT_EQ(Document.Option().Option, 2);
  EXPECT_EQ(Document.Option().Spare, 4711);
  EXPECT_TRUE(Document.IsModified());
  EXPECT_EQ(Document.FileName(), "");
}

TEST_F(DNADocumentTest, TheFirstModeComputesTheResultsAnew) {
  DNAOption option = DNATable();
  option.Factor[0] = 1;
  Open({DNASample("a", 0.5, 0.3, 0.05)}, option);
  EXPECT_TRUE(Document.Configure(InMode(DNAMode::Mode1, kDNAMode1)));
  EXPECT_NEAR(Document.Record(0).DNA, 28.305 - 9, 1e-12);         // 0.45 * 62.9 - 0.25 * 36
  EXPECT_NEAR(Document.Record(0).Protein, 388 - 340.785, 1e-11);  // 0.25 * 1552 - 0.45 * 757.3
}

TEST_F(DNADocumentTest, CustomModeComputesWithWhatWasTyped) {
  Open({DNASample("a", 1.0, 0.5, 0.25)});
  EXPECT_TRUE(Document.Configure(InMode(DNAMode::Custom, {{250, 290, 330}, {2, 4, 8, 16}})));
  EXPECT_EQ(Document.Record(0).DNA, 0.5);      // 0.75 * 2 - 0.25 * 4
  EXPECT_EQ(Document.Record(0).Protein, -10);  // 0.25 * 8 - 0.75 * 16
  EXPECT_EQ(Document.Record(0).Ratio, 3);
}

TEST_F(DNADocumentTest, ADivisorOfZeroKeepsTheOldRatio) {
  Open({DNASample("zero", 0.5, 0.25, 0.25), DNASample("other", 0.5, 0.3, 0.05)});
  EXPECT_TRUE(Document.Configure(InMode(DNAMode::Mode2, kDNAMode2)));
  EXPECT_EQ(Document.Record(0).Ratio, 3.5);
  EXPECT_NEAR(Document.Record(0).DNA, 12.275, 1e-12);      // 0.25 * 49.1
  EXPECT_NEAR(Document.Record(0).Protein, -18.95, 1e-12);  // -0.25 * 75.8
  EXPECT_NEAR(Document.Record(1).Ratio, 1.8, 1e-14);
}

TEST_F(DNADocumentTest, AnotherNameOfTheSameValuesComputesNothing) {
  Open();
  EXPECT_FALSE(Document.Configure(InMode(DNAMode::Custom, kDNAMode1)));
  EXPECT_EQ(Document.Option().Option, 3);
  EXPECT_EQ(Document.Record(0).DNA, 1.5);
  EXPECT_TRUE(Document.IsModified());
}

TEST_F(DNADocumentTest, TextsAreKeptAndMarkTheDocument) {
  Open();
  Document.SetRecordName(0, "a");
  Document.SetRecordNote(0, "note of a");
  EXPECT_FALSE(Document.IsModified());
  Document.SetRecordNote(0, "new");
  EXPECT_TRUE(Document.IsModified());
  Document.SetRecordName(0, "b");
  EXPECT_EQ(Document.Record(0).Name, "b");
  EXPECT_EQ(Document.Record(0).Note, "new");
}

TEST(DNAMode, IsFixedOnlyWithItsOwnValues) {
  EXPECT_EQ(ModeOf({1, kDNAMode1}), DNAMode::Mode1);
  EXPECT_EQ(ModeOf({2, kDNAMode2}), DNAMode::Mode2);
  EXPECT_EQ(ModeOf({3, kDNAMode1}), DNAMode::Custom);
  EXPECT_EQ(ModeOf({1, kDNAMode2}), DNAMode::Custom);
  EXPECT_EQ(ModeOf({2, kDNAMode1}), DNAMode::Custom);
  for (const std::int32_t other : {0, 4, -1, 2147483647})
    EXPECT_EQ(ModeOf({other, kDNAMode1}), DNAMode::Custom) << other;
}

TEST(DNASettingRows, AreThoseOfConfigIni) {
  TemporaryFolder folder;
  Setting file(folder.Path());
  const struct {
    const char* Key;
    const char* Default;
    const char* Other;
  } rows[] = {{"Item Option", "1", "3"},
              {"WaveLength 1", "260", "250.5"},
              {"WaveLength 2", "280", "290"},
              {"WaveLength Reference", "320", "330"},
              {"F1", "62.9", "1.5"},
              {"F2", "36", "-2"},
              {"F3", "1552", "3"},
              {"F4", "757.3", "4"}};
  DNASettings settings;
  LoadSettings<DNASettings>(file, kDNASettingRows, settings);
  EXPECT_EQ(settings, DNASettings());
  for (const auto& row : rows) {
    EXPECT_EQ(file.GetSetting("DNA/Protein Test", row.Key), row.Default) << row.Key;
    file.PutSetting("DNA/Protein Test", row.Key, row.Other);
  }
  LoadSettings<DNASettings>(file, kDNASettingRows, settings);
  EXPECT_EQ(settings, (DNASettings{3, {{250.5, 290, 330}, {1.5, -2, 3, 4}}}));
}

}  // namespace
}  // namespace spectrane
