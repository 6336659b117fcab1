#include "tools/windows/frmlampswitch.h"

#include <QPushButton>
#include <QVBoxLayout>

#include "app/ground/commands.h"
#include "app/ground/dialogparts.h"
#include "app/ground/words.h"
#include "tools/setup.h"
#include "tools/windows/frmwait.h"

namespace spectrane {
namespace {

constexpr int kLampWavelength = 701;
constexpr int kLampSetup = 1127;
constexpr int kLampClose = 1128;
constexpr int kLampDataError = 1129;
constexpr int kLampRangeError = 1130;

}  // namespace

FrmLampSwitch::FrmLampSwitch(MainWindow& frame)
    : WavelengthDialog(frame, {kLampDataError, kLampRangeError, kLampSwitchLowest, kLampSwitchHighest,
                               LongestSeconds({"setlampwl ", "getlampwl"}), &ReadLampWavelength,
                               &MoveLampWavelength, "The instrument changes lamps at %1 nm."}) {
  DialogParts parts(*this, "FrmLampSwitch", PlainWords(kLampSwitchWavelength));
  auto* const all = new QVBoxLayout(this);
  BuildField(parts, *all, Caption(kLampWavelength));
  all->addStretch();
  all->addLayout(parts.ButtonRow({{"OKCmd", kLampSetup}, {"CloseCmd", kLampClose}}));
  all->setSizeConstraint(QLayout::SetFixedSize);
  connect(findChild<QPushButton*>(QStringLiteral("OKCmd")), &QPushButton::clicked, this,
          &WavelengthDialog::accept);
  connect(findChild<QPushButton*>(QStringLiteral("CloseCmd")), &QPushButton::clicked, this, &QDialog::reject);
}

}  // namespace spectrane
