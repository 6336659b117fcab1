#include "tools/windows/frmautosampler.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QRadioButton>

#include "tools/windows/toolfixture.h"

namespace spectrane::testing_windows {
namespace {

class AutoSampler : public ToolFixture {
 protected:
  void Ask(std::function<void(QWidget&)> act) { Open<FrmAutoSampler>("CommandClose", std::move(act)); }
  static std::string Check(int position) { return "Check_" + std::to_string(position) + "_Position"; }
  static std::string Option(int position) { return "Option_" + std::to_string(position) + "_Position"; }
  std::string StoredPosition(int position) const {
    return Stored("Automatic Sampler", (std::to_string(position) + "# Position").c_str());
  }
};

TEST_F(AutoSampler, BeginsWithWhatHolds) {
  Link.State.SamplerPositions = {true, false, true, true, false, true, true, true, false};
  Link.State.SamplerZeroPosition = 6;
  Ask([](QWidget& dialog) {
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Setup Automatic Sampler"));
    EXPECT_EQ(Find<QGroupBox>(dialog, "FrameZeroPosition")->title(),
              QStringLiteral("Zero(100%T) Sampler Position"));
    for (int position = 1; position <= 8; ++position) {
      const auto* const used = Find<QCheckBox>(dialog, Check(position).c_str());
      EXPECT_EQ(used->text().remove(u'&'), QStringLiteral("%1# Sampler Position").arg(position));
      EXPECT_EQ(used->isChecked(), position != 1 && position != 4 && position != 8) << position;
      EXPECT_EQ(Find<QRadioButton>(dialog, Option(position).c_str())->isChecked(), position == 6);
    }
    ExpectNamesEverywhere(dialog);
  });
}

TEST_F(AutoSampler, SetupTakesAndStoresAll) {
  Connect();
  Ask([](QWidget& dialog) {
    for (const int position : {2, 7}) Click(dialog, Check(position).c_str());
    Click(dialog, Option(3).c_str());
    Click(dialog, "CommandSetup");
    EXPECT_EQ(State(dialog), "Setup Sampler OK.");
    EXPECT_TRUE(dialog.isVisible());
  });
  for (int position = 1; position <= 8; ++position) {
    const bool used = position != 2 && position != 7;
    EXPECT_EQ(StoredPosition(position), used ? "True" : "False") << position;
    EXPECT_EQ(Link.State.SamplerPositions[static_cast<std::size_t>(position)], used);
  }
  EXPECT_EQ(Stored("Automatic Sampler", "Zero Position"), "3");
  EXPECT_EQ(Link.State.SamplerZeroPosition, 3);
  EXPECT_EQ(Commands, std::vector<std::string>()) << "the instrument is not asked";
  EXPECT_TRUE(Display.TimerOn) << "the live reading goes on all the time";
  // The next start of the program.
  Start();
  EXPECT_EQ(Link.State.SamplerZeroPosition, 3);
  EXPECT_FALSE(Link.State.SamplerPositions[7]);
}

TEST_F(AutoSampler, CloseTakesNothing) {
  Ask([](QWidget& dialog) {
    Click(dialog, Check(1).c_str());
    Click(dialog, Option(8).c_str());
    Press(dialog, Qt::Key_Escape);
  });
  EXPECT_TRUE(Link.State.SamplerPositions[1]);
  EXPECT_EQ(Link.State.SamplerZeroPosition, 1);
  EXPECT_EQ(StoredPosition(1), "True");
}

TEST_F(AutoSampler, SettingsThatCannotBeStoredHoldAndItIsSaid) {
  std::filesystem::remove(Folder.Path("config.ini"));
  BlockSettings();
  Ask([this](QWidget& dialog) {
    Click(dialog, Check(5).c_str());
    Click(dialog, "CommandSetup");
    EXPECT_EQ(State(dialog), "Setup Sampler Error.");
    EXPECT_NE(Display.Remark, "");
  });
  EXPECT_FALSE(Link.State.SamplerPositions[5]);
}

}  // namespace
}  // namespace spectrane::testing_windows
