#include "spectrum/windows/frmmaxminaverage.h"

#include <QFormLayout>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <optional>
#include <utility>

#include "app/ground/commands.h"
#include "app/ground/dialogparts.h"
#include "app/ground/numberfield.h"
#include "app/ground/words.h"
#include "base/numbers.h"
#include "spectrum/spectrumdocument.h"

namespace spectrane {
namespace {

constexpr int kStartLabel = 952;
constexpr int kEndLabel = 953;
constexpr int kCaculateCaption = 1313;
constexpr int kCloseCaption = 919;
constexpr int kMaxLabel = 1314;
constexpr int kMinLabel = 1315;
constexpr int kAverageLabel = 1316;
constexpr int kRangeCharacters = 10;

QLabel* ResultLabel(QDialog& dialog, const char* name, const QString& caption) {
  auto* const label = new QLabel(&dialog);
  label->setObjectName(QLatin1String(name));
  label->setAccessibleName(caption);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  return label;
}

}  // namespace

FrmMaxMinAverage::FrmMaxMinAverage(const SpectrumDocument& spectrum, const DisplayFormats& formats,
                                   Range range, std::function<void(const Range&)> keepRange, QWidget* parent)
    : QDialog(parent),
      spectrum_(spectrum),
      formats_(formats),
      range_(range),
      keepRange_(std::move(keepRange)),
      start_(new NumberField(kRangeCharacters, this)),
      end_(new NumberField(kRangeCharacters, this)) {
  DialogParts parts(*this, "FrmMaxMinAverage", PlainWords(kMaxMinAverage));
  auto* const form = new QFormLayout;
  form->addRow(parts.Finish(*start_, "TextStartWavelength", "LabelStartWavelength", Caption(kStartLabel)),
               start_);
  form->addRow(parts.Finish(*end_, "TextEndWavelength", "LabelEndWavelength", Caption(kEndLabel)), end_);
  auto* const results = new QFormLayout;
  const auto row = [&](const char* name, int label) {
    const QString caption = PlainWords(label);
    QLabel* const result = ResultLabel(*this, name, caption);
    results->addRow(caption + u':', result);
    return result;
  };
  max_ = row("LabelMax", kMaxLabel);
  min_ = row("LabelMin", kMinLabel);
  average_ = row("LabelAverage", kAverageLabel);
  auto* const caculate = new QPushButton(this);
  parts.Finish(*caculate, "CmdCaculate", Caption(kCaculateCaption));
  caculate->setDefault(true);
  connect(caculate, &QPushButton::clicked, this, &FrmMaxMinAverage::Caculate);
  auto* const close = new QPushButton(this);
  parts.Finish(*close, "CmdClose", Caption(kCloseCaption));
  close->setAutoDefault(false);
  connect(close, &QPushButton::clicked, this, &QDialog::reject);
  auto* const buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(caculate);
  buttons->addWidget(close);
  auto* const all = new QVBoxLayout(this);
  all->addLayout(form);
  all->addSpacing(fontMetrics().height() / 2);
  all->addLayout(results);
  all->addStretch();
  all->addLayout(buttons);
  ShowResults();
  start_->setFocus();
  start_->selectAll();
}

void FrmMaxMinAverage::Caculate() {
  std::optional<double> start = start_->Number();
  std::optional<double> end = end_->Number();
  if (!start || !end) {
    (start ? end_ : start_)->PointOut();
    return;
  }
  if (*start > *end) std::swap(start, end);
  range_ = {*start, *end};
  keepRange_(range_);
  ShowResults();
}

QString FrmMaxMinAverage::LineOf(const SpectrumValues& values, bool withWavelength) const {
  std::string line;
  if (withWavelength) line = Format(values.Wavelength, formats_.WavelengthFormat) + " nm  ";
  line += Format(values.Abs, formats_.AbsFormat) + " Abs  ";
  line += Format(values.Trans, formats_.TransFormat) + "%T";
  return QString::fromStdString(line);
}

void FrmMaxMinAverage::ShowResults() {
  const auto [start, end] = range_;
  start_->SetNumber(start, formats_.WavelengthFormat);
  end_->SetNumber(end, formats_.WavelengthFormat);
  const MaxMinAverage result =
      CaculateMaxMinAverage({spectrum_.Wavelength(), spectrum_.Trans(), spectrum_.Abs()}, start, end);
  max_->setText(LineOf(result.Max, true));
  min_->setText(LineOf(result.Min, true));
  average_->setText(LineOf(result.Average, false));
}

}  // namespace spectrane
