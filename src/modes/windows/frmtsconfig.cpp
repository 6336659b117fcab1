#include "modes/windows/frmtsconfig.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QFocusEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QPushButton>
#include <QRadioButton>

#include <array>
#include <optional>

#include "app/ground/numberfield.h"
#include "base/numbers.h"
#include "modes/timescan/timescanaxes.h"
#include "modes/windows/wavelengthentry.h"

namespace spectrane {
namespace {

constexpr int kTimeScanConfigTitle = 1007;
constexpr int kEndTimeError = 1004;
constexpr int kStartTimeError = 1005;
constexpr int kTimeScanModeTexts[] = {703, 705};
constexpr const char* kTimeScanModeNames[] = {"AbsOption", "TransOption"};
constexpr const char* kWavelengthShown = "###0.0";
constexpr const char* kSecondsShown = "###0";
/// In the place of a wavelength that the instrument does not have [nm].
constexpr double kUsualWavelength = 546.0;
/// A later start is remarked on [s].
constexpr double kLatestStart = 10000;
constexpr int kTimeFieldCharacters = 10;

/// Whether leaving the field was meant: not when a menu or another program came forward.
bool LeavesField(const QEvent& event) {
  if (event.type() != QEvent::FocusOut) return false;
  const Qt::FocusReason reason = static_cast<const QFocusEvent&>(event).reason();
  return reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason;
}

}  // namespace

FrmTSConfig::FrmTSConfig(MainWindow& frame, const TimeScanSettings& settings)
    : QDialog(&frame.Frame()),
      frame_(frame),
      settings_(settings),
      rows_(frame, settings_),
      modes_(new QButtonGroup(this)),
      wavelength_(new NumberField(kTimeFieldCharacters, this)),
      start_(new NumberField(kTimeFieldCharacters, this)),
      end_(new NumberField(kTimeFieldCharacters, this)),
      top_(new NumberField(kTimeFieldCharacters, this)),
      bottom_(new NumberField(kTimeFieldCharacters, this)),
      interval_(new QComboBox(this)),
      topUnit_(new QLabel(this)),
      bottomUnit_(new QLabel(this)),
      points_(new QLabel(this)) {
  DialogParts parts(*this, "FrmTSConfig", Caption(kTimeScanConfigTitle));
  // From left to right and downward, as they are read and as Tab goes.
  using Build = QGroupBox* (FrmTSConfig::*)(DialogParts&);
  static constexpr std::array<Build, 3> kColumns[] = {
      {&FrmTSConfig::BuildWavelength, &FrmTSConfig::BuildTimes, &FrmTSConfig::BuildPrint},
      {&FrmTSConfig::BuildMode, &FrmTSConfig::BuildScale, &FrmTSConfig::BuildTable},
      {&FrmTSConfig::BuildDisplay, &FrmTSConfig::BuildPeaks, nullptr}};
  auto* const columns = new QHBoxLayout;
  for (const auto& builders : kColumns) {
    auto* const column = new QVBoxLayout;
    for (const Build build : builders) {
      if (build) column->addWidget((this->*build)(parts));
    }
    column->addStretch();
    columns->addLayout(column);
  }
  auto* const all = new QVBoxLayout(this);
  all->addLayout(columns);
  all->addLayout(parts.OKAndCancel());
  all->setSizeConstraint(QLayout::SetFixedSize);
  // Who gives up is not told first what is wrong with what they typed.
  findChild<QPushButton*>(QStringLiteral("CancelCmd"))->setFocusPolicy(Qt::TabFocus);
  for (NumberField* field : {wavelength_, start_}) field->installEventFilter(this);
  connect(wavelength_, &QLineEdit::textEdited, this, [this] { wavelengthTyped_ = true; });
  connect(start_, &QLineEdit::textEdited, this, [this] { startTyped_ = true; });
  for (NumberField* field : {start_, end_})
    connect(field, &QLineEdit::textChanged, this, &FrmTSConfig::ShowPoints);
  connect(end_, &QLineEdit::textChanged, this, &FrmTSConfig::EndChanged);
  connect(interval_, &QComboBox::currentIndexChanged, this, &FrmTSConfig::ShowPoints);
  connect(modes_, &QButtonGroup::idToggled, this, [this](int, bool on) {
    if (on) ShowMode();
  });
  ShowMode();
  ShowPoints();
  wavelength_->setFocus();
  wavelength_->selectAll();
}

QGroupBox* FrmTSConfig::MakeGroup(const char* name, int titleTextId) {
  auto* const group = new QGroupBox(Caption(titleTextId), this);
  group->setObjectName(QLatin1String(name));
  return group;
}

void FrmTSConfig::AddField(DialogParts& parts, QGroupBox& group, NumberField& field, const char* name,
                           const char* labelName, int textId) {
  auto* const grid = static_cast<QGridLayout*>(group.layout());
  const int row = grid->rowCount();
  grid->addWidget(parts.Finish(field, name, labelName, Caption(textId)), row, 0);
  grid->addWidget(&field, row, 1);
}

QGroupBox* FrmTSConfig::BuildWavelength(DialogParts& parts) {
  QGroupBox* const group = MakeGroup("FrameWavelength", 998);
  auto* const grid = new QGridLayout(group);
  wavelength_->SetNumber(settings_.Option.WorkWL, kWavelengthShown);
  AddField(parts, *group, *wavelength_, "WLText", "LabelWL", 999);
  grid->addWidget(new QLabel(QStringLiteral("nm"), group), grid->rowCount() - 1, 2);
  const InstrumentState& state = frame_.Link().State;
  auto* const range = new QLabel(WavelengthRangeText(state.WavelengthMin, state.WavelengthMax), group);
  range->setForegroundRole(QPalette::PlaceholderText);
  wavelength_->setAccessibleDescription(range->text());
  grid->addWidget(range, grid->rowCount(), 1, 1, 2);
  grid->setColumnStretch(1, 1);
  return group;
}

QGroupBox* FrmTSConfig::BuildTimes(DialogParts& parts) {
  QGroupBox* const group = MakeGroup("FrameTime", 993);
  auto* const grid = new QGridLayout(group);
  start_->SetNumber(settings_.StartSecond, kSecondsShown);
  end_->SetNumber(settings_.EndSecond, kSecondsShown);
  AddField(parts, *group, *start_, "StartTimeText", "LabelStartTime", 994);
  grid->addWidget(new QLabel(QStringLiteral("s"), group), grid->rowCount() - 1, 2);
  AddField(parts, *group, *end_, "EndTimeText", "LabelEndTime", 995);
  grid->addWidget(new QLabel(QStringLiteral("s"), group), grid->rowCount() - 1, 2);
  for (const char* const name : kIntervalNames) interval_->addItem(QLatin1String(name));
  const std::int32_t index = settings_.Option.IntervalSecond;
  // A number that is no row stays as it is until a row is chosen.
  interval_->setCurrentIndex(index >= 0 && index < interval_->count() ? index : -1);
  const int row = grid->rowCount();
  grid->addWidget(parts.Finish(*interval_, "InternalTimeCombo", "LabelInternalTime", Caption(996)), row, 0);
  grid->addWidget(interval_, row, 1, 1, 2);
  points_->setObjectName(QStringLiteral("LabelPoints"));
  points_->setForegroundRole(QPalette::PlaceholderText);
  grid->addWidget(points_, row + 1, 1, 1, 2);
  grid->setColumnStretch(1, 1);
  return group;
}

QGroupBox* FrmTSConfig::BuildMode(DialogParts& parts) {
  QGroupBox* const group = MakeGroup("FrameMode", 997);
  auto* const column = new QVBoxLayout(group);
  for (int i = 0; i < 2; ++i) {
    auto* const option = new QRadioButton(group);
    parts.Finish(*option, kTimeScanModeNames[i], Caption(kTimeScanModeTexts[i]));
    modes_->addButton(option, i + 1);
    column->addWidget(option);
  }
  modes_->button(settings_.DisplayMode == 2 ? 2 : 1)->setChecked(true);
  return group;
}

QGroupBox* FrmTSConfig::BuildScale(DialogParts& parts) {
  QGroupBox* const group = MakeGroup("FrameScale", 990);
  auto* const grid = new QGridLayout(group);
  topUnit_->setObjectName(QStringLiteral("ScaleTopUnit"));
  bottomUnit_->setObjectName(QStringLiteral("ScaleBottomUnit"));
  AddField(parts, *group, *top_, "ScaleTopText", "LabelTop", 991);
  grid->addWidget(topUnit_, grid->rowCount() - 1, 2);
  AddField(parts, *group, *bottom_, "ScaleBottomText", "LabelBottom", 992);
  grid->addWidget(bottomUnit_, grid->rowCount() - 1, 2);
  // Their texts change with the mode; the row keeps its width.
  topUnit_->setMinimumWidth(topUnit_->fontMetrics().horizontalAdvance(QStringLiteral("Abs")));
  return group;
}

QGroupBox* FrmTSConfig::BuildDisplay(DialogParts& parts) {
  static constexpr OptionRows<TimeScanSettings>::ColourRow kTimeScanColours[] = {
      {"PictureScale", "LabelScaleColor", 1002, &TimeScanSettings::ScaleColor},
      {"PictureCurve", "LabelCurveColor", 1003, &TimeScanSettings::CurveColor},
      {"PictureMark", "LabelMarkColor", 1197, &TimeScanSettings::MarkColor},
      {"PicturePeak", "LabelPeakColor", 1198, &TimeScanSettings::PeakColor},
      {"PictureValley", "LabelValleyColor", 1199, &TimeScanSettings::ValleyColor}};
  QGroupBox* const group = MakeGroup("FrameDisplay", 1000);
  auto* const column = new QVBoxLayout(group);
  rows_.AddCheck(parts, *column, "CheckGrid", 1001, &TimeScanSettings::GridEnable);
  rows_.AddColours(parts, *column, kTimeScanColours, group);
  return group;
}

QGroupBox* FrmTSConfig::BuildPeaks(DialogParts& parts) {
  QGroupBox* const group = MakeGroup("FramePeak", 1200);
  auto* const column = new QVBoxLayout(group);
  rows_.AddCheck(parts, *column, "CheckPeak", 1201, &TimeScanSettings::PeakEnable);
  rows_.AddCheck(parts, *column, "CheckValley", 1202, &TimeScanSettings::ValleyEnable);
  rows_.AddCheck(parts, *column, "CheckDetailPeak", 1203, &TimeScanSettings::PeakDetailEnable);
  rows_.AddCheck(parts, *column, "CheckDetailValley", 1204, &TimeScanSettings::ValleyDetailEnable);
  return group;
}

QGroupBox* FrmTSConfig::BuildTable(DialogParts& parts) {
  QGroupBox* const group = MakeGroup("FrameDataTable", 1208);
  auto* const column = new QVBoxLayout(group);
  rows_.AddCheck(parts, *column, "CheckDataTable", 1205, &TimeScanSettings::DataTableEnable);
  return group;
}

QGroupBox* FrmTSConfig::BuildPrint(DialogParts& parts) {
  QGroupBox* const group = MakeGroup("FramePrint", 1304);
  auto* const column = new QVBoxLayout(group);
  rows_.AddCheck(parts, *column, "CheckPrintPicture", 1305, &TimeScanSettings::PrintCurve);
  // An "and", not an access key.
  rows_.AddCheck(parts, *column, "CheckPrintPeakData", 1306, &TimeScanSettings::PrintPeakValley)
      ->setText(Caption(1306).replace(u'&', QStringLiteral("&&")));
  rows_.AddCheck(parts, *column, "CheckPrintAllData", 1307, &TimeScanSettings::PrintDataList);
  return group;
}

bool FrmTSConfig::Trans() const {
  return modes_->checkedId() == 2;
}

/// What was typed for the mode before is gone: only OK takes a scale over.
void FrmTSConfig::ShowMode() {
  const TSOption& option = settings_.Option;
  const DisplayFormats& formats = frame_.Link().Formats;
  const std::string& pattern = Trans() ? formats.TransFormat : formats.AbsFormat;
  top_->SetNumber(Trans() ? option.TransTop : option.AbsTop, pattern);
  bottom_->SetNumber(Trans() ? option.TransBottom : option.AbsBottom, pattern);
  for (QLabel* unit : {topUnit_, bottomUnit_})
    unit->setText(Trans() ? QStringLiteral("%T") : QStringLiteral("Abs"));
}

void FrmTSConfig::ShowPoints() {
  const std::int32_t points =
      PointTotal(start_->LeadingNumber().value_or(0), end_->LeadingNumber().value_or(0),
                 IntervalMs(interval_->currentIndex()));
  points_->setText(points == kMostTestPoints ? tr("%1 points, the most").arg(points)
                                             : tr("%1 points").arg(points));
}

void FrmTSConfig::EndChanged() {
  if (end_->text().isEmpty()) points_->setText(Caption(kEndTimeError));
}

bool FrmTSConfig::eventFilter(QObject* watched, QEvent* event) {
  if (LeavesField(*event)) CheckLater(*static_cast<NumberField*>(watched));
  return QDialog::eventFilter(watched, event);
}

/// Not while the focus is still on its way.
void FrmTSConfig::CheckLater(NumberField& field) {
  QMetaObject::invokeMethod(
      this,
      [this, &field] {
        if (!isVisible()) return;
        if (&field == wavelength_) {
          CheckWavelength();
        } else {
          CheckStart();
        }
      },
      Qt::QueuedConnection);
}

bool FrmTSConfig::CheckWavelength() {
  if (!wavelengthTyped_) return true;
  wavelengthTyped_ = false;
  const InstrumentState& state = frame_.Link().State;
  const std::optional<double> typed = wavelength_->LeadingNumber();
  const bool inside = typed && *typed >= state.WavelengthMin && *typed <= state.WavelengthMax;
  if (!inside) frame_.Boxes().Show(kWavelengthRefused);
  wavelength_->SetNumber(inside ? RoundToTenth(*typed) : kUsualWavelength, kWavelengthShown);
  if (!inside) wavelength_->PointOut();
  return inside;
}

bool FrmTSConfig::CheckStart() {
  if (!startTyped_) return true;
  startTyped_ = false;
  const double start = start_->LeadingNumber().value_or(0);
  const bool usual = end_->LeadingNumber().value_or(0) > start && start <= kLatestStart;
  if (!usual) frame_.Boxes().Show(kStartTimeError);
  start_->SetNumber(start, kSecondsShown);
  return usual;
}

bool FrmTSConfig::TakeFields() {
  for (NumberField* field : {wavelength_, start_, end_, top_, bottom_}) {
    if (field->LeadingNumber()) continue;
    field->PointOut();
    return false;
  }
  TSOption& option = settings_.Option;
  option.WorkWL = *wavelength_->LeadingNumber();
  settings_.StartSecond = RoundHalfEven(*start_->LeadingNumber());
  settings_.EndSecond = RoundHalfEven(*end_->LeadingNumber());
  if (interval_->currentIndex() >= 0) option.IntervalSecond = interval_->currentIndex();
  settings_.DisplayMode = modes_->checkedId();
  (Trans() ? option.TransTop : option.AbsTop) = *top_->LeadingNumber();
  (Trans() ? option.TransBottom : option.AbsBottom) = *bottom_->LeadingNumber();
  rows_.Take(settings_);
  return true;
}

void FrmTSConfig::accept() {
  // Who confirms sees first what came of it; a start that was remarked on once stands the second time.
  if (!CheckWavelength() || !CheckStart() || !TakeFields()) return;
  if (!StoreSettings<TimeScanSettings>(frame_.Settings(), TimeScanOptionRows(), settings_))
    RemarkOnSettings(frame_);
  QDialog::accept();
}

}  // namespace spectrane
