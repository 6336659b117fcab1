#include <QClipboard>

#include "modes/windows/basictable.h"
#include "modes/windows/frmbasicfixture.h"

namespace spectrane::testing_windows {
namespace {

TEST_F(BasicWindow, F2OpensTheNoteAndEnterTakesIt) {
  OpenWithBlank();
  Measure(2);
  TypeNote(0, "standard A");
  QTest::keyClick(Editor(), Qt::Key_Return);
  EXPECT_EQ(Editor(), nullptr);
  EXPECT_EQ(Cell(0, 5), QStringLiteral("standard A"));
  EXPECT_EQ(Window->Document().RecordNote(0), "standard A");
}

TEST_F(BasicWindow, EscLeavesTheNoteAsItWas) {
  OpenWithBlank();
  Measure(1);
  TypeNote(0, "kept");
  QTest::keyClick(Editor(), Qt::Key_Return);
  TypeNote(0, "dropped");
  QTest::keyClick(Editor(), Qt::Key_Escape);
  EXPECT_EQ(Editor(), nullptr);
  EXPECT_EQ(Cell(0, 5), QStringLiteral("kept"));
}

TEST_F(BasicWindow, TypingOpensTheNoteOfTheRowFromAnyColumn) {
  OpenWithBlank();
  Measure(2);
  Grid->setCurrentIndex(Grid->model()->index(0, 2));
  QTest::keyClick(Grid, Qt::Key_X);
  ASSERT_NE(Editor(), nullptr);
  EXPECT_EQ(Editor()->text(), QStringLiteral("x"));
  QTest::keyClick(Editor(), Qt::Key_Return);
  EXPECT_EQ(Cell(0, 5), QStringLiteral("x"));
}

TEST_F(BasicWindow, WhatIsPastedIntoAnOpenNoteGoesThereWhole) {
  OpenWithBlank();
  Measure(2);
  TypeNote(0, "a");
  QGuiApplication::clipboard()->setText(QStringLiteral("b\nc\td"));
  QTest::keyClick(Editor(), Qt::Key_V, Qt::ControlModifier);
  ASSERT_NE(Editor(), nullptr);
  QTest::keyClick(Editor(), Qt::Key_Return);
  EXPECT_EQ(Cell(0, 5), QStringLiteral("ab c d"));
  EXPECT_EQ(Cell(1, 5), QString());
}

TEST_F(BasicWindow, ADoubleClickOpensTheNote) {
  OpenWithBlank();
  Measure(1);
  const QPoint inNote = Grid->visualRect(Grid->model()->index(0, 5)).center();
  QTest::mouseClick(Grid->viewport(), Qt::LeftButton, {}, inNote);
  QTest::mouseDClick(Grid->viewport(), Qt::LeftButton, {}, inNote);
  EXPECT_NE(Editor(), nullptr);
}

TEST_F(BasicWindow, AFigureCannotBeEdited) {
  OpenWithBlank();
  Measure(1);
  const QPoint inFigure = Grid->visualRect(Grid->model()->index(0, 2)).center();
  QTest::mouseClick(Grid->viewport(), Qt::LeftButton, {}, inFigure);
  QTest::mouseDClick(Grid->viewport(), Qt::LeftButton, {}, inFigure);
  EXPECT_EQ(Editor(), nullptr);
  EXPECT_FALSE(Grid->model()->setData(Grid->model()->index(0, 2), QStringLiteral("1")));
}

TEST_F(BasicWindow, AnEditorThatLosesTheFocusKeepsItsText) {
  OpenWithBlank();
  Measure(1);
  TypeNote(0, "clicked away");
  Grid->setFocus();
  QCoreApplication::processEvents();
  EXPECT_EQ(Editor(), nullptr);
  EXPECT_EQ(Cell(0, 5), QStringLiteral("clicked away"));
}

TEST_F(BasicWindow, TabTakesTheNoteAndStaysInItsRow) {
  OpenWithBlank();
  Measure(2);
  TypeNote(0, "tabbed");
  QTest::keyClick(Editor(), Qt::Key_Tab);
  EXPECT_EQ(Editor(), nullptr);
  EXPECT_EQ(Cell(0, 5), QStringLiteral("tabbed"));
  EXPECT_EQ(Grid->currentIndex().row(), 0);
}

TEST_F(BasicWindow, ANoteTypedInARunStaysInItsRow) {
  FitSampler({1, 2, 3});
  OpenWithBlank();
  Loop.OnYield = [this] {
    if (Rows() == 1 && !Editor()) TypeNote(0, "typed ");
    if (Rows() == 2 && Editor() && !Editor()->text().endsWith(u'n'))
      QTest::keyClicks(Editor(), QStringLiteral("on"));
  };
  Window->mmuStartTest();
  Loop.OnYield = {};
  ASSERT_EQ(Rows(), 3);
  ASSERT_NE(Editor(), nullptr);
  Window->CommitEditors();
  EXPECT_EQ(Cell(0, 5), QStringLiteral("typed on"));
  EXPECT_EQ(Cell(1, 5), QStringLiteral("Sampler Position 2"));
  EXPECT_EQ(Cell(2, 5), QStringLiteral("Sampler Position 3"));
}

TEST_F(BasicWindow, SaveTakesTheTextOfAnOpenEditor) {
  OpenWithBlank();
  Measure(1);
  TypeNote(0, "unfinished");
  SaveTo(PathOf("a.bas"));
  EXPECT_EQ(Editor(), nullptr);
  PhotometryDocument read;
  ASSERT_TRUE(read.OpenFile(Folder.Path("a.bas")));
  EXPECT_EQ(read.RecordNote(0), "unfinished");
}

TEST_F(BasicWindow, DeleteTakesTheTextOfAnOpenEditor) {
  OpenWithBlank();
  Measure(1);
  TypeNote(0, "unfinished");
  Boxes.ExpectYesNo(QStringLiteral("Are you sure to remove Record <1>from this file?"), Answer::No,
                    [this] { EXPECT_EQ(Cell(0, 5), QStringLiteral("unfinished")); });
  Window->mmuDeleteReport();
  EXPECT_EQ(Editor(), nullptr);
}

TEST_F(BasicWindow, AStartTakesTheTextOfAnOpenEditor) {
  OpenWithBlank();
  Measure(1);
  TypeNote(0, "unfinished");
  Measure(1);
  EXPECT_EQ(Cell(0, 5), QStringLiteral("unfinished"));
  EXPECT_EQ(Editor(), nullptr);
  EXPECT_EQ(Grid->currentIndex().row(), 1);
}

TEST_F(BasicWindow, CloseTakesTheTextOfAnOpenEditor) {
  OpenWithBlank();
  Measure(1);
  SaveTo(PathOf("a.bas"));
  TypeNote(0, "late");
  Boxes.ExpectYesNoCancel(Words(1210), Answer::Yes);
  EXPECT_TRUE(Window->close());
  PhotometryDocument read;
  ASSERT_TRUE(read.OpenFile(Folder.Path("a.bas")));
  EXPECT_EQ(read.RecordNote(0), "late");
}

TEST_F(BasicWindow, ANoteIsCutAtTheFieldOfTheFile) {
  OpenWithBlank();
  Measure(1);
  const QString longNote = QString(300, u'µ');
  ASSERT_TRUE(Grid->model()->setData(Grid->model()->index(0, 5), longNote));
  EXPECT_EQ(Cell(0, 5), QString(256, u'µ'));
  SaveTo(PathOf("a.bas"));
  PhotometryDocument read;
  ASSERT_TRUE(read.OpenFile(Folder.Path("a.bas")));
  EXPECT_EQ(QString::fromStdString(read.RecordNote(0)), QString(256, u'µ'))
      << "the grid shows what the file has";
}

TEST(FitNote, MakesOneLine) {
  EXPECT_EQ(FitNote(QStringLiteral("a\nb\tc\rd")), QStringLiteral("a b c d"));
  EXPECT_EQ(FitNote(QString()), QString());
  // A character outside the basic plane counts once, as in the file.
  const QString flask = QString::fromUtf8("\xF0\x9F\xA7\xAA");
  EXPECT_EQ(FitNote(flask.repeated(257)), flask.repeated(256));
}

}  // namespace
}  // namespace spectrane::testing_windows
