// Faults met by the whole main window. The names begin with the row of the catalogue in docs/reliability.md.

#include <fcntl.h>
#include <sys/stat.h>

#include <QAbstractButton>
#include <QDialogButtonBox>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QMetaMethod>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QTest>

#include <cstddef>
#include <new>
#include <stdexcept>

#include "app/framefixture.h"
#include "app/ground/guardedapplication.h"
#include "app/ground/words.h"
#include "files/filesupport.h"
#include "files/wlsfile2.h"
#include "modes/windows/frmbasic.h"

#ifdef SPECTRANE_SANITIZED
#include <sanitizer/lsan_interface.h>
#endif

namespace spectrane {
namespace {

using testing::HasSubstr;

/// What a fault leaves behind on its way through the toolkit, whose frames do not clean up after it.
struct LeftByTheToolkit {
#ifdef SPECTRANE_SANITIZED
  LeftByTheToolkit() {
    __lsan_disable();
  }
  ~LeftByTheToolkit() {
    __lsan_enable();
  }
#else
  LeftByTheToolkit() {}
#endif
};

class FrameFaults : public testing_windows::FrameFixture {
 protected:
  /// With message boxes and file dialogs as a person sees them.
  void StartWithRealBoxes() {
    Main = std::make_unique<FrmMain>(
        ProgramParts{Ports, Time, Loop, Turn, Settings, Folder.Path(), nullptr, {}});
    testing_windows::WhenDialog("FrmNew", [](QWidget& guide) { guide.close(); });
    Main->ShowStored();
    auto* open = Main->findChild<QTimer*>(QStringLiteral("TimerFileOpen"));
    ASSERT_TRUE(QTest::qWaitFor([open] { return !open->isActive(); }));
    QCoreApplication::processEvents();
    ConnectTimer().stop();
  }
  /// A photometry window with one row that is not saved.
  DocumentWindow* MeasuredRow() {
    ConnectNow();
    DocumentWindow* const window = NewPhotometry();
    Choose(kSetBlank);
    Choose(kStartTest);
    EXPECT_TRUE(window->IsWorkUnsaved());
    return window;
  }
  QString Sample(const char* name, int rows = 1) {
    return WriteFile(name, QByteArray::fromStdString(BasicFileBytes(rows, rows)));
  }
};

/// Counts the timers of the program that come to their time.
class TimerCount : public QObject {
 public:
  TimerCount() { qApp->installEventFilter(this); }
  int Count = 0;

 protected:
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::Timer) ++Count;
    return false;
  }
};

/// Counts how often a widget is painted.
class PaintCount : public QObject {
 public:
  explicit PaintCount(QWidget& watched) { watched.installEventFilter(this); }
  int Count = 0;

 protected:
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::Paint) ++Count;
    return false;
  }
};

TEST_F(FrameFaults, S14_SixteenSilentPortsTakeTheirSecondsAndTheWindowSaysWhichOneItAsks) {
  class Silent : public LinePeer {
    std::vector<Delivery> Receive(std::string_view, std::int64_t) override { return {}; }
  } silent;
  for (int port = 1; port <= 16; ++port) Ports.Put(port, silent);
  Start();
  PaintCount paints(*Main->findChild<QWidget*>(QStringLiteral("RemarkPane")));
  std::vector<std::string> remarks;
  std::vector<int> painted;
  Loop.OnYield = [&] {
    remarks.push_back(Remark());
    QTest::qWait(1);
    painted.push_back(paints.Count);
  };
  Boxes.ExpectMessage(1097);
  const std::int64_t before = Time.NowMs();
  Main->mmuOperationConnect();
  Loop.OnYield = nullptr;
  EXPECT_LE(Time.NowMs() - before, 16'500);
  for (int port = 1; port <= 16; ++port) {
    EXPECT_THAT(remarks, testing::Contains(HasSubstr("port " + std::to_string(port) + " ")));
  }
  ASSERT_GE(painted.size(), 32u);
  EXPECT_GE(painted.back() - painted.front(), 15) << "each port's words reach the screen";
  EXPECT_TRUE(Main->isEnabled());
}

TEST_F(FrameFaults, W09_AnExceptionInASlotIsToldAndTheWindowGoesOn) {
  Start();
  auto& application = dynamic_cast<GuardedApplication&>(*qApp);
  const QScopedValueRollback<std::function<void(const std::exception&)>> told(
      application.OnFault, [this](const std::exception& fault) { Main->CommandEndedEarly(fault); });
  QTimer::singleShot(0, Main.get(), [] { throw std::runtime_error("a slot of a timer"); });
  QCoreApplication::processEvents();
  EXPECT_EQ(Remark(), "The command ended early: a slot of a timer");
  QTimer::singleShot(0, Main.get(), [] { throw 42; });
  QCoreApplication::processEvents();
  EXPECT_EQ(Remark(), "The command ended early: an unknown fault");
  testing_windows::InDialog("FrmOption", [&](QWidget& dialog) {
    auto* const cancel = testing_windows::Find<QAbstractButton>(dialog, "CancelCmd");
    QMetaObject::Connection once =
        QObject::connect(cancel, &QAbstractButton::pressed, cancel, [] { throw std::bad_alloc(); });
    {
      const LeftByTheToolkit notCounted;
      QTest::mousePress(cancel, Qt::LeftButton);
    }
    QObject::disconnect(once);
    EXPECT_EQ(Remark(), "The command ended early: std::bad_alloc");
    EXPECT_TRUE(dialog.isVisible()) << "the dialog does not go with it";
    QTest::mouseRelease(cancel, Qt::LeftButton);
    EXPECT_FALSE(dialog.isVisible()) << "and can be left as ever";
  });
  Choose(kProgramOption);
  ConnectNow();
  EXPECT_TRUE(Main->Link().State.InstrumentConnected);
}

TEST_F(FrameFaults, W09_AnExceptionBesideARunLeavesTheRunItsInstrument) {
  Start();
  DocumentWindow* const window = MeasuredRow();
  auto& application = dynamic_cast<GuardedApplication&>(*qApp);
  const QScopedValueRollback<std::function<void(const std::exception&)>> told(
      application.OnFault, [this](const std::exception& fault) { Main->CommandEndedEarly(fault); });
  int faults = 0;
  Loop.OnYield = [&] {
    QTimer::singleShot(0, Main.get(), [] { throw std::runtime_error("beside"); });
    QCoreApplication::processEvents();
    EXPECT_TRUE(Main->Link().State.InstrumentBusy);
    EXPECT_TRUE(Main->Link().State.RunUnderWay);
    ++faults;
  };
  Choose(kStartTest);
  Loop.OnYield = nullptr;
  EXPECT_GT(faults, 2);
  EXPECT_FALSE(Main->Link().State.InstrumentBusy);
  EXPECT_TRUE(Main->SampleTimer().isActive());
  Main->SampleTimer().stop();
  Boxes.ExpectSaveName(Words(1193), PathOf("two.bas"));
  EXPECT_TRUE(window->mmuSaveFile());
  EXPECT_EQ(ReadBytes(Folder.Path("two.bas")).size(), BasicFileBytes(2, 2).size());
}

TEST_F(FrameFaults, W09_AnExceptionInARunLeavesTheInstrumentFree) {
  Start();
  MeasuredRow();
  Loop.OnYield = [this] {
    Loop.OnYield = nullptr;
    throw std::bad_alloc();
  };
  Choose(kStartTest);
  EXPECT_EQ(Remark(), "The command ended early: std::bad_alloc");
  EXPECT_FALSE(Main->Link().State.InstrumentBusy);
  EXPECT_FALSE(Main->Link().State.RunUnderWay);
  EXPECT_TRUE(Main->SampleTimer().isActive()) << "the live reading goes on";
  Main->SampleTimer().stop();
  EXPECT_TRUE(IsEnabled(kStartTest));
  Choose(kStartTest);
  Boxes.ExpectSaveName(Words(1193), PathOf("two.bas"));
  EXPECT_TRUE(Main->ActiveForm()->mmuSaveFile());
  EXPECT_EQ(ReadBytes(Folder.Path("two.bas")).size(), BasicFileBytes(2, 2).size());
}

/// What the platform says when the session wants to end. Nobody looks at the manager that comes along.
void TellEndOfSession() {
  static std::byte manager = {};
  EXPECT_TRUE(QMetaMethod::fromSignal(&QGuiApplication::commitDataRequest)
                  .invoke(qGuiApp, Qt::DirectConnection, QGenericArgument("QSessionManager&", &manager)));
}

TEST_F(FrameFaults, W01_N04_ALogoutAtAnyYieldOfARunAsksNothingAndStoresTheWindow) {
  Start();
  const auto& window = dynamic_cast<FrmBasic&>(*MeasuredRow());
  int reached = 0;
  for (int wanted = 1; reached == wanted - 1; ++wanted) {
    Main->resize(800 + wanted, 600);
    QCoreApplication::processEvents();
    int yield = 0;
    Loop.OnYield = [&] {
      if (++yield != wanted) return;
      TellEndOfSession();
      EXPECT_EQ(Stored("Main Window", "Windows Width"), std::to_string(800 + wanted));
      reached = wanted;
    };
    Choose(kStartTest);
    Loop.OnYield = nullptr;
    Main->SampleTimer().stop();
    // It may have been called off: the run and the program go on.
    EXPECT_EQ(window.Document().RecordCount(), wanted + 1);
    EXPECT_TRUE(Main->isVisible());
  }
  EXPECT_GT(reached, 2);
  EXPECT_TRUE(window.isWindowModified());
}

TEST_F(FrameFaults, N01_SettingsThatCannotBeKeptAreToldWithTheirPlace) {
  WriteBytes(Folder.Path("file"), "in the way");
  Setting nowhere(Folder.Path("file/home"));
  Main = std::make_unique<FrmMain>(
      ProgramParts{Ports, Time, Loop, Turn, nowhere, Folder.Path("file/home"), &Boxes, Sample("day.bas")});
  Main->ShowStored();
  ASSERT_TRUE(QTest::qWaitFor([this] { return WindowCount() == 1; }));
  EXPECT_THAT(Remark(), HasSubstr("only"));
  EXPECT_THAT(Remark(), HasSubstr(Folder.Path("file/home")));
  EXPECT_EQ(ReadBytes(Folder.Path("file")), "in the way");
  ConnectNow();
  EXPECT_EQ(Main->Link().State.PortNumber, 1);
}

// A whole byte range in the texts of a file: shown, and written back as it was.
TEST_F(FrameFaults, D06_TextsOfAnyBytesAreShownAndSavedAsTheyWere) {
  std::string any;
  for (int byte = 0; byte < 256; ++byte) any += static_cast<char>(byte);
  std::string bytes = HeaderBytes(11) + BasicOptionBytes(5);
  for (const std::string& note : {any, std::string(256, 'x'), std::string("%n%s\ttab\nline\r\0nul", 19),
                                  std::string("\xC4\xE3\xBA\xC3"), std::string("caf\xE9")}) {
    bytes += BasicRecordBytes(1000, note);
  }
  const QString path = WriteFile("texts.bas", QByteArray::fromStdString(bytes));
  Start();
  ASSERT_TRUE(Main->OpenDataFile(path));
  DocumentWindow* const window = Main->ActiveForm();
  window->resize(900, 400);
  EXPECT_FALSE(window->grab().isNull());
  Boxes.ExpectSaveName(Words(1193), PathOf("copy.bas"));
  ASSERT_TRUE(window->mmuSaveAsFile());
  const std::size_t rows = HeaderBytes(11).size() + BasicOptionBytes(5).size();
  EXPECT_TRUE(ReadBytes(Folder.Path("copy.bas")).substr(rows) == bytes.substr(rows));
}

TEST_F(FrameFaults, D07_TheHeaderSaysWhatAFileIsWhateverItsName) {
  Start();
  const QString renamed = Sample("renamed.qua", 2);
  EXPECT_TRUE(Main->OpenDataFile(renamed));
  EXPECT_EQ(Main->ActiveForm()->objectName(), QStringLiteral("FrmBasic"));
  const std::vector<WLS2Record> points(3);
  ASSERT_FALSE(SaveDataFile(WLS2Module(), Folder.Path("processed.wls"), WLSOption(), 3,
                            [&](std::int32_t i) { return points[static_cast<std::size_t>(i)]; }));
  Main->OpenDataFile(PathOf("processed.wls"));
  EXPECT_EQ(Main->ActiveForm()->objectName(), QStringLiteral("FrmWLSVer2"));
  const QString tail =
      WriteFile("tail.bas", QByteArray::fromStdString(BasicFileBytes(2, 2) + std::string(5000, 't')));
  EXPECT_TRUE(Main->OpenDataFile(tail)) << "what stands behind the last row is ignored";
  EXPECT_EQ(WindowCount(), 3);
}

TEST_F(FrameFaults, D07_EightGigabytesOfNothingAreRefusedOrReadAtOnce) {
  Start();
  for (const int stated : {1, -1}) {
    const QString path = WriteFile("sparse.bas", QByteArray::fromStdString(BasicFileBytes(1, stated)));
    std::error_code fault;
    std::filesystem::resize_file(path.toStdString(), std::uintmax_t{8} << 30, fault);
    if (fault) GTEST_SKIP() << "the disk takes no file of that length";
    if (stated < 0) Boxes.ExpectWords(path + Words(1214));
    QElapsedTimer clock;
    clock.start();
    EXPECT_EQ(Main->OpenDataFile(path), stated == 1) << stated;
    EXPECT_LT(clock.elapsed(), 1000) << stated;
    if (stated == 1) Main->mmuFileCloseAll();
  }
}

TEST_F(FrameFaults, D08_PipesDevicesAndFoldersAreRefusedAtOnce) {
  Start();
  ASSERT_EQ(mkfifo(Folder.Path("pipe.bas").c_str(), 0600), 0);
  std::filesystem::create_directory(Folder.Path("folder.bas"));
  for (const QString& path : {PathOf("pipe.bas"), PathOf("folder.bas"), QStringLiteral("/dev/zero"),
                              QStringLiteral("/dev/null"), QStringLiteral("/dev/tty")}) {
    if (!QFileInfo::exists(path)) continue;
    QElapsedTimer clock;
    clock.start();
    Boxes.ExpectWords(Words(1214));
    EXPECT_FALSE(Main->OpenDataFile(path)) << path.toStdString();
    EXPECT_LT(clock.elapsed(), 500) << path.toStdString();
    EXPECT_THAT(Boxes.Details.toStdString(), HasSubstr(path.toStdString()));
    // The same handed over by another copy of the program.
    Boxes.ExpectWords(Words(1214));
    Main->OpenLater(path);
    EXPECT_TRUE(QTest::qWaitFor([this] { return Boxes.AllAsked(); }, 2000)) << path.toStdString();
  }
  EXPECT_EQ(WindowCount(), 0);
}

TEST_F(FrameFaults, H04_APathThatNamesNothingIsToldAndTheNextOneOpens) {
  Start();
  const QString good = Sample("good.bas");
  Boxes.ExpectWords(Words(1214));
  Main->OpenLater(PathOf("gone.bas"));
  Main->OpenLater(good);
  EXPECT_TRUE(QTest::qWaitFor([this] { return WindowCount() == 1; }));
  EXPECT_EQ(Main->ActiveForm()->OpenFileName(), good);
}

TEST_F(FrameFaults, H05_AFileThatComesDuringAQuestionWaitsForItsEnd) {
  StartWithRealBoxes();
  MeasuredRow();
  const QString path = Sample("late.bas");
  bool waited = false;
  testing_windows::WhenDialog("MessageBox", [&](QWidget& box) {
    Main->OpenLater(path);
    QTest::qWait(450);
    waited = WindowCount() == 1 && box.isVisible();
    auto& question = dynamic_cast<QMessageBox&>(box);
    QTest::mouseClick(question.button(QMessageBox::Cancel), Qt::LeftButton);
  });
  Main->ActiveForm()->parentWidget()->close();
  EXPECT_TRUE(waited);
  EXPECT_TRUE(QTest::qWaitFor([this] { return WindowCount() == 2; }));
  EXPECT_EQ(Main->ActiveForm()->OpenFileName(), path);
  for (DocumentWindow* document : Main->findChildren<DocumentWindow*>()) document->AllowClose();
}

TEST_F(FrameFaults, H05_ReadingsWhileAFileWaitsForAQuestionDoNotPileUp) {
  StartWithRealBoxes();
  MeasuredRow();
  TimerCount timers;
  testing_windows::WhenDialog("MessageBox", [&](QWidget& box) {
    Main->OpenLater(Sample("late.bas"));
    // As often as the ends of readings look again in some minutes.
    Main->SampleTimer().start(0);
    for (int i = 0; i < 1000; ++i) QTest::qWait(0);
    Main->SampleTimer().stop();
    timers.Count = 0;
    QTest::qWait(450);
    EXPECT_LT(timers.Count, 200);
    box.close();
  });
  Main->ActiveForm()->parentWidget()->close();
  EXPECT_TRUE(QTest::qWaitFor([this] { return WindowCount() == 2; }));
  for (DocumentWindow* document : Main->findChildren<DocumentWindow*>()) document->AllowClose();
}

TEST_F(FrameFaults, H05_AFileThatComesDuringARunOpensAtItsEnd) {
  Start();
  MeasuredRow();
  const QString path = Sample("late.bas");
  bool sent = false;
  Loop.OnYield = [&] {
    if (!sent) Main->OpenLater(path);
    sent = true;
    QTest::qWait(2);
    EXPECT_EQ(WindowCount(), 1);
  };
  Choose(kStartTest);
  Loop.OnYield = nullptr;
  Main->SampleTimer().stop();
  EXPECT_TRUE(QTest::qWaitFor([this] { return WindowCount() == 2; }));
  for (DocumentWindow* document : Main->findChildren<DocumentWindow*>()) document->AllowClose();
}

TEST_F(FrameFaults, H05_FilesForWhichThereIsNoPlaceToWaitAreTold) {
  Start();
  MeasuredRow();
  const auto sendSome = [this](int from, int to) {
    for (int i = from; i <= to; ++i) Main->OpenLater(PathOf(("none" + std::to_string(i)).c_str()));
  };
  const std::string told = "3 files were not opened, since 32 others were waiting: none33, none34, none35";
  bool sent = false;
  Loop.OnYield = [&] {
    if (std::exchange(sent, true)) return;
    sendSome(1, 32);
    EXPECT_THAT(Remark(), testing::Not(HasSubstr("waiting")));
    sendSome(33, 33);
    EXPECT_EQ(Remark(), "One file was not opened, since 32 others were waiting: none33");
    sendSome(34, 35);
    EXPECT_EQ(Remark(), told);
    Main->SetRemark("of the run");
  };
  // There is none of these names either, which is told as ever.
  for (int i = 1; i <= 32; ++i) Boxes.ExpectWords(Words(1214));
  Choose(kStartTest);
  Loop.OnYield = nullptr;
  Main->SampleTimer().stop();
  EXPECT_TRUE(QTest::qWaitFor([&] { return Remark() == told; })) << Remark();
  // Once.
  Main->SetRemark({});
  Boxes.ExpectWords(Words(1214));
  sendSome(36, 36);
  QTest::qWait(20);
  EXPECT_THAT(Remark(), testing::Not(HasSubstr("waiting")));
  for (DocumentWindow* document : Main->findChildren<DocumentWindow*>()) document->AllowClose();
}

TEST_F(FrameFaults, C08_FoldersThatAreGoneGiveWayToOnesThatAreThere) {
  for (const auto& row : WindowSettingRows()) {
    if (std::string(row.Section) == "File" || std::string(row.Section) == "Base Line")
      Settings.PutSetting(row.Section, row.Key, "/no/such/stick/day.bas");
  }
  for (const char* section : {"Basic Test", "Time Scanning", "Quantitation", "WaveLength Scanning"}) {
    Settings.PutSetting(section, "File Path", "/no/such/stick/day.bas");
  }
  StartWithRealBoxes();
  bool open = false;
  testing_windows::WhenDialog("QFileDialog", [&](QWidget& dialog) {
    open = true;
    EXPECT_TRUE(dynamic_cast<QFileDialog&>(dialog).directory().exists());
    dialog.close();
  });
  Choose(kOpen);
  EXPECT_TRUE(open);
  MeasuredRow();
  bool save = false;
  testing_windows::WhenDialog("QFileDialog", [&](QWidget& dialog) {
    save = true;
    EXPECT_TRUE(dynamic_cast<QFileDialog&>(dialog).directory().exists());
    dialog.close();
  });
  Choose(kSaveAs);
  EXPECT_TRUE(save);
  for (DocumentWindow* document : Main->findChildren<DocumentWindow*>()) document->AllowClose();
}

TEST_F(FrameFaults, W05_TheCableGoesWhileAFileDialogIsOpen) {
  StartWithRealBoxes();
  DocumentWindow* const window = MeasuredRow();
  const QString path = PathOf("kept.bas");
  testing_windows::WhenDialog("QFileDialog", [&](QWidget& dialog) {
    Ports.Current->HangUp();
    // Ticks of the live reading come in meanwhile.
    Main->SampleTimer().start();
    QTest::qWait(250);
    Main->SampleTimer().stop();
    EXPECT_TRUE(dialog.isVisible());
    testing_windows::Find<QLineEdit>(dialog, "fileNameEdit")->setText(path);
    QTest::mouseClick(dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Save), Qt::LeftButton);
  });
  EXPECT_TRUE(window->mmuSaveAsFile());
  EXPECT_TRUE(QFile::exists(path));
  EXPECT_FALSE(window->IsWorkUnsaved());
  EXPECT_EQ(Remark(), Words(1096).toStdString());
  EXPECT_TRUE(Main->Link().State.InstrumentConnected) << "until it is released";
}

}  // namespace
}  // namespace spectrane
