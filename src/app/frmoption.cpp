#include "app/frmoption.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QTabBar>
#include <QTabWidget>
#include <QVBoxLayout>

#include <algorithm>

#include "app/ground/dialogparts.h"
#include "app/ground/words.h"

namespace spectrane {
namespace {

constexpr int kOptionTitle = 1107;
constexpr int kInformationPage = 1114;
constexpr int kPrecisionPage = 1115;
constexpr int kPortPage = 1116;
constexpr int kStylePage = 1196;
constexpr int kOperatorLabel = 1053;
constexpr int kDepartmentLabel = 1054;
constexpr int kStandardCaption = 1112;
constexpr int kHighCaption = 1113;
constexpr int kSearchCaption = 1110;
constexpr int kPortLabel = 1111;
constexpr int kStyleLabel = 1196;

constexpr int kPortCount = 8;
/// What a value of config.ini can hold.
constexpr int kMostCharacters = 255;
constexpr int kNameCharacters = 36;

constexpr const char* kStyles[] = {"Office 2000", "Office XP",   "Office 2003", "Windows XP",
                                   "Whidbev",     "Office 2007", "Ribbon"};

/// A name as the file will give it back: pasted line breaks and tabs are blanks, none stand at the ends.
std::string NameOf(const QLineEdit& field) {
  QString name = field.text();
  std::replace_if(
      name.begin(), name.end(),
      [](QChar c) {
        return c.category() == QChar::Other_Control || c == QChar::LineSeparator ||
               c == QChar::ParagraphSeparator;
      },
      QChar(u' '));
  return name.trimmed().toStdString();
}

QFormLayout* MakeForm() {
  auto* const form = new QFormLayout;
  form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
  form->setLabelAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  return form;
}

}  // namespace

FrmOption::FrmOption(MainWindow& frame)
    : QDialog(&frame.Frame()),
      frame_(frame),
      pages_(new QTabWidget(this)),
      operator_(new QLineEdit(this)),
      department_(new QLineEdit(this)),
      standard_(new QRadioButton(this)),
      high_(new QRadioButton(this)),
      searchPorts_(new QCheckBox(this)),
      ports_(new QComboBox(this)),
      styles_(new QComboBox(this)) {
  DialogParts parts(*this, "FrmOption", Caption(kOptionTitle));
  pages_->setObjectName(QStringLiteral("TabStripOption"));
  pages_->setAccessibleName(Caption(kOptionTitle));
  pages_->tabBar()->setObjectName(QStringLiteral("TabStripOptionBar"));
  pages_->tabBar()->setAccessibleName(Caption(kOptionTitle));
  pages_->setUsesScrollButtons(false);
  AddInformationPage(parts);
  AddPrecisionPage(parts);
  AddPortPage(parts);
  AddStylePage(parts);

  auto* const all = new QVBoxLayout(this);
  all->addWidget(pages_);
  all->addLayout(parts.OKAndCancel());
  all->setSizeConstraint(QLayout::SetFixedSize);
  LoadValues();
  operator_->setFocus();
}

void FrmOption::AddInformationPage(DialogParts& parts) {
  auto* const page = new QWidget(pages_);
  page->setObjectName(QStringLiteral("FrmOptionInformation"));
  pages_->addTab(page, parts.Keyed(Caption(kInformationPage)));
  for (QLineEdit* field : {operator_, department_}) {
    field->setMaxLength(kMostCharacters);
    field->ensurePolished();
    field->setMinimumWidth(field->fontMetrics().averageCharWidth() * kNameCharacters);
  }
  auto* const form = MakeForm();
  form->addRow(parts.Finish(*operator_, "TestOpearater", "LabelOpearater", Caption(kOperatorLabel)),
               operator_);
  form->addRow(parts.Finish(*department_, "TextDeparterment", "LabelDeparterment", Caption(kDepartmentLabel)),
               department_);
  page->setLayout(form);
}

void FrmOption::AddPrecisionPage(DialogParts& parts) {
  auto* const page = new QWidget(pages_);
  page->setObjectName(QStringLiteral("FrmOptionPrecision"));
  pages_->addTab(page, parts.Keyed(Caption(kPrecisionPage)));
  parts.Finish(*standard_, "OptionStandard", Caption(kStandardCaption));
  parts.Finish(*high_, "OptionHighPrecise", Caption(kHighCaption));
  auto* const column = new QVBoxLayout(page);
  column->addWidget(standard_);
  column->addWidget(high_);
  column->addStretch();
}

void FrmOption::AddPortPage(DialogParts& parts) {
  auto* const page = new QWidget(pages_);
  page->setObjectName(QStringLiteral("FrmOptionPort"));
  pages_->addTab(page, parts.Keyed(Caption(kPortPage)));
  for (int port = 1; port <= kPortCount; ++port) ports_->addItem(QStringLiteral("COM%1").arg(port));
  parts.Finish(*searchPorts_, "CheckAuto", Caption(kSearchCaption));
  portLabel_ = parts.Finish(*ports_, "ComboPortList", "LabelPort", Caption(kPortLabel));
  auto* const row = new QHBoxLayout;
  row->addWidget(portLabel_);
  row->addWidget(ports_);
  row->addStretch();
  auto* const column = new QVBoxLayout(page);
  column->addWidget(searchPorts_);
  column->addLayout(row);
  column->addStretch();
  connect(searchPorts_, &QCheckBox::toggled, this, [this](bool searchAll) {
    ports_->setDisabled(searchAll);
    portLabel_->setDisabled(searchAll);
  });
}

void FrmOption::AddStylePage(DialogParts& parts) {
  auto* const page = new QWidget(pages_);
  page->setObjectName(QStringLiteral("FrmOptionStyle"));
  pages_->addTab(page, parts.Keyed(Caption(kStylePage)));
  for (const char* style : kStyles) styles_->addItem(QLatin1String(style));
  QLabel* const label = parts.Finish(*styles_, "ComboFomStyle", "LabelStyle", Caption(kStyleLabel));
  auto* const row = new QHBoxLayout;
  row->addWidget(label);
  row->addWidget(styles_);
  row->addStretch();
  auto* const column = new QVBoxLayout(page);
  column->addLayout(row);
  column->addStretch();
}

void FrmOption::LoadValues() {
  WindowSettings& window = frame_.Window();
  // A successful connect rewrites the stored port.
  const SettingRow<WindowSettings>& port = WindowSettingRow("Option", "Port ID");
  TakeSetting(port, frame_.Settings().GetSetting(port.Section, port.Key), window);

  operator_->setText(QString::fromStdString(window.Operator));
  department_->setText(QString::fromStdString(window.Department));
  (window.PrecisionMode == 1 ? high_ : standard_)->setChecked(true);
  searchPorts_->setChecked(window.PortSearchMode == 0);
  // Of a search, the port on which the instrument answered comes before the stored one, which another copy
  // may have written. A port that somebody has chosen stays.
  const int answered = frame_.Link().Instrument.GetPortID();
  const bool found = window.PortSearchMode == 0 && answered >= 1 && answered <= kPortCount;
  const int shown = found ? answered : window.PortID;
  ports_->setCurrentIndex(std::clamp(shown, 1, kPortCount) - 1);
  styles_->setCurrentIndex(window.MenuStyle);
}

void FrmOption::accept() {
  WindowSettings& window = frame_.Window();
  TakePortSearch();
  TakePrecision();
  TakeStyle();
  window.Operator = NameOf(*operator_);
  Store("Option", "Opearator");
  window.Department = NameOf(*department_);
  Store("Option", "Department");
  window.PortID = ports_->currentIndex() + 1;
  Store("Option", "Port ID");
  Store("Main Window", "Menu Style");
  RemarkOnSettings(frame_);
  QDialog::accept();
}

void FrmOption::TakePortSearch() {
  const int mode = searchPorts_->isChecked() ? 0 : 1;
  frame_.Window().PortSearchMode = mode;
  frame_.Link().State.PortSearchMode = mode;
  Store("Option", "Auto Search");
}

void FrmOption::TakePrecision() {
  const int mode = high_->isChecked() ? 1 : 0;
  frame_.Window().PrecisionMode = mode;
  frame_.Link().Formats.ApplyOption(mode);
  Store("Option", "Precise");
  frame_.FormatsChanged();
}

void FrmOption::TakeStyle() {
  const int style = styles_->currentIndex();
  if (style == frame_.Window().MenuStyle) return;
  frame_.Window().MenuStyle = style;
  frame_.SetMenuStyle(style);
  frame_.Frame().update();
}

void FrmOption::Store(const char* section, const char* key) {
  // A value that the file refuses now goes with the next write; accept() tells what remained at the end.
  StoreWindowSetting(frame_.Settings(), section, key, frame_.Window());
}

}  // namespace spectrane
