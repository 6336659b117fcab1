#include "modes/windows/frmquaconfig.h"

#include <QComboBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QVBoxLayout>

#include <algorithm>
#include <iterator>
#include <utility>

#include "app/ground/dialogparts.h"
#include "app/ground/numberfield.h"
#include "app/ground/words.h"
#include "modes/windows/numberentry.h"
#include "modes/windows/wavelengthentry.h"

namespace spectrane {
namespace {

constexpr int kQuaConfigTitle = 1078;
constexpr int kMethodLabel = 1061;
constexpr int kFirstMethod = 1073;
constexpr int kUnitLabel = 1062;
constexpr int kCalibrationTitle = 1063;
constexpr int kStandardsCaption = 1064;
constexpr int kSampleNumberLabel = 1065;
constexpr int kCoefficientsCaption = 1066;
constexpr int kWavelengthNumberLabel = 1067;
constexpr int kWavelengthsTitle = 1068;
constexpr int kFirstWavelengthLabel = 1069;
constexpr int kSingleWavelength = 1077;
constexpr int kParameterLabel = 1019;
constexpr int kDiscardQuestion = 1072;

constexpr int kMethodCount = 4;
constexpr int kWavelengthCount = 3;
constexpr const char* kWavelengthFormat = "0.0";
constexpr int kCoefficientCharacters = 22;
constexpr int kUnitCharacters = 12;
constexpr int kFormulaCharacters = 60;
/// What config.ini and the data file can hold.
constexpr int kMostUnitCharacters = 255;

/// The coefficients of each fitting method, both included.
constexpr std::pair<int, int> kCoefficientsOf[kMethodCount] = {{1, 1}, {0, 1}, {0, 2}, {0, 3}};

/// The equation of each fitting method.
constexpr const char* kEquations[kMethodCount] = {"Conc. = K1 × A", "Conc. = K1 × A + K0",
                                                  "Conc. = K2 × A² + K1 × A + K0",
                                                  "Conc. = K3 × A³ + K2 × A² + K1 × A + K0"};

/// Access keys of captions that differ in a digit only; there are just enough for all of them.
constexpr char16_t kCoefficientKeys[] = {u'0', u'K', u'2', u'3'};
constexpr char16_t kWavelengthKeys[] = {u'1', u'W', u'L'};
constexpr char16_t kParameterKeys[] = {u'P', u'r', u'm'};
constexpr char16_t kWavelengthNumberKey = u'v';
constexpr char16_t kCoefficientsKey = u'e';

QString WithKey(const QString& caption, char16_t key) {
  const qsizetype at = caption.indexOf(QChar(key), 0, Qt::CaseInsensitive);
  return at < 0 || caption.contains(u'&') ? caption : QString(caption).insert(at, u'&');
}

QString WavelengthCaption(int index) {
  return Caption(kFirstWavelengthLabel + index);
}

QString ParameterCaption(int index) {
  return Caption(kParameterLabel) + QStringLiteral(" %1").arg(index + 1);
}

/// A reading times its parameter, as the formula has it.
QString FormulaTerm(int index) {
  return QStringLiteral("%1 × A(%2)")
      .arg(ParameterCaption(index), WavelengthCaption(index).remove(u'=').trimmed());
}

/// How a concentration comes about: the absorbance that the curve works on, and the equation.
QString FormulaText(int wavelengths, int method) {
  QString text = QStringLiteral("Absorbance A = ") + FormulaTerm(0);
  if (wavelengths > 1) text += QStringLiteral(" + ") + FormulaTerm(1);
  text += u'\n' + QString::fromUtf8(kEquations[method]);
  if (wavelengths > 2) text += QStringLiteral("\nThe third wavelength is kept but not measured.");
  return text;
}

/// A unit as the list and the files have it: the micro sign for the Greek letter, no line breaks, no blanks
/// at the ends.
QString PlainUnit(QString unit) {
  std::replace_if(
      unit.begin(), unit.end(), [](QChar c) { return c.category() == QChar::Other_Control; }, QChar(u' '));
  return unit.replace(QChar(u'\u03BC'), QChar(u'\u00B5')).simplified();
}

bool IsOffered(const QString& unit) {
  return std::ranges::any_of(kConcUnits,
                             [&](const char* offered) { return unit == QString::fromUtf8(offered); });
}

std::int32_t Within(std::int32_t value, std::int32_t lowest, std::int32_t highest, std::int32_t otherwise) {
  return value >= lowest && value <= highest ? value : otherwise;
}

QString FieldName(const char* pattern, int number) {
  return QString::fromLatin1(pattern).arg(number);
}

QFormLayout* MakeForm() {
  auto* const form = new QFormLayout;
  form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
  return form;
}

}  // namespace

FrmQuaConfig::FrmQuaConfig(MainWindow& frame, const QuantitationSettings& settings,
                           RecordsAtStake discardsRecords)
    : QDialog(&frame.Frame()),
      frame_(frame),
      settings_(settings),
      discardsRecords_(std::move(discardsRecords)),
      methods_(new QComboBox(this)),
      units_(new QComboBox(this)),
      standards_(new QRadioButton(this)),
      coefficients_(new QRadioButton(this)),
      sampleNumbers_(new QComboBox(this)),
      wavelengthNumbers_(new QComboBox(this)),
      formula_(new QLabel(this)) {
  DialogParts parts(*this, "FrmQuaConfig", Caption(kQuaConfigTitle));
  auto* const left = new QVBoxLayout;
  left->addLayout(MakeCurveForm(parts));
  left->addWidget(MakeCalibration(parts), 1);
  auto* const columns = new QHBoxLayout;
  columns->addLayout(left);
  auto* const right = new QVBoxLayout;
  right->addWidget(MakeWavelengths(parts));
  formula_->setObjectName(QStringLiteral("LabelFormula"));
  formula_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  KeepRoomFor(*formula_, {FormulaText(kWavelengthCount, kMethodCount - 1)}, kFormulaCharacters);
  right->addWidget(formula_, 1);
  columns->addLayout(right);
  auto* const all = new QVBoxLayout(this);
  all->addLayout(columns);
  all->addLayout(parts.OKAndCancel());
  all->setSizeConstraint(QLayout::SetFixedSize);

  OrderTabs();
  LoadUnit();
  LoadValues();
  for (QComboBox* list : {methods_, wavelengthNumbers_}) {
    connect(list, &QComboBox::currentIndexChanged, this, [this] { ShowUse(); });
  }
  connect(standards_, &QRadioButton::toggled, this, [this] { ShowUse(); });
  ShowUse();
  methods_->setFocus();
}

// ---- Controls ----

QLayout* FrmQuaConfig::MakeCurveForm(DialogParts& parts) {
  for (int i = 0; i < kMethodCount; ++i) methods_->addItem(Caption(kFirstMethod + i));
  units_->setEditable(true);
  units_->setInsertPolicy(QComboBox::NoInsert);
  // Units that differ in the case of a letter are different units; nothing is typed for the person.
  units_->setCompleter(nullptr);
  units_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  units_->setMinimumContentsLength(kUnitCharacters);
  units_->lineEdit()->setMaxLength(kMostUnitCharacters);

  QFormLayout* const form = MakeForm();
  form->addRow(parts.Finish(*methods_, "ComboFittingMethod", "LabelFittingMethod", Caption(kMethodLabel)),
               methods_);
  form->addRow(parts.Finish(*units_, "ComboConcUnit", "LabelConcUnit", Caption(kUnitLabel)), units_);
  units_->lineEdit()->setObjectName(QStringLiteral("ConcUnitText"));
  units_->lineEdit()->setAccessibleName(units_->accessibleName());
  return form;
}

QGroupBox* FrmQuaConfig::MakeCalibration(DialogParts& parts) {
  auto* const group = new QGroupBox(Caption(kCalibrationTitle), this);
  group->setObjectName(QStringLiteral("FrameCalibration"));
  for (int number = 1; number <= kMostStandards; ++number) sampleNumbers_->addItem(QString::number(number));
  auto* const grid = new QGridLayout(group);
  parts.Finish(*standards_, "OptionStandardSample", Caption(kStandardsCaption));
  sampleNumberLabel_ =
      parts.Finish(*sampleNumbers_, "ComboSampleNumber", "LabelSampleNumber", Caption(kSampleNumberLabel));
  parts.Finish(*coefficients_, "OptionCoefficients",
               WithKey(Caption(kCoefficientsCaption), kCoefficientsKey));
  grid->addWidget(standards_, 0, 0, 1, 3, Qt::AlignLeft);
  grid->addWidget(sampleNumberLabel_, 1, 1);
  grid->addWidget(sampleNumbers_, 1, 2);
  grid->addWidget(coefficients_, 2, 0, 1, 3, Qt::AlignLeft);
  for (int i = 0; i < static_cast<int>(k_.size()); ++i) {
    Entry& field = k_[static_cast<std::size_t>(i)];
    field = MakeField(parts, FieldName("K%1Text", i),
                      WithKey(QStringLiteral("K%1").arg(i), kCoefficientKeys[i]), kCoefficientCharacters);
    grid->addWidget(field.Label, 3 + i, 1);
    grid->addWidget(field.Edit, 3 + i, 2);
  }
  // What belongs to an option stands under its words.
  const int indent = style()->pixelMetric(QStyle::PM_ExclusiveIndicatorWidth) +
                     style()->pixelMetric(QStyle::PM_RadioButtonLabelSpacing);
  grid->setColumnMinimumWidth(0, indent);
  grid->setColumnStretch(2, 1);
  grid->setRowStretch(grid->rowCount(), 1);
  return group;
}

QGroupBox* FrmQuaConfig::MakeWavelengths(DialogParts& parts) {
  auto* const group = new QGroupBox(Caption(kWavelengthsTitle), this);
  group->setObjectName(QStringLiteral("FrameWavelength"));
  wavelengthNumbers_->addItems(
      {QStringLiteral("1  (%1)").arg(Caption(kSingleWavelength)), QStringLiteral("2"), QStringLiteral("3")});
  auto* const grid = new QGridLayout(group);
  grid->addWidget(parts.Finish(*wavelengthNumbers_, "ComboWaveLengthNumber", "LabelWaveLengthNumber",
                               WithKey(Caption(kWavelengthNumberLabel), kWavelengthNumberKey)),
                  0, 0);
  grid->addWidget(wavelengthNumbers_, 0, 1, 1, 4);
  for (int i = 0; i < kWavelengthCount; ++i) {
    Entry& wavelength = wavelengths_[static_cast<std::size_t>(i)];
    wavelength = MakeField(parts, FieldName("WaveLength%1Text", i + 1),
                           WithKey(WavelengthCaption(i), kWavelengthKeys[i]), kFieldCharacters);
    wavelength.Edit->setAccessibleDescription(InstrumentRangeText(frame_));
    Entry& para = paras_[static_cast<std::size_t>(i)];
    para = MakeField(parts, FieldName("WaveLengthPara%1Text", i + 1),
                     WithKey(ParameterCaption(i), kParameterKeys[i]), kFieldCharacters);
    grid->addWidget(wavelength.Label, 1 + i, 0);
    grid->addWidget(wavelength.Edit, 1 + i, 1);
    wavelength.Unit = new QLabel(QStringLiteral("nm"), group);
    grid->addWidget(wavelength.Unit, 1 + i, 2);
    grid->addWidget(para.Label, 1 + i, 3);
    grid->addWidget(para.Edit, 1 + i, 4);
  }
  auto* const range = new QLabel(InstrumentRangeText(frame_), group);
  range->setForegroundRole(QPalette::PlaceholderText);
  range->setAlignment(Qt::AlignRight);
  grid->addWidget(range, 1 + kWavelengthCount, 0, 1, 2);
  // The factors stand apart from the wavelengths.
  grid->setColumnMinimumWidth(
      2, fontMetrics().horizontalAdvance(QStringLiteral("nm")) + 2 * fontMetrics().averageCharWidth());
  grid->setRowStretch(grid->rowCount(), 1);
  return group;
}

FrmQuaConfig::Entry FrmQuaConfig::MakeField(DialogParts& parts, const QString& name, const QString& caption,
                                            int characters) {
  Entry field;
  field.Edit = new NumberField(characters, this);
  field.Label = parts.Finish(*field.Edit, name.toLatin1().constData(),
                             ("Label" + name.toLatin1()).constData(), caption);
  return field;
}

void FrmQuaConfig::OrderTabs() {
  QList<QWidget*> order = {methods_, units_, standards_, sampleNumbers_, coefficients_};
  for (const Entry& field : k_) order.append(field.Edit);
  order.append(wavelengthNumbers_);
  for (std::size_t i = 0; i < wavelengths_.size(); ++i) {
    order.append(wavelengths_[i].Edit);
    order.append(paras_[i].Edit);
  }
  for (const char* button : {"OKCmd", "CancelCmd"}) order.append(findChild<QWidget*>(QLatin1String(button)));
  for (qsizetype i = 1; i < order.size(); ++i) setTabOrder(order[i - 1], order[i]);
}

// ---- Values into the controls ----

void FrmQuaConfig::LoadUnit() {
  // A document does not keep the operator's own unit.
  const std::string stored = frame_.Settings().GetSetting(kQuantitationSection, "Custom Conc Unit");
  if (!stored.empty()) settings_.CustomConcUnit = stored;
  for (const char* unit : kConcUnits) units_->addItem(QString::fromUtf8(unit));
  const QString own = PlainUnit(QString::fromStdString(settings_.CustomConcUnit));
  if (!own.isEmpty() && !IsOffered(own)) units_->addItem(own);
  const QString unit = PlainUnit(QString::fromStdString(settings_.ConcUnit));
  units_->setCurrentIndex(units_->findText(unit, Qt::MatchExactly | Qt::MatchCaseSensitive));
  units_->setEditText(unit);
  unitAtStart_ = UnitShown();
}

void FrmQuaConfig::LoadValues() {
  const QuantitationSettings usual;
  methods_->setCurrentIndex(Within(settings_.FittingMethod, 0, kMethodCount - 1, usual.FittingMethod));
  const bool typed = settings_.CurveItem == static_cast<std::int32_t>(CurveSource::Coefficients);
  (typed ? coefficients_ : standards_)->setChecked(true);
  sampleNumbers_->setCurrentIndex(Within(settings_.SampleNumber, 1, kMostStandards, usual.SampleNumber) - 1);
  wavelengthNumbers_->setCurrentIndex(
      Within(settings_.WaveLengthNumber, 1, kWavelengthCount, usual.WaveLengthNumber) - 1);

  for (std::size_t i = 0; i < k_.size(); ++i) k_[i].Edit->SetNumber(settings_.InputK[i]);
  for (std::size_t i = 0; i < wavelengths_.size(); ++i) {
    wavelengths_[i].Edit->SetNumber(settings_.WaveLengthList[i], kWavelengthFormat);
    paras_[i].Edit->SetNumber(settings_.WaveLengthPara[i]);
  }
}

void FrmQuaConfig::ShowUse() {
  const auto use = [](const Entry& field, bool used) {
    field.Edit->setEnabled(used);
    field.Label->setEnabled(used);
    if (field.Unit != nullptr) field.Unit->setEnabled(used);
  };
  const bool typed = coefficients_->isChecked();
  LetTabReachChosen(std::array{standards_, coefficients_});
  sampleNumbers_->setDisabled(typed);
  sampleNumberLabel_->setDisabled(typed);
  const auto [lowest, highest] = kCoefficientsOf[FittingMethodShown()];
  for (int i = 0; i < static_cast<int>(k_.size()); ++i) {
    use(k_[static_cast<std::size_t>(i)], typed && i >= lowest && i <= highest);
  }
  for (int i = 0; i < kWavelengthCount; ++i) {
    use(wavelengths_[static_cast<std::size_t>(i)], i < WaveLengthsShown());
    use(paras_[static_cast<std::size_t>(i)], i < WaveLengthsShown());
  }
  formula_->setText(FormulaText(WaveLengthsShown(), FittingMethodShown()));
}

// ---- Controls into values ----

int FrmQuaConfig::FittingMethodShown() const {
  return methods_->currentIndex();
}

int FrmQuaConfig::WaveLengthsShown() const {
  return wavelengthNumbers_->currentIndex() + 1;
}

QString FrmQuaConfig::UnitShown() const {
  return PlainUnit(units_->currentText());
}

bool FrmQuaConfig::TakeUnit(QuantitationSettings& settings) {
  const QString unit = UnitShown();
  if (unit.isEmpty()) {
    frame_.Boxes().ShowWords(
        QStringLiteral("%1: choose a unit from the list or type your own.").arg(Caption(kUnitLabel)));
    units_->lineEdit()->setFocus();
    units_->lineEdit()->selectAll();
    return false;
  }
  settings.ConcUnit = unit.toStdString();
  // The unit of a document that somebody else made does not take the place of one's own by a mere OK.
  const bool typed = unit != unitAtStart_ || settings.CustomConcUnit.empty();
  if (typed && !IsOffered(unit)) settings.CustomConcUnit = settings.ConcUnit;
  return true;
}

bool FrmQuaConfig::TakeCoefficients(QuantitationSettings& settings) {
  for (std::size_t i = 0; i < k_.size(); ++i) {
    if (k_[i].Edit->isEnabled() && !TakeNumber(frame_, *k_[i].Edit, settings.InputK[i])) return false;
  }
  return true;
}

bool FrmQuaConfig::TakeWavelengths(QuantitationSettings& settings) {
  for (std::size_t i = 0; i < static_cast<std::size_t>(WaveLengthsShown()); ++i) {
    if (!TakeWavelength(frame_, *wavelengths_[i].Edit, kWavelengthRefused, settings.WaveLengthList[i]))
      return false;
    if (!TakeNumber(frame_, *paras_[i].Edit, settings.WaveLengthPara[i])) return false;
  }
  return true;
}

bool FrmQuaConfig::TakeFields(QuantitationSettings& settings) {
  settings.FittingMethod = FittingMethodShown();
  settings.CurveItem = static_cast<std::int32_t>(coefficients_->isChecked() ? CurveSource::Coefficients
                                                                            : CurveSource::Standards);
  settings.SampleNumber = sampleNumbers_->currentIndex() + 1;
  settings.WaveLengthNumber = WaveLengthsShown();
  return TakeUnit(settings) && TakeCoefficients(settings) && TakeWavelengths(settings);
}

void FrmQuaConfig::accept() {
  QuantitationSettings settings = settings_;
  if (!TakeFields(settings)) return;
  if (discardsRecords_ && discardsRecords_(settings) &&
      frame_.Boxes().AskYesNo(Words(kDiscardQuestion), kDiscardQuestion) != Answer::Yes) {
    return;
  }
  settings_ = std::move(settings);
  if (!StoreSettings<QuantitationSettings>(frame_.Settings(), kQuantitationSettingRows, settings_)) {
    RemarkOnSettings(frame_);
  }
  QDialog::accept();
}

}  // namespace spectrane
