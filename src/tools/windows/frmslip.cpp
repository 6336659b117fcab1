#include "tools/windows/frmslip.h"

#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "app/ground/dialogparts.h"
#include "app/ground/words.h"
#include "tools/setup.h"
#include "tools/windows/frmwait.h"

namespace spectrane {
namespace {

constexpr int kSlipTitle = 1800;
constexpr int kFirstWidth = 1801;
constexpr int kSlipClose = 1806;
constexpr int kSlipDone = 1807;
constexpr const char* kBlanksAnew = "After another slit width every blank has to be set anew.";
constexpr int kSlipFailed = 1808;
constexpr int kSlipSetup = 1127;
constexpr int kSlipUnknown = 1092;
constexpr const char* kOptionNames[] = {"OptionSlip05nm", "OptionSlip10nm", "OptionSlip20nm",
                                        "OptionSlip40nm", "OptionSlip50nm"};

}  // namespace

FrmSlip::FrmSlip(MainWindow& frame) : ToolDialog(frame, Live::Stands) {
  DialogParts parts(*this, "FrmSlip", Caption(kSlipTitle));
  auto* const box = new QGroupBox(PlainWords(kSlipTitle), this);
  box->setObjectName(QStringLiteral("FrameSlip"));
  auto* const rows = new QVBoxLayout(box);
  for (std::size_t i = 0; i < options_.size(); ++i) {
    options_[i] = new QRadioButton(box);
    parts.Finish(*options_[i], kOptionNames[i], Caption(kFirstWidth + static_cast<int>(i)));
    rows->addWidget(options_[i]);
  }
  auto* const all = new QVBoxLayout(this);
  all->addWidget(box);
  all->addWidget(MakeStateLine({Words(kSlipUnknown)}));
  all->addStretch();
  all->addLayout(parts.ButtonRow({{"CommandSetup", kSlipSetup}, {"CommandClose", kSlipClose}}));
  all->setSizeConstraint(QLayout::SetFixedSize);
  connect(findChild<QPushButton*>(QStringLiteral("CommandSetup")), &QPushButton::clicked, this,
          [this] { WhenFree([this] { Setup(); }); });
  connect(findChild<QPushButton*>(QStringLiteral("CommandClose")), &QPushButton::clicked, this,
          &QDialog::reject);
}

void FrmSlip::Load() {
  std::optional<std::int32_t> code;
  WithInstrument(
      0, [&] { code = ReadSlit(Link()); },
      [&] {
        if (!code) {
          TellLinkLost();
        } else if (*code == 0) {
          Tell(Words(kSlipUnknown));
        }
      });
  if (code.value_or(0) == 0) return;
  QRadioButton* const option = options_.at(static_cast<std::size_t>(*code) - 1);
  option->setChecked(true);
  option->setFocus();
}

std::int32_t FrmSlip::ChosenCode() const {
  for (std::size_t i = 0; i < options_.size(); ++i) {
    if (options_[i]->isChecked()) return static_cast<std::int32_t>(i) + 1;
  }
  return 0;
}

void FrmSlip::Setup() {
  Tell({});
  const std::int32_t code = ChosenCode();
  if (code == 0) {
    Frame().Boxes().Show(kSlipFailed);
    return;
  }
  bool set = false;
  WithInstrument(
      LongestSeconds({"setslip "}), [&] { set = SetSlit(Link(), Frame().Display(), code); },
      [&] {
        if (set) Frame().Display().SetRemark(kBlanksAnew);
        Frame().Boxes().Show(set ? kSlipDone : kSlipFailed);
      });
}

}  // namespace spectrane
