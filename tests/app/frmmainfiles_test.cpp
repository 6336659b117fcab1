#include <QMenu>
#include <QMimeData>
#include <QTableView>
#include <QTest>

#include "app/framefixture.h"
#include "app/ground/words.h"
#include "files/filesupport.h"
#include "modes/windows/frmqua.h"

namespace spectrane {
namespace {

using testing_windows::Find;
using testing_windows::InDialog;
using FrmMainFiles = testing_windows::FrameFixture;

TEST_F(FrmMainFiles, AFileOfTheCommandLineOpensAndNothingConnects) {
  const QString path = WriteFile("day.bas", QByteArray::fromStdString(BasicFileBytes(3, 3)));
  Start(path);
  ASSERT_EQ(WindowCount(), 1);
  EXPECT_EQ(Main->ActiveForm()->OpenFileName(), path);
  EXPECT_EQ(Main->ActiveForm()->Caption(), QStringLiteral("day.bas"));
  EXPECT_FALSE(ConnectWaited());
  EXPECT_EQ(Stored("File", "Open File Path"), path.toStdString());
}

TEST_F(FrmMainFiles, AFileThatCannotBeOpenedLeavesEverythingElseAlone) {
  const QString good = WriteFile("good.bas", QByteArray::fromStdString(BasicFileBytes(2, 2)));
  Start(good);
  struct Case {
    const char* Name;
    std::string Bytes;
    const char* Words;
  };
  const Case cases[] = {
      {"empty.bas", "", " Open File Error!"},
      {"short.bas", std::string(103, 'x'), " Open File Error!"},
      {"foreign.bas", std::string(4000, 'x'), " Open File Error!"},
      {"baseline.bsl", HeaderBytes(6), " Open File Error!"},
  };
  for (const Case& each : cases) {
    const QString path = WriteFile(each.Name, QByteArray::fromStdString(each.Bytes));
    Boxes.ExpectWords(QString::fromLatin1(each.Words));
    EXPECT_FALSE(Main->OpenDataFile(path)) << each.Name;
    EXPECT_THAT(Boxes.Details.toStdString(), ::testing::HasSubstr(each.Name));
    EXPECT_EQ(WindowCount(), 1) << each.Name;
    EXPECT_EQ(Main->ActiveForm()->OpenFileName(), good);
  }
}

TEST_F(FrmMainFiles, UnknownKindsAreNamedSo) {
  Start();
  for (const int type : {0, 7, 8, 9, 10, 13, -1}) {
    const QString path = WriteFile("kind.dat", QByteArray::fromStdString(HeaderBytes(type)));
    Boxes.ExpectMessage(1106);
    EXPECT_FALSE(Main->OpenDataFile(path)) << type;
  }
}

TEST_F(FrmMainFiles, AMissingFileAFolderAndAPipeCannotBeOpened) {
  Start();
  Boxes.ExpectWords(Words(1214));
  EXPECT_FALSE(Main->OpenDataFile(PathOf("nothing.bas")));
  Boxes.ExpectWords(Words(1214));
  EXPECT_FALSE(Main->OpenDataFile(QString::fromStdString(Folder.Path())));
  EXPECT_EQ(WindowCount(), 0);
}

TEST_F(FrmMainFiles, ABaselineChosenInTheOpenDialogHasItsOwnWords) {
  Start();
  const QString path = WriteFile("system.bsl", QByteArray::fromStdString(HeaderBytes(6)));
  Boxes.ExpectOpenName(Words(1104), path);
  Boxes.ExpectMessage(1105);
  Choose(kOpen);
}

TEST_F(FrmMainFiles, OpenDialogBeginsWhereTheLastFileWas) {
  const QString path = WriteFile("day.bas", QByteArray::fromStdString(BasicFileBytes(1, 1)));
  Start(path);
  Boxes.ExpectOpenName(Words(1104), {});
  Choose(kOpen);
  EXPECT_EQ(Boxes.BeganWith, path);
}

TEST_F(FrmMainFiles, AFileThatIsOpenIsActivatedAndSaidSo) {
  const QString path = WriteFile("day.bas", QByteArray::fromStdString(BasicFileBytes(1, 1)));
  Start(path);
  DocumentWindow* first = Main->ActiveForm();
  NewPhotometry();
  Boxes.ExpectWords(u'<' + path + QStringLiteral(">File is already opened!"));
  EXPECT_FALSE(Main->OpenDataFile(path));
  EXPECT_EQ(Main->ActiveForm(), first);
  EXPECT_EQ(WindowCount(), 2);
}

TEST_F(FrmMainFiles, AnOpenDialogComesBeforeAnyFile) {
  const QString path = WriteFile("day.bas", QByteArray::fromStdString(BasicFileBytes(1, 1)));
  Start();
  Boxes.ExpectWords(u'<' + path + QStringLiteral("> Open File Error!\nPlease Close the dialog [New File]!"));
  InDialog("FrmNew", [&](QWidget& guide) {
    EXPECT_FALSE(Main->OpenDataFile(path));
    guide.close();
  });
  Choose(kNewFileGuide);
  EXPECT_EQ(WindowCount(), 0);
}

TEST_F(FrmMainFiles, DroppedFilesOpen) {
  const QString path = WriteFile("day.bas", QByteArray::fromStdString(BasicFileBytes(1, 1)));
  Start();
  QMimeData data;
  data.setUrls({QUrl::fromLocalFile(path)});
  QDragEnterEvent enter(QPoint(300, 300), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QCoreApplication::sendEvent(Main.get(), &enter);
  EXPECT_TRUE(enter.isAccepted());
  QDropEvent drop(QPointF(300, 300), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QCoreApplication::sendEvent(Main.get(), &drop);
  EXPECT_TRUE(QTest::qWaitFor([this] { return WindowCount() == 1; }));
}

TEST_F(FrmMainFiles, RecentFilesLeadTheirListAndMissingOnesAreGrey) {
  const QString a = WriteFile("a.bas", QByteArray::fromStdString(BasicFileBytes(1, 1)));
  const QString b = WriteFile("b.bas", QByteArray::fromStdString(BasicFileBytes(1, 1)));
  Start(a);
  ASSERT_TRUE(Main->OpenDataFile(b));
  QFile::remove(a);
  auto* menu = Main->findChild<QMenu*>(QStringLiteral("Menu101"));
  emit menu->aboutToShow();
  const auto* first = Main->findChild<QAction*>(QStringLiteral("Recent1"));
  const auto* second = Main->findChild<QAction*>(QStringLiteral("Recent2"));
  ASSERT_TRUE(first && second);
  EXPECT_TRUE(first->text().endsWith(QStringLiteral("b.bas")));
  EXPECT_TRUE(first->isEnabled());
  EXPECT_TRUE(second->text().endsWith(QStringLiteral("a.bas")));
  EXPECT_FALSE(second->isEnabled());
  EXPECT_EQ(menu->actions().last(), Main->ActionOf(kExit));
}

TEST_F(FrmMainFiles, ClosingAsksOnlyWhenAChildIsOpen) {
  Start();
  NewPhotometry();
  Boxes.ExpectYesNo(QStringLiteral("Are you sure to QUIT the program?"), Answer::No);
  EXPECT_FALSE(Main->close());
  EXPECT_TRUE(Main->isVisible());
  EXPECT_EQ(WindowCount(), 1);
  Choose(kClose);
  EXPECT_TRUE(Main->close());
}

TEST_F(FrmMainFiles, ClosingReleasesTheInstrumentAndStoresTheWindow) {
  Start();
  ConnectNow();
  Main->showNormal();
  Main->resize(700, 500);
  QCoreApplication::processEvents();
  std::vector<std::string> commands;
  Instrument.OnExchange = [&](const ExchangeRecord& record) { commands.push_back(record.Request); };
  EXPECT_TRUE(Main->close());
  EXPECT_EQ(commands, (std::vector<std::string>{"getwl", "quit"}));
  EXPECT_FALSE(Main->Link().State.PortOpen);
  EXPECT_EQ(Stored("Main Window", "Windows States"), "0");
  EXPECT_EQ(Stored("Main Window", "Windows Width"), "700");
  EXPECT_EQ(Stored("Main Window", "Windows Height"), "500");
  Restart();
  EXPECT_FALSE(Main->isMaximized());
  EXPECT_EQ(Main->size(), QSize(700, 500));
}

TEST_F(FrmMainFiles, ADeadLinkKeepsTheProgramOpenUntilRelease) {
  Start();
  ConnectNow();
  Ports.Current->HangUp();
  EXPECT_FALSE(Main->close());
  EXPECT_TRUE(Main->isVisible());
  EXPECT_THAT(Remark(), ::testing::HasSubstr("Communication error.Please check instrument link cable."));
  EXPECT_THAT(Remark(), ::testing::HasSubstr("Release"));
  EXPECT_TRUE(Main->SampleTimer().isActive());
  Main->Link().Live.SampleTimerTick();
  Main->Link().Live.SampleTimerTick();
  EXPECT_THAT(Remark(), ::testing::HasSubstr("Release (Shift+F9) lets the program close."))
      << "with every reading that fails";
  Choose(kRelease);
  EXPECT_TRUE(Main->close());
}

TEST_F(FrmMainFiles, UnsavedRowsAreAskedForAtTheEndAndCancelKeepsAll) {
  Start();
  ConnectNow();
  NewPhotometry();
  Choose(kSetBlank);
  Choose(kStartTest);
  Boxes.ExpectYesNo(Words(1103), Answer::Yes);
  Boxes.ExpectYesNoCancel(Words(1210), Answer::Cancel);
  EXPECT_FALSE(Main->close());
  EXPECT_TRUE(Main->Link().State.InstrumentConnected);
  EXPECT_EQ(WindowCount(), 1);
  Boxes.ExpectYesNo(Words(1103), Answer::Yes);
  Boxes.ExpectYesNoCancel(Words(1210), Answer::Yes);
  Boxes.ExpectSaveName(Words(1193), PathOf("kept.bas"));
  EXPECT_TRUE(Main->close());
  EXPECT_TRUE(QFile::exists(PathOf("kept.bas")));
}

TEST_F(FrmMainFiles, ClosingDuringARunWaitsForItsEnd) {
  Start();
  ConnectNow();
  NewPhotometry();
  Choose(kSetBlank);
  bool asked = false;
  Loop.OnYield = [&] {
    if (asked || !Main->ActiveForm() || !Main->ActiveForm()->RunsNow()) return;
    asked = true;
    Boxes.ExpectYesNo(Words(1211), Answer::Yes);
    EXPECT_FALSE(Main->close());
    EXPECT_TRUE(Main->isVisible());
  };
  Choose(kStartTest);
  Loop.OnYield = nullptr;
  ASSERT_TRUE(asked);
  EXPECT_TRUE(Main->isVisible());
  Boxes.ExpectYesNo(Words(1103), Answer::Yes);
  if (Main->ActiveForm()->IsWorkUnsaved()) Boxes.ExpectYesNoCancel(Words(1210), Answer::No);
  EXPECT_TRUE(QTest::qWaitFor([this] { return !Main->isVisible(); }));
}

// Two windows, of which the first one measures and Close All comes in; what is asked then gets this answer.
class FrmMainCloseAll : public testing_windows::FrameFixture {
 protected:
  void CloseAllInARun(Answer stop) {
    Start();
    ConnectNow();
    DocumentWindow* const first = NewPhotometry();
    NewPhotometry();
    Main->findChild<Workspace*>()->Activate(first);
    Choose(kSetBlank);
    bool asked = false;
    Loop.OnYield = [&] {
      if (!first->RunsNow() || std::exchange(asked, true)) return;
      Boxes.ExpectYesNo(Words(1211), stop);
      EXPECT_TRUE(IsEnabled(kCloseAll));
      Main->RunCommand(kCloseAll);
      EXPECT_TRUE(Boxes.AllAsked());
      // Once told it is not asked again.
      if (stop == Answer::Yes) Main->RunCommand(kCloseAll);
    };
    Choose(kStartTest);
    Loop.OnYield = nullptr;
    Main->SampleTimer().stop();
    EXPECT_TRUE(asked);
  }
};

// The windows behind the one that measures stayed.
TEST_F(FrmMainCloseAll, GoesOnBehindAWindowThatClosesAtTheEndOfItsRun) {
  CloseAllInARun(Answer::Yes);
  if (Main->ActiveForm()->IsWorkUnsaved()) Boxes.ExpectYesNoCancel(Words(1210), Answer::No);
  EXPECT_TRUE(QTest::qWaitFor([this] { return WindowCount() == 0; }));
  EXPECT_TRUE(Main->isVisible());
}

TEST_F(FrmMainCloseAll, EndsWhenTheRunIsToGoOn) {
  CloseAllInARun(Answer::No);
  QTest::qWait(20);
  EXPECT_EQ(WindowCount(), 2);
  for (DocumentWindow* document : Main->findChildren<DocumentWindow*>()) document->AllowClose();
}

TEST_F(FrmMainCloseAll, EndsAtACancel) {
  Start();
  ConnectNow();
  NewPhotometry();
  Choose(kSetBlank);
  Choose(kStartTest);
  NewPhotometry();
  Boxes.ExpectYesNoCancel(Words(1210), Answer::Cancel);
  EXPECT_FALSE(Main->mmuFileCloseAll());
  QTest::qWait(20);
  EXPECT_EQ(WindowCount(), 2);
  for (DocumentWindow* document : Main->findChildren<DocumentWindow*>()) document->AllowClose();
}

TEST_F(FrmMainFiles, SeveralDroppedFilesAllOpenWhateverOneOfThemSays) {
  const QString a = WriteFile("a.bas", QByteArray::fromStdString(BasicFileBytes(1, 1)));
  const QString b = WriteFile("b.bas", "no data file");
  const QString c = WriteFile("c.bas", QByteArray::fromStdString(BasicFileBytes(1, 1)));
  Start();
  for (const QString& path : {a, b, c}) Main->OpenLater(path);
  // The message loop runs on while the box is open.
  Boxes.ExpectWords(Words(1214), [] { QTest::qWait(30); });
  EXPECT_TRUE(QTest::qWaitFor([this] { return WindowCount() == 2; }));
}

TEST_F(FrmMainFiles, AFileThatComesDuringAConnectionOpensAfterIt) {
  const QString path = WriteFile("day.bas", QByteArray::fromStdString(BasicFileBytes(1, 1)));
  Start();
  bool sent = false;
  Loop.OnYield = [&] {
    if (sent) return;
    sent = true;
    Main->OpenLater(path);
    QTest::qWait(5);
    EXPECT_EQ(WindowCount(), 0);
  };
  Main->mmuOperationConnect();
  Loop.OnYield = nullptr;
  EXPECT_TRUE(QTest::qWaitFor([this] { return WindowCount() == 1; }));
}

// Its standards and its curve went with its only record.
TEST_F(FrmMainFiles, AQuantitationThatLostItsOnlyRecordIsShownWithItsCurve) {
  const QString path = PathOf("dye.qua");
  QuantitationDocument made;
  QuantitationSettings settings;
  settings.FittingMethod = 1;
  made.Configure(settings);
  for (const int row : {0, 1}) {
    made.SetStandardConc(row, 10 * row + 1);
    made.SetStandardReadings(row, row);
  }
  made.Append(made.MakeRecord("sample", 0.5));
  ASSERT_TRUE(made.SaveFile(path.toStdString()));
  std::string cut = ReadBytes(path.toStdString());
  cut.pop_back();
  WriteBytes(path.toStdString(), cut);
  Start();
  Boxes.ExpectWords(path + Words(1214));
  EXPECT_FALSE(Main->OpenDataFile(path));
  EXPECT_EQ(Boxes.Details, QStringLiteral("damaged: has 0 of the 1 records that it states"));
  ASSERT_EQ(WindowCount(), 1);
  const auto* const window = dynamic_cast<FrmQua*>(Main->ActiveForm());
  ASSERT_NE(window, nullptr);
  EXPECT_EQ(window->OpenFileName(), path);
  EXPECT_EQ(window->Document().RecordCount(), 0);
  EXPECT_EQ(window->Document().Option().CurveK, made.Option().CurveK);
  EXPECT_TRUE(window->Document().Option().CurveValid);
  EXPECT_EQ(Find<QTableView>(*window, "QuaConfigGrid")->model()->rowCount(), 2);
  EXPECT_EQ(Find<QTableView>(*window, "RecordGrid")->model()->rowCount(), 0);
  EXPECT_FALSE(window->isWindowModified());
  // Save asks for a name, and the file keeps what it has.
  Boxes.ExpectSaveName(Words(1047), {});
  Choose(kSave);
  EXPECT_EQ(ReadBytes(path.toStdString()), cut);
  Choose(kClose);
  EXPECT_EQ(WindowCount(), 0);
}

TEST_F(FrmMainFiles, TwoWindowsNeverShareAFile) {
  const QString path = WriteFile("day.bas", QByteArray::fromStdString(BasicFileBytes(1, 1)));
  const QString other = WriteFile("other.bas", QByteArray::fromStdString(BasicFileBytes(2, 2)));
  Start(path);
  ASSERT_TRUE(Main->OpenDataFile(other));
  Boxes.ExpectSaveName(Words(1193), path);
  Boxes.ExpectWords(u'<' + path + QStringLiteral(">File is already opened!"));
  Choose(kSaveAs);
}

}  // namespace
}  // namespace spectrane
