#include "tools/windows/frmresetwavelength.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "app/ground/commands.h"
#include "app/ground/dialogparts.h"
#include "app/ground/words.h"
#include "tools/windows/frmwait.h"

namespace spectrane {
namespace {

constexpr int kResetNoInstrument = 1120;
constexpr int kResetStart = 1122;
constexpr int kResetClose = 1123;
constexpr int kResetInformation = 1124;
constexpr int kResetFailed = 1125;
constexpr int kResetDone = 1126;
constexpr int kInformationCharacters = 48;
constexpr const char* kReadingStands = "The live reading stands still until a blank is set.";

}  // namespace

FrmResetWaveLength::FrmResetWaveLength(MainWindow& frame) : ToolDialog(frame, Live::GoesOn) {
  DialogParts parts(*this, "FrmResetWaveLength", PlainWords(kResetWavelength));
  auto* const information = new QLabel(Words(kResetInformation).trimmed(), this);
  information->setObjectName(QStringLiteral("LabelInfor"));
  KeepRoomFor(*information, {information->text()}, kInformationCharacters);
  auto* const all = new QVBoxLayout(this);
  all->addWidget(information);
  all->addWidget(MakeStateLine({QString::fromLatin1(kReadingStands)}));
  all->addStretch();
  all->addLayout(parts.ButtonRow({{"CmdStart", kResetStart}, {"CmdClose", kResetClose}}));
  all->setSizeConstraint(QLayout::SetFixedSize);
  connect(findChild<QPushButton*>(QStringLiteral("CmdStart")), &QPushButton::clicked, this,
          [this] { WhenFree([this] { Start(); }); });
  connect(findChild<QPushButton*>(QStringLiteral("CmdClose")), &QPushButton::clicked, this, &QDialog::reject);
}

void FrmResetWaveLength::Load() {
  if (!IsConnected()) Frame().Boxes().Show(kResetNoInstrument);
}

void FrmResetWaveLength::Start() {
  Tell({});
  if (!IsConnected()) {
    Frame().Boxes().Show(kResetNoInstrument);
    return;
  }
  UpkeepEnd end = UpkeepEnd::LinkLost;
  WithInstrument(
      LongestSeconds({"getwl", "adjustwl", "getwl", "getdark", "rezero"}),
      [&] {
        Link().Live.SampleTimerStop();
        end = ResetWavelength(Link());
      },
      [&] { TellEnd(end); });
}

void FrmResetWaveLength::TellEnd(UpkeepEnd end) {
  if (end == UpkeepEnd::Failed) {
    // What the instrument does now is unknown: no reading goes on by itself.
    Frame().Boxes().Show(kResetFailed);
    Frame().Display().SetRemark(kReadingStands);
    Tell(QString::fromLatin1(kReadingStands));
    return;
  }
  if (end == UpkeepEnd::LinkLost) TellLinkLost();
  Link().Live.SampleTimerStart();
  if (end == UpkeepEnd::Done) Frame().Boxes().Show(kResetDone);
}

}  // namespace spectrane
