#include <QLabel>
#include <QMenuBar>
#include <QMimeData>
#include <QTest>
#include <QToolButton>

#include "app/barlooks.h"
#include "app/commandtable.h"
#include "app/framefixture.h"
#include "app/ground/words.h"
#include "base/language.h"
#include "files/filesupport.h"

namespace spectrane {
namespace {

using testing_windows::ExpectNamesEverywhere;
using testing_windows::FrameFixture;
using testing_windows::InDialog;

using FrmMainTest = FrameFixture;
using DisplayField = DataDisplay::Field;

QStringList TextsOf(const QMenu& menu) {
  QStringList texts;
  for (const QAction* action : menu.actions()) {
    if (!action->isSeparator()) texts.append(PlainCaption(action->text()));
  }
  return texts;
}

TEST_F(FrmMainTest, FirstStartShowsTheGuideAndWritesEachDefault) {
  Start();
  EXPECT_EQ(Stored("Main Window", "Windows States"), "2");
  EXPECT_EQ(Stored("Main Window", "Menu Style"), "2");
  for (const char* key : {"Main toolsbar", "Operate toolsbar", "spectrum toolsbar", "data display toolsbar",
                          "Expand Button", "TabWorkspace", "status toolsbar"}) {
    EXPECT_EQ(Stored("Main Window", key), "True") << key;
  }
  EXPECT_EQ(Stored("Main Window", "Big Icon"), "False");
  EXPECT_EQ(Main->windowTitle(), QStringLiteral("Spectrane Basic"));
  EXPECT_TRUE(Main->isMaximized());
  EXPECT_TRUE(ConnectWaited());
  EXPECT_EQ(ConnectTimer().interval(), 2000);
  EXPECT_EQ(Main->SampleTimer().interval(), 100);
  EXPECT_FALSE(Main->SampleTimer().isActive());
}

TEST_F(FrmMainTest, MenusHoldTheirCommandsInOrder) {
  Start();
  QStringList menus;
  for (const QAction* action : Main->menuBar()->actions()) menus.append(action->text());
  EXPECT_EQ(menus, QStringList({QStringLiteral("File(&F)"), QStringLiteral("View(&V)"),
                                QStringLiteral("Operate(&O)"), QStringLiteral("Spectrum Process(&S)"),
                                QStringLiteral("Window(&W)"), QStringLiteral("Help(&H)")}));
  const QStringList file = TextsOf(*Main->findChild<QMenu*>(QStringLiteral("Menu101")));
  EXPECT_EQ(file, QStringList({QStringLiteral("New File guide"), QStringLiteral("New File"),
                               QStringLiteral("Open"), QStringLiteral("Save"), QStringLiteral("Save As"),
                               QStringLiteral("Output"), QStringLiteral("Close"), QStringLiteral("Close All"),
                               QStringLiteral("Printer Setup"), QStringLiteral("Print Preview"),
                               QStringLiteral("Print"), QStringLiteral("Exit")}));
  const QStringList operate = TextsOf(*Main->findChild<QMenu*>(QStringLiteral("Menu301")));
  EXPECT_EQ(operate.mid(0, 6),
            QStringList({QStringLiteral("Connect"), QStringLiteral("Release"), QStringLiteral("Start Test"),
                         QStringLiteral("Stop Test"), QStringLiteral("Delete Record"),
                         QStringLiteral("Copy Picture")}));
  EXPECT_EQ(operate.mid(17),
            QStringList({QStringLiteral("Setup Slip"), QStringLiteral("Setup Automatic Sampler"),
                         QStringLiteral("Option")}));
}

TEST_F(FrmMainTest, EachMenuHasItsAccessKeysOnce) {
  Start();
  for (const QMenu* menu : Main->findChildren<QMenu*>()) {
    if (!menu->objectName().startsWith(QStringLiteral("Menu"))) continue;
    QSet<QChar> used;
    for (const QAction* action : menu->actions()) {
      const qsizetype mark = action->text().indexOf(u'&');
      if (action->isSeparator()) continue;
      if (mark < 0) {
        for (const QChar letter : action->text().toUpper()) {
          EXPECT_TRUE(!letter.isLetterOrNumber() || used.contains(letter)) << action->text().toStdString();
        }
        continue;
      }
      const QChar key = action->text()[mark + 1].toUpper();
      // Two captions of the table itself share theirs; the key goes from one to the other.
      const bool shared = action == Main->ActionOf(kCloseAll);
      EXPECT_TRUE(shared || !used.contains(key))
          << menu->title().toStdString() << ": " << action->text().toStdString();
      used.insert(key);
    }
  }
}

TEST_F(FrmMainTest, EachKeySequenceRunsOneCommand) {
  QSet<QString> used;
  Start();
  for (const CommandRow& row : CommandRows()) {
    for (const QKeySequence& key : Main->ActionOf(row.Number)->shortcuts()) {
      EXPECT_FALSE(used.contains(key.toString())) << key.toString().toStdString();
      used.insert(key.toString());
      if (key == Main->ActionOf(row.Number)->shortcut()) {
        EXPECT_TRUE(Main->ActionOf(row.Number)->toolTip().contains(key.toString(QKeySequence::NativeText)));
      }
    }
  }
  for (const int command : {kStartTest, kStopTest, kSetBlank}) {
    const QKeySequence key = Main->ActionOf(command)->shortcut();
    EXPECT_EQ(key[0].keyboardModifiers(), Qt::NoModifier);
    EXPECT_TRUE(key[0].key() >= Qt::Key_F1 && key[0].key() <= Qt::Key_F12);
  }
}

TEST_F(FrmMainTest, EveryControlHasAName) {
  Start();
  NewPhotometry();
  ExpectNamesEverywhere(*Main);
}

struct BarCase {
  int Command;
  const char* Key;
  const char* Widget;
};

TEST_F(FrmMainTest, ViewCommandsToggleTheirBarAndStoreIt) {
  const BarCase cases[] = {
      {kExpandButton, "Expand Button", "MainToolsbarExpand"},
      {kMainBar, "Main toolsbar", "MainToolsbar"},
      {kSpectrumBar, "spectrum toolsbar", "SpectrumToolsbar"},
      {kOperateBar, "Operate toolsbar", "OperateToolsbar"},
      {kDataViewBar, "data display toolsbar", "DataDisplayToolsbar"},
      {kStatusBar, "status toolsbar", "MainStatus"},
  };
  Start();
  Main->showNormal();
  Main->resize(1500, 700);
  QCoreApplication::processEvents();
  for (const BarCase& each : cases) {
    auto* widget = Main->findChild<QWidget*>(QLatin1String(each.Widget));
    ASSERT_TRUE(widget) << each.Widget;
    EXPECT_TRUE(widget->isVisible()) << each.Widget;
    Choose(each.Command);
    QCoreApplication::processEvents();
    EXPECT_FALSE(widget->isVisible()) << each.Widget;
    EXPECT_FALSE(Main->ActionOf(each.Command)->isChecked());
    EXPECT_EQ(Stored("Main Window", each.Key), "False");
  }
  Restart();
  Main->showNormal();
  Main->resize(1500, 700);
  for (const BarCase& each : cases) {
    EXPECT_FALSE(Main->findChild<QWidget*>(QLatin1String(each.Widget))->isVisible()) << each.Widget;
    Choose(each.Command);
  }
  QCoreApplication::processEvents();
  for (const BarCase& each : cases) {
    EXPECT_TRUE(Main->findChild<QWidget*>(QLatin1String(each.Widget))->isVisible()) << each.Widget;
  }
}

TEST_F(FrmMainTest, BigIconsAreStoredAndLarger) {
  Start();
  auto* bar = Main->findChild<QToolBar*>(QStringLiteral("MainToolsbar"));
  const int small = bar->iconSize().width();
  Choose(kBigIcon);
  EXPECT_GT(bar->iconSize().width(), small);
  EXPECT_EQ(Stored("Main Window", "Big Icon"), "True");
}

TEST_F(FrmMainTest, HiddenDataDisplayStopsTheLiveReading) {
  Start();
  ConnectNow();
  const auto before = Instrument.Requests();
  Choose(kDataViewBar);
  Main->Link().Live.SampleTimerTick();
  EXPECT_EQ(Instrument.Requests(), before);
  Choose(kDataViewBar);
  Main->Link().Live.SampleTimerTick();
  EXPECT_EQ(Instrument.Requests(), before + 1);
}

TEST_F(FrmMainTest, TabsBecomeFreeWindowsAndBack) {
  Start();
  NewPhotometry();
  NewPhotometry();
  auto* workspace = Main->findChild<Workspace*>();
  EXPECT_TRUE(workspace->HasTabs());
  Choose(kTabWorkspace);
  EXPECT_FALSE(workspace->HasTabs());
  EXPECT_EQ(Stored("Main Window", "TabWorkspace"), "False");
  Choose(kTileVertically);
  const QList<QMdiSubWindow*> windows = workspace->subWindowList(QMdiArea::CreationOrder);
  EXPECT_EQ(windows[0]->geometry().right() + 1, windows[1]->geometry().left());
  EXPECT_EQ(windows[0]->height(), workspace->viewport()->height());
  Choose(kTileHorizontally);
  EXPECT_EQ(windows[0]->geometry().bottom() + 1, windows[1]->geometry().top());
  EXPECT_EQ(windows[0]->width(), workspace->viewport()->width());
  Choose(kCascade);
  EXPECT_LT(windows[0]->y(), windows[1]->y());
  Choose(kTabWorkspace);
  EXPECT_TRUE(workspace->HasTabs());
  EXPECT_EQ(WindowCount(), 2);
}

TEST_F(FrmMainTest, CaptionsCountUpAndNeverDown) {
  Start();
  EXPECT_EQ(NewPhotometry()->Caption(), QStringLiteral("Photometry 1"));
  Choose(kClose);
  EXPECT_EQ(NewPhotometry()->Caption(), QStringLiteral("Photometry 2"));
}

TEST_F(FrmMainTest, NewDocumentsComeUpWithTheirOptions) {
  Start();
  bool shown = false;
  InDialog("FrmBasicConfig", [&shown](QWidget& dialog) {
    shown = true;
    dialog.close();
  });
  Choose(kNewBasic);
  EXPECT_TRUE(shown);
}

TEST_F(FrmMainTest, SevenLooksDifferVisibly) {
  ASSERT_EQ(BarLookNames(), QStringList({QStringLiteral("Office 2000"), QStringLiteral("Office XP"),
                                         QStringLiteral("Office 2003"), QStringLiteral("Windows XP"),
                                         QStringLiteral("Whidbev"), QStringLiteral("Office 2007"),
                                         QStringLiteral("Ribbon")}));
  Start();
  auto* bar = Main->findChild<QToolBar*>(QStringLiteral("OperateToolsbar"));
  QList<QImage> pictures;
  for (int look = 0; look < 7; ++look) {
    Main->SetMenuStyle(look);
    QCoreApplication::processEvents();
    const QImage picture = bar->grab().toImage();
    for (const QImage& other : pictures) {
      int differing = 0;
      const int rows = std::min(picture.height(), other.height());
      for (int y = 0; y < rows; ++y) {
        const QColor a = picture.pixelColor(picture.width() - 30, y);
        const QColor b = other.pixelColor(other.width() - 30, y);
        const int distance =
            std::abs(a.red() - b.red()) + std::abs(a.green() - b.green()) + std::abs(a.blue() - b.blue());
        if (distance > 6) ++differing;
      }
      EXPECT_GT(differing + 4 * std::abs(picture.height() - other.height()), rows / 4) << look;
    }
    pictures.append(picture);
  }
}

// Which commands can be chosen, in each state an operator can bring the program into.
TEST_F(FrmMainTest, CommandsAreEnabledByWhatHolds) {
  const auto expect = [this](const char* state, std::initializer_list<int> on,
                             std::initializer_list<int> off) {
    for (const int command : on) EXPECT_TRUE(IsEnabled(command)) << state << ": " << command;
    for (const int command : off) EXPECT_FALSE(IsEnabled(command)) << state << ": " << command;
  };
  Start();
  expect("nothing open, not connected",
         {kNewFileGuide,
          kNewBasic,
          kNewQua,
          kOpen,
          kExit,
          kConnect,
          kProgramOption,
          kAbout,
          kTungstenLamp,
          kDeuteriumLamp,
          kSystemBaseline,
          kLampSwitchWavelength,
          kSetWavelength,
          kDarkCurrent,
          kResetWavelength,
          kSetupSlit,
          kSetupSampler,
          kSpectrumCompare,
          kSpectrumAdd,
          kSpectrumSubtraction,
          kSpectrumMultiplication,
          kSpectrumDivision},
         {kRelease, kStartTest, kStopTest, kSetBlank, kSave, kSaveAs, kClose, kCloseAll, kDeleteRecord,
          kCascade, kPrint, kTestOption, kSpectrumSmooth, kSpectrumDerivative});
  ConnectNow();
  expect("connected", {kRelease, kSetBlank, kTungstenLamp, kDeuteriumLamp},
         {kConnect, kStartTest, kStopTest, kSave});
  NewPhotometry();
  expect("photometry, connected", {kStartTest, kSetBlank, kClose, kCloseAll, kTestOption, kCascade},
         {kConnect, kStopTest, kDeleteRecord, kCopyPicture, kZoomIn, kSearchPeak, kSpectrumSmooth,
          kSpectrumDerivative});
  Choose(kRelease);
  expect("photometry, released", {kConnect, kClose, kTestOption}, {kRelease, kStartTest, kSetBlank});
}

TEST_F(FrmMainTest, CommandsAreDisabledDuringARunAndStayRefused) {
  Start();
  ConnectNow();
  NewPhotometry();
  Choose(kSetBlank);
  int looked = 0;
  Loop.OnYield = [&] {
    if (!Main->Link().State.RunUnderWay) return;
    ++looked;
    for (const int command :
         {kConnect, kRelease, kStartTest, kSetBlank, kTungstenLamp, kDeuteriumLamp, kDeleteRecord,
          kTestOption, kSystemBaseline, kSetWavelength, kSetupSlit, kSpectrumCompare, kSpectrumAdd}) {
      EXPECT_FALSE(IsEnabled(command)) << command;
      Main->RunCommand(command);
    }
  };
  Choose(kStartTest);
  Loop.OnYield = nullptr;
  EXPECT_GT(looked, 2);
  EXPECT_TRUE(IsEnabled(kStartTest));
  EXPECT_TRUE(Main->ActiveForm()->IsWorkUnsaved());
  EXPECT_TRUE(Main->Link().State.InstrumentConnected);
}

TEST_F(FrmMainTest, ConnectingShowsWhatTheInstrumentIs) {
  Start();
  EXPECT_EQ(Pane(StatusPane::Connection), "No instrument connected.");
  EXPECT_THAT(Remark(), ::testing::HasSubstr("Connect"));
  Main->mmuOperationConnect();
  EXPECT_EQ(Pane(StatusPane::Connection), "connectted.");
  EXPECT_EQ(Pane(StatusPane::Sampler), "Manually sample shelf.");
  EXPECT_TRUE(Main->findChild<MainStatus*>()->IsSimulatedShown());
  EXPECT_EQ(FieldText(DisplayField::Wavelength), " 546.0nm");
  EXPECT_EQ(FieldText(DisplayField::Abs), " 0.000Abs");
  EXPECT_EQ(FieldText(DisplayField::Trans), "100.0%T");
  EXPECT_TRUE(Main->SampleTimer().isActive());
  EXPECT_TRUE(Main->isEnabled());
  Choose(kRelease);
  EXPECT_EQ(Pane(StatusPane::Connection), "No instrument connected.");
  EXPECT_EQ(FieldText(DisplayField::Wavelength), "");
  EXPECT_EQ(FieldText(DisplayField::Trans), "");
  EXPECT_FALSE(Main->SampleTimer().isActive());
  EXPECT_FALSE(Main->findChild<MainStatus*>()->IsSimulatedShown());
}

TEST_F(FrmMainTest, ConnectingLocksTheWindowAndIsNotEnteredTwice) {
  Start();
  int checks = 0;
  Instrument.OnExchange = [&checks](const ExchangeRecord& record) {
    checks += record.Request == "check" ? 1 : 0;
  };
  bool locked = false;
  Loop.OnYield = [&] {
    if (!Main->Link().State.RunUnderWay) return;
    locked = locked || !Main->isEnabled();
    Main->RunCommand(kConnect);
    Main->mmuOperationConnect();
  };
  Main->mmuOperationConnect();
  Loop.OnYield = nullptr;
  EXPECT_TRUE(locked);
  EXPECT_EQ(checks, 1);
  EXPECT_TRUE(Main->isEnabled());
  EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
}

TEST_F(FrmMainTest, NoInstrumentGivesOneBoxWithTheCauseOfEachPortAndANextStep) {
  Start();
  Ports.Refuse(1, PortFault::InUse, "Device or resource busy");
  Boxes.ExpectMessage(1097, [this] { EXPECT_FALSE(Main->isEnabled()); });
  Choose(kConnect);
  EXPECT_THAT(Boxes.Details.toStdString(), ::testing::HasSubstr("port 1: in use"));
  EXPECT_EQ(Pane(StatusPane::Connection), "No instrument connected.");
  EXPECT_THAT(Remark(), ::testing::HasSubstr("Connect"));
  EXPECT_TRUE(Main->isEnabled());
  EXPECT_TRUE(IsEnabled(kConnect));
}

TEST_F(FrmMainTest, LampCommandsSwitchAndMarkTheLamp) {
  Start();
  ConnectNow();
  ASSERT_TRUE(Instrument.Model().Tungsten.Lit);
  Choose(kTungstenLamp);
  EXPECT_FALSE(Instrument.Model().Tungsten.Lit);
  EXPECT_FALSE(Main->ActionOf(kTungstenLamp)->isChecked());
  Choose(kTungstenLamp);
  EXPECT_TRUE(Instrument.Model().Tungsten.Lit);
  EXPECT_TRUE(Main->ActionOf(kTungstenLamp)->isChecked());
  Choose(kDeuteriumLamp);
  EXPECT_FALSE(Instrument.Model().Deuterium.Lit);
}

TEST_F(FrmMainTest, RezeroWithoutAChildIsTheMainWindowsOwn) {
  Start();
  ConnectNow();
  std::vector<std::string> commands;
  Instrument.OnExchange = [&](const ExchangeRecord& record) { commands.push_back(record.Request); };
  Choose(kSetBlank);
  EXPECT_EQ(commands, (std::vector<std::string>{"rezero", "ge 30"}));
}

// It came up over the documents too.
TEST_F(FrmMainTest, TheShortMenuBelongsToTheEmptyFrame) {
  Start();
  Choose(kTabWorkspace);
  DocumentWindow* const document = NewPhotometry();
  QLabel label(document);
  label.setGeometry(10, 10, 50, 20);
  label.show();
  auto* const ground = Main->findChild<Workspace*>()->viewport();
  auto* const menu = Main->findChild<QMenu*>(QStringLiteral("PopupMenu"));
  const auto menuComes = [&](QWidget& where, const QPoint& at, QContextMenuEvent::Reason reason) {
    QContextMenuEvent event(reason, at, where.mapToGlobal(at));
    QCoreApplication::sendEvent(&where, &event);
    const bool came = menu->isVisible();
    menu->close();
    return came;
  };
  for (const auto reason : {QContextMenuEvent::Mouse, QContextMenuEvent::Keyboard}) {
    EXPECT_FALSE(menuComes(label, QPoint(5, 5), reason)) << reason;
    EXPECT_FALSE(menuComes(*document, document->rect().bottomRight(), reason)) << reason;
    EXPECT_TRUE(menuComes(*ground, ground->rect().bottomRight(), reason)) << reason;
  }
}

TEST_F(FrmMainTest, NonsenseInEachKeyGivesAProgramThatRuns) {
  for (const auto& row : WindowSettingRows()) {
    ASSERT_TRUE(Settings.PutSetting(row.Section, row.Key, "\x01;[nonsense]=1,5e999"));
  }
  Start();
  EXPECT_TRUE(Main->isVisible());
  EXPECT_TRUE(Main->screen()->availableGeometry().intersects(Main->geometry()));
  EXPECT_TRUE(Main->findChild<QToolBar*>(QStringLiteral("MainToolsbar"))->isVisible());
}

TEST_F(FrmMainTest, AWindowFromBeyondTheScreenComesBackOntoIt) {
  const struct {
    const char* Width;
    const char* Height;
    const char* Place;
  } cases[] = {{"100000", "99999", "0,0"},
               {"1", "1", "-5000,-5000"},
               {"800", "500", "30000,200"},
               {"800", "500", "x,y"}};
  for (const auto& each : cases) {
    Settings.PutSetting("Main Window", "Windows States", "0");
    Settings.PutSetting("Main Window", "Windows Width", each.Width);
    Settings.PutSetting("Main Window", "Windows Height", each.Height);
    LayoutStore(QString::fromStdString(Folder.Path()))
        .Store(QStringLiteral("FrmMain/Place"), QByteArray(each.Place));
    Restart();
    const QRect area = Main->screen()->availableGeometry();
    EXPECT_TRUE(area.contains(Main->frameGeometry()))
        << each.Width << "x" << each.Height << " at " << each.Place;
    EXPECT_GE(Main->width(), 200);
    EXPECT_TRUE(Main->close());
  }
}

TEST_F(FrmMainTest, BarsStayWhereTheyWerePutUntilTheLayoutIsReset) {
  Start();
  auto* bar = Main->findChild<QToolBar*>(QStringLiteral("SpectrumToolsbar"));
  Main->addToolBar(Qt::LeftToolBarArea, bar);
  EXPECT_TRUE(Main->close());
  Restart();
  bar = Main->findChild<QToolBar*>(QStringLiteral("SpectrumToolsbar"));
  EXPECT_EQ(Main->toolBarArea(bar), Qt::LeftToolBarArea);
  Choose(kMainBar);
  Choose(kResetLayout);
  EXPECT_EQ(Main->toolBarArea(bar), Qt::TopToolBarArea);
  EXPECT_TRUE(Main->findChild<QToolBar*>(QStringLiteral("MainToolsbar"))->isVisible());
  EXPECT_EQ(Stored("Main Window", "Main toolsbar"), "True");
}

TEST_F(FrmMainTest, TheKeyboardReachesEveryBar) {
  Start();
  Main->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(Main.get()));
  QSet<QString> reached;
  for (int i = 0; i < 6; ++i) {
    Main->FocusNextPane();
    if (QWidget* focus = QApplication::focusWidget()) {
      if (qobject_cast<QToolBar*>(focus->parentWidget())) reached.insert(focus->parentWidget()->objectName());
    }
  }
  EXPECT_TRUE(reached.contains(QStringLiteral("MainToolsbar")));
  EXPECT_TRUE(reached.contains(QStringLiteral("OperateToolsbar")));
  auto* bar = Main->findChild<QToolBar*>(QStringLiteral("MainToolsbar"));
  auto* guide = qobject_cast<QToolButton*>(bar->widgetForAction(Main->ActionOf(kNewFileGuide)));
  guide->setFocus();
  QTest::keyClick(guide, Qt::Key_Right);
  EXPECT_EQ(QApplication::focusWidget(), bar->widgetForAction(Main->ActionOf(kNewBasic)));
}

TEST_F(FrmMainTest, AKeyThatIsHeldDownIsOneCommand) {
  Start();
  for (const CommandRow& row : CommandRows()) {
    const bool zooms = row.Number == kZoomIn || row.Number == kZoomOut;
    EXPECT_EQ(Main->ActionOf(row.Number)->autoRepeat(), zooms) << row.Number;
  }
}

TEST_F(FrmMainTest, NothingStartsWhileTheInstrumentIsReleased) {
  Start();
  ConnectNow();
  NewPhotometry();
  Choose(kSetBlank);
  std::vector<std::string> requests;
  Instrument.OnExchange = [&](const ExchangeRecord& record) { requests.push_back(record.Request); };
  Loop.OnYield = [&] {
    EXPECT_FALSE(IsEnabled(kStartTest));
    Main->ActiveForm()->mmuStartTest();
  };
  Choose(kRelease);
  Loop.OnYield = nullptr;
  EXPECT_EQ(requests, (std::vector<std::string>{"quit"}));
  EXPECT_FALSE(Main->SampleTimer().isActive());
}

TEST_F(FrmMainTest, ABlankOfAnotherWindowEndsTheFirstOnes) {
  Start();
  ConnectNow();
  NewPhotometry();
  DocumentWindow* first = Main->ActiveForm();
  Choose(kSetBlank);
  NewPhotometry();
  Choose(kSetBlank);
  Main->findChild<Workspace*>()->Activate(first);
  Boxes.ExpectMessage(971);
  Choose(kStartTest);
  EXPECT_FALSE(first->IsWorkUnsaved());
}

TEST_F(FrmMainTest, PicturesOfPhotometryAreRefusedInItsOwnWords) {
  Start();
  NewPhotometry();
  Boxes.ExpectMessage(969);
  Choose(kOutputPicture);
}

TEST_F(FrmMainTest, ThePulledCableInAReadingIsToldAndConnectWorksAgain) {
  Start();
  ConnectNow();
  Ports.Current->HangUp();
  Main->Link().Live.SampleTimerTick();
  EXPECT_THAT(Remark(), ::testing::HasSubstr("Communication error"));
  EXPECT_TRUE(Main->Link().State.InstrumentConnected);
  Choose(kRelease);
  Instrument.ForgetInput();
  ConnectNow();
  EXPECT_EQ(Pane(StatusPane::Connection), "connectted.");
}

}  // namespace
}  // namespace spectrane
