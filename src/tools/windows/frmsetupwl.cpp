#include "tools/windows/frmsetupwl.h"

#include <QPushButton>
#include <QVBoxLayout>

#include "app/ground/dialogparts.h"
#include "app/ground/words.h"
#include "tools/setup.h"
#include "tools/windows/frmwait.h"

namespace spectrane {
namespace {

constexpr int kSetupTitle = 1133;
constexpr int kSetupWavelength = 1134;
constexpr int kZero = 1135;
constexpr int kSetupOK = 1136;
constexpr int kSetupClose = 1137;
constexpr int kDataError = 1138;
constexpr int kRangeError = 1139;

}  // namespace

FrmSetupWL::FrmSetupWL(MainWindow& frame)
    : WavelengthDialog(frame, {kDataError, kRangeError, frame.Link().State.WavelengthMin,
                               frame.Link().State.WavelengthMax, LongestSeconds({"swl ", "getwl"}),
                               &ReadWavelength, &MoveWavelength, "The instrument stands at %1 nm."}) {
  DialogParts parts(*this, "FrmSetupWL", Caption(kSetupTitle));
  auto* const all = new QVBoxLayout(this);
  BuildField(parts, *all, Caption(kSetupWavelength));
  all->addStretch();
  all->addLayout(parts.ButtonRow({{"OKCmd", kSetupOK}, {"ZeroCmd", kZero}, {"CloseCmd", kSetupClose}}));
  all->setSizeConstraint(QLayout::SetFixedSize);
  connect(findChild<QPushButton*>(QStringLiteral("OKCmd")), &QPushButton::clicked, this,
          &WavelengthDialog::accept);
  connect(findChild<QPushButton*>(QStringLiteral("ZeroCmd")), &QPushButton::clicked, this,
          [this] { WhenFree([this] { TakeReference(); }); });
  connect(findChild<QPushButton*>(QStringLiteral("CloseCmd")), &QPushButton::clicked, this, &QDialog::reject);
}

void FrmSetupWL::TakeReference() {
  Begin();
  // A rezero that failed would blame the cable in the status bar.
  if (!IsConnected()) {
    TellLinkLost();
    return;
  }
  bool taken = false;
  WithInstrument(
      LongestSeconds({"rezero", "ge 30"}), [&] { taken = Link().Live.mmuRezeroEnergy(); },
      [&] {
        if (!taken) TellLinkLost();
      });
}

}  // namespace spectrane
