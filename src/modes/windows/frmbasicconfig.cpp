#include "modes/windows/frmbasicconfig.h"

#include <cmath>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

#include <optional>

#include "app/ground/dialogparts.h"
#include "app/ground/words.h"
#include "base/numbers.h"
#include "modes/photometry/basicsettings.h"
#include "modes/windows/wavelengthentry.h"

namespace spectrane {
namespace {

constexpr int kBasicConfigTitle = 1318;
constexpr int kWavelengthLabel = 701;
constexpr const char* kFieldFormat = "0.0";

}  // namespace

FrmBasicConfig::FrmBasicConfig(MainWindow& frame, double wavelength)
    : QDialog(&frame.Frame()), frame_(frame), wavelength_(wavelength), field_(new QLineEdit(this)) {
  DialogParts parts(*this, "FrmBasicConfig", Caption(kBasicConfigTitle));

  textAtStart_ = QString::fromStdString(Format(wavelength, kFieldFormat));
  field_->setAccessibleDescription(RangeText());
  field_->setText(textAtStart_);
  field_->setAlignment(Qt::AlignRight);
  field_->setMinimumWidth(field_->fontMetrics().averageCharWidth() * kFieldCharacters);
  field_->selectAll();
  QLabel* const label = parts.Finish(*field_, "WavelengthText", "LabelWavelength", Caption(kWavelengthLabel));
  auto* const range = new QLabel(RangeText(), this);
  range->setForegroundRole(QPalette::PlaceholderText);
  range->setAlignment(Qt::AlignRight);
  auto* const form = new QFormLayout;
  form->addRow(label, field_);
  form->addRow(QString(), range);

  auto* const all = new QVBoxLayout(this);
  all->addLayout(form);
  all->addStretch();
  all->addLayout(parts.OKAndCancel());
  all->setSizeConstraint(QLayout::SetFixedSize);
  field_->setFocus();
}

QString FrmBasicConfig::RangeText() const {
  const InstrumentState& state = frame_.Link().State;
  return WavelengthRangeText(state.WavelengthMin, state.WavelengthMax);
}

bool FrmBasicConfig::TakeField() {
  // What the field does not show is not lost by a mere OK.
  const std::optional<double> wavelength =
      field_->text() == textAtStart_ ? wavelength_ : ParseNumber(field_->text().toStdString());
  const InstrumentState& state = frame_.Link().State;
  if (!wavelength || *wavelength < state.WavelengthMin || *wavelength > state.WavelengthMax) return false;
  // The instrument moves in steps of 0.1 nm; a row is labelled with what it can stand at.
  if (field_->text() != textAtStart_) wavelength_ = RoundToTenth(*wavelength);
  return true;
}

void FrmBasicConfig::accept() {
  if (!TakeField()) {
    frame_.Boxes().Show(kWavelengthRefused);
    field_->setFocus();
    field_->selectAll();
    return;
  }
  BasicSettings settings{wavelength_};
  if (!StoreSettings<BasicSettings>(frame_.Settings(), kBasicSettingRows, settings)) RemarkOnSettings(frame_);
  QDialog::accept();
}

}  // namespace spectrane
