#include "tools/windows/frmautosampler.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include <vector>

#include "app/ground/dialogparts.h"
#include "app/ground/words.h"

namespace spectrane {
namespace {

constexpr int kSamplerSetupTitle = 1900;
constexpr int kFirstSamplerPosition = 1901;
constexpr int kZeroPosition = 1909;
constexpr int kSamplerSetup = 1127;
constexpr int kSamplerClose = 1910;
constexpr int kSamplerDone = 1911;
constexpr int kSamplerFailed = 1912;
constexpr const char* kSamplerSection = "Automatic Sampler";

std::string NumberedName(const char* before, std::size_t index, const char* behind) {
  return before + std::to_string(index + 1) + behind;
}

/// A box with a row for each position.
template <typename Button, std::size_t count>
QGroupBox* PositionBox(DialogParts& parts, const char* name, const QString& caption, const char* buttonName,
                       std::array<Button*, count>& buttons) {
  auto* const box = new QGroupBox(caption);
  box->setObjectName(QLatin1String(name));
  auto* const rows = new QVBoxLayout(box);
  for (std::size_t i = 0; i < count; ++i) {
    buttons[i] = new Button(box);
    parts.Finish(*buttons[i], NumberedName(buttonName, i, "_Position").c_str(),
                 Caption(kFirstSamplerPosition + static_cast<int>(i)));
    // The position, and what about it.
    buttons[i]->setAccessibleDescription(caption);
    rows->addWidget(buttons[i]);
  }
  return box;
}

}  // namespace

FrmAutoSampler::FrmAutoSampler(MainWindow& frame) : ToolDialog(frame, Live::GoesOn) {
  DialogParts parts(*this, "FrmAutoSampler", Caption(kSamplerSetupTitle));
  auto* const boxes = new QHBoxLayout;
  boxes->addWidget(
      PositionBox(parts, "FrameUsedPositions", QStringLiteral("Sampler Position"), "Check_", used_));
  boxes->addWidget(PositionBox(parts, "FrameZeroPosition", PlainWords(kZeroPosition), "Option_", zero_));
  auto* const all = new QVBoxLayout(this);
  all->addLayout(boxes);
  all->addWidget(MakeStateLine({Words(kSamplerDone), Words(kSamplerFailed)}));
  all->addStretch();
  all->addLayout(parts.ButtonRow({{"CommandSetup", kSamplerSetup}, {"CommandClose", kSamplerClose}}));
  all->setSizeConstraint(QLayout::SetFixedSize);
  connect(findChild<QPushButton*>(QStringLiteral("CommandSetup")), &QPushButton::clicked, this,
          [this] { Setup(); });
  connect(findChild<QPushButton*>(QStringLiteral("CommandClose")), &QPushButton::clicked, this,
          &QDialog::reject);
}

void FrmAutoSampler::Load() {
  const InstrumentState& state = Link().State;
  for (std::size_t i = 0; i < used_.size(); ++i) {
    used_[i]->setChecked(state.SamplerPositions[i + 1]);
    zero_[i]->setChecked(state.SamplerZeroPosition == static_cast<std::int32_t>(i) + 1);
  }
}

void FrmAutoSampler::Setup() {
  InstrumentState& state = Link().State;
  WindowSettings& window = Frame().Window();
  std::vector<SettingValue> values;
  for (std::size_t i = 0; i < used_.size(); ++i) {
    state.SamplerPositions[i + 1] = window.SamplerPositions[i + 1] = used_[i]->isChecked();
    if (zero_[i]->isChecked())
      state.SamplerZeroPosition = window.SamplerZeroPosition = static_cast<std::int32_t>(i) + 1;
    const std::string key = NumberedName("", i, "# Position");
    values.push_back(StoredSetting(WindowSettingRow(kSamplerSection, key), window));
  }
  values.push_back(StoredSetting(WindowSettingRow(kSamplerSection, "Zero Position"), window));
  const bool stored = Frame().Settings().PutSettings(values);
  Tell(Words(stored ? kSamplerDone : kSamplerFailed));
  if (!stored) RemarkOnSettings(Frame());
}

}  // namespace spectrane
