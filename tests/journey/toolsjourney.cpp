#include <QCheckBox>
#include <QTableView>

#include "app/ground/commands.h"
#include "app/ground/words.h"
#include "files/bslfile.h"
#include "files/datafile.h"
#include "journey/journeysupport.h"

namespace spectrane::testing_journey {
namespace {

class ToolsJourney : public Journey {
 protected:
  void Begin() {
    QDir().mkpath(QString::fromStdString(Path("home")));
    StartSimulator({"--speed", "20", "--noise", "3"});
    // A dialog that is dealt with inside a live reading would keep the reading from its end.
    hands_.NotNow = [this] { return frame_ && frame_->Link().State.InstrumentBusy; };
    hands_.Expect("FrmNew", [](QWidget& guide) { guide.close(); });
    StartProgram();
    ASSERT_TRUE(QTest::qWaitFor(
        [this] { return hands_.Done() && Connected() && frame_->isEnabled() && LiveReadingRuns(); },
        kPatienceMs));
  }
  bool LiveReadingRuns() const { return frame_->SampleTimer().isActive(); }
  static void Click(QWidget& dialog, const char* name) {
    auto* const button = dialog.findChild<QAbstractButton*>(QLatin1String(name));
    ASSERT_TRUE(button) << name;
    QTest::mouseClick(button, Qt::LeftButton);
  }
  static void Type(QWidget& dialog, const char* text) {
    auto* const field = dialog.findChild<QLineEdit*>(QStringLiteral("WavelengthText"));
    ASSERT_TRUE(field);
    field->selectAll();
    QTest::keyClicks(field, QLatin1String(text));
    QTest::keyClick(field, Qt::Key_Return);
  }
  /// A dialog that is dealt with and then left by a button.
  void ExpectTool(const char* name, const char* closeButton, std::function<void(QWidget&)> act) {
    hands_.Expect(name, [this, name, closeButton, act = std::move(act)](QWidget& dialog) {
      act(dialog);
      Photograph(name);
      Click(dialog, closeButton);
    });
  }
  /// Chooses a command; its dialogs are over when it returns.
  void Choose(int command) {
    ASSERT_TRUE(QTest::qWaitFor([&] { return frame_->ActionOf(command)->isEnabled(); }, kPatienceMs));
    // Between two live readings, as a person's click comes.
    ASSERT_TRUE(QTest::qWaitFor([this] { return !frame_->Link().State.InstrumentBusy; }, kPatienceMs));
    frame_->ActionOf(command)->trigger();
    EXPECT_TRUE(hands_.Done()) << command;
  }
};

// Every value is read back from the simulated instrument itself.
TEST_F(ToolsJourney, AMorningOfUpkeep) {
  Begin();
  ExpectTool("FrmSetupWL", "CloseCmd", [this](QWidget& dialog) {
    EXPECT_FALSE(LiveReadingRuns());
    Type(dialog, "600.5");
    EXPECT_EQ(StateOf("wavelength"), "600.5");
    Click(dialog, "ZeroCmd");
    EXPECT_EQ(StateOf("gain"), std::to_string(frame_->Link().State.GainIndex));
  });
  Choose(kSetWavelength);
  EXPECT_TRUE(LiveReadingRuns());

  ExpectTool("FrmLampSwitch", "CloseCmd", [](QWidget& dialog) { Type(dialog, "362.4"); });
  Choose(kLampSwitchWavelength);
  EXPECT_EQ(StateOf("lamp_switch"), "362.4");
  EXPECT_TRUE(LiveReadingRuns());

  ExpectTool("FrmSlip", "CommandClose", [this](QWidget& dialog) {
    Click(dialog, "OptionSlip40nm");
    hands_.ExpectBox(QStringLiteral("Setup Slip OK."), QMessageBox::Ok);
    Click(dialog, "CommandSetup");
  });
  Choose(kSetupSlit);
  EXPECT_EQ(StateOf("slit"), "4");
  EXPECT_TRUE(LiveReadingRuns());

  ExpectTool("FrmAutoSampler", "CommandClose", [](QWidget& dialog) {
    Click(dialog, "Check_5_Position");
    Click(dialog, "Option_8_Position");
    Click(dialog, "CommandSetup");
  });
  Choose(kSetupSampler);
  EXPECT_NE(Content("home/config.ini").find("5# Position=False"), std::string::npos);
  EXPECT_NE(Content("home/config.ini").find("Zero Position=8"), std::string::npos);

  ExpectTool("FrmDarkEnergy", "CmdClose", [this](QWidget& dialog) {
    Click(dialog, "CmdTest");
    const auto* const grid = dialog.findChild<QTableView*>(QStringLiteral("DarkEnergyGrid"));
    ASSERT_TRUE(grid);
    QStringList energies;
    for (int row = 0; row < grid->model()->rowCount(); ++row)
      energies << grid->model()->index(row, 1).data().toString();
    EXPECT_EQ(energies.join(u' ').toStdString(), StateOf("dark"));
  });
  Choose(kDarkCurrent);
  EXPECT_EQ(StateOf("dark_measurements"), "1");
  EXPECT_TRUE(LiveReadingRuns());

  ExpectTool("FrmResetWaveLength", "CmdClose", [this](QWidget& dialog) {
    hands_.ExpectBox(QStringLiteral("  Reset wavelength is OK!"), QMessageBox::Ok);
    Click(dialog, "CmdStart");
  });
  Choose(kResetWavelength);
  EXPECT_EQ(StateOf("calibrations"), "1");
  EXPECT_TRUE(LiveReadingRuns());

  Choose(kDeuteriumLamp);
  EXPECT_EQ(StateOf("deuterium"), "off");
  EXPECT_FALSE(frame_->ActionOf(kDeuteriumLamp)->isChecked());
  Choose(kDeuteriumLamp);
  EXPECT_EQ(StateOf("deuterium"), "on");
  EXPECT_TRUE(frame_->ActionOf(kDeuteriumLamp)->isChecked());
  EXPECT_TRUE(LiveReadingRuns());
  Choose(kTungstenLamp);
  EXPECT_EQ(StateOf("tungsten"), "off");
  Photograph("lamps");
}

TEST_F(ToolsJourney, ABaselineFromItsFileAndBack) {
  const std::string file = Path("system.bsl");
  const BSLOption option{1100.0, 190.0, 45000.0, 0};
  ASSERT_FALSE(SaveDataFile(BSLModule(), file, option, 911, [](std::int32_t i) {
    return BSLRecord{190.0 + i, i % 8 + 1, 40000 - i};
  }));
  Begin();
  ExpectTool("FrmBaseLine", "CloseCmd", [&](QWidget& dialog) {
    EXPECT_FALSE(LiveReadingRuns());
    hands_.ExpectFileDialog(QString::fromStdString(file));
    Click(dialog, "LoadCmd");
    hands_.ExpectFileDialog(QString::fromStdString(Path("copy")));
    Click(dialog, "SaveCmd");
    hands_.ExpectFileDialog(QString::fromStdString(Path("table.txt")));
    Click(dialog, "OutputCmd");
  });
  Choose(kSystemBaseline);
  EXPECT_TRUE(LiveReadingRuns());
  const std::string before = Content("system.bsl");
  const std::string after = Content("copy.bsl");
  ASSERT_EQ(after.size(), before.size());
  EXPECT_EQ(after.substr(132), before.substr(132));
  EXPECT_EQ(Content("table.txt").substr(0, 39), "No\tWL.(nm)\tAmp\tEnergy\n1\t190.0\t1\t40000\n2");
}

TEST_F(ToolsJourney, ACableThatGoesInTheMiddleOfAReset) {
  Begin();
  ASSERT_TRUE(Tell("fault hang-up adjustwl"));
  ExpectTool("FrmResetWaveLength", "CmdClose", [this](QWidget& dialog) {
    hands_.ExpectBox(Words(1125), QMessageBox::Ok);
    Click(dialog, "CmdStart");
    EXPECT_FALSE(LiveReadingRuns());
  });
  Choose(kResetWavelength);
  EXPECT_FALSE(LiveReadingRuns()) << "it stays off";
  // The dialogs answer at once and stay usable.
  ExpectTool("FrmSlip", "CommandClose", [this](QWidget& dialog) {
    Click(dialog, "OptionSlip05nm");
    hands_.ExpectBox(QStringLiteral("Setup Slip Error."), QMessageBox::Ok);
    Click(dialog, "CommandSetup");
  });
  Choose(kSetupSlit);
  EXPECT_EQ(StateOf("slit"), "2");
  Choose(kRelease);
  EXPECT_FALSE(Connected());
  ASSERT_TRUE(Tell("plug"));
  Choose(kConnect);
  ASSERT_TRUE(QTest::qWaitFor([this] { return Connected() && LiveReadingRuns(); }, kPatienceMs));
}

}  // namespace
}  // namespace spectrane::testing_journey
