#include "spectrum/windows/frmwlsconfig.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>
#include <optional>

#include "app/ground/dialogparts.h"
#include "app/ground/mainwindow.h"
#include "app/ground/numberfield.h"
#include "app/ground/words.h"
#include "base/numbers.h"
#include "spectrum/windows/scalefields.h"

namespace spectrane {
namespace {

constexpr int kScanConfigTitle = 968;
constexpr const char* kIntervals[] = {"0.1 nm", "0.2 nm", "0.5 nm", "1.0 nm", "2.0 nm", "5.0 nm"};
constexpr int kPrintIntervals[] = {1, 2, 5, 10, 20, 50, 100};
constexpr int kScaleCharacters = 10;
constexpr const char* kRangeFormat = "0.0";

std::string PatternOf(ScanMode mode, const DisplayFormats& formats) {
  return mode == ScanMode::Trans ? formats.TransFormat : mode == ScanMode::Energy ? "0" : formats.AbsFormat;
}

}  // namespace

FrmWLSConfig::FrmWLSConfig(MainWindow& frame, const ScanSettings& settings)
    : QDialog(&frame.Frame()),
      frame_(frame),
      settings_(settings),
      mode_(ScanModeOf(settings.Option.DisplayMode)),
      modes_(new QButtonGroup(this)),
      speeds_(new QButtonGroup(this)),
      rows_(frame, settings_) {
  DialogParts parts(*this, "FrmWLSConfig", Caption(kScanConfigTitle));
  remark_ = new QLabel(this);
  remark_->setObjectName(QStringLiteral("LabelRemark"));
  auto* const all = new QVBoxLayout(this);
  all->addLayout(GroupColumns({{BuildMode(parts), BuildScale(parts), BuildData(parts)},
                               {BuildWavelength(parts), BuildSpeed(parts), BuildPrint(parts)},
                               {BuildDisplay(parts), rows_.PeakGroup(parts)}}));
  all->addWidget(remark_);
  all->addLayout(parts.OKAndCancel());
  all->setSizeConstraint(QLayout::SetFixedSize);
  connect(modes_, &QButtonGroup::idToggled, this, [this](int mode, bool on) {
    if (on) SwitchMode(mode);
  });
  ShowRange(mode_);
  modes_->checkedButton()->setFocus();
}

QGroupBox* FrmWLSConfig::BuildMode(DialogParts& parts) {
  QGroupBox* const group = parts.Group("FrameMode", 944);
  auto* const column = new QVBoxLayout(group);
  parts.AddOptions(*column, *modes_, {{"OptionAbs", 703}, {"OptionTrans", 705}, {"OptionEnergy", 708}}, 1);
  modes_->button(static_cast<int>(mode_))->setChecked(true);
  QStringList gains{Caption(962)};
  for (int gain = 1; gain <= frame_.Link().State.GainCount; ++gain) gains.append(QString::number(gain));
  auto* const form = new QFormLayout;
  const auto add = [&](QComboBox* list, const char* name, const char* labelName, int textId) {
    QLabel* const label = parts.Finish(*list, name, labelName, Caption(textId));
    form->addRow(label, list);
  };
  add(AddList(gains, &WLSOption::EnergyAmp), "ComboGain", "LabelGain", 945);
  add(AddList({Caption(963), Caption(964)}, &WLSOption::EnergyFilter), "ComboFilter", "LabelFilter", 946);
  add(AddList({Caption(965), Caption(966), Caption(967)}, &WLSOption::EnergyLamp), "ComboLamp", "LabelLamp",
      947);
  column->addLayout(form);
  return group;
}

QGroupBox* FrmWLSConfig::BuildScale(DialogParts& parts) {
  QGroupBox* const group = parts.Group("FrameScale", 948);
  auto* const grid = new QGridLayout(group);
  top_ = new NumberField(kScaleCharacters, group);
  bottom_ = new NumberField(kScaleCharacters, group);
  topUnit_ = new QLabel(group);
  bottomUnit_ = new QLabel(group);
  parts.AddRow(*grid, *top_, "ScaleTopText", "LabelTop", 949, topUnit_);
  parts.AddRow(*grid, *bottom_, "ScaleBottomText", "LabelBottom", 950, bottomUnit_);
  return group;
}

QGroupBox* FrmWLSConfig::BuildWavelength(DialogParts& parts) {
  QGroupBox* const group = parts.Group("FrameWavelength", 951);
  auto* const grid = new QGridLayout(group);
  start_ = new NumberField(kScaleCharacters, group);
  end_ = new NumberField(kScaleCharacters, group);
  start_->SetNumber(settings_.Option.StartWavelength, kRangeFormat);
  end_->SetNumber(settings_.Option.EndWavelength, kRangeFormat);
  const auto nm = [group] { return new QLabel(QStringLiteral("nm"), group); };
  parts.AddRow(*grid, *start_, "StartWLText", "LabelStartWL", 952, nm());
  parts.AddRow(*grid, *end_, "EndWLText", "LabelEndWL", 953, nm());
  QStringList intervals;
  for (const char* interval : kIntervals) intervals.append(QLatin1String(interval));
  QComboBox* const list = AddList(intervals, &WLSOption::IntervalWavelength);
  grid->addWidget(parts.Finish(*list, "ComboInterval", "LabelInterval", Caption(954)), 2, 0);
  grid->addWidget(list, 2, 1, 1, 2);
  return group;
}

QGroupBox* FrmWLSConfig::BuildSpeed(DialogParts& parts) {
  QGroupBox* const group = parts.Group("FrameSpeed", 955);
  auto* const column = new QVBoxLayout(group);
  parts.AddOptions(*column, *speeds_, {{"OptionSlow", 1308}, {"OptionStandard", 956}, {"OptionQuick", 957}},
                   0);
  speeds_->button(std::clamp(settings_.QuickSpeed, 0, 2))->setChecked(true);
  return group;
}

QGroupBox* FrmWLSConfig::BuildDisplay(DialogParts& parts) {
  QGroupBox* const group = parts.Group("FrameDisplay", 958);
  auto* const column = new QVBoxLayout(group);
  rows_.AddCheck(parts, *column, "CheckGrid", 959, &ScanSettings::GridEnable);
  rows_.AddCurveColours(parts, *column,
                        {{"PictureScale", "LabelScaleColor", 960, &ScanSettings::ScaleColor},
                         {"PictureCurve", "LabelCurveColor", 961, &ScanSettings::CurveColor}},
                        group);
  return group;
}

QGroupBox* FrmWLSConfig::BuildData(DialogParts& parts) {
  QGroupBox* const group = parts.Group("FrameData", 1309);
  auto* const column = new QVBoxLayout(group);
  rows_.AddCheck(parts, *column, "CheckSmooth", 1310, &ScanSettings::SmoothEnable);
  rows_.AddCheck(parts, *column, "CheckDataTable", 1205, &ScanSettings::DataTableEnable);
  return group;
}

QGroupBox* FrmWLSConfig::BuildPrint(DialogParts& parts) {
  QGroupBox* const group = rows_.PrintGroup(parts);
  auto* const column = static_cast<QVBoxLayout*>(group->layout());
  rows_.AddCheck(parts, *column, "CheckPrintMaxMinAverage", 412, &ScanSettings::PrintMaxMinAverage);
  rows_.AddCheck(parts, *column, "CheckPrintAllData", 1307, &ScanSettings::PrintDataList);
  printInterval_ = new QComboBox(group);
  for (const int interval : kPrintIntervals) printInterval_->addItem(QString::number(interval), interval);
  printInterval_->setCurrentIndex(std::max(0, printInterval_->findData(settings_.PrintInterval)));
  auto* const form = new QFormLayout;
  QLabel* const label =
      parts.Finish(*printInterval_, "ComboPrintInterval", "LabelPrintInterval", Caption(1700));
  form->addRow(label, printInterval_);
  column->addLayout(form);
  return group;
}

QComboBox* FrmWLSConfig::AddList(const QStringList& rows, std::int32_t WLSOption::*field) {
  auto* const box = new QComboBox(this);
  FillList(*box, rows, settings_.Option.*field);
  lists_.push_back({box, field});
  return box;
}

void FrmWLSConfig::ShowRange(ScanMode mode) {
  const ScanRange range = ScaleOf(settings_.Option).Of(mode);
  const std::string pattern = PatternOf(mode, frame_.Link().Formats);
  top_->SetNumber(range.Top, pattern);
  bottom_->SetNumber(range.Bottom, pattern);
  for (QLabel* unit : {topUnit_, bottomUnit_}) unit->setText(QLatin1String(LimitsOf(mode).Unit));
}

void FrmWLSConfig::SwitchMode(int mode) {
  typed_[static_cast<std::size_t>(mode_)] = {top_->text(), bottom_->text()};
  mode_ = ScanModeOf(mode);
  ShowRange(mode_);
  const auto& [top, bottom] = typed_[static_cast<std::size_t>(mode_)];
  if (!top.isNull()) top_->setText(top);
  if (!bottom.isNull()) bottom_->setText(bottom);
  remark_->clear();
}

bool FrmWLSConfig::Refuse(NumberField& field, const QString& remark) {
  remark_->setText(remark);
  field.PointOut();
  return false;
}

bool FrmWLSConfig::TakeRange() {
  for (NumberField* field : {top_, bottom_}) {
    if (!field->Number()) return Refuse(*field, tr("This is no number."));
  }
  const ScaleLimits& limits = LimitsOf(mode_);
  const std::string pattern = PatternOf(mode_, frame_.Link().Formats);
  ScanRange range{std::min(*top_->Number(), limits.Highest), std::max(*bottom_->Number(), limits.Lowest)};
  // Energies are stored as whole numbers: two that lie apart may become one.
  if (mode_ == ScanMode::Energy) range = {RoundHalfEven(range.Top), RoundHalfEven(range.Bottom)};
  top_->SetNumber(range.Top, pattern);
  bottom_->SetNumber(range.Bottom, pattern);
  // Limits of a damaged file may be no numbers.
  if (!(range.Top > range.Bottom)) return Refuse(*top_, tr("The top lies above the bottom."));
  StoreRange(settings_.Option, mode_, range);
  return true;
}

bool FrmWLSConfig::TakeWavelengths() {
  const InstrumentState& state = frame_.Link().State;
  for (NumberField* field : {start_, end_}) {
    if (!field->Number()) return Refuse(*field, tr("This is no number."));
    field->HoldInside(state.WavelengthMin, state.WavelengthMax, kRangeFormat);
  }
  if (!(*start_->Number() < *end_->Number())) return Refuse(*end_, tr("The end lies above the start."));
  settings_.Option.StartWavelength = *start_->Number();
  settings_.Option.EndWavelength = *end_->Number();
  return true;
}

void FrmWLSConfig::accept() {
  const ScanSettings before = settings_;
  if (!TakeRange() || !TakeWavelengths()) {
    settings_ = before;
    return;
  }
  settings_.Option.DisplayMode = static_cast<std::int32_t>(mode_);
  settings_.QuickSpeed = speeds_->checkedId();
  rows_.Take(settings_);
  for (const List& list : lists_) {
    if (list.Box->currentIndex() >= 0) settings_.Option.*list.Field = list.Box->currentIndex();
  }
  settings_.PrintInterval = printInterval_->currentData().toInt();
  ScanSettings stored = settings_;
  if (!StoreSettings<ScanSettings>(frame_.Settings(), kScanSettingRows, stored)) RemarkOnSettings(frame_);
  QDialog::accept();
}

}  // namespace spectrane
