#include "modes/quantitation/quantitationdocument.h"

#include <limits>

#include "base/numericfault.h"
#include "files/filesupport.h"

namespace spectrane {
namespace {

using K = std::array<double, 4>;
constexpr std::size_t kOptionEnd = 12582;
constexpr std::size_t kRecord = 552;

class QuantitationDocumentTest : public testing::Test {
 protected:
  std::string File() const { return folder_.Path("a.qua"); }
  void Append(int count) {
    for (int i = 0; i < count; ++i) document_.Append(document_.MakeRecord("row " + std::to_string(i), 0.5));
  }
  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (std::int32_t i = 0; i < document_.RecordCount(); ++i) names.push_back(document_.Record(i).Name);
    return names;
  }
  /// Two standards on the line conc = 10 abs + 1, and nothing that is not saved.
  void Calibrate() {
    QuantitationSettings settings;
    settings.FittingMethod = 1;
    document_.Configure(settings);
    document_.SetStandardReadings(0, 0.5);
    document_.SetStandardReadings(1, 1);
    document_.SetStandardConc(0, 6);
    EXPECT_EQ(document_.SetStandardConc(1, 11), FitOutcome::Accepted);
    ASSERT_TRUE(document_.SaveFile(File()));
  }
  using Texts = std::vector<std::string>;
  TemporaryFolder folder_;
  QuantitationDocument document_;
};

TEST_F(QuantitationDocumentTest, StartsAsAFirstStartDoes) {
  EXPECT_EQ(document_.Settings(), QuantitationSettings());
  EXPECT_EQ(document_.StandardRows(), 2);
  EXPECT_EQ(document_.Option().CurveK, K{});
  EXPECT_EQ(document_.Option().CurveR, 1);
  EXPECT_FALSE(document_.Option().CurveValid);
  EXPECT_FALSE(document_.Option().BlankDone);
  EXPECT_EQ(document_.RecordCount(), 0);
  EXPECT_FALSE(document_.IsModified());
  EXPECT_EQ(document_.FileName(), "");
}

TEST_F(QuantitationDocumentTest, AStandardThatAFitThroughZeroHasTakenIsNotMeasuredWhenItComesBack) {
  QuantitationSettings settings;
  settings.FittingMethod = 1;
  settings.SampleNumber = 5;
  document_.Configure(settings);
  for (std::int32_t row = 0; row < 5; ++row) {
    document_.SetStandardReadings(row, 0.2 * (row + 1));
    document_.SetStandardConc(row, 2.0 * (row + 1) + 1);
  }
  ASSERT_TRUE(document_.Option().CurveValid);
  settings.FittingMethod = 0;
  settings.SampleNumber = 3;
  document_.Configure(settings);
  settings.FittingMethod = 1;
  settings.SampleNumber = 5;
  EXPECT_EQ(document_.Configure(settings), FitOutcome::Incomplete);
  EXPECT_FALSE(document_.Option().StandardAbsSet[3]);
  EXPECT_FALSE(document_.Option().StandardConcSet[3]);
  EXPECT_TRUE(document_.Option().StandardAbsSet[4]) << "that one is as it was measured";
  document_.SetStandardReadings(3, 0.8);
  EXPECT_EQ(document_.SetStandardConc(3, 9), FitOutcome::Accepted);
  EXPECT_NEAR(document_.Option().CurveK[1], 10, 1e-9);
}

TEST_F(QuantitationDocumentTest, TheCurveComesWithTheLastValueOfTheStandards) {
  QuantitationSettings settings;
  settings.FittingMethod = 1;
  EXPECT_EQ(document_.Configure(settings), FitOutcome::Incomplete);
  EXPECT_EQ(document_.SetStandardConc(0, 6), FitOutcome::Incomplete);
  EXPECT_EQ(document_.SetStandardConc(1, 11), FitOutcome::Incomplete);
  EXPECT_EQ(document_.SetStandardReadings(0, 0.5), FitOutcome::Incomplete);
  EXPECT_FALSE(document_.Option().CurveValid);
  EXPECT_EQ(document_.SetStandardReadings(1, 1), FitOutcome::Accepted);
  EXPECT_TRUE(document_.Option().CurveValid);
  EXPECT_EQ(document_.Option().CurveK, (K{1, 10, 0, 0}));
  EXPECT_EQ(document_.CalcConc(0.75), 8.5);
  EXPECT_EQ(FormulaText(document_.Formula(DisplayFormats::AtStart(0))),
            "Conc.=(10.000)xA+(1.000)  r = 1.000000");
  EXPECT_EQ(document_.SetStandardReadings(1, 0.5), FitOutcome::Rejected);
  EXPECT_FALSE(document_.Option().CurveValid);
}

TEST_F(QuantitationDocumentTest, TypedCoefficientsNeedNoFit) {
  QuantitationSettings settings;
  settings.CurveItem = 2;
  settings.FittingMethod = 2;
  settings.InputK = {1, 2, 3, 4};
  EXPECT_EQ(document_.Configure(settings), FitOutcome::Typed);
  EXPECT_EQ(document_.Refit(), FitOutcome::Typed);
  EXPECT_FALSE(document_.FitsStandards());
  EXPECT_EQ(document_.CalcConc(2), 17);
  EXPECT_EQ(FormulaText(document_.Formula(DisplayFormats::AtStart(0))), "Conc.=(3.000)xA2+(2.000)xA+(1.000)");
  EXPECT_EQ(document_.Option().CurveK, K{});
}

TEST_F(QuantitationDocumentTest, AReadingIsTakenTimesItsFactor) {
  QuantitationSettings settings;
  settings.WaveLengthPara = {2, -0.5, 7};
  settings.FittingMethod = 0;
  document_.Configure(settings);
  document_.SetStandardReadings(0, 0.25, 9);
  EXPECT_EQ(document_.Option().StandardAbs[0], (std::array<double, 6>{0.5}));
  EXPECT_EQ(document_.WorkingAbs(0.25, 9), 0.5);
  const QuaRecord one = document_.MakeRecord("a", 0.25, 9);
  EXPECT_EQ(one.Abs, (K{0.25, 0, 0, 0}));
  for (const std::int32_t number : {2, 3}) {
    settings.WaveLengthNumber = number;
    document_.Configure(settings);
    document_.SetStandardReadings(0, 0.75, 0.5);
    EXPECT_EQ(document_.Option().StandardAbs[0], (std::array<double, 6>{0.75, 0.5, 1.25}));
    const QuaRecord two = document_.MakeRecord("a", 0.75, 0.5);
    EXPECT_EQ(two.Abs, (K{0.75, 0.5, 1.25, 1.25}));
  }
}

TEST_F(QuantitationDocumentTest, AStandardMeasuredAsASampleGivesItsOwnConcentration) {
  for (const std::int32_t wavelengths : {1, 2}) {
    QuantitationSettings settings;
    settings.WaveLengthNumber = wavelengths;
    settings.WaveLengthPara = {2, -0.5, 0};
    settings.FittingMethod = 1;
    document_.Configure(settings);
    document_.SetStandardReadings(0, 0.25, 0.125);
    document_.SetStandardReadings(1, 1, 0.25);
    document_.SetStandardConc(0, 3);
    ASSERT_EQ(document_.SetStandardConc(1, 8), FitOutcome::Accepted);
    EXPECT_NEAR(document_.MakeRecord("a", 0.25, 0.125).Conc, 3, 1e-12);
    EXPECT_NEAR(document_.MakeRecord("b", 1, 0.25).Conc, 8, 1e-12);
  }
}

TEST_F(QuantitationDocumentTest, RowsOutsideTheTablesAreNumericFaults) {
  Append(2);
  EXPECT_THROW(document_.SetStandardConc(-1, 1), NumericFault);
  EXPECT_THROW(document_.SetStandardReadings(21, 1), NumericFault);
  EXPECT_THROW(document_.SetStandardName(21, "x"), NumericFault);
  EXPECT_THROW(document_.SetStandardNote(-1, "x"), NumericFault);
  EXPECT_THROW(document_.Record(2), NumericFault);
  EXPECT_THROW(document_.Record(-1), NumericFault);
  EXPECT_THROW(document_.SetRecordName(2, "x"), NumericFault);
  EXPECT_THROW(document_.SetBlank(3, 1, 1, 1), NumericFault);
  EXPECT_THROW(document_.SetBlank(-1, 1, 1, 1), NumericFault);
  document_.SetStandardName(20, "last");
  EXPECT_EQ(document_.Option().StandardName[20], "last");
}

TEST_F(QuantitationDocumentTest, RecordsAreNamedNotedAndDeleted) {
  Append(3);
  EXPECT_EQ(document_.Option().TestRecordCount, 3);
  document_.SetRecordName(1, "tap water");
  document_.SetRecordNote(1, "cold");
  EXPECT_EQ(document_.Record(1).Note, "cold");
  EXPECT_FALSE(document_.DeleteRecord(0));
  EXPECT_FALSE(document_.DeleteRecord(4));
  EXPECT_TRUE(document_.DeleteRecord(1));
  EXPECT_EQ(Names(), (Texts{"tap water", "row 2"}));
  EXPECT_EQ(document_.Option().TestRecordCount, 2);
  document_.ClearRecords();
  EXPECT_EQ(document_.RecordCount(), 0);
  EXPECT_EQ(document_.Option().TestRecordCount, 0);
}

struct Change {
  const char* Name;
  bool Modifies;
  void (*Make)(QuantitationDocument& document);
};

class QuantitationChange : public QuantitationDocumentTest, public testing::WithParamInterface<Change> {};

TEST_P(QuantitationChange, MarksTheDocumentWhenSomethingChanged) {
  Calibrate();
  Append(1);
  ASSERT_TRUE(document_.SaveFile(File()));
  ASSERT_FALSE(document_.IsModified());
  GetParam().Make(document_);
  EXPECT_EQ(document_.IsModified(), GetParam().Modifies);
}

using D = QuantitationDocument;
INSTANTIATE_TEST_SUITE_P(
    Changes, QuantitationChange,
    testing::Values(Change{"StandardName", true, [](D& d) { d.SetStandardName(0, "low"); }},
                    Change{"SameStandardName", false, [](D& d) { d.SetStandardName(0, ""); }},
                    Change{"StandardNote", true, [](D& d) { d.SetStandardNote(0, "old"); }},
                    Change{"StandardConc", true, [](D& d) { d.SetStandardConc(0, 7); }},
                    Change{"StandardReadings", true, [](D& d) { d.SetStandardReadings(0, 0.6); }},
                    Change{"RefitWithoutEffect", false, [](D& d) { d.Refit(); }},
                    Change{"Blank", false, [](D& d) { d.SetBlank(0, 40000, 120, 2); }},
                    Change{"SameConfiguration", false, [](D& d) { d.Configure(d.Settings()); }},
                    Change{"OtherUnit", true,
                           [](D& d) {
                             QuantitationSettings settings = d.Settings();
                             settings.ConcUnit = "ppm";
                             d.Configure(settings);
                           }},
                    Change{"OwnUnitOfTheOperatorOnly", false,
                           [](D& d) {
                             QuantitationSettings settings = d.Settings();
                             settings.CustomConcUnit = "drops";
                             d.Configure(settings);
                           }},
                    Change{"Append", true, [](D& d) { d.Append({}); }},
                    Change{"RecordName", true, [](D& d) { d.SetRecordName(0, "x"); }},
                    Change{"SameRecordName", false, [](D& d) { d.SetRecordName(0, "row 0"); }},
                    Change{"RecordNote", true, [](D& d) { d.SetRecordNote(0, "x"); }},
                    Change{"Delete", true, [](D& d) { d.DeleteRecord(1); }},
                    Change{"DeleteNothing", false, [](D& d) { d.DeleteRecord(9); }},
                    Change{"Clear", true, [](D& d) { d.ClearRecords(); }}),
    NameOfRow<Change>);

TEST_F(QuantitationDocumentTest, TheSameConfigurationKeepsRecordsAndFile) {
  Calibrate();
  Append(2);
  EXPECT_FALSE(document_.WouldChange(document_.Settings()));
  EXPECT_EQ(document_.Configure(document_.Settings()), FitOutcome::Accepted);
  EXPECT_EQ(document_.RecordCount(), 2);
  EXPECT_EQ(document_.FileName(), File());
}

TEST_F(QuantitationDocumentTest, AnotherMethodBeginsAnewWithTheStandards) {
  Calibrate();
  Append(2);
  document_.SetBlankDone(true);
  QuantitationSettings settings = document_.Settings();
  settings.FittingMethod = 2;
  EXPECT_TRUE(document_.WouldChange(settings));
  EXPECT_EQ(document_.Configure(settings), FitOutcome::Accepted);
  EXPECT_EQ(document_.RecordCount(), 0);
  EXPECT_EQ(document_.FileName(), "") << "the old file keeps its records";
  EXPECT_TRUE(document_.Option().StandardAbsSet[1]);
  EXPECT_TRUE(document_.Option().BlankDone);
}

TEST_F(QuantitationDocumentTest, OtherWavelengthsTakeTheReadingsAndTheBlank) {
  const QuantitationSettings first = document_.Settings();
  for (const int what : {0, 1, 2}) {
    document_.Configure(first);
    Calibrate();
    document_.SetStandardName(0, "low");
    document_.SetBlankDone(true);
    QuantitationSettings settings = document_.Settings();
    if (what == 0) settings.WaveLengthNumber = 2;
    if (what == 1) settings.WaveLengthList[0] = 500;
    if (what == 2) settings.WaveLengthPara[0] = 2;
    EXPECT_EQ(document_.Configure(settings), FitOutcome::Incomplete) << what;
    EXPECT_FALSE(document_.Option().CurveValid) << "no test may start on the old curve";
    EXPECT_FALSE(document_.Option().BlankDone);
    EXPECT_FALSE(document_.Option().StandardAbsSet[0]);
    EXPECT_EQ(document_.Option().StandardAbs[0][0], 0);
    EXPECT_TRUE(document_.Option().StandardConcSet[0]);
    EXPECT_EQ(document_.Option().StandardConc[0], 6);
    EXPECT_EQ(document_.Option().StandardName[0], "low");
    EXPECT_EQ(document_.FileName(), File()) << "there were no records to lose";
  }
}

TEST_F(QuantitationDocumentTest, ASavedFileIsOpenedAgainAsItWas) {
  Calibrate();
  document_.SetStandardName(0, "low");
  document_.SetStandardNote(1, "from stock");
  document_.SetBlank(0, 50000, 120, 3);
  document_.SetBlank(2, 7, 8, 9);
  document_.SetBlankDone(true);
  Append(3);
  document_.SetRecordNote(2, "cold");
  ASSERT_TRUE(document_.SaveFile(File()));
  EXPECT_FALSE(document_.IsModified());
  EXPECT_EQ(ReadBytes(File()).size(), kOptionEnd + 3 * kRecord);
  QuantitationDocument other;
  ASSERT_TRUE(other.OpenFile(File()));
  EXPECT_EQ(other.Option(), document_.Option());
  EXPECT_EQ(other.Option().BlankGain, (std::array<std::int32_t, 4>{3, 0, 9, 0}));
  ASSERT_EQ(other.RecordCount(), 3);
  for (std::int32_t i = 0; i < 3; ++i) EXPECT_EQ(other.Record(i), document_.Record(i));
  EXPECT_EQ(other.Record(0).Conc, 6);
  EXPECT_EQ(other.FileName(), File());
  EXPECT_FALSE(other.IsModified());
}

TEST_F(QuantitationDocumentTest, AnOpenedCurveIsTheStoredOne) {
  Calibrate();
  std::string bytes = ReadBytes(File());
  // The stored slope stands 12028 bytes behind the header; 546 is no fit of these standards.
  bytes.replace(104 + 12028, 8, Double546());
  WriteBytes(File(), bytes);
  ASSERT_TRUE(document_.OpenFile(File()));
  EXPECT_EQ(document_.Option().CurveK, (K{1, 546, 0, 0}));
  EXPECT_EQ(document_.Refit(), FitOutcome::Accepted);
  EXPECT_EQ(document_.Option().CurveK, (K{1, 10, 0, 0}));
  EXPECT_TRUE(document_.IsModified());
}

TEST_F(QuantitationDocumentTest, ADocumentWithoutRecordsIsSavedForItsStandards) {
  Calibrate();
  EXPECT_EQ(ReadBytes(File()).size(), kOptionEnd);
  WriteBytes(File(), ReadBytes(File()).substr(0, kOptionEnd - 2));
  QuantitationDocument other;
  EXPECT_TRUE(other.OpenFile(File())) << "a file without the two spare bytes";
  EXPECT_EQ(other.RecordCount(), 0);
  EXPECT_EQ(other.CalcConc(0.5), 6);
}

TEST_F(QuantitationDocumentTest, NumbersBeyondAllRangesAreCarriedAndHarmless) {
  Calibrate();
  std::string bytes = ReadBytes(File());
  for (const std::size_t place : {12012u, 12016u, 12062u, 12354u}) bytes.replace(104 + place, 4, Long(99));
  WriteBytes(File(), bytes);
  ASSERT_TRUE(document_.OpenFile(File()));
  EXPECT_EQ(document_.Option().FittingMethod, 99);
  EXPECT_EQ(document_.StandardRows(), 20);
  EXPECT_EQ(document_.CalcConc(3), 0);
  EXPECT_EQ(document_.Refit(), FitOutcome::Typed) << "an unknown source fits nothing";
  ASSERT_TRUE(document_.SaveFile(File()));
  EXPECT_EQ(ReadBytes(File()), bytes);
  bytes.replace(104 + 12016, 4, Long(-5));
  WriteBytes(File(), bytes);
  ASSERT_TRUE(document_.OpenFile(File()));
  EXPECT_EQ(document_.StandardRows(), 0);
}

TEST_F(QuantitationDocumentTest, AFileThatCannotBeReadLeavesTheDocumentAsItWas) {
  Append(1);
  const QuaOption before = document_.Option();
  EXPECT_FALSE(document_.OpenFile(File()));
  EXPECT_EQ(document_.LastFault().Error, FileError::Missing);
  for (const std::string& bytes : {std::string(), HeaderBytes(1), HeaderBytes(3) + std::string(20000, ' ')}) {
    WriteBytes(File(), bytes);
    EXPECT_FALSE(document_.OpenFile(File()));
    EXPECT_EQ(document_.Option(), before);
    EXPECT_EQ(Names(), Texts{"row 0"});
    EXPECT_TRUE(document_.IsModified());
    EXPECT_EQ(document_.FileName(), "");
  }
}

TEST_F(QuantitationDocumentTest, AHalfLoadedDocumentIsSavedElsewhereOnly) {
  Calibrate();
  Append(3);
  ASSERT_TRUE(document_.SaveFile(File()));
  const std::string cut = ReadBytes(File()).substr(0, kOptionEnd + 3 * kRecord - 1);
  WriteBytes(File(), cut);
  EXPECT_FALSE(document_.OpenFile(File()));
  EXPECT_TRUE(document_.IsHalfLoaded());
  EXPECT_EQ(Names(), (Texts{"row 0", "row 1"}));
  EXPECT_EQ(document_.Option().TestRecordCount, 2);
  EXPECT_FALSE(document_.SaveFile(File()));
  EXPECT_FALSE(document_.SaveFile(folder_.Path("b.qua"))) << "nothing new in it";
  EXPECT_EQ(document_.LastFault().Error, FileError::HalfRead);
  document_.SetRecordNote(0, "new");
  EXPECT_FALSE(document_.SaveFile(folder_.Path("./a.qua")));
  EXPECT_EQ(ReadBytes(File()), cut);
  EXPECT_TRUE(document_.SaveFile(folder_.Path("b.qua")));
  EXPECT_FALSE(document_.IsHalfLoaded());
  EXPECT_FALSE(document_.IsModified());
}

// The curve of a file that had lost its only record was lost with it.
TEST_F(QuantitationDocumentTest, AFileThatLostAllItsRecordsStillHasItsCurve) {
  Calibrate();
  Append(1);
  ASSERT_TRUE(document_.SaveFile(File()));
  QuaOption saved = document_.Option();
  const std::string whole = ReadBytes(File());
  // The last byte of the record is gone; all of it; the two spare bytes in front of it as well.
  for (const std::size_t length : {kOptionEnd + kRecord - 1, kOptionEnd, kOptionEnd - 2}) {
    const std::string cut = whole.substr(0, length);
    WriteBytes(File(), cut);
    document_ = QuantitationDocument();
    EXPECT_FALSE(document_.OpenFile(File())) << length;
    EXPECT_EQ(document_.LastFault().Error, FileError::Damaged);
    EXPECT_EQ(document_.LastFault().Stated, 1);
    EXPECT_TRUE(document_.IsHalfLoaded()) << length;
    EXPECT_EQ(document_.FileName(), File());
    saved.TestRecordCount = 0;
    EXPECT_EQ(document_.Option(), saved) << length;
    EXPECT_NEAR(document_.CalcConc(0.5), 6, 1e-9);
    EXPECT_FALSE(document_.IsModified());
    document_.SetStandardNote(0, "new");
    EXPECT_FALSE(document_.SaveFile(File()));
    EXPECT_EQ(document_.LastFault().Error, FileError::HalfRead);
    EXPECT_EQ(ReadBytes(File()), cut);
    EXPECT_TRUE(document_.SaveFile(folder_.Path("b.qua")));
  }
}

TEST_F(QuantitationDocumentTest, AFileWithANegativeCountOrAPartOfItsOptionsIsRefused) {
  Calibrate();
  Append(1);
  ASSERT_TRUE(document_.SaveFile(File()));
  std::string bytes = ReadBytes(File());
  const QuaOption before = document_.Option();
  WriteBytes(File(), bytes.substr(0, 104 + 12476 - 1));
  EXPECT_FALSE(document_.OpenFile(File()));
  EXPECT_FALSE(document_.IsHalfLoaded());
  bytes.replace(104 + 12472, 4, Long(-1));
  WriteBytes(File(), bytes);
  EXPECT_FALSE(document_.OpenFile(File()));
  EXPECT_FALSE(document_.IsHalfLoaded());
  EXPECT_EQ(document_.Option(), before);
  EXPECT_EQ(Names(), Texts{"row 0"});
}

TEST_F(QuantitationDocumentTest, AFailedSaveKeepsTheMark) {
  Calibrate();
  document_.SetStandardName(0, "low");
  EXPECT_FALSE(document_.SaveFile(folder_.Path("none/a.qua")));
  EXPECT_TRUE(document_.IsModified());
  EXPECT_EQ(document_.FileName(), File());
}

TEST_F(QuantitationDocumentTest, CharactersWithoutAPlaceAreTold) {
  Append(1);
  document_.SetRecordName(0, "\u6BD4");
  ASSERT_TRUE(document_.SaveFile(File()));
  EXPECT_TRUE(document_.TextWasLost());
  document_.SetRecordName(0, "\u03BCg");
  ASSERT_TRUE(document_.SaveFile(File()));
  EXPECT_FALSE(document_.TextWasLost());
}

// A file of another program may hold the r of a fit that the typed coefficients took the place of.
TEST_F(QuantitationDocumentTest, TypedCoefficientsHaveTheRThatNothingWasFittedFor) {
  Calibrate();
  QuaOption option = document_.Option();
  option.CurveR = 0.98;
  EXPECT_EQ(CorrelationInForce(option), 0.98);
  option.CurveItem = 2;
  EXPECT_EQ(CorrelationInForce(option), 1.0);
  ASSERT_FALSE(SaveDataFile(QuaModule(), File(), option, 0, [](std::int32_t) { return QuaRecord{}; }));
  ASSERT_TRUE(document_.OpenFile(File()));
  const std::vector<FormulaPart> parts = document_.Formula(DisplayFormats::AtStart(0));
  EXPECT_NE(parts.back().Text.find("r = 1.000000"), std::string::npos) << parts.back().Text;
}

}  // namespace
}  // namespace spectrane
