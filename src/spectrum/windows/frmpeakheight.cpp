#include "spectrum/windows/frmpeakheight.h"

#include <QFormLayout>
#include <QLabel>
#include <QVBoxLayout>

#include <optional>

#include "app/ground/dialogparts.h"
#include "app/ground/mainwindow.h"
#include "app/ground/numberfield.h"
#include "app/ground/words.h"

namespace spectrane {
namespace {

constexpr int kPeakHeightLabel = 1131;
constexpr int kPeakHeightTitle = 1132;
constexpr const char* kPeakHeightFormat = "0.000##";
constexpr int kPeakHeightCharacters = 12;

}  // namespace

FrmPeakHeight::FrmPeakHeight(MainWindow& frame, double height)
    : QDialog(&frame.Frame()), field_(new NumberField(kPeakHeightCharacters, this)), height_(height) {
  DialogParts parts(*this, "FrmPeakHeight", Caption(kPeakHeightTitle));
  field_->SetNumber(height, kPeakHeightFormat);
  field_->selectAll();
  auto* const form = new QFormLayout;
  QLabel* const label = parts.Finish(*field_, "PeakHeightText", "LabelPeakHeight", Caption(kPeakHeightLabel));
  form->addRow(label, field_);
  auto* const range = new QLabel(tr("Abs, 0 or more"), this);
  range->setForegroundRole(QPalette::PlaceholderText);
  range->setAlignment(Qt::AlignRight);
  field_->setAccessibleDescription(range->text());
  form->addRow(QString(), range);
  auto* const all = new QVBoxLayout(this);
  all->addLayout(form);
  all->addStretch();
  all->addLayout(parts.OKAndCancel());
  all->setSizeConstraint(QLayout::SetFixedSize);
  field_->setFocus();
}

void FrmPeakHeight::accept() {
  const std::optional<double> height = field_->Number();
  if (!height || *height < 0) {
    field_->PointOut();
    return;
  }
  height_ = *height;
  QDialog::accept();
}

}  // namespace spectrane
