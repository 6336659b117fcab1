#include <QClipboard>
#include <QComboBox>

#include <cmath>

#include "app/ground/commands.h"
#include "modes/windows/frmquaconfig.h"
#include "modes/windows/frmquafixture.h"
#include "windowsupport/latedialog.h"

namespace spectrane::testing_windows {
namespace {

TEST_F(QuaWindow, BeginsWithTheTableOfStandardsAndNoRecord) {
  Open(5);
  EXPECT_EQ(Window->windowTitle(), QStringLiteral("Quantitation[*]"));
  EXPECT_EQ(Window->CheckFileType(), 1);
  EXPECT_FALSE(Window->isWindowModified());
  EXPECT_FALSE(Window->IsWorkUnsaved());
  EXPECT_EQ(Standards->model()->rowCount(), 5);
  EXPECT_EQ(Records->model()->rowCount(), 0);
  const char* const headings[] = {"No.", "Name", "Absorbance(Abs)", "Conc.(mg/L)", "Note"};
  for (const QTableView* grid : {Standards, Records}) {
    ASSERT_EQ(grid->model()->columnCount(), 5);
    for (int i = 0; i < 5; ++i)
      EXPECT_EQ(grid->model()->headerData(i, Qt::Horizontal).toString(), QLatin1String(headings[i]));
  }
  ExpectNamesEverywhere(*Window);
}

TEST_F(QuaWindow, TwoWavelengthsHaveThreeColumnsOfAbsorbance) {
  Settings.PutSetting("Quantitative Measurement", "WaveLength Number", "2");
  Settings.PutSetting("Quantitative Measurement", "WaveLength 2", "600");
  Open();
  const char* const headings[] = {"No.",         "Name", "546.0nm", "600.0nm", "Absorbance(Abs)",
                                  "Conc.(mg/L)", "Note"};
  ASSERT_EQ(Records->model()->columnCount(), 7);
  for (int i = 0; i < 7; ++i)
    EXPECT_EQ(Records->model()->headerData(i, Qt::Horizontal).toString(), QLatin1String(headings[i]));
}

TEST_F(QuaWindow, EnterGoesDownAndTabToTheNextCellThatTakesText) {
  Open(3);
  TypeConc(0, "1.5");
  EXPECT_EQ(Cell(Standards, 0, kConc), QStringLiteral("1.5000"));
  EXPECT_EQ(Standards->currentIndex(), Standards->model()->index(1, kConc));
  QTest::keyClicks(Standards, QStringLiteral("2"));
  ASSERT_NE(Editor("QuaConfigText"), nullptr) << "typing opens the editor";
  QTest::keyClick(Editor("QuaConfigText"), Qt::Key_Tab);
  EXPECT_EQ(Standards->currentIndex(), Standards->model()->index(1, kNote));
  QTest::keyClick(Standards, Qt::Key_Tab);
  EXPECT_EQ(Standards->currentIndex(), Standards->model()->index(2, kName));
  QTest::keyClick(Standards, Qt::Key_Backtab);
  EXPECT_EQ(Standards->currentIndex(), Standards->model()->index(1, kNote));
  EXPECT_TRUE(Window->isWindowModified());
}

TEST_F(QuaWindow, AColumnOfConcentrationsIsPasted) {
  Open(4);
  QGuiApplication::clipboard()->setText(QStringLiteral("1\r\n2.5\r\nx\r\n4\r\n5\r\n"));
  Standards->setFocus();
  Standards->setCurrentIndex(Standards->model()->index(0, kConc));
  QTest::keyClick(Standards, Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(Window->Document().Option().StandardConc[1], 2.5);
  EXPECT_FALSE(Window->Document().Option().StandardConcSet[2]) << "what is no number is left out";
  EXPECT_EQ(Window->Document().Option().StandardConc[3], 4);
  EXPECT_EQ(Display.Remark, "\"x\" is no number.");
  EXPECT_FALSE(Window->Document().Option().StandardConcSet[4]) << "the table has four rows";
}

// A click opens the editor, and all lines of the column went into that one cell.
TEST_F(QuaWindow, AColumnIsPastedOverACellThatAClickHasOpened) {
  Open(4);
  Click(Standards, 1, kConc);
  ASSERT_NE(Editor("QuaConfigText"), nullptr);
  QTest::keyClicks(Editor("QuaConfigText"), QStringLiteral("99"));
  QGuiApplication::clipboard()->setText(QStringLiteral("1\r\n2.5\r\n"));
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_V, Qt::ControlModifier);
  QCoreApplication::processEvents();
  EXPECT_EQ(Editor("QuaConfigText"), nullptr);
  EXPECT_TRUE(Standards->hasFocus());
  const QuaOption& option = Window->Document().Option();
  EXPECT_FALSE(option.StandardConcSet[0]);
  EXPECT_EQ(option.StandardConc[1], 1) << "what was typed is not taken";
  EXPECT_EQ(option.StandardConc[2], 2.5);
  EXPECT_FALSE(option.StandardConcSet[3]);
  EXPECT_EQ(Display.Remark, "");

  Click(Standards, 3, kConc);
  QGuiApplication::clipboard()->setText(QStringLiteral("4\tdiluted"));
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_V, Qt::ControlModifier);
  QCoreApplication::processEvents();
  EXPECT_EQ(option.StandardConc[3], 4);
  EXPECT_EQ(option.StandardNote[3], "diluted") << "cells side by side";
}

TEST_F(QuaWindow, ASingleValueIsPastedIntoTheOpenCell) {
  Open();
  for (const char* text : {"2.5", "2.5\n", "2.5\r\n"}) {
    SCOPED_TRACE(text);
    Click(Standards, 0, kConc);
    ASSERT_NE(Editor("QuaConfigText"), nullptr);
    Editor("QuaConfigText")->setText(QStringLiteral("1"));
    QGuiApplication::clipboard()->setText(QLatin1String(text));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_V, Qt::ControlModifier);
    ASSERT_NE(Editor("QuaConfigText"), nullptr) << "it is still open";
    QTest::keyClick(Editor("QuaConfigText"), Qt::Key_Return);
    QCoreApplication::processEvents();
    EXPECT_EQ(Window->Document().Option().StandardConc[0], 12.5);
  }
}

// The headings were pasted as the first row, and every concentration stood one row too low.
TEST_F(QuaWindow, CopiedStandardsArePastedIntoAnotherDocumentAsTheyWere) {
  Open(4);
  const char* const texts[][3] = {{"low", "1.5", ""}, {"-2+3", "4", "=1+1"}, {"'high", "20", "third"}};
  for (int row = 0; row < 3; ++row) {
    int part = 0;
    for (const int column : {kName, kConc, kNote})
      Standards->model()->setData(Standards->model()->index(row, column), QLatin1String(texts[row][part++]));
  }
  const auto rows = [this] {
    std::vector<std::string> all;
    for (int row = 0; row < 4; ++row) {
      QStringList cells;
      for (int column = 0; column < 5; ++column) cells += Cell(Standards, row, column);
      all.push_back(cells.join(u'|').toStdString());
    }
    return all;
  };
  const std::vector<std::string> copied = {"1|low||1.5000|", "2|-2+3||4.0000|=1+1", "3|'high||20.000|third",
                                           "4||||"};
  ASSERT_EQ(rows(), copied);
  Standards->clearSelection();
  Standards->selectionModel()->select(
      QItemSelection(Standards->model()->index(0, 0), Standards->model()->index(2, 4)),
      QItemSelectionModel::Select);
  QTest::keyClick(Standards, Qt::Key_C, Qt::ControlModifier);
  for (const int column : {0, kName, kConc, kNote}) {
    SCOPED_TRACE(column);
    delete Window.data();
    Open(4);
    Click(Standards, 0, column);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_V, Qt::ControlModifier);
    QCoreApplication::processEvents();
    EXPECT_EQ(rows(), copied);
    EXPECT_EQ(Display.Remark, "");
  }
}

TEST_F(QuaWindow, ATypedTextThatIsNoNumberChangesNothing) {
  Open();
  TypeConc(0, "3");
  for (const char* text : {"abc", "NaN", "1e400", "1,5"}) {
    TypeConc(0, text);
    EXPECT_EQ(Window->Document().Option().StandardConc[0], 3) << text;
    EXPECT_EQ(Cell(Standards, 0, kConc), QStringLiteral("3.0000"));
  }
}

TEST_F(QuaWindow, AnEmptiedConcentrationIsTakenBack) {
  Open();
  TypeConc(0, "3");
  Click(Standards, 0, kConc);
  ASSERT_NE(Editor("QuaConfigText"), nullptr);
  Editor("QuaConfigText")->clear();
  QTest::keyClick(Editor("QuaConfigText"), Qt::Key_Return);
  EXPECT_FALSE(Window->Document().Option().StandardConcSet[0]);
  EXPECT_EQ(Cell(Standards, 0, kConc), QString());
  TypeConc(0, "4");
  Standards->setCurrentIndex(Standards->model()->index(0, kConc));
  QTest::keyClick(Standards, Qt::Key_Delete);
  EXPECT_FALSE(Window->Document().Option().StandardConcSet[0]);
}

TEST_F(QuaWindow, APasteOverCompleteStandardsHasOneOutcome) {
  Open(3);
  Blank();
  MeasureStandards({{"dye-1", "1"}, {"dye-3", "4"}, {"dye-5", "8"}});
  // In between, two of the three concentrations belong to no line.
  QGuiApplication::clipboard()->setText(QStringLiteral("1000\n4000\n8000\n"));
  Standards->setFocus();
  Standards->setCurrentIndex(Standards->model()->index(0, kConc));
  QTest::keyClick(Standards, Qt::Key_V, Qt::ControlModifier);
  QCoreApplication::processEvents();
  EXPECT_TRUE(Window->Document().Option().CurveValid);
  EXPECT_NEAR(Window->Document().Option().CurveK[1], 10000, 50);
}

TEST_F(QuaWindow, TheCurveStaysAsItIsWhileARunUsesIt) {
  Open();
  TypeConc(0, "3");
  const QModelIndex conc = Standards->model()->index(0, kConc);
  EXPECT_TRUE(conc.flags().testFlag(Qt::ItemIsEditable));
  ConnectNow();
  bool asked = false;
  Loop.OnYield = [&] {
    asked = asked || Window->RunsNow();
    EXPECT_FALSE(Standards->model()->setData(conc, QStringLiteral("9")));
  };
  Blank();
  Loop.OnYield = {};
  EXPECT_TRUE(asked);
  EXPECT_EQ(Window->Document().Option().StandardConc[0], 3);
}

TEST_F(QuaWindow, AClickOnTheAbsorbanceMeasuresTheStandard) {
  Open();
  Blank();
  Insert("dye-3");
  Click(Standards, 1, kAbs);
  EXPECT_TRUE(Window->Document().Option().StandardAbsSet[1]);
  EXPECT_FALSE(Window->Document().Option().StandardAbsSet[0]);
  EXPECT_EQ(Cell(Standards, 1, kAbs), QStringLiteral("0.400"));
  EXPECT_EQ(Cell(Standards, 0, kAbs), QString());
  EXPECT_EQ(Main.RunDepth, 0);
}

TEST_F(QuaWindow, AStandardWithoutABlankIsNotMeasured) {
  Open();
  ConnectNow();
  Boxes.ExpectMessage(1048);
  Click(Standards, 0, kAbs);
  EXPECT_FALSE(Window->Document().Option().StandardAbsSet[0]);
}

TEST_F(QuaWindow, ADyeSeriesGivesItsUnknownsAndComesBackFromItsFile) {
  Open(5);
  Blank();
  MeasureFiveStandards();
  ASSERT_TRUE(Window->Document().Option().CurveValid);
  EXPECT_GT(Window->Document().Option().CurveR, 0.999);
  for (const char* unknown : {"dye-2", "dye-4", "dye-6"}) Sample(unknown);
  ASSERT_EQ(Records->model()->rowCount(), 3);
  const double weighed[] = {2, 6, 10};
  for (int row = 0; row < 3; ++row) {
    EXPECT_NEAR(Window->Document().Record(row).Conc, weighed[row], 0.05);
    EXPECT_NEAR(Cell(Records, row, kConc).toDouble(), weighed[row], 0.05);
    EXPECT_EQ(Cell(Records, row, 0), QString::number(row + 1));
  }
  EXPECT_TRUE(Window->isWindowModified());

  Boxes.ExpectSaveName(Words(1047), PathOf("series.qua"));
  ASSERT_TRUE(Window->mmuSaveFile());
  EXPECT_FALSE(Window->isWindowModified());
  const QImage picture = Find<QuaLinePic>(*Window, "QuaLinePic")->grab().toImage();
  QStringList cells;
  for (const QTableView* grid : {Standards, Records})
    for (int row = 0; row < grid->model()->rowCount(); ++row)
      for (int column = 0; column < 5; ++column) cells += Cell(grid, row, column);
  const QSize size = Window->size();
  delete Window.data();
  Open(2);
  Window->resize(size);
  ASSERT_TRUE(Window->mmuOpenFile(PathOf("series.qua")));
  QStringList again;
  for (const QTableView* grid : {Standards, Records})
    for (int row = 0; row < grid->model()->rowCount(); ++row)
      for (int column = 0; column < 5; ++column) again += Cell(grid, row, column);
  EXPECT_EQ(again, cells);
  Standards->clearSelection();
  EXPECT_EQ(Find<QuaLinePic>(*Window, "QuaLinePic")->grab().toImage().size(), picture.size());
  EXPECT_FALSE(Window->Test().BlankHolds()) << "the blank of a file is none of today";
}

TEST_F(QuaWindow, ASampleBeyondTheStandardsIsMarked) {
  Open();
  Blank();
  TypeConc(0, "4");
  TypeConc(1, "8");
  Insert("dye-3");
  Click(Standards, 0, kAbs);
  Insert("dye-5");
  Click(Standards, 1, kAbs);
  Sample("dye-4");
  Sample("dye-8");
  const auto mark = [this](int row) {
    return Records->model()->index(row, kConc).data(Qt::AccessibleDescriptionRole).toString();
  };
  EXPECT_EQ(mark(0), QString());
  EXPECT_EQ(mark(1), QStringLiteral("Outside the range of the standards."));
}

TEST_F(QuaWindow, StartSaysWhatIsMissing) {
  Open();
  Boxes.ExpectMessage(1044);
  Window->mmuStartTest();
  ConnectNow();
  Boxes.ExpectMessage(1048);
  Window->mmuStartTest();
  Blank();
  Boxes.ExpectMessage(1209);
  Window->mmuStartTest();
  EXPECT_EQ(Records->model()->rowCount(), 0);
}

TEST_F(QuaWindow, ACablePulledInASampleLeavesTheRowsBefore) {
  OpenWithCoefficients();
  Blank();
  Sample("dye-3");
  ASSERT_EQ(Records->model()->rowCount(), 1);
  EXPECT_NEAR(Cell(Records, 0, kConc).toDouble(), 4.0, 0.05) << "ten times the absorbance";
  int yields = 0;
  Loop.OnYield = [&] {
    if (++yields == 3) PullCable();
  };
  Boxes.ExpectMessage(1045);
  Sample("dye-5");
  Loop.OnYield = {};
  EXPECT_EQ(Records->model()->rowCount(), 1) << "the record started does not count";
  EXPECT_EQ(Window->Document().RecordCount(), 1);
}

TEST_F(QuaWindow, TheRowOfASampleStandsThereWhileItIsMeasured) {
  OpenWithCoefficients();
  Blank();
  int rows = 0;
  Loop.OnYield = [&] { rows = std::max(rows, Records->model()->rowCount()); };
  Sample("dye-3");
  Loop.OnYield = {};
  EXPECT_EQ(rows, 1);
  EXPECT_EQ(Records->model()->rowCount(), 1);
}

TEST_F(QuaWindow, NothingElseBeginsDuringARun) {
  OpenWithCoefficients();
  Blank();
  Loop.OnYield = [this] {
    EXPECT_TRUE(Window->RunsNow());
    Window->mmuStartTest();
    Window->mmuOperationRezero();
    Window->MeasureStandard(0);
    Window->ShowConfigWindow();
    Window->mmuDeleteReport();
  };
  Sample("dye-3");
  Loop.OnYield = {};
  EXPECT_EQ(Records->model()->rowCount(), 1);
}

TEST_F(QuaWindow, TheSamplerFillsARowForEachPosition) {
  OpenWithCoefficients();
  FitSampler({2, 4});
  Blank();
  Window->mmuStartTest();
  ASSERT_EQ(Records->model()->rowCount(), 2);
  EXPECT_EQ(Cell(Records, 1, kName), QStringLiteral("Sampler Position 4"));
}

TEST_F(QuaWindow, WithTheSamplerAStandardIsAskedForItsPosition) {
  Open();
  FitSampler({1, 2});
  ASSERT_TRUE(Instrument.Model().FillCell(6, "dye-5", Time.NowMs()));
  Blank();
  WhenDialogComes("FrmSelectSampler", [](QWidget& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
  Click(Standards, 0, kAbs);
  EXPECT_FALSE(Window->Document().Option().StandardAbsSet[0]) << "nothing was chosen, nothing is measured";
  WhenDialogComes("FrmSelectSampler", [](QWidget& dialog) {
    Find<QComboBox>(dialog, "ComboSelectSampler")->setCurrentIndex(5);
    QTest::keyClick(&dialog, Qt::Key_Return);
  });
  Click(Standards, 0, kAbs);
  EXPECT_EQ(Instrument.Model().Cell(), 6);
  EXPECT_EQ(Cell(Standards, 0, kAbs), QStringLiteral("0.800"));
  EXPECT_EQ(Main.RunDepth, 0);
}

TEST_F(QuaWindow, ARecordIsRemovedAfterTheQuestion) {
  OpenWithCoefficients();
  Blank();
  for (const char* dye : {"dye-1", "dye-3", "dye-5"}) Sample(dye);
  Click(Records, 1, 0);
  const QString question = Words(1216) + QStringLiteral("<2>") + Words(1217);
  Boxes.ExpectYesNo(question, Answer::No);
  Window->mmuDeleteReport();
  EXPECT_EQ(Records->model()->rowCount(), 3);
  Boxes.ExpectYesNo(question, Answer::Yes);
  Window->mmuDeleteReport();
  ASSERT_EQ(Records->model()->rowCount(), 2);
  EXPECT_NEAR(Cell(Records, 1, kConc).toDouble(), 8.0, 0.05);
  EXPECT_EQ(Cell(Records, 1, 0), QStringLiteral("2"));
}

TEST_F(QuaWindow, OptionsThatChangeTheMethodAskBeforeRecordsGo) {
  OpenWithCoefficients();
  Blank();
  Sample("dye-3");
  Boxes.ExpectYesNo(Words(1072), Answer::No);
  InDialog("FrmQuaConfig", [this](QWidget& dialog) {
    auto* const option = static_cast<FrmQuaConfig*>(&dialog);
    for (QLineEdit* field : dialog.findChildren<QLineEdit*>()) {
      if (field->isEnabled() && field->text() == QStringLiteral("10")) field->setText(QStringLiteral("20"));
    }
    QTest::keyClick(&dialog, Qt::Key_Return);
    EXPECT_TRUE(dialog.isVisible()) << "No leaves the dialog open";
    option->reject();
  });
  Window->ShowConfigWindow();
  EXPECT_EQ(Records->model()->rowCount(), 1);
  EXPECT_EQ(Window->Document().Option().InputK[1], 10);
}

TEST_F(QuaWindow, APictureIsRefusedInItsWords) {
  Open();
  Boxes.ExpectMessage(1046);
  Window->mmuFileOutputBMP();
}

TEST_F(QuaWindow, ASelectedStandardIsStressedAndAMarkChoosesItsRow) {
  Open(3);
  auto* const picture = Find<QuaLinePic>(*Window, "QuaLinePic");
  Click(Standards, 2, 0);
  EXPECT_EQ(picture->SelectedRow(), 2);
  emit picture->MarkChosen(1);
  EXPECT_EQ(Standards->currentIndex().row(), 1);
  EXPECT_EQ(picture->SelectedRow(), 1);
}

TEST_F(QuaWindow, AnEditorThatIsOpenIsTakenBeforeASave) {
  OpenWithCoefficients();
  Blank();
  Sample("dye-3");
  Click(Records, 0, kNote);
  ASSERT_NE(Editor("RecordText"), nullptr);
  QTest::keyClicks(Editor("RecordText"), QStringLiteral("fresh"));
  Boxes.ExpectSaveName(Words(1047), PathOf("a.qua"));
  ASSERT_TRUE(Window->mmuSaveFile());
  EXPECT_EQ(Window->Document().Record(0).Note, "fresh");
  EXPECT_FALSE(Window->isWindowModified());
}

TEST_F(QuaWindow, ADamagedFileIsToldOnceAndWhatCanBeReadIsShown) {
  Open();
  WriteBytes(PathOf("bad.qua").toStdString(), "nonsense");
  Boxes.ExpectWords(PathOf("bad.qua") + Words(1214));
  EXPECT_FALSE(Window->mmuOpenFile(PathOf("bad.qua")));
}

}  // namespace
}  // namespace spectrane::testing_windows
