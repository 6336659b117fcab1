// Quantitations in the whole main window, and what is left of them after a crash.

#include <map>

#include "app/ground/words.h"
#include "app/journalsfixture.h"
#include "modes/quantitation/quantitationsettings.h"
#include "modes/windows/frmqua.h"

namespace spectrane::testing_windows {
namespace {

/// Quantitations: standards and samples that the instrument measured, which no file has.
class FrmMainJournalsOfQuantitations : public FrmMainJournals {
 protected:
  static constexpr int kStandards = 2;

  FrmQua& Form() { return dynamic_cast<FrmQua&>(*Main->ActiveForm()); }
  void Insert(const char* sample) { ASSERT_TRUE(Instrument.Model().PutInBeam(sample, Time.NowMs())); }
  void Begin() {
    Settings.PutSetting(kQuantitationSection, "Fitting Line", "1");
    Settings.PutSetting(kQuantitationSection, "Sample Number", std::to_string(kStandards));
    Start();
    ConnectNow();
    InDialog("FrmQuaConfig", [](QWidget& dialog) { dialog.close(); });
    Choose(kNewQua);
    Insert("blank");
    Choose(kSetBlank);
    for (int row = 0; row < kStandards; ++row) {
      Insert(row == 0 ? "dye-1" : "dye-8");
      Form().MeasureStandard(row);
      Type("QuaConfigGrid", row, 3, row == 0 ? "1" : "9");
    }
    ASSERT_TRUE(Form().Document().Option().CurveValid);
  }
  void FitSampler() {
    Instrument.Model().FitSampler(true, Time.NowMs());
    InstrumentState& state = Main->Link().State;
    state.SamplerPresent = true;
    state.SamplerPositions.fill(false);
    const char* const dyes[] = {"dye-3", "dye-5", "dye-1"};
    for (int cell = 1; cell <= 3; ++cell) {
      state.SamplerPositions[static_cast<std::size_t>(cell)] = true;
      ASSERT_TRUE(Instrument.Model().FillCell(cell, dyes[cell - 1], Time.NowMs()));
    }
  }
  static void ExpectMeasured(const QuantitationDocument& measured, const QuantitationDocument& back,
                             int samples) {
    ASSERT_EQ(back.RecordCount(), samples);
    for (int i = 0; i < samples; ++i) EXPECT_EQ(back.Record(i), measured.Record(i)) << i;
    QuaOption wanted = measured.Option();
    wanted.TestRecordCount = samples;
    EXPECT_EQ(back.Option(), wanted);
  }
};

TEST_F(FrmMainJournalsOfQuantitations, D15_WhatWasMeasuredComesBack) {
  Begin();
  for (const char* dye : {"dye-3", "dye-5"}) {
    Insert(dye);
    Choose(kStartTest);
  }
  const QuantitationDocument measured = Form().Document();
  EXPECT_NE(measured.Record(0).Abs[0], measured.Record(1).Abs[0]);
  Die();
  StartAgain(QStringLiteral("Quantitation 1, 2 records\n"), Answer::Yes);
  ExpectMeasured(measured, Form().Document(), 2);
  EXPECT_TRUE(Form().isWindowModified());
  EXPECT_EQ(Form().OpenFileName(), QString());
  Boxes.ExpectSaveName(Words(1047), PathOf("back.qua"));
  Choose(kSave);
  EXPECT_TRUE(Journals().empty());
}

TEST_F(FrmMainJournalsOfQuantitations, D15_AtEachYieldOfARunOfTheSamplerItsRowsAreKept) {
  Begin();
  FitSampler();
  Choose(kSetBlank);
  std::map<int, Kept> kept;
  Loop.OnYield = [&] {
    const int rows = Form().Document().RecordCount();
    const Kept now = Journals();
    ASSERT_EQ(static_cast<int>(Only(now).RecordCount()), rows);
    if (Main->Link().State.RunUnderWay) kept[rows] = now;
  };
  Choose(kStartTest);
  Loop.OnYield = {};
  const QuantitationDocument measured = Form().Document();
  ASSERT_EQ(measured.RecordCount(), 3);
  EXPECT_NE(measured.Record(0).Abs[0], measured.Record(1).Abs[0]);
  ASSERT_EQ(kept.size(), 3u) << "before the first row, and between the rows";
  for (const int rows : {1, 2}) {
    DieWith(kept[rows]);
    StartAgain(QStringLiteral("Quantitation 1, %1 %2\n")
                   .arg(rows)
                   .arg(rows == 1 ? QStringLiteral("record") : QStringLiteral("records")),
               Answer::Yes);
    ExpectMeasured(measured, Form().Document(), rows);
  }
}

}  // namespace
}  // namespace spectrane::testing_windows
