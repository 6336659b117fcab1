#include "modes/windows/frmtsconfig.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QFocusEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QPushButton>

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
  auto* const all = new QVBoxLayout(this);
  all->addLayout(GroupColumns({{BuildWavelength(parts), BuildTimes(parts), BuildPrint(parts)},
                               {BuildMode(parts), BuildScale(parts), BuildTable(parts)},
                               {BuildDisplay(parts), rows_.PeakGroup(parts)}}));
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

QGroupBox* FrmTSConfig::BuildWavelength(DialogParts& parts) {
  QGroupBox* const group = parts.Group("FrameWavelength", 998);
  auto* const grid = new QGridLayout(group);
  wavelength_->SetNumber(settings_.Option.WorkWL, kWavelengthShown);
  parts.AddRow(*grid, *wavelength_, "WLText", "LabelWL", 999, new QLabel(QStringLiteral("nm"), group));
  const InstrumentState& state = frame_.Link().State;
  auto* const range = new QLabel(WavelengthRangeText(state.WavelengthMin, state.WavelengthMax), group);
  range->setForegroundRole(QPalette::PlaceholderText);
  wavelength_->setAccessibleDescription(range->text());
  grid->addWidget(range, grid->rowCount(), 1, 1, 2);
  grid->setColumnStretch(1, 1);
  return group;
}

QGroupBox* FrmTSConfig::BuildTimes(DialogParts& parts) {
  QGroupBox* const group = parts.Group("FrameTime", 993);
  auto* const grid = new QGridLayout(group);
  // OK takes what the boxes show, so nothing may hide behind it.
  start_->SetRounded(settings_.StartSecond, kSecondsShown);
  end_->SetRounded(settings_.EndSecond, kSecondsShown);
  const auto seconds = [group] { return new QLabel(QStringLiteral("s"), group); };
  parts.AddRow(*grid, *start_, "StartTimeText", "LabelStartTime", 994, seconds());
  parts.AddRow(*grid, *end_, "EndTimeText", "LabelEndTime", 995, seconds());
  QStringList intervals;
  for (const char* const name : kIntervalNames) intervals.append(QLatin1String(name));
  FillList(*interval_, intervals, settings_.Option.IntervalSecond);
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
  QGroupBox* const group = parts.Group("FrameMode", 997);
  auto* const column = new QVBoxLayout(group);
  parts.AddOptions(*column, *modes_, {{"AbsOption", 703}, {"TransOption", 705}}, 1);
  modes_->button(settings_.DisplayMode == 2 ? 2 : 1)->setChecked(true);
  return group;
}

QGroupBox* FrmTSConfig::BuildScale(DialogParts& parts) {
  QGroupBox* const group = parts.Group("FrameScale", 990);
  auto* const grid = new QGridLayout(group);
  topUnit_->setObjectName(QStringLiteral("ScaleTopUnit"));
  bottomUnit_->setObjectName(QStringLiteral("ScaleBottomUnit"));
  parts.AddRow(*grid, *top_, "ScaleTopText", "LabelTop", 991, topUnit_);
  parts.AddRow(*grid, *bottom_, "ScaleBottomText", "LabelBottom", 992, bottomUnit_);
  return group;
}

QGroupBox* FrmTSConfig::BuildDisplay(DialogParts& parts) {
  QGroupBox* const group = parts.Group("FrameDisplay", 1000);
  auto* const column = new QVBoxLayout(group);
  rows_.AddCheck(parts, *column, "CheckGrid", 1001, &TimeScanSettings::GridEnable);
  rows_.AddCurveColours(parts, *column,
                        {{"PictureScale", "LabelScaleColor", 1002, &TimeScanSettings::ScaleColor},
                         {"PictureCurve", "LabelCurveColor", 1003, &TimeScanSettings::CurveColor}},
                        group);
  return group;
}

QGroupBox* FrmTSConfig::BuildTable(DialogParts& parts) {
  QGroupBox* const group = parts.Group("FrameDataTable", 1208);
  auto* const column = new QVBoxLayout(group);
  rows_.AddCheck(parts, *column, "CheckDataTable", 1205, &TimeScanSettings::DataTableEnable);
  return group;
}

QGroupBox* FrmTSConfig::BuildPrint(DialogParts& parts) {
  QGroupBox* const group = rows_.PrintGroup(parts);
  auto* const column = static_cast<QVBoxLayout*>(group->layout());
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
  start_->SetRounded(start, kSecondsShown);
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
