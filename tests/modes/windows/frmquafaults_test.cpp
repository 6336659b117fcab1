// What may go wrong while a quantitation measures, and odd numbers.

#include <QClipboard>
#include <QComboBox>
#include <QFileInfo>

#include "app/ground/commands.h"
#include "files/quafile.h"
#include "modes/windows/frmquafixture.h"
#include "windowsupport/closing.h"

namespace spectrane::testing_windows {
namespace {

class QuaFaults : public QuaWindow {
 protected:
  /// Two wavelengths take the longest way through a sample.
  void OpenAtTwoWavelengths() {
    Settings.PutSetting("Quantitative Measurement", "WaveLength Number", "2");
    Settings.PutSetting("Quantitative Measurement", "WaveLength 2", "600");
    OpenWithCoefficients();
  }
  void OpenAgain(const std::function<void()>& open) {
    Loop.OnYield = {};
    delete Window.data();
    open();
  }
  /// Yields of `work`.
  int YieldsOf(const std::function<void()>& work) {
    Loop.Yields = 0;
    work();
    return Loop.Yields;
  }
  /// Does `act` at one yield of `work`.
  void AtYield(int yield, const std::function<void()>& act, const std::function<void()>& work) {
    Loop.Yields = 0;
    Loop.OnYield = [this, yield, &act] {
      if (Loop.Yields == yield) act();
    };
    work();
    Loop.OnYield = {};
  }
  void Reconnect() {
    Link.Connect.ReleaseConnection();
    ConnectNow();
  }
};

// ---- Close ----

class QuaCloses : public QuaFaults {
 protected:
  /// Closes a new window at every yield of `work`, after `prepare`, and says No to the save of what it has.
  void CloseAtEveryYield(const std::function<void()>& prepare, const std::function<void()>& work) {
    prepare();
    const int yields = YieldsOf(work);
    ASSERT_GT(yields, 5);
    for (int closeAt = 1; closeAt <= yields; ++closeAt) {
      SCOPED_TRACE(closeAt);
      OpenAgain(prepare);
      Window->setAttribute(Qt::WA_DeleteOnClose);
      int recordsThen = -1;
      AtYield(
          closeAt,
          [&] {
            Boxes.ExpectYesNo(Words(1211), Answer::Yes);
            EXPECT_FALSE(Window->close());
            recordsThen = Window->Document().RecordCount();
          },
          work);
      ASSERT_FALSE(Window.isNull());
      const int records = Window->Document().RecordCount();
      EXPECT_EQ(Records->model()->rowCount(), records) << "no row of a sample that came to nothing";
      EXPECT_GE(records, recordsThen);
      EXPECT_LE(records, recordsThen + 1) << "the sample under way is the last one";
      if (Window->IsWorkUnsaved()) Boxes.ExpectYesNoCancel(Words(1210), Answer::No);
      LetItClose(Window.data());
      EXPECT_TRUE(Window.isNull());
      EXPECT_TRUE(Boxes.AllAsked());
      EXPECT_FALSE(Link.State.RunUnderWay);
      EXPECT_FALSE(Link.State.InstrumentBusy);
      EXPECT_TRUE(Display.TimerOn);
      EXPECT_EQ(Main.RunDepth, 0);
    }
  }
};

TEST_F(QuaCloses, AtEveryYieldOfARunOfTheSampler) {
  FitSampler({1, 2, 3});
  CloseAtEveryYield(
      [this] {
        OpenWithCoefficients();
        Blank();
      },
      [this] { Window->mmuStartTest(); });
}

TEST_F(QuaCloses, AtEveryYieldOfABlank) {
  CloseAtEveryYield(
      [this] {
        OpenAtTwoWavelengths();
        ConnectNow();
      },
      [this] { Window->mmuOperationRezero(); });
}

TEST_F(QuaCloses, AtEveryYieldOfAStandard) {
  CloseAtEveryYield(
      [this] {
        Open();
        Blank();
        Insert("dye-3");
      },
      [this] { Window->MeasureStandard(0); });
}

TEST_F(QuaFaults, AStopInASampleKeepsTheRowsBeforeAndTheWindow) {
  OpenAtTwoWavelengths();
  FitSampler({1, 2, 3});
  Blank();
  // In the middle of the second sample, when its first reading stands in the grid.
  bool asked = false;
  Loop.OnYield = [&] {
    if (asked || Cell(Records, 1, kAbs).isEmpty()) return;
    asked = true;
    EXPECT_EQ(Cell(Records, 1, kName), QStringLiteral("Sampler Position 2"));
    Boxes.ExpectYesNo(Words(1211), Answer::Yes);
    EXPECT_FALSE(Window->close());
    Boxes.ExpectYesNoCancel(Words(1210), Answer::Cancel);
  };
  Window->mmuStartTest();
  LetItClose(Window.data());
  Loop.OnYield = {};
  ASSERT_FALSE(Window.isNull());
  EXPECT_EQ(Window->Document().RecordCount(), 1);
  EXPECT_EQ(Records->model()->rowCount(), 1) << "the sample that was begun is no record";
  Window->mmuStartTest();
  EXPECT_EQ(Records->model()->rowCount(), 4) << "the next run is whole";
}

// ---- The line ----

TEST_F(QuaFaults, ACablePulledAtAnyYieldOfASampleLeavesTheRowsBefore) {
  OpenAtTwoWavelengths();
  Blank();
  const int yields = YieldsOf([this] { Sample("dye-3"); });
  ASSERT_EQ(Records->model()->rowCount(), 1);
  const QuaRecord before = Window->Document().Record(0);
  // After the last one nothing is asked of the instrument any more.
  for (int pullAt = 1; pullAt < yields; ++pullAt) {
    SCOPED_TRACE(pullAt);
    Boxes.ExpectMessage(1045);
    AtYield(
        pullAt, [this] { PullCable(); }, [this] { Sample("dye-5"); });
    EXPECT_TRUE(Boxes.AllAsked()) << "one message, and no second one";
    EXPECT_EQ(Records->model()->rowCount(), 1);
    ASSERT_EQ(Window->Document().RecordCount(), 1);
    EXPECT_EQ(Window->Document().Record(0), before);
    EXPECT_FALSE(Window->RunsNow());
    Reconnect();
    Blank();
  }
  Sample("dye-5");
  EXPECT_EQ(Records->model()->rowCount(), 2) << "the window can still be used";
}

TEST_F(QuaFaults, ACablePulledInARunOfTheSamplerKeepsItsFirstRows) {
  OpenWithCoefficients();
  FitSampler({2, 4, 6});
  Blank();
  Loop.OnYield = [this] {
    if (Window->Document().RecordCount() == 2 && Records->model()->rowCount() == 3) PullCable();
  };
  Boxes.ExpectMessage(1045);
  Window->mmuStartTest();
  Loop.OnYield = {};
  ASSERT_EQ(Window->Document().RecordCount(), 2);
  EXPECT_EQ(Records->model()->rowCount(), 2);
  EXPECT_EQ(Cell(Records, 1, kName), QStringLiteral("Sampler Position 4"));
}

TEST_F(QuaFaults, ACablePulledInAStandardLeavesItUnmeasured) {
  Open();
  Blank();
  Insert("dye-3");
  const int yields = YieldsOf([this] { Window->MeasureStandard(0); });
  for (int pullAt = 1; pullAt < yields; ++pullAt) {
    SCOPED_TRACE(pullAt);
    Boxes.ExpectMessage(1045);
    AtYield(
        pullAt, [this] { PullCable(); }, [this] { Window->MeasureStandard(1); });
    EXPECT_TRUE(Boxes.AllAsked());
    EXPECT_TRUE(Window->Document().Option().StandardAbsSet[0]);
    EXPECT_FALSE(Window->Document().Option().StandardAbsSet[1]);
    EXPECT_EQ(Cell(Standards, 1, kAbs), QString());
    Reconnect();
    Blank();
  }
}

TEST_F(QuaFaults, ACablePulledInABlankLeavesNone) {
  OpenAtTwoWavelengths();
  Blank();
  const int yields = YieldsOf([this] { Window->mmuOperationRezero(); });
  for (int pullAt = 1; pullAt < yields; ++pullAt) {
    SCOPED_TRACE(pullAt);
    // The first yield comes before the question where the monochromator stands, which fails without a box.
    const bool inFirstQuestion = pullAt == 1;
    if (!inFirstQuestion) Boxes.ExpectMessage(1045);
    Display.Remark.clear();
    AtYield(
        pullAt, [this] { PullCable(); }, [this] { Window->mmuOperationRezero(); });
    EXPECT_TRUE(Boxes.AllAsked());
    EXPECT_EQ(Display.Remark, inFirstQuestion ? Words(1045).toStdString() : std::string());
    Boxes.ExpectMessage(1048);
    Reconnect();
    Window->mmuStartTest();
    EXPECT_EQ(Records->model()->rowCount(), 0);
    Blank();
  }
}

TEST_F(QuaFaults, AReadingWithoutItsLinesBecomesNoRecord) {
  OpenWithCoefficients();
  Blank();
  Sample("dye-3");
  ASSERT_EQ(Instrument.Faults().Add("ge", "1", "fewer-lines", {}), std::nullopt);
  Boxes.ExpectMessage(1045);
  Sample("dye-5");
  EXPECT_EQ(Window->Document().RecordCount(), 1);
  Sample("dye-5");
  EXPECT_EQ(Window->Document().RecordCount(), 2);
}

// ---- Numbers ----

TEST_F(QuaFaults, AConcentrationBeyondAllScalesIsRefusedByTheFit) {
  Open();
  Blank();
  TypeConc(0, "1e308");
  TypeConc(1, "1");
  EXPECT_EQ(Window->Document().Option().StandardConc[0], 1e308);
  Insert("dye-3");
  Click(Standards, 0, kAbs);
  Insert("dye-5");
  Boxes.ExpectMessage(1209);
  Click(Standards, 1, kAbs);
  EXPECT_FALSE(Window->Document().Option().CurveValid);
  EXPECT_EQ(Window->Document().Option().CurveK, (std::array<double, 4>{}));
  auto* const picture = Find<QuaLinePic>(*Window, "QuaLinePic");
  EXPECT_TRUE(picture->accessibleDescription().startsWith(QStringLiteral("The curve has no scale.")));
  EXPECT_FALSE(picture->grab().isNull());
  Boxes.ExpectMessage(1209);
  Window->mmuStartTest();
  EXPECT_EQ(Records->model()->rowCount(), 0);
}

TEST_F(QuaFaults, ZeroAndNegativeConcentrationsAreNumbersLikeOthers) {
  Open(3);
  Blank();
  MeasureStandards({{"blank", "0"}, {"dye-3", "-4"}, {"dye-5", "-8"}});
  EXPECT_TRUE(Window->Document().Option().CurveValid);
  EXPECT_NEAR(Window->Document().Option().CurveK[1], -10, 0.05);
  EXPECT_EQ(Cell(Standards, 1, kConc), QStringLiteral("-4.0000"));
  EXPECT_FALSE(Find<QuaLinePic>(*Window, "QuaLinePic")->grab().isNull());
}

TEST_F(QuaFaults, EqualAbsorbancesMakeNoCurve) {
  Open();
  Blank();
  TypeConc(0, "1");
  TypeConc(1, "2");
  Insert("dye-3");
  Click(Standards, 0, kAbs);
  Boxes.ExpectMessage(1209);
  Click(Standards, 1, kAbs);
  EXPECT_FALSE(Window->Document().Option().CurveValid);
  EXPECT_EQ(Cell(Standards, 1, kAbs), Cell(Standards, 0, kAbs)) << "the reading stays";
}

TEST_F(QuaFaults, AFitThatFailsWhileABlankClosesTheEditorIsToldOnce) {
  Open(3);
  Blank();
  MeasureStandards({{"dye-1", "1"}, {"dye-3", "4"}, {"dye-5", "8"}});
  Click(Standards, 1, kConc);
  ASSERT_NE(Editor("QuaConfigText"), nullptr);
  Editor("QuaConfigText")->selectAll();
  QTest::keyClicks(Editor("QuaConfigText"), QStringLiteral("100"));
  Boxes.ExpectMessage(1209);
  Window->mmuOperationRezero();
  QCoreApplication::processEvents();
  EXPECT_TRUE(Boxes.AllAsked());
  EXPECT_EQ(Window->Document().Option().StandardConc[1], 100);
  EXPECT_TRUE(Window->Test().BlankHolds()) << "the blank is none of the curve's";
}

TEST_F(QuaFaults, TheTableEndsWithTheTwentiethStandard) {
  Open(20);
  QString column;
  for (int row = 1; row <= 22; ++row) column += QString::number(row) + u'\n';
  QGuiApplication::clipboard()->setText(column);
  Standards->setFocus();
  Standards->setCurrentIndex(Standards->model()->index(0, kConc));
  QTest::keyClick(Standards, Qt::Key_V, Qt::ControlModifier);
  const QuaOption& option = Window->Document().Option();
  EXPECT_EQ(option.StandardConc[19], 20);
  EXPECT_FALSE(option.StandardConcSet[20]) << "the row behind belongs to the fit";
  EXPECT_EQ(option.StandardConc[20], 0);
  Window->MeasureStandard(20);
  EXPECT_EQ(Main.Runs, 0);
}

TEST_F(QuaFaults, AFileWithTwentyTwoStandardsHasNoCurve) {
  QuaOption option;
  option.SampleNumber = 22;
  option.WaveLengthNumber = 1;
  option.WaveLengthList.fill(546);
  option.CurveItem = 1;
  option.CurveValid = true;
  option.StandardAbsSet.fill(true);
  option.StandardConcSet.fill(true);
  ASSERT_FALSE(SaveDataFile(QuaModule(), Folder.Path("many.qua"), option, 0,
                            [](std::int32_t) -> QuaRecord { return {}; }));
  Open();
  ASSERT_TRUE(Window->mmuOpenFile(PathOf("many.qua")));
  EXPECT_EQ(Standards->model()->rowCount(), 20);
  EXPECT_TRUE(Find<QuaLinePic>(*Window, "QuaLinePic")
                  ->accessibleDescription()
                  .startsWith(QStringLiteral("No standards.")));
  Boxes.ExpectMessage(1209);
  Blank();
  EXPECT_FALSE(Window->Document().Option().CurveValid);
}

// ---- Files and options ----

TEST_F(QuaFaults, OptionsAloneAreNothingToSaveButOneConcentrationIs) {
  Open();
  InDialog("FrmQuaConfig", [](QWidget& dialog) {
    Find<QComboBox>(dialog, "ComboSampleNumber")->setCurrentIndex(6);
    QTest::keyClick(&dialog, Qt::Key_Return);
  });
  Window->ShowConfigWindow();
  EXPECT_EQ(Window->Document().StandardRows(), 7);
  EXPECT_FALSE(Window->isWindowModified());
  EXPECT_TRUE(Window->Offers(kSave));
  TypeConc(0, "1");
  EXPECT_TRUE(Window->isWindowModified());
  Boxes.ExpectYesNoCancel(Words(1210), Answer::Cancel);
  EXPECT_FALSE(Window->close());
}

class QuaFiles : public QuaFaults {
 protected:
  /// A saved quantitation with typed coefficients and three records; its last byte is cut off.
  std::string CutFile() {
    OpenWithCoefficients();
    Blank();
    for (const char* dye : {"dye-1", "dye-3", "dye-5"}) Sample(dye);
    Boxes.ExpectSaveName(Words(1047), PathOf("cut.qua"));
    EXPECT_TRUE(Window->mmuSaveFile());
    delete Window.data();
    std::string bytes = ReadBytes(Folder.Path("cut.qua"));
    EXPECT_EQ(bytes.size(), 12582u + 3 * 552);
    bytes.pop_back();
    WriteBytes(Folder.Path("cut.qua"), bytes);
    return bytes;
  }
};

TEST_F(QuaFiles, ACutFileShowsItsRecordsAndTheErrorOnce) {
  CutFile();
  Open();
  Boxes.ExpectWords(PathOf("cut.qua") + QStringLiteral(" Open File Error!"));
  EXPECT_FALSE(Window->mmuOpenFile(PathOf("cut.qua")));
  EXPECT_EQ(Boxes.Details, QStringLiteral("damaged: has 2 of the 3 records that it states"));
  ASSERT_EQ(Records->model()->rowCount(), 2);
  EXPECT_NEAR(Cell(Records, 1, kConc).toDouble(), 4.0, 0.05);
  EXPECT_EQ(Window->Document().Option().InputK[1], 10) << "the curve came with them";
  EXPECT_FALSE(Window->isWindowModified());
  EXPECT_TRUE(Window->close()) << "nothing is asked: nothing was changed";
}

TEST_F(QuaFiles, TheBlankOfAFileDoesNotHoldEvenWhereThereWasOne) {
  OpenWithCoefficients();
  Blank();
  Boxes.ExpectSaveName(Words(1047), PathOf("a.qua"));
  ASSERT_TRUE(Window->mmuSaveAsFile());
  ASSERT_TRUE(Window->Test().BlankHolds());
  ASSERT_TRUE(Window->mmuOpenFile(PathOf("a.qua")));
  EXPECT_TRUE(Window->Document().Option().BlankDone);
  Boxes.ExpectMessage(1048);
  Window->mmuStartTest();
  EXPECT_EQ(Window->Document().RecordCount(), 0);
}

TEST_F(QuaFiles, RecordsMeasuredIntoACutFileAreSavedElsewhere) {
  const std::string cut = CutFile();
  Open();
  Boxes.ExpectWords(PathOf("cut.qua") + QStringLiteral(" Open File Error!"));
  Window->mmuOpenFile(PathOf("cut.qua"));
  Link.Connect.ReleaseConnection();
  Blank();
  Sample("dye-7");
  ASSERT_EQ(Window->Document().RecordCount(), 3);
  Boxes.ExpectSaveName(Words(1047), PathOf("cut.qua"));
  Boxes.ExpectYesNo(PathOf("cut.qua") + QStringLiteral(" is exist, are you want to overwrite this file?"),
                    Answer::Yes);
  Boxes.ExpectWords(Words(1213));
  EXPECT_FALSE(Window->mmuSaveFile());
  EXPECT_EQ(ReadBytes(Folder.Path("cut.qua")), cut);
  EXPECT_TRUE(Window->isWindowModified());
  Boxes.ExpectSaveName(Words(1047), PathOf("new.qua"));
  EXPECT_TRUE(Window->mmuSaveFile());
  EXPECT_EQ(QFileInfo(PathOf("new.qua")).size(), 12582 + 3 * 552);
  EXPECT_FALSE(Window->isWindowModified());
}

TEST_F(QuaFiles, AnotherMethodMakesANewDocumentAfterTheQuestion) {
  OpenWithCoefficients();
  Blank();
  Sample("dye-3");
  Boxes.ExpectSaveName(Words(1047), PathOf("a.qua"));
  ASSERT_TRUE(Window->mmuSaveFile());
  const std::string saved = ReadBytes(Folder.Path("a.qua"));
  Boxes.ExpectYesNo(Words(1072), Answer::Yes);
  InDialog("FrmQuaConfig", [](QWidget& dialog) {
    Find<QComboBox>(dialog, "ComboFittingMethod")->setCurrentIndex(1);
    QTest::keyClick(&dialog, Qt::Key_Return);
  });
  Window->ShowConfigWindow();
  EXPECT_EQ(Records->model()->rowCount(), 0);
  EXPECT_EQ(Window->Document().Option().FittingMethod, 1);
  EXPECT_EQ(Window->OpenFileName(), QString()) << "the records of the file stay in it";
  EXPECT_EQ(Window->Caption(), QStringLiteral("Quantitation"));
  EXPECT_EQ(ReadBytes(Folder.Path("a.qua")), saved);
  EXPECT_TRUE(Window->Test().BlankHolds()) << "the blank does not depend on the method";
}

}  // namespace
}  // namespace spectrane::testing_windows
