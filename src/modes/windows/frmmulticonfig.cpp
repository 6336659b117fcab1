#include "modes/windows/frmmulticonfig.h"

#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

#include <utility>

#include "app/ground/dialogparts.h"
#include "app/ground/numberfield.h"
#include "app/ground/words.h"
#include "base/numbers.h"
#include "modes/windows/numberentry.h"
#include "modes/windows/wavelengthentry.h"

namespace spectrane {
namespace {

constexpr int kMultiConfigTitle = 1021;
constexpr int kWLNoLabel = 1016;
constexpr int kWLSetupTitle = 1017;
constexpr int kWLColumn = 1018;
constexpr int kParaColumn = 1019;
constexpr int kMismatch = 1020;

constexpr const char* kWLFormat = "0.0";
constexpr const char* kParaFormat = "0.0##########";
/// Lines of the left half of the table.
constexpr int kLeftLines = 8;

}  // namespace

FrmMultiConfig::FrmMultiConfig(MainWindow& frame, const MultiSettings& settings, SamplesAtStake mismatches)
    : QDialog(&frame.Frame()),
      frame_(frame),
      settings_(settings),
      mismatches_(std::move(mismatches)),
      numbers_(new QComboBox(this)) {
  DialogParts parts(*this, "FrmMultiConfig", Caption(kMultiConfigTitle));
  for (int number = 1; number <= kMostMultiWavelengths; ++number) numbers_->addItem(QString::number(number));
  auto* const number = new QHBoxLayout;
  number->addWidget(parts.Finish(*numbers_, "WLNoCombo", "LabelWLNo", Caption(kWLNoLabel)));
  number->addWidget(numbers_);
  number->addStretch();

  auto* const group = new QGroupBox(Caption(kWLSetupTitle), this);
  group->setObjectName(QStringLiteral("FrameWavelength"));
  auto* const inside = new QVBoxLayout(group);
  inside->addLayout(MakeTable(parts));
  auto* const range = new QLabel(InstrumentRangeText(frame_), group);
  range->setForegroundRole(QPalette::PlaceholderText);
  inside->addWidget(range);

  auto* const all = new QVBoxLayout(this);
  all->addLayout(number);
  all->addWidget(group);
  all->addLayout(parts.OKAndCancel());
  all->setSizeConstraint(QLayout::SetFixedSize);

  LoadValues();
  ShowUse();
  connect(numbers_, &QComboBox::currentIndexChanged, this, [this] { ShowUse(); });
  numbers_->setFocus();
}

QGridLayout* FrmMultiConfig::MakeTable(DialogParts& parts) {
  constexpr int kColumnsOfHalf = 4;
  auto* const grid = new QGridLayout;
  const auto heading = [this, grid](int text, const QString& unit, int column) {
    auto* const label = new QLabel(Caption(text) + unit, this);
    label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    grid->addWidget(label, 0, column);
  };
  for (const int first : {0, kColumnsOfHalf}) {
    heading(kWLColumn, QStringLiteral(" (nm)"), first + 1);
    heading(kParaColumn, QString(), first + 2);
  }
  for (int i = 0; i < kMostMultiWavelengths; ++i) {
    Line& line = lines_[static_cast<std::size_t>(i)] = MakeLine(parts, i);
    const int row = 1 + i % kLeftLines;
    const int first = i < kLeftLines ? 0 : kColumnsOfHalf;
    grid->addWidget(line.Label, row, first, Qt::AlignRight | Qt::AlignVCenter);
    grid->addWidget(line.WaveLength, row, first + 1);
    grid->addWidget(line.Parameter, row, first + 2);
  }
  // The halves stand apart.
  grid->setColumnMinimumWidth(kColumnsOfHalf - 1, 3 * fontMetrics().averageCharWidth());
  return grid;
}

FrmMultiConfig::Line FrmMultiConfig::MakeLine(DialogParts& parts, int index) {
  const QString number = QString::number(index + 1);
  Line line;
  line.WaveLength = new NumberField(kFieldCharacters, this);
  line.Parameter = new NumberField(kFieldCharacters, this);
  line.Label = parts.Finish(*line.WaveLength, ("WLText" + number.toLatin1()).constData(),
                            ("LabelWL" + number.toLatin1()).constData(), number);
  line.WaveLength->setAccessibleName(Caption(kWLColumn) + u' ' + number);
  line.WaveLength->setAccessibleDescription(InstrumentRangeText(frame_));
  line.WaveLength->setPlaceholderText(QString::fromStdString(Format(kUsualMultiWavelength, kWLFormat)));
  line.Parameter->setObjectName(QStringLiteral("ParaText") + number);
  line.Parameter->setAccessibleName(Caption(kParaColumn) + u' ' + number);
  line.Parameter->setPlaceholderText(QString::fromStdString(Format(kUsualMultiParameter, kParaFormat)));
  return line;
}

void FrmMultiConfig::LoadValues() {
  const bool usual = settings_.WorkWLNo < 1 || settings_.WorkWLNo > kMostMultiWavelengths;
  numbers_->setCurrentIndex((usual ? MultiSettings().WorkWLNo : settings_.WorkWLNo) - 1);
  for (std::size_t i = 0; i < lines_.size(); ++i) {
    lines_[i].WaveLength->SetNumber(settings_.WorkWaveLength[i], kWLFormat);
    lines_[i].Parameter->SetNumber(settings_.Parameter[i], kParaFormat);
  }
}

void FrmMultiConfig::ShowUse() {
  for (int i = 0; i < kMostMultiWavelengths; ++i) {
    const Line& line = lines_[static_cast<std::size_t>(i)];
    const bool used = i <= numbers_->currentIndex();
    line.Label->setEnabled(used);
    line.WaveLength->setEnabled(used);
    line.Parameter->setEnabled(used);
  }
}

bool FrmMultiConfig::TakeFields(MultiSettings& settings) {
  settings.WorkWLNo = numbers_->currentIndex() + 1;
  for (std::size_t i = 0; i < static_cast<std::size_t>(settings.WorkWLNo); ++i) {
    if (!TakeWavelength(frame_, *lines_[i].WaveLength, kWavelengthRefused, settings.WorkWaveLength[i]))
      return false;
    if (!TakeNumber(frame_, *lines_[i].Parameter, settings.Parameter[i])) return false;
  }
  return true;
}

void FrmMultiConfig::accept() {
  MultiSettings settings = settings_;
  if (!TakeFields(settings)) return;
  if (mismatches_ && mismatches_(settings)) {
    frame_.Boxes().Show(kMismatch,
                        "The rows keep their absorbances, and their results are computed anew. Their file "
                        "stays as it was: Save asks for another name.");
  }
  settings_ = settings;
  if (!StoreSettings<MultiSettings>(frame_.Settings(), kMultiSettingRows, settings_))
    RemarkOnSettings(frame_);
  QDialog::accept();
}

}  // namespace spectrane
