#include <QAbstractButton>
#include <QTableView>

#include <filesystem>
#include <map>

#include "app/ground/words.h"
#include "app/journalsfixture.h"
#include "files/samplefiles.h"
#include "modes/windows/frmbasic.h"
#include "modes/windows/frmqua.h"
#include "modes/windows/frmts.h"
#include "spectrum/windows/frmwlsver2.h"
#include "windowsupport/badplaces.h"

namespace spectrane::testing_windows {
namespace {

constexpr int kSaveFirst = 1210;
constexpr int kScanOver = 926;

TEST_F(FrmMainJournals, D15_RowsOfACrashComeBackAsUnsavedOnes) {
  FrmBasic* const before = Photometry(3);
  const PhotometryDocument measured = before->Document();
  Die();
  StartAgain(QStringLiteral("Photometry 1, 3 records\n"), Answer::Yes);
  ASSERT_EQ(WindowCount(), 1);
  const PhotometryDocument& back = Basic().Document();
  ASSERT_EQ(back.RecordCount(), 3);
  for (int row = 0; row < 3; ++row) EXPECT_EQ(back.Record(row), measured.Record(row)) << row;
  EXPECT_EQ(Basic().Caption(), QStringLiteral("Photometry 1"));
  EXPECT_TRUE(Basic().isWindowModified());
  EXPECT_EQ(Basic().OpenFileName(), QString());
  // They go on like any others.
  ConnectNow();
  Choose(kSetBlank);
  Measure(1);
  EXPECT_EQ(Only(Journals()).RecordCount(), 4u);
  Boxes.ExpectSaveName(Words(1193), PathOf("back.bas"));
  Choose(kSave);
  EXPECT_TRUE(Journals().empty());
  Restart();
  EXPECT_EQ(WindowCount(), 0) << "nothing is asked any more";
}

TEST_F(FrmMainJournals, D15_EachRowIsKeptBeforeTheNextCommand) {
  Photometry(0);
  EXPECT_TRUE(Journals().empty()) << "nothing is lost yet";
  for (std::size_t row = 1; row <= 3; ++row) {
    Measure(1);
    EXPECT_EQ(Only(Journals()).RecordCount(), row);
  }
}

TEST_F(FrmMainJournals, D15_ANoIsForGood) {
  Photometry(2);
  Die();
  StartAgain(QStringLiteral("Photometry 1, 2 records\n"), Answer::No);
  EXPECT_EQ(WindowCount(), 0);
  EXPECT_TRUE(Journals().empty());
  Restart();
}

TEST_F(FrmMainJournals, D15_ABoxThatIsClosedAsksAgainAtTheNextStart) {
  Photometry(1);
  Die();
  const Kept kept = Journals();
  StartAgain(QStringLiteral("Photometry 1, 1 record\n"), Answer::Cancel);
  EXPECT_EQ(WindowCount(), 0);
  Main.reset();
  EXPECT_EQ(Journals(), kept);
  StartAgain(QStringLiteral("Photometry 1, 1 record\n"), Answer::Yes);
  EXPECT_EQ(Basic().Document().RecordCount(), 1);
}

TEST_F(FrmMainJournals, D15_NoSearchForTheInstrumentBeginsBehindTheQuestion) {
  Photometry(1);
  Die();
  for (const QString& file : {QString(), CopyOfExample("photometry.bas")}) {
    bool searches = true;
    StartAgain(QStringLiteral("Photometry 1, 1 record\n"), Answer::Cancel, file,
               [&] { searches = ConnectTimer().isActive(); });
    EXPECT_FALSE(searches);
    EXPECT_EQ(ConnectWaited(), file.isEmpty()) << "who opens a file did not ask for the instrument";
    Main.reset();
  }
}

TEST_F(FrmMainJournals, D15_OneQuestionForAllDocumentsInTheirOrder) {
  Photometry(2);
  NewPhotometry();
  Choose(kSetBlank);
  Measure(1);
  Die();
  StartAgain(QStringLiteral("Photometry 1, 2 records\nPhotometry 2, 1 record\n"), Answer::Yes);
  EXPECT_EQ(WindowCount(), 2);
  EXPECT_EQ(Basic().Caption(), QStringLiteral("Photometry 2"));
  // A new one does not take the name of one that came back.
  EXPECT_EQ(NewPhotometry()->Caption(), QStringLiteral("Photometry 3"));
}

TEST_F(FrmMainJournals, D15_ACrashBeforeTheFirstSaveOfWhatCameBackLosesNothingEither) {
  Photometry(2);
  Die();
  StartAgain(QStringLiteral("Photometry 1, 2 records\n"), Answer::Yes);
  Die();
  StartAgain(QStringLiteral("Photometry 1, 2 records\n"), Answer::Yes);
  EXPECT_EQ(Basic().Document().RecordCount(), 2);
}

TEST_F(FrmMainJournals, D15_TheFileIsNeverTouchedAndItsNameKnown) {
  const QString path = CopyOfExample("photometry.bas");
  const std::string file = ReadBytes(path.toStdString());
  Start(path);
  const int rows = Basic().Document().RecordCount();
  EXPECT_TRUE(Journals().empty());
  Type("DataGrid", 0, 5, "after the break");
  Die();
  StartAgain(path + QStringLiteral(", %1 records\n").arg(rows), Answer::Yes);
  EXPECT_EQ(ReadBytes(path.toStdString()), file);
  EXPECT_EQ(Basic().OpenFileName(), path);
  EXPECT_EQ(Basic().Caption(), QStringLiteral("photometry.bas"));
  EXPECT_EQ(Basic().Document().RecordNote(0), "after the break");
  EXPECT_TRUE(Basic().isWindowModified());
  // Nobody has written it since: it is saved without a question.
  Choose(kSave);
  EXPECT_NE(ReadBytes(path.toStdString()), file);
  EXPECT_TRUE(Journals().empty());
}

TEST_F(FrmMainJournals, D15_AFileThatChangedSinceIsReplacedOnAYesAlone) {
  const QString path = CopyOfExample("photometry.bas");
  Start(path);
  const int rows = Basic().Document().RecordCount();
  Type("DataGrid", 0, 5, "mine");
  Die();
  const std::string newer = ReadBytes(path.toStdString()) + "somebody else's";
  WriteBytes(path.toStdString(), newer);
  StartAgain(path + QStringLiteral(", %1 records (the file has changed since)\n").arg(rows), Answer::Yes);
  Boxes.ExpectYesNo(path + u' ' + Words(1212), Answer::No);
  Choose(kSave);
  EXPECT_EQ(ReadBytes(path.toStdString()), newer);
  EXPECT_FALSE(Journals().empty());
}

TEST_F(FrmMainJournals, D15_TheFileOnTheCommandLineIsShownOnceOnly) {
  const QString path = CopyOfExample("photometry.bas");
  Start(path);
  Type("DataGrid", 0, 5, "mine");
  const int rows = Basic().Document().RecordCount();
  Die();
  Boxes.ExpectYesNoCancel(
      QStringLiteral("The program ended before this was saved:\n\n%1, %2 records\n\nBring it back? No "
                     "gives it up, Cancel asks again at the next start.")
          .arg(path)
          .arg(rows),
      Answer::Yes);
  Boxes.ExpectWords(u'<' + path + QStringLiteral(">") + Words(1218));
  Start(path);
  EXPECT_EQ(WindowCount(), 1);
  EXPECT_EQ(Basic().Document().RecordNote(0), "mine");
}

TEST_F(FrmMainJournals, AClosedDocumentLeavesNothing) {
  Photometry(2);
  Boxes.ExpectYesNoCancel(Words(kSaveFirst), Answer::Cancel);
  CloseActive();
  EXPECT_EQ(Only(Journals()).RecordCount(), 2u);
  auto* const rows = Main->ActiveForm()->findChild<QAbstractItemView*>(QStringLiteral("DataGrid"))->model();
  Boxes.ExpectYesNoCancel(Words(kSaveFirst), Answer::No);
  CloseActive();
  EXPECT_TRUE(Journals().empty());
  // What still changes in a window that is about to go is not wanted either.
  EXPECT_TRUE(rows->setData(rows->index(0, 5), QStringLiteral("late")));
  QCoreApplication::processEvents();
  EXPECT_TRUE(Journals().empty());
}

TEST_F(FrmMainJournals, TheEndOfTheProgramOnPurposeLeavesNothing) {
  Photometry(1);
  constexpr int kQuit = 1103;
  Boxes.ExpectYesNo(Words(kQuit), Answer::Yes);
  Boxes.ExpectYesNoCancel(Words(kSaveFirst), Answer::Cancel);
  EXPECT_FALSE(Main->close());
  EXPECT_FALSE(Journals().empty());
  Boxes.ExpectYesNo(Words(kQuit), Answer::Yes);
  Boxes.ExpectYesNoCancel(Words(kSaveFirst), Answer::No);
  EXPECT_TRUE(Main->close());
  EXPECT_TRUE(Journals().empty());
}

TEST_F(FrmMainJournals, D10_ASaveThatFailsKeepsTheJournal) {
  Photometry(2);
  const Kept kept = Journals();
  Boxes.ExpectSaveName(Words(1193), PathOf("full.bas"));
  Boxes.ExpectWords(Words(1213));
  {
    const FullDisk full(100);
    Choose(kSave);
  }
  EXPECT_EQ(Journals(), kept);
  Boxes.ExpectSaveName(Words(1193), PathOf("full.bas"));
  Choose(kSaveAs);
  EXPECT_TRUE(Journals().empty());
}

TEST_F(FrmMainJournals, WhatWasRemovedDoesNotComeBackAndWhatWasTypedDoes) {
  FrmBasic* window = Photometry(3);
  Type("DataGrid", 2, 5, "third");
  window->findChild<QAbstractItemView*>(QStringLiteral("DataGrid"))
      ->setCurrentIndex(
          window->findChild<QAbstractItemView*>(QStringLiteral("DataGrid"))->model()->index(0, 0));
  Boxes.ExpectYesNo(Words(1216) + QStringLiteral("<1>") + Words(1217), Answer::Yes);
  Choose(kDeleteRecord);
  const PhotometryDocument left = window->Document();
  Die();
  StartAgain(QStringLiteral("Photometry 1, 2 records\n"), Answer::Yes);
  ASSERT_EQ(Basic().Document().RecordCount(), 2);
  EXPECT_EQ(Basic().Document().Record(0), left.Record(0));
  EXPECT_EQ(Basic().Document().RecordNote(1), "third");
}

TEST_F(FrmMainJournals, TheLastRowTakesTheJournalAlong) {
  Photometry(1);
  Boxes.ExpectYesNo(Words(1216) + QStringLiteral("<1>") + Words(1217), Answer::Yes);
  Choose(kDeleteRecord);
  EXPECT_TRUE(Journals().empty());
}

TEST_F(FrmMainJournals, ADiskThatTakesNothingStopsNothingAndIsToldOnce) {
  WriteBytes(JournalFolder(), "in the way");
  FrmBasic* window = Photometry(1);
  EXPECT_EQ(window->Document().RecordCount(), 1);
  EXPECT_EQ(Remark().substr(0, 52), "Unsaved work is not kept for the case of a crash: No");
  Measure(1);
  EXPECT_EQ(window->Document().RecordCount(), 2);
  EXPECT_EQ(Remark().find("Unsaved work"), std::string::npos);
  EXPECT_EQ(ReadBytes(JournalFolder()), "in the way");
}

TEST_F(FrmMainJournals, W01_AnotherCopyThatLivesIsNotAskedAbout) {
  Photometry(1);
  const Kept kept = Journals();
  {
    FrmMain second({Ports, Time, Loop, Turn, Settings, Folder.Path(), &Boxes, {}});
    WhenDialog("FrmNew", [](QWidget& guide) { guide.close(); });
    second.ShowStored();
    auto* open = second.findChild<QTimer*>(QStringLiteral("TimerFileOpen"));
    ASSERT_TRUE(QTest::qWaitFor([open] { return !open->isActive(); }));
    second.findChild<QTimer*>(QStringLiteral("TimerConnect"))->stop();
    EXPECT_FALSE(second.ActiveForm());
  }
  EXPECT_EQ(Journals(), kept);
}

TEST_F(FrmMainJournals, AKindThatThisProgramHasNoWindowForIsLeftAlone) {
  Photometry(1);
  Kept kept = Journals();
  Journal journal = Only(kept);
  journal.Head.FileType = 77;
  kept.begin()->second = std::string(JournalOpening()) + JournalHeadEntry(journal.Head, false);
  DieWith(kept);
  Start();
  Main.reset();
  EXPECT_EQ(Journals(), kept);
}

/// A kind of document, a file of it, and a change that a file would miss.
struct KeptKind {
  const char* Name;
  const char* File;
  void (*Change)(FrmMain& main);
};

void TypeIn(FrmMain& main, const char* grid, int column) {
  auto* view = main.ActiveForm()->findChild<QAbstractItemView*>(QLatin1String(grid));
  ASSERT_TRUE(view);
  ASSERT_TRUE(view->model()->setData(view->model()->index(0, column), QStringLiteral("changed")));
}

const KeptKind kKeptKinds[] = {
    {"Photometry", "photometry.bas", [](FrmMain& main) { TypeIn(main, "DataGrid", 5); }},
    {"QuantitationRecord", "dye.qua", [](FrmMain& main) { TypeIn(main, "RecordGrid", 1); }},
    {"QuantitationStandard", "dye.qua", [](FrmMain& main) { TypeIn(main, "QuaConfigGrid", 1); }},
    {"Multi", "multi.mul", [](FrmMain& main) { TypeIn(main, "DataGrid", 1); }},
    {"DNA", "nucleic.dna", [](FrmMain& main) { TypeIn(main, "DataGrid", 1); }},
    {"Spectrum", "holmium.wls",
     [](FrmMain& main) {
       InDialog("FrmWLSConfig", [](QWidget& dialog) {
         QTest::mouseClick(Find<QAbstractButton>(dialog, "OptionTrans"), Qt::LeftButton);
         QTest::mouseClick(Find<QAbstractButton>(dialog, "OKCmd"), Qt::LeftButton);
       });
       main.ActiveForm()->ShowConfigWindow();
     }},
    {"ProcessedSpectrum", "holmium-processed.wls",
     [](FrmMain& main) {
       auto& window = dynamic_cast<FrmWLSVer2&>(*main.ActiveForm());
       ASSERT_TRUE(window.SetWLSRecord(3, 500.25, 12.5, 0.90309));
       ASSERT_TRUE(window.SetWLSRecordNo(window.GetRecordNo()));
     }},
};

class FrmMainJournalsOfKinds : public FrmMainJournals, public ::testing::WithParamInterface<KeptKind> {};

TEST_P(FrmMainJournalsOfKinds, D15_ComesBackAsItWas) {
  const QString path = CopyOfExample(GetParam().File);
  const std::string file = ReadBytes(path.toStdString());
  Start(path);
  GetParam().Change(*Main);
  ASSERT_TRUE(Main->ActiveForm()->isWindowModified());
  const Kept kept = Journals();
  const Journal journal = Only(kept);
  Die();
  StartAgain(path + QStringLiteral(", %1 records\n").arg(journal.RecordCount()), Answer::Yes);
  ASSERT_EQ(WindowCount(), 1);
  EXPECT_TRUE(Main->ActiveForm()->isWindowModified());
  EXPECT_EQ(Main->ActiveForm()->OpenFileName(), path);
  // The journal goes on, and found nothing in the document that it did not say already.
  EXPECT_TRUE(Journals() == kept) << Journals().size();
  EXPECT_EQ(ReadBytes(path.toStdString()), file);
  Choose(kSave);
  EXPECT_TRUE(Journals().empty());
  const std::string saved = ReadBytes(path.toStdString());
  EXPECT_EQ(saved.size(), file.size());
  EXPECT_NE(saved, file);
  EXPECT_EQ(saved.substr(saved.size() - journal.Records.size()), journal.Records);
}

INSTANTIATE_TEST_SUITE_P(All, FrmMainJournalsOfKinds, ::testing::ValuesIn(kKeptKinds), NameOfRow<KeptKind>);

/// Time scans: the points of a test that runs count as well.
class FrmMainJournalsOfScans : public FrmMainJournals {
 protected:
  FrmTS& Scan() { return dynamic_cast<FrmTS&>(*Main->ActiveForm()); }
  void Begin() {
    Settings.PutSetting(kTimeScanSection, "Start Second", "0");
    Settings.PutSetting(kTimeScanSection, "End Second", "5");
    Settings.PutSetting(kTimeScanSection, "Interval Second", "3");
    Start();
    ConnectNow();
    InDialog("FrmTSConfig", [](QWidget& dialog) { dialog.close(); });
    Choose(kNewTS);
    Choose(kSetBlank);
  }
};

TEST_F(FrmMainJournalsOfScans, D15_AtEachYieldThePointsAreKept) {
  Begin();
  std::map<int, Kept> kept;
  int looked = 0;
  Loop.OnYield = [&] {
    const int points = Scan().Document().DataCount();
    const Kept now = Journals();
    ASSERT_EQ(now.empty() ? 0 : static_cast<int>(Only(now).RecordCount()), points);
    ++looked;
    if (points > 0) kept[points] = now;
  };
  Boxes.ExpectYesNo(Words(kScanOver), Answer::No);
  Choose(kStartTest);
  Loop.OnYield = {};
  const TimeScanDocument measured = Scan().Document();
  ASSERT_EQ(measured.DataCount(), 6);
  EXPECT_GT(looked, 12);
  ASSERT_EQ(kept.size(), 6u);
  for (const auto& [points, journals] : kept) {
    DieWith(journals);
    StartAgain(QStringLiteral("Kinetics 1, %1 %2\n")
                   .arg(points)
                   .arg(points == 1 ? QStringLiteral("record") : QStringLiteral("records")),
               Answer::Yes);
    const TimeScanDocument& back = Scan().Document();
    ASSERT_EQ(back.DataCount(), points);
    for (int i = 0; i < points; ++i) EXPECT_EQ(back.Point(i), measured.Point(i)) << i;
    EXPECT_EQ(back.PointWavelength(), measured.PointWavelength());
    EXPECT_EQ(back.Option().FullEnergy, measured.Option().FullEnergy);
    EXPECT_EQ(back.Option().DarkEnergy, measured.Option().DarkEnergy);
    EXPECT_TRUE(Scan().isWindowModified());
    EXPECT_EQ(Scan().DataTable()->Grid(0)->model()->rowCount(), points);
  }
}

TEST_F(FrmMainJournalsOfScans, TheNextTestTakesTheJournalOfTheLastOneAlong) {
  Begin();
  Boxes.ExpectYesNo(Words(kScanOver), Answer::No);
  Choose(kStartTest);
  EXPECT_EQ(Only(Journals()).RecordCount(), 6u);
  bool empty = false;
  Loop.OnYield = [&] { empty = empty || Journals().empty(); };
  Boxes.ExpectYesNo(Words(kScanOver), Answer::Yes);
  Boxes.ExpectSaveName(Words(980), PathOf("scan.tis"));
  Choose(kStartTest);
  Loop.OnYield = {};
  EXPECT_TRUE(empty);
  EXPECT_TRUE(Journals().empty());
}

}  // namespace
}  // namespace spectrane::testing_windows
