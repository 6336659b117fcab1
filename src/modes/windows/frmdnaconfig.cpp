#include "modes/windows/frmdnaconfig.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QRadioButton>
#include <QVBoxLayout>

#include <algorithm>

#include "app/ground/dialogparts.h"
#include "app/ground/numberfield.h"
#include "app/ground/words.h"
#include "modes/windows/numberentry.h"
#include "modes/windows/picformular.h"
#include "modes/windows/wavelengthentry.h"

namespace spectrane {
namespace {

constexpr int kDNAConfigTitle = 1041;
constexpr int kModesTitle = 1031;
constexpr int kFirstMode = 1032;
constexpr int kDNAWavelengthsTitle = 1035;
constexpr int kFirstDNAWavelength = 1036;
constexpr int kFactorsTitle = 1039;
constexpr int kDNAWavelengthRefused = 1040;

constexpr const char* kModeNames[] = {"Item1Option", "Item2Option", "CustomOption"};
constexpr const char* kDNAWavelengthNames[] = {"WaveLength1Text", "WaveLength2Text",
                                               "WaveLengthReferenceText"};
constexpr const char* kFactorNames[] = {"F1Text", "F2Text", "F3Text", "F4Text"};
constexpr const char* kDNAWavelengthFormat = "0.0";
constexpr const char* kFactorFormat = "0.0##########";

/// Fields with their labels in front and `unit` behind them, one below the other.
void FillColumn(QGridLayout& grid, int row, QLabel* label, NumberField* field, const QString& unit) {
  grid.addWidget(label, row, 0);
  grid.addWidget(field, row, 1);
  if (!unit.isEmpty()) grid.addWidget(new QLabel(unit), row, 2);
}

}  // namespace

FrmDNAConfig::FrmDNAConfig(MainWindow& frame, const DNASettings& settings)
    : QDialog(&frame.Frame()),
      frame_(frame),
      settings_(settings),
      shown_(ModeOf(settings)),
      formula_(new PicFormular(this)) {
  DialogParts parts(*this, "FrmDNAConfig", Caption(kDNAConfigTitle));
  MakeFields();
  // The factors differ in their digits only: they choose their keys first.
  QGroupBox* const factors = MakeFactors(parts);
  auto* const top = new QHBoxLayout;
  for (QGroupBox* group : {MakeModes(parts), MakeWavelengths(parts), factors}) top->addWidget(group);
  formula_->setObjectName(QStringLiteral("PicFormular"));
  formula_->setAccessibleName(QStringLiteral("Formulas"));
  auto* const all = new QVBoxLayout(this);
  all->addLayout(top);
  all->addWidget(formula_);
  all->addLayout(parts.OKAndCancel());
  all->setSizeConstraint(QLayout::SetFixedSize);

  modes_[static_cast<std::size_t>(shown_) - 1]->setChecked(true);
  ShowValues(settings.Values);
  ShowMode();
  for (QRadioButton* mode : modes_) connect(mode, &QRadioButton::toggled, this, [this] { ShowMode(); });
  for (NumberField* field : wavelengths_)
    connect(field, &QLineEdit::textChanged, this, [this] { ShowFormula(); });
  modes_[static_cast<std::size_t>(shown_) - 1]->setFocus();
}

// In the order of Tab.
void FrmDNAConfig::MakeFields() {
  for (QRadioButton*& mode : modes_) mode = new QRadioButton(this);
  for (NumberField*& field : wavelengths_) field = new NumberField(kFieldCharacters, this);
  for (NumberField*& field : factors_) field = new NumberField(kFieldCharacters, this);
}

QGroupBox* FrmDNAConfig::MakeModes(DialogParts& parts) {
  auto* const group = new QGroupBox(Caption(kModesTitle), this);
  group->setObjectName(QStringLiteral("FrameMode"));
  auto* const column = new QVBoxLayout(group);
  for (std::size_t i = 0; i < modes_.size(); ++i) {
    parts.Finish(*modes_[i], kModeNames[i], Caption(kFirstMode + static_cast<int>(i)));
    column->addWidget(modes_[i]);
  }
  column->addStretch();
  return group;
}

QGroupBox* FrmDNAConfig::MakeWavelengths(DialogParts& parts) {
  auto* const group = new QGroupBox(Caption(kDNAWavelengthsTitle), this);
  group->setObjectName(QStringLiteral("FrameWavelength"));
  auto* const grid = new QGridLayout(group);
  for (std::size_t i = 0; i < wavelengths_.size(); ++i) {
    const int row = static_cast<int>(i);
    QLabel* const label = parts.Finish(*wavelengths_[i], kDNAWavelengthNames[i],
                                       (QByteArray("Label") + kDNAWavelengthNames[i]).constData(),
                                       Caption(kFirstDNAWavelength + row));
    wavelengths_[i]->setAccessibleDescription(InstrumentRangeText(frame_));
    FillColumn(*grid, row, label, wavelengths_[i], QStringLiteral("nm"));
  }
  auto* const range = new QLabel(InstrumentRangeText(frame_), group);
  range->setForegroundRole(QPalette::PlaceholderText);
  range->setAlignment(Qt::AlignRight);
  grid->addWidget(range, grid->rowCount(), 0, 1, 3);
  grid->setRowStretch(grid->rowCount(), 1);
  return group;
}

QGroupBox* FrmDNAConfig::MakeFactors(DialogParts& parts) {
  auto* const group = new QGroupBox(Caption(kFactorsTitle), this);
  group->setObjectName(QStringLiteral("FrameParameter"));
  auto* const grid = new QGridLayout(group);
  for (std::size_t i = 0; i < factors_.size(); ++i) {
    const int row = static_cast<int>(i);
    QLabel* const label =
        parts.Finish(*factors_[i], kFactorNames[i], (QByteArray("Label") + kFactorNames[i]).constData(),
                     QStringLiteral("F%1").arg(row + 1));
    FillColumn(*grid, row, label, factors_[i], QString());
  }
  grid->setRowStretch(grid->rowCount(), 1);
  return group;
}

DNAMode FrmDNAConfig::ModeChosen() const {
  const auto chosen = std::ranges::find_if(modes_, [](QRadioButton* mode) { return mode->isChecked(); });
  return chosen == modes_.end() ? shown_ : static_cast<DNAMode>(chosen - modes_.begin() + 1);
}

void FrmDNAConfig::ShowMode() {
  const DNAMode mode = ModeChosen();
  if (mode != shown_) {
    if (shown_ == DNAMode::Custom) custom_ = ValuesTyped();
    shown_ = mode;
    if (mode == DNAMode::Mode1) ShowValues(kDNAMode1);
    if (mode == DNAMode::Mode2) ShowValues(kDNAMode2);
    if (mode == DNAMode::Custom && custom_) ShowValues(*custom_);
  }
  LetTabReachChosen(modes_);
  const bool fixed = mode != DNAMode::Custom;
  const auto letIn = [this, fixed](NumberField& field) {
    field.setReadOnly(fixed);
    QPalette colours = palette();
    if (fixed) colours.setBrush(QPalette::Base, colours.window());
    field.setPalette(colours);
  };
  for (NumberField* field : wavelengths_) letIn(*field);
  for (NumberField* field : factors_) letIn(*field);
  ShowFormula();
}

void FrmDNAConfig::ShowValues(const DNAValues& values) {
  for (std::size_t i = 0; i < wavelengths_.size(); ++i)
    wavelengths_[i]->SetNumber(values.WaveLength[i], kDNAWavelengthFormat);
  for (std::size_t i = 0; i < factors_.size(); ++i) factors_[i]->SetNumber(values.Factor[i], kFactorFormat);
}

void FrmDNAConfig::ShowFormula() {
  std::array<QString, 3> texts;
  for (std::size_t i = 0; i < wavelengths_.size(); ++i)
    texts[i] = wavelengths_[i]->Number() ? wavelengths_[i]->text().trimmed() : QStringLiteral("?");
  formula_->ShowWavelengths(texts);
}

DNAValues FrmDNAConfig::ValuesTyped() const {
  DNAValues values = custom_.value_or(settings_.Values);
  for (std::size_t i = 0; i < wavelengths_.size(); ++i)
    values.WaveLength[i] = wavelengths_[i]->Number().value_or(values.WaveLength[i]);
  for (std::size_t i = 0; i < factors_.size(); ++i)
    values.Factor[i] = factors_[i]->Number().value_or(values.Factor[i]);
  return values;
}

bool FrmDNAConfig::TakeFields(DNAValues& values) {
  for (std::size_t i = 0; i < wavelengths_.size(); ++i) {
    if (!TakeWavelength(frame_, *wavelengths_[i], kDNAWavelengthRefused, values.WaveLength[i])) return false;
  }
  for (std::size_t i = 0; i < factors_.size(); ++i) {
    if (!TakeNumber(frame_, *factors_[i], values.Factor[i])) return false;
  }
  return true;
}

void FrmDNAConfig::accept() {
  DNASettings settings = settings_;
  if (!TakeFields(settings.Values)) return;
  // What a file says of its mode stays as it is where nothing was changed.
  if (settings != settings_ || shown_ != ModeOf(settings_))
    settings.Option = static_cast<std::int32_t>(shown_);
  settings_ = settings;
  if (!StoreSettings<DNASettings>(frame_.Settings(), kDNASettingRows, settings_)) RemarkOnSettings(frame_);
  QDialog::accept();
}

}  // namespace spectrane
