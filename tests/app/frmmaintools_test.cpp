#include <QAbstractButton>
#include <QAction>
#include <QLabel>
#include <QTableView>

#include "app/framefixture.h"
#include "app/ground/words.h"
#include "files/filesupport.h"

namespace spectrane::testing_windows {
namespace {

/// The time that the box over everything shows.
std::string WaitShown() {
  for (QWidget* widget : QApplication::topLevelWidgets()) {
    if (widget->objectName() == QStringLiteral("FrmWait") && widget->isVisible())
      return widget->findChild<QLabel*>(QStringLiteral("LabelTime"))->text().toStdString();
  }
  return "no box";
}

class FrmMainTools : public FrameFixture {
 protected:
  void Fail(const char* verb, const char* fault, const char* which = "1") {
    ASSERT_EQ(Instrument.Faults().Add(verb, which, fault, {}), std::nullopt);
  }
  bool IsMarked(int command) const { return Main->ActionOf(command)->isChecked(); }
  bool LiveReadingRuns() const { return Main->SampleTimer().isActive(); }
  QString WriteBaseline(const char* name, int stated, int held) {
    std::string bytes =
        HeaderBytes(6) + DoubleBytes(190.0 + stated - 1) + DoubleBytes(190) + DoubleBytes(1) + Long(0);
    for (int i = 0; i < held; ++i) bytes += DoubleBytes(190.0 + i) + Long(2) + Long(700 + i);
    return WriteFile(name, QByteArray::fromStdString(bytes));
  }
  /// Looks at the baseline dialog that a file brings up, and closes it.
  void ExpectBaselineDialog(const QString& firstCells, const QString& state) {
    InDialog("FrmBaseLine", [firstCells, state](QWidget& dialog) {
      const QAbstractItemModel& grid = *Find<QTableView>(dialog, "BaseLineDataGrid")->model();
      EXPECT_EQ(grid.index(0, 1).data().toString() + u' ' + grid.index(0, 3).data().toString(), firstCells);
      EXPECT_EQ(Find<QLabel>(dialog, "LabelState")->text(), state);
      dialog.close();
    });
  }
};

constexpr std::pair<int, const char*> kToolDialogs[] = {
    {kLampSwitchWavelength, "FrmLampSwitch"},
    {kSetWavelength, "FrmSetupWL"},
    {kDarkCurrent, "FrmDarkEnergy"},
    {kResetWavelength, "FrmResetWaveLength"},
    {kSetupSlit, "FrmSlip"},
    {kSetupSampler, "FrmAutoSampler"},
    {kSystemBaseline, "FrmBaseLine"},
};

TEST_F(FrmMainTools, EachCommandOpensItsDialogWithAndWithoutAnInstrument) {
  Start();
  for (const bool connected : {false, true}) {
    if (connected) {
      ConnectNow();
      Main->SampleTimer().start();
    }
    for (const auto& [command, name] : kToolDialogs) {
      const bool asksForInstrument = command == kDarkCurrent || command == kResetWavelength;
      if (!connected && asksForInstrument) Boxes.ExpectMessage(1120);
      int opened = 0;
      WhenDialog(name, [&opened](QWidget& dialog) {
        ++opened;
        dialog.close();
      });
      Choose(command);
      EXPECT_EQ(opened, 1) << name;
      EXPECT_TRUE(Boxes.AllAsked()) << name;
      if (connected) {
        EXPECT_TRUE(LiveReadingRuns()) << name;
      }
    }
  }
}

TEST_F(FrmMainTools, LampsWithoutAnInstrumentSaySo) {
  Start();
  for (const int command : {kTungstenLamp, kDeuteriumLamp}) {
    Boxes.ExpectMessage(1090);
    Choose(command);
    EXPECT_TRUE(Boxes.AllAsked());
    EXPECT_FALSE(IsMarked(command));
  }
}

TEST_F(FrmMainTools, ALampIsSwitchedUnderTheBoxThatAsksToWait) {
  Start();
  ConnectNow();
  std::vector<std::string> commands;
  std::string shown;
  Instrument.OnExchange = [&](const ExchangeRecord& record) {
    commands.push_back(record.Request);
    shown = WaitShown();
    EXPECT_FALSE(LiveReadingRuns());
    Main->RunCommand(kTungstenLamp);
  };
  Choose(kDeuteriumLamp);
  Instrument.OnExchange = {};
  EXPECT_EQ(commands, (std::vector<std::string>{"getwl", "getd2", "d2off"}));
  EXPECT_EQ(shown, "0 s of at most 38 s");
  EXPECT_EQ(WaitShown(), "no box");
  EXPECT_FALSE(Instrument.Model().Deuterium.Lit);
  EXPECT_FALSE(IsMarked(kDeuteriumLamp));
  EXPECT_TRUE(LiveReadingRuns());
  Main->SampleTimer().stop();
  const std::int64_t begin = Time.NowMs();
  Choose(kDeuteriumLamp);
  EXPECT_GT(Time.NowMs() - begin, 18'000);
  EXPECT_TRUE(Instrument.Model().Deuterium.Lit);
  EXPECT_TRUE(IsMarked(kDeuteriumLamp));
}

TEST_F(FrmMainTools, LampFaultsHaveTheirWordsAndTheLiveReadingGoesOn) {
  Start();
  ConnectNow();
  Choose(kTungstenLamp);
  Choose(kTungstenLamp);
  ASSERT_TRUE(IsMarked(kTungstenLamp));
  Main->SampleTimer().stop();
  // The link test: no box.
  Fail("getwl", "no-reply");
  Choose(kTungstenLamp);
  EXPECT_TRUE(IsMarked(kTungstenLamp));
  EXPECT_TRUE(LiveReadingRuns());
  EXPECT_EQ(Remark(), Words(1096).toStdString());
  Main->SampleTimer().stop();
  // The query: one box, with nothing else on the screen.
  Fail("getwu", "no-reply");
  Boxes.ExpectMessage(1096, [] { EXPECT_EQ(WaitShown(), "no box"); });
  Choose(kTungstenLamp);
  EXPECT_TRUE(IsMarked(kTungstenLamp));
  EXPECT_TRUE(LiveReadingRuns());
  EXPECT_TRUE(Instrument.Model().Tungsten.Lit);
  Main->SampleTimer().stop();
  // An instrument that dies as it switches.
  Fail("wuoff", "hang-up");
  Choose(kTungstenLamp);
  EXPECT_TRUE(LiveReadingRuns());
  EXPECT_EQ(Remark(), Words(1096).toStdString());
  EXPECT_FALSE(Main->Link().State.InstrumentBusy);
  Main->SampleTimer().stop();
}

TEST_F(FrmMainTools, ALampMarkIsGoneWithItsInstrument) {
  Start();
  ConnectNow();
  Choose(kTungstenLamp);
  Choose(kTungstenLamp);
  ASSERT_TRUE(IsMarked(kTungstenLamp));
  Choose(kRelease);
  EXPECT_FALSE(IsMarked(kTungstenLamp));
}

TEST_F(FrmMainTools, ABaselineFileFromOutsideOpensItsDialog) {
  Start();
  const QString path = WriteBaseline("day.bsl", 911, 911);
  ExpectBaselineDialog(QStringLiteral("190.0 700"), QStringLiteral("day.bsl: 911 records"));
  EXPECT_TRUE(Main->OpenDataFile(path));
  EXPECT_EQ(Stored("File", "Open File Path"), path.toStdString());
  EXPECT_EQ(WindowCount(), 0);
  // A second one asks for the place of the first.
  const QString other = WriteBaseline("other.bsl", 911, 911);
  Boxes.ExpectYesNo(Words(1195), Answer::No);
  EXPECT_FALSE(Main->OpenDataFile(other));
  Boxes.ExpectYesNo(Words(1195), Answer::Yes);
  ExpectBaselineDialog(QStringLiteral("190.0 700"), QStringLiteral("other.bsl: 911 records"));
  EXPECT_TRUE(Main->OpenDataFile(other));
}

// The connection would start the live reading, which stands while such a dialog is open.
TEST_F(FrmMainTools, TheConnectionAfterTheStartWaitsForAToolDialogToClose) {
  Start();
  int opened = 0;
  WhenDialog("FrmSetupWL", [&](QWidget& dialog) {
    ++opened;
    ConnectTimer().start(0);
    QTest::qWait(50);
    EXPECT_FALSE(Main->Link().State.InstrumentConnected);
    EXPECT_TRUE(ConnectTimer().isActive()) << "it comes later";
    dialog.close();
  });
  Choose(kSetWavelength);
  EXPECT_EQ(opened, 1);
  EXPECT_TRUE(QTest::qWaitFor([&] { return Main->Link().State.InstrumentConnected; }));
}

TEST_F(FrmMainTools, TheConnectionAfterTheStartWaitsForAToolDialogBelowABoxToo) {
  Start();
  bool opened = false;
  WhenDialog("FrmSetupWL", [&](QWidget& dialog) {
    opened = true;
    QDialog box(&dialog);
    box.setModal(true);
    box.show();
    EXPECT_EQ(QApplication::activeModalWidget(), &box);
    ConnectTimer().start(0);
    QTest::qWait(50);
    EXPECT_FALSE(Main->Link().State.InstrumentConnected);
    EXPECT_TRUE(ConnectTimer().isActive()) << "it comes later";
    box.close();
    dialog.close();
  });
  Choose(kSetWavelength);
  EXPECT_TRUE(opened);
  EXPECT_TRUE(QTest::qWaitFor([&] { return Main->Link().State.InstrumentConnected; }));
}

TEST_F(FrmMainTools, ABaselineFileOnTheCommandLineOpensItsDialogAndNothingConnects) {
  const QString path = WriteBaseline("day.bsl", 911, 300);
  Main =
      std::make_unique<FrmMain>(ProgramParts{Ports, Time, Loop, Turn, Settings, Folder.Path(), &Boxes, path});
  Boxes.ExpectWords(Words(1214));
  int dialogs = 0;
  WhenDialog("FrmBaseLine", [&](QWidget& dialog) {
    ++dialogs;
    EXPECT_EQ(Find<QLabel>(dialog, "LabelState")->text(), QStringLiteral("day.bsl: 300 records"));
    EXPECT_FALSE(ConnectTimer().isActive());
    WhenDialog("FrmNew", [&](QWidget& guide) {
      ++dialogs;
      guide.close();
    });
    dialog.close();
  });
  Main->ShowStored();
  EXPECT_TRUE(QTest::qWaitFor([&] { return dialogs == 2; }));
}

TEST_F(FrmMainTools, ABaselineFileThatCannotBeReadLeavesNoDialogAndTheOldBaseline) {
  Start();
  ExpectBaselineDialog(QStringLiteral("190.0 700"), QStringLiteral("day.bsl: 911 records"));
  EXPECT_TRUE(Main->OpenDataFile(WriteBaseline("day.bsl", 911, 911)));
  Boxes.ExpectYesNo(Words(1195), Answer::Yes);
  Boxes.ExpectWords(Words(1214));
  EXPECT_FALSE(Main->OpenDataFile(WriteBaseline("none.bsl", 911, 0)));
  ExpectBaselineDialog(QStringLiteral("190.0 700"), QStringLiteral("day.bsl: 911 records"));
  Choose(kSystemBaseline);
}

TEST_F(FrmMainTools, TheProgramStaysWhileAToolTalksToTheInstrument) {
  Start();
  ConnectNow();
  int tried = 0;
  WhenDialog("FrmSlip", [&](QWidget& dialog) {
    Loop.OnYield = [&] {
      ++tried;
      EXPECT_FALSE(Main->close());
      EXPECT_TRUE(Main->isVisible());
      for (const int command : {kRelease, kSetBlank, kTungstenLamp, kSetWavelength, kOpen})
        EXPECT_FALSE(IsEnabled(command)) << command;
    };
    Boxes.ExpectMessage(1807);
    QTest::mouseClick(Find<QAbstractButton>(dialog, "CommandSetup"), Qt::LeftButton);
    Loop.OnYield = {};
    EXPECT_TRUE(IsEnabled(kRelease)) << "as soon as the instrument is free";
    dialog.close();
  });
  Choose(kSetupSlit);
  EXPECT_GE(tried, 2);
  EXPECT_TRUE(IsEnabled(kRelease));
}

}  // namespace
}  // namespace spectrane::testing_windows
