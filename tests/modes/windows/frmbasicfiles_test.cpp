#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <filesystem>

#include "files/filesupport.h"
#include "modes/windows/frmbasicfixture.h"

namespace spectrane::testing_windows {
namespace {

TEST_F(BasicWindow, SaveAsAddsTheEndingAndNamesTheWindow) {
  OpenWithBlank();
  Measure(2);
  SaveTo(PathOf("day"));
  const QString path = PathOf("day.bas");
  EXPECT_EQ(Window->OpenFileName(), path);
  EXPECT_EQ(Window->Caption(), QStringLiteral("day.bas"));
  EXPECT_FALSE(Window->isWindowModified());
  EXPECT_EQ(Main.Files, QStringList{path});
  EXPECT_EQ(QFileInfo(path).size(), 492 + 2 * 276);
}

TEST_F(BasicWindow, SaveAsThatIsLeftSavesNothing) {
  OpenWithBlank();
  Measure(1);
  Boxes.ExpectSaveName(Words(1193), {});
  EXPECT_FALSE(Window->mmuSaveAsFile());
  EXPECT_TRUE(Window->isWindowModified());
  EXPECT_EQ(Window->OpenFileName(), QString());
}

TEST_F(BasicWindow, SaveAsAsksBeforeItOverwrites) {
  OpenWithBlank();
  Measure(1);
  const QString path = PathOf("old.bas");
  WriteBytes(path.toStdString(), "somebody's");
  for (const Answer answer : {Answer::No, Answer::Yes}) {
    Boxes.ExpectSaveName(Words(1193), path);
    Boxes.ExpectYesNo(path + QStringLiteral(" is exist, are you want to overwrite this file?"), answer);
    EXPECT_EQ(Window->mmuSaveAsFile(), answer == Answer::Yes);
    EXPECT_EQ(QFileInfo(path).size(), answer == Answer::Yes ? 492 + 276 : 10);
  }
}

TEST_F(BasicWindow, ASaveThatFailsKeepsTheMark) {
  OpenWithBlank();
  Measure(1);
  ASSERT_TRUE(QDir().mkpath(PathOf("folder.bas/inside")));
  Boxes.ExpectSaveName(Words(1193), PathOf("folder.bas"));
  Boxes.ExpectYesNo(PathOf("folder.bas") + QStringLiteral(" is exist, are you want to overwrite this file?"),
                    Answer::Yes);
  Boxes.ExpectWords(Words(1213));
  EXPECT_FALSE(Window->mmuSaveFile());
  EXPECT_FALSE(Boxes.Details.isEmpty());
  EXPECT_TRUE(Window->isWindowModified());
  Boxes.ExpectSaveName(Words(1193), PathOf("missing/a.bas"));
  Boxes.ExpectWords(Words(1213));
  EXPECT_FALSE(Window->mmuSaveFile());
  EXPECT_TRUE(Window->isWindowModified());
  EXPECT_EQ(Window->OpenFileName(), QString());
  EXPECT_TRUE(Main.Files.isEmpty());
}

TEST_F(BasicWindow, AnEmptyWindowHasNothingToSave) {
  Open();
  Boxes.ExpectSaveName(Words(1193), PathOf("a.bas"));
  Boxes.ExpectWords(Words(1213));
  EXPECT_FALSE(Window->mmuSaveFile());
  EXPECT_FALSE(QFileInfo::exists(PathOf("a.bas")));
}

TEST_F(BasicWindow, SaveInTheMiddleOfASaveDoesNothing) {
  OpenWithBlank();
  Measure(1);
  Boxes.ExpectSaveName(Words(1193), PathOf("a.bas"), [this] {
    EXPECT_FALSE(Window->mmuSaveFile());
    EXPECT_FALSE(Window->mmuSaveAsFile());
    EXPECT_FALSE(Window->close()) << "the dialog would go on over a window that is gone";
  });
  EXPECT_TRUE(Window->mmuSaveFile());
}

TEST_F(BasicWindow, AFileThatSomebodyChangedIsAskedFor) {
  OpenWithBlank();
  Measure(1);
  SaveTo(PathOf("a.bas"));
  WriteBytes(Folder.Path("a.bas"), "somebody else's");
  Measure(1);
  Boxes.ExpectYesNo(PathOf("a.bas") + QStringLiteral(" is exist, are you want to overwrite this file?"),
                    Answer::No);
  EXPECT_FALSE(Window->mmuSaveFile());
  EXPECT_EQ(ReadBytes(Folder.Path("a.bas")), "somebody else's");
}

// A backup put back, another program's save through a new name: same size, and whoever wants can set the
// time.
TEST_F(BasicWindow, D09_AFileOfTheSameSizeAndTimeInItsPlaceIsAskedFor) {
  OpenWithBlank();
  Measure(1);
  SaveTo(PathOf("a.bas"));
  const std::string path = Folder.Path("a.bas");
  const std::string ours = ReadBytes(path);
  const auto time = std::filesystem::last_write_time(path);
  const std::string theirs(ours.size(), 't');
  WriteBytes(Folder.Path("theirs"), theirs);
  std::filesystem::rename(Folder.Path("theirs"), path);
  std::filesystem::last_write_time(path, time);
  TypeNote(0, "Q");
  const QString question =
      PathOf("a.bas") + QStringLiteral(" is exist, are you want to overwrite this file?");
  Boxes.ExpectYesNo(question, Answer::No);
  EXPECT_FALSE(Window->mmuSaveFile());
  EXPECT_EQ(ReadBytes(path), theirs);
  EXPECT_TRUE(Window->isWindowModified());
  Boxes.ExpectYesNo(question, Answer::Yes);
  EXPECT_TRUE(Window->mmuSaveFile());
  EXPECT_NE(ReadBytes(path), theirs);
  // Its own save is a new file as well, and no reason to ask.
  for (int i = 0; i < 2; ++i) {
    TypeNote(0, "R");
    EXPECT_TRUE(Window->mmuSaveFile());
  }
}

TEST_F(BasicWindow, WhatWasSavedOpensAgain) {
  OpenWithBlank();
  Insert("filter-0.3");
  Measure(2);
  TypeNote(1, "");
  Editor()->insert(QStringLiteral("Aγ 5 µm"));
  QTest::keyClick(Editor(), Qt::Key_Return);
  SaveTo(PathOf("a.bas"));
  EXPECT_EQ(Display.Remark, "Saved. Characters that the file has no place for stand there as \"?\".");
  QStringList before;
  for (int column = 0; column < 5; ++column) before.append(Cell(1, column));
  delete Window.data();
  Open();
  EXPECT_TRUE(Window->mmuOpenFile(PathOf("a.bas")));
  ASSERT_EQ(Rows(), 2);
  for (int column = 0; column < 5; ++column) EXPECT_EQ(Cell(1, column), before[column]);
  EXPECT_EQ(Cell(1, 5), QStringLiteral("A? 5 µm"));
  EXPECT_FALSE(Window->isWindowModified());
  EXPECT_EQ(Window->OpenFileName(), PathOf("a.bas"));
}

TEST_F(BasicWindow, AFileWithoutRowsOpensEmpty) {
  WriteBytes(Folder.Path("none.bas"), BasicFileBytes(0, 0));
  Open();
  EXPECT_TRUE(Window->mmuOpenFile(PathOf("none.bas")));
  EXPECT_EQ(Rows(), 0);
}

TEST_F(BasicWindow, ACutFileShowsItsRowsAndTheErrorOnce) {
  const std::string whole = BasicFileBytes(3, 3);
  WriteBytes(Folder.Path("cut.bas"), whole.substr(0, whole.size() - 1));
  Open();
  Boxes.ExpectWords(PathOf("cut.bas") + QStringLiteral(" Open File Error!"));
  EXPECT_FALSE(Window->mmuOpenFile(PathOf("cut.bas")));
  EXPECT_EQ(Boxes.Details, QStringLiteral("damaged: has 2 of the 3 records that it states"));
  ASSERT_EQ(Rows(), 2);
  EXPECT_EQ(Cell(0, 5), QStringLiteral("row 0"));
  EXPECT_FALSE(Window->isWindowModified());
  EXPECT_TRUE(Window->close()) << "nothing is asked: nothing was changed";
}

TEST_F(BasicWindow, RowsMeasuredIntoACutFileAreSavedElsewhere) {
  const std::string whole = BasicFileBytes(3, 3);
  const std::string cut = whole.substr(0, whole.size() - 1);
  WriteBytes(Folder.Path("cut.bas"), cut);
  OpenWithBlank();
  Boxes.ExpectWords(PathOf("cut.bas") + QStringLiteral(" Open File Error!"));
  Window->mmuOpenFile(PathOf("cut.bas"));
  Measure(1);
  // Its own name is refused ...
  Boxes.ExpectSaveName(Words(1193), PathOf("cut.bas"));
  Boxes.ExpectYesNo(PathOf("cut.bas") + QStringLiteral(" is exist, are you want to overwrite this file?"),
                    Answer::Yes);
  Boxes.ExpectWords(Words(1213));
  EXPECT_FALSE(Window->mmuSaveFile());
  EXPECT_EQ(ReadBytes(Folder.Path("cut.bas")), cut);
  EXPECT_TRUE(Window->isWindowModified());
  // ... another one is not.
  SaveTo(PathOf("new.bas"));
  EXPECT_EQ(QFileInfo(PathOf("new.bas")).size(), 492 + 3 * 276);
  EXPECT_FALSE(Window->isWindowModified());
}

TEST_F(BasicWindow, AFileThatIsNoneLeavesTheWindowEmpty) {
  WriteBytes(Folder.Path("no.bas"), "no data file");
  Open();
  Boxes.ExpectWords(PathOf("no.bas") + QStringLiteral(" Open File Error!"));
  EXPECT_FALSE(Window->mmuOpenFile(PathOf("no.bas")));
  EXPECT_EQ(Rows(), 0);
  EXPECT_EQ(Window->OpenFileName(), QString());
}

TEST_F(BasicWindow, ClosingAsksToSave) {
  OpenWithBlank();
  Measure(1);
  Boxes.ExpectYesNoCancel(Words(1210), Answer::Cancel);
  EXPECT_FALSE(Window->close());
  EXPECT_TRUE(Window->isVisible());
  Boxes.ExpectYesNoCancel(Words(1210), Answer::Yes);
  Boxes.ExpectSaveName(Words(1193), {});
  EXPECT_FALSE(Window->close()) << "the save was left, so the rows still have no file";
  Boxes.ExpectYesNoCancel(Words(1210), Answer::Yes);
  Boxes.ExpectSaveName(Words(1193), PathOf("a.bas"));
  EXPECT_TRUE(Window->close());
  EXPECT_TRUE(QFileInfo::exists(PathOf("a.bas")));
}

TEST_F(BasicWindow, ClosingWithoutSavingWritesNothing) {
  OpenWithBlank();
  Measure(1);
  Boxes.ExpectYesNoCancel(Words(1210), Answer::No);
  EXPECT_TRUE(Window->close());
  EXPECT_TRUE(QDir(QString::fromStdString(Folder.Path())).entryList({QStringLiteral("*.bas")}).isEmpty());
}

}  // namespace
}  // namespace spectrane::testing_windows
