#include "tools/windows/wavelengthdialog.h"

#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

#include <cmath>

#include "app/ground/dialogparts.h"
#include "base/numbers.h"
#include "tools/setup.h"

namespace spectrane {
namespace {

constexpr const char* kShownFormat = "0.0";
constexpr int kFieldWidth = 12;
/// Half the step of the instrument [nm].
constexpr double kHalfStep = 0.05;

}  // namespace

WavelengthDialog::WavelengthDialog(MainWindow& frame, const Kind& kind)
    : ToolDialog(frame, Live::Stands), kind_(kind), field_(new QLineEdit(this)) {}

void WavelengthDialog::BuildField(DialogParts& parts, QVBoxLayout& all, const QString& label) {
  const QString range = WavelengthRangeText(kind_.Lowest, kind_.Highest);
  field_->setAlignment(Qt::AlignRight);
  field_->setMinimumWidth(field_->fontMetrics().averageCharWidth() * kFieldWidth);
  QLabel* const name = parts.Finish(*field_, "WavelengthText", "LabelWavelength", label);
  field_->setAccessibleDescription(range);
  auto* const rangeLabel = new QLabel(range, this);
  rangeLabel->setForegroundRole(QPalette::PlaceholderText);
  rangeLabel->setAlignment(Qt::AlignRight);
  auto* const form = new QFormLayout;
  form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
  form->addRow(name, field_);
  form->addRow(QString(), rangeLabel);
  all.addLayout(form);
  all.addWidget(MakeStateLine({TookAnother(QStringLiteral("0000.0"))}));
  field_->setFocus();
}

QString WavelengthDialog::TookAnother(const QString& wavelength) const {
  return QString::fromUtf8(kind_.TookAnother).arg(wavelength);
}

void WavelengthDialog::Load() {
  std::optional<double> wavelength;
  WithInstrument(
      0, [&] { wavelength = kind_.Read(Link()); }, [&] { wavelength ? Show(*wavelength) : TellLinkLost(); });
}

void WavelengthDialog::Begin() {
  Tell({});
}

void WavelengthDialog::accept() {
  WhenFree([this] {
    Begin();
    const WavelengthEntry entry =
        ReadWavelengthEntry(field_->text().toStdString(), kind_.Lowest, kind_.Highest);
    if (entry.Fault == EntryFault::None) {
      Set(entry.Value);
    } else {
      Refuse(entry.Fault == EntryFault::NoNumber ? kind_.NoNumberTextId : kind_.OutOfRangeTextId);
    }
  });
}

void WavelengthDialog::Refuse(int textId) {
  Frame().Boxes().Show(textId);
  field_->setFocus();
  field_->selectAll();
}

void WavelengthDialog::Set(double wavelength) {
  std::optional<double> position;
  WithInstrument(
      kind_.LongestSeconds, [&] { position = kind_.Set(Link(), wavelength); },
      [&] {
        if (!position) {
          TellLinkLost();
          return;
        }
        Show(*position);
        // An instrument that did not go where it was sent.
        if (std::abs(*position - wavelength) > kHalfStep) Tell(TookAnother(field_->text()));
      });
}

void WavelengthDialog::Show(double wavelength) {
  field_->setText(QString::fromStdString(Format(wavelength, kShownFormat)));
  field_->selectAll();
}

}  // namespace spectrane
