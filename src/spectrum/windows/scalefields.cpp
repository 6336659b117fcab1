#include "spectrum/windows/scalefields.h"

#include <QButtonGroup>
#include <QDialog>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QRadioButton>
#include <QVBoxLayout>

#include <algorithm>
#include <optional>
#include <utility>

#include "app/ground/dialogparts.h"
#include "app/ground/mainwindow.h"
#include "app/ground/numberfield.h"
#include "app/ground/words.h"
#include "base/numbers.h"

namespace spectrane {
namespace {

constexpr ScaleLimits kScaleLimits[] = {{-0.5, 3.0, "Abs"}, {-1.0, 200.0, "%T"}, {0.0, 65535.0, ""}};
constexpr int kModeTitle = 1166;
constexpr int kScaleTitle = 1169;
constexpr int kTopText = 1170;
constexpr int kBottomText = 1171;
constexpr int kRangeTitle = 1172;
constexpr int kStartText = 1173;
constexpr int kEndText = 1174;
constexpr int kEndCharacters = 10;
constexpr const char* kWavelengthEndFormat = "0.0";

const char* EndFormat(ScanMode mode) {
  return mode == ScanMode::Trans ? "0.0" : "0.000";
}

}  // namespace

const ScaleLimits& LimitsOf(ScanMode mode) {
  return kScaleLimits[static_cast<std::size_t>(mode) - 1];
}

void StoreRange(WLSOption& option, ScanMode mode, const ScanRange& range) {
  if (mode == ScanMode::Abs) {
    option.AbsTop = range.Top;
    option.AbsBottom = range.Bottom;
  } else if (mode == ScanMode::Trans) {
    option.TransTop = range.Top;
    option.TransBottom = range.Bottom;
  } else {
    option.EnergyTop = ToLong(range.Top);
    option.EnergyBottom = ToLong(range.Bottom);
  }
}

ScaleFields::ScaleFields(MainWindow& frame, QDialog& dialog, const WLSOption& option)
    : QObject(&dialog),
      frame_(frame),
      option_(option),
      mode_(option.DisplayMode == 2 ? ScanMode::Trans : ScanMode::Abs),
      modes_(new QButtonGroup(&dialog)),
      remark_(new QLabel(&dialog)) {
  remark_->setObjectName(QStringLiteral("LabelRemark"));
}

QGroupBox* ScaleFields::BuildMode(DialogParts& parts) {
  QGroupBox* const group = parts.Group("FrameMode", kModeTitle);
  auto* const column = new QVBoxLayout(group);
  parts.AddOptions(*column, *modes_, {{"OptionAbs", 703}, {"OptionTrans", 705}}, 1);
  modes_->button(static_cast<int>(mode_))->setChecked(true);
  connect(modes_, &QButtonGroup::idToggled, this, [this](int mode, bool on) {
    if (on) SwitchMode(mode);
  });
  return group;
}

void ScaleFields::SetFocus() {
  modes_->checkedButton()->setFocus();
}

QGroupBox* ScaleFields::BuildScale(DialogParts& parts) {
  QGroupBox* const group = parts.Group("FrameScale", kScaleTitle);
  auto* const grid = new QGridLayout(group);
  topUnit_ = new QLabel(group);
  topUnit_->setObjectName(QStringLiteral("ScaleTopUnitLabel"));
  bottomUnit_ = new QLabel(group);
  bottomUnit_->setObjectName(QStringLiteral("ScaleBottomUnitLabel"));
  top_ = new NumberField(kEndCharacters, group);
  bottom_ = new NumberField(kEndCharacters, group);
  parts.AddRow(*grid, *top_, "ScaleTopText", "LabelTop", kTopText, topUnit_);
  parts.AddRow(*grid, *bottom_, "ScaleBottomText", "LabelBottom", kBottomText, bottomUnit_);
  for (NumberField* field : {top_, bottom_})
    connect(field, &QLineEdit::editingFinished, this, [this] { HoldEnds(); });
  ShowEnds();
  return group;
}

QGroupBox* ScaleFields::BuildRange(DialogParts& parts) {
  QGroupBox* const group = parts.Group("FrameWavelength", kRangeTitle);
  auto* const grid = new QGridLayout(group);
  const auto nm = [group] { return new QLabel(QStringLiteral("nm"), group); };
  start_ = new NumberField(kEndCharacters, group);
  end_ = new NumberField(kEndCharacters, group);
  parts.AddRow(*grid, *start_, "StartWLText", "LabelStartWL", kStartText, nm());
  parts.AddRow(*grid, *end_, "EndWLText", "LabelEndWL", kEndText, nm());
  start_->SetNumber(option_.StartWavelength, kWavelengthEndFormat);
  end_->SetNumber(option_.EndWavelength, kWavelengthEndFormat);
  for (NumberField* field : {start_, end_})
    connect(field, &QLineEdit::editingFinished, this, [this, field] { HoldWavelength(*field); });
  return group;
}

void ScaleFields::ShowEnds() {
  const ScanRange range = ScaleOf(option_).Of(mode_);
  top_->SetNumber(range.Top, EndFormat(mode_));
  bottom_->SetNumber(range.Bottom, EndFormat(mode_));
  for (QLabel* unit : {topUnit_, bottomUnit_}) unit->setText(QLatin1String(LimitsOf(mode_).Unit));
}

void ScaleFields::SwitchMode(int mode) {
  HoldEnds();
  // What was typed for the other mode is kept; what is no number was never there.
  const ScanRange before = ScaleOf(option_).Of(mode_);
  const double top = top_->Number().value_or(before.Top);
  const double bottom = bottom_->Number().value_or(before.Bottom);
  if (top != bottom) StoreRange(option_, mode_, {top, bottom});
  mode_ = ScanModeOf(mode);
  ShowEnds();
  remark_->clear();
}

void ScaleFields::HoldEnds() {
  const ScaleLimits& limits = LimitsOf(mode_);
  if (top_->Number().value_or(limits.Highest) > limits.Highest)
    top_->SetNumber(limits.Highest, EndFormat(mode_));
  if (bottom_->Number().value_or(limits.Lowest) < limits.Lowest)
    bottom_->SetNumber(limits.Lowest, EndFormat(mode_));
}

void ScaleFields::HoldWavelength(NumberField& field) {
  const InstrumentState& state = frame_.Link().State;
  field.HoldInside(state.WavelengthMin, state.WavelengthMax, kWavelengthEndFormat);
}

bool ScaleFields::Refuse(NumberField& field, const QString& remark) {
  remark_->setText(remark);
  field.PointOut();
  return false;
}

bool ScaleFields::Take(WLSOption& option) {
  HoldEnds();
  for (NumberField* field : {top_, bottom_, start_, end_}) {
    if (!field->Number()) return Refuse(*field, tr("This is no number."));
    // Return in a field leaves it as well.
    if (field->isModified() && (field == start_ || field == end_)) HoldWavelength(*field);
  }
  const auto [bottom, top] = std::minmax({*bottom_->Number(), *top_->Number()});
  const ScaleLimits& limits = LimitsOf(mode_);
  const ScanRange range{std::min(top, limits.Highest), std::max(bottom, limits.Lowest)};
  if (range.Top == range.Bottom) return Refuse(*top_, tr("Top and bottom are equal."));
  if (*start_->Number() == *end_->Number()) return Refuse(*end_, tr("Start and end are equal."));
  StoreRange(option_, mode_, range);
  option_.StartWavelength = *start_->Number();
  option_.EndWavelength = *end_->Number();
  if (option_.AbsTop < option_.AbsBottom) std::swap(option_.AbsTop, option_.AbsBottom);
  if (option_.TransTop < option_.TransBottom) std::swap(option_.TransTop, option_.TransBottom);
  if (option_.StartWavelength > option_.EndWavelength)
    std::swap(option_.StartWavelength, option_.EndWavelength);
  option_.DisplayMode = static_cast<std::int32_t>(mode_);
  option = option_;
  return true;
}

}  // namespace spectrane
