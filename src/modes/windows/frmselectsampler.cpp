#include "modes/windows/frmselectsampler.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QFormLayout>
#include <QGuiApplication>
#include <QLabel>
#include <QScopeGuard>
#include <QVBoxLayout>

#include "app/ground/dialogparts.h"
#include "app/ground/words.h"
#include "base/language.h"
#include "base/textnumbers.h"

namespace spectrane {
namespace {

constexpr int kSamplerTitle = 1900;
constexpr int kFirstPosition = 1901;
constexpr int kMoving = 931;
constexpr int kSamplerError = 1912;
constexpr int kStateCharacters = 36;

QString MovingTo(const QString& position) {
  return Caption(kMoving) + u' ' + position;
}

}  // namespace

FrmSelectSampler::FrmSelectSampler(MainWindow& frame)
    : QDialog(&frame.Frame()), frame_(frame), positions_(new QComboBox(this)), state_(new QLabel(this)) {
  DialogParts parts(*this, "FrmSelectSampler", Caption(kSamplerTitle));
  QStringList states = {Caption(kSamplerError), Caption(kCommunicationError)};
  for (int i = 0; i < kSamplerPositionCount; ++i) {
    positions_->addItem(Caption(kFirstPosition + i));
    states.append(MovingTo(positions_->itemText(i)));
  }
  auto* const form = new QFormLayout;
  form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
  form->addRow(
      parts.Finish(*positions_, "ComboSelectSampler", "LabelSampler", QStringLiteral("Sampler Position")),
      positions_);
  state_->setObjectName(QStringLiteral("LabelState"));
  KeepRoomFor(*state_, states, kStateCharacters);

  auto* const all = new QVBoxLayout(this);
  all->addLayout(form);
  all->addWidget(state_);
  all->addStretch();
  all->addLayout(parts.OKAndCancel());
  all->setSizeConstraint(QLayout::SetFixedSize);
  positions_->setFocus();
}

int FrmSelectSampler::exec() {
  LoadPosition();
  return QDialog::exec();
}

void FrmSelectSampler::LoadPosition() {
  std::int32_t position = 0;
  const bool known = WithInstrument([&] { return frame_.Link().Instrument.GetSampler(position); });
  positions_->setCurrentIndex(position >= 1 && position <= kSamplerPositionCount ? position - 1 : 0);
  if (!known) Tell(kCommunicationError);
}

void FrmSelectSampler::accept() {
  if (busy_) return;
  state_->setText(MovingTo(positions_->currentText()));
  if (told_) frame_.Display().SetRemark({});
  told_ = false;
  std::int32_t position = positions_->currentIndex() + 1;
  const bool moved = WithInstrument([&] {
    // The move takes seconds in which nothing is painted.
    repaint();
    QGuiApplication::sync();
    return frame_.Link().Instrument.SetSampler(position);
  });
  if (moved) {
    QDialog::accept();
    return;
  }
  positions_->setCurrentIndex(0);
  Tell(kSamplerError);
}

void FrmSelectSampler::done(int result) {
  if (!busy_) QDialog::done(result);
}

bool FrmSelectSampler::WithInstrument(const std::function<bool()>& work) {
  SetBusy(true);
  const auto free = qScopeGuard([this] { SetBusy(false); });
  return work();
}

void FrmSelectSampler::SetBusy(bool busy) {
  busy_ = busy;
  positions_->setDisabled(busy);
  for (QAbstractButton* button : findChildren<QAbstractButton*>()) button->setDisabled(busy);
  if (busy) {
    setCursor(Qt::WaitCursor);
  } else {
    unsetCursor();
    positions_->setFocus();
  }
}

void FrmSelectSampler::Tell(int textId) {
  state_->setText(Caption(textId));
  frame_.Display().SetRemark(Text(textId));
  told_ = true;
}

}  // namespace spectrane
