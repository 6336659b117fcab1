#include "modes/windows/frmbasicconfig.h"

#include <QFormLayout>
#include <QLabel>
#include <QVBoxLayout>

#include "app/ground/dialogparts.h"
#include "app/ground/numberfield.h"
#include "app/ground/words.h"
#include "modes/photometry/basicsettings.h"
#include "modes/windows/numberentry.h"
#include "modes/windows/wavelengthentry.h"

namespace spectrane {
namespace {

constexpr int kBasicConfigTitle = 1318;
constexpr int kWavelengthLabel = 701;
constexpr const char* kFieldFormat = "0.0";

}  // namespace

FrmBasicConfig::FrmBasicConfig(MainWindow& frame, double wavelength)
    : QDialog(&frame.Frame()), frame_(frame), wavelength_(wavelength) {
  DialogParts parts(*this, "FrmBasicConfig", Caption(kBasicConfigTitle));

  field_ = new NumberField(kFieldCharacters, this);
  field_->setAccessibleDescription(InstrumentRangeText(frame));
  field_->SetNumber(wavelength, kFieldFormat);
  field_->selectAll();
  QLabel* const label = parts.Finish(*field_, "WavelengthText", "LabelWavelength", Caption(kWavelengthLabel));
  auto* const range = new QLabel(InstrumentRangeText(frame), this);
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

void FrmBasicConfig::accept() {
  if (!TakeWavelength(frame_, *field_, kWavelengthRefused, wavelength_)) return;
  BasicSettings settings{wavelength_};
  if (!StoreSettings<BasicSettings>(frame_.Settings(), kBasicSettingRows, settings)) RemarkOnSettings(frame_);
  QDialog::accept();
}

}  // namespace spectrane
