#include "simulator/face/pages.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

#include "simulator/commandset.h"
#include "simulator/face/samplechoice.h"
#include "simulator/facewords.h"

namespace spectrane {
namespace {

QString Text(std::string_view words) {
  return QString::fromUtf8(words.data(), static_cast<qsizetype>(words.size()));
}

const char16_t Mark[] = u"\u25B6";

}  // namespace

QCheckBox* Page::MakeSwitch(const char* name, const QString& label, const QString& command,
                            const QString& yes, const QString& no) {
  auto* box = new QCheckBox(label, this);
  box->setObjectName(QString::fromLatin1(name));
  box->setAccessibleName(QString(label).remove(u'&'));
  connect(box, &QCheckBox::clicked, this,
          [this, command, yes, no](bool on) { emit Wanted(command + u' ' + (on ? yes : no)); });
  return box;
}

QPushButton* Page::MakeButton(const char* name, const QString& label, const QString& hint) {
  auto* button = new QPushButton(label, this);
  button->setObjectName(QString::fromLatin1(name));
  button->setAccessibleName(QString(label).remove(u'&'));
  button->setToolTip(hint);
  button->setAutoDefault(false);
  return button;
}

SamplerPage::SamplerPage(QWidget* parent) : Page(parent) {
  auto* grid = new QGridLayout(this);
  fitted_ = MakeSwitch("samplerFitted", QStringLiteral("Eight-cell sampler fi&tted"),
                       QStringLiteral("sampler"), QStringLiteral("on"), QStringLiteral("off"));
  grid->addWidget(fitted_, 0, 0, 1, 4);
  constexpr int Rows = InstrumentModel::Cells / 2;
  for (int cell = 1; cell <= InstrumentModel::Cells; ++cell) {
    const auto at = static_cast<std::size_t>(cell - 1);
    const QString number = QString::number(cell);
    auto* choice = new SampleChoice(this);
    choice->setObjectName(QStringLiteral("cell") + number);
    choice->setAccessibleName(QStringLiteral("Cell ") + number);
    auto* label = new QLabel(this);
    label->setObjectName(QStringLiteral("cellLabel") + number);
    label->setBuddy(choice);
    // The mark of the cell in the beam must not push the list aside.
    QFont marked = font();
    marked.setBold(true);
    label->setMinimumWidth(QFontMetrics(marked).horizontalAdvance(QString::fromUtf16(Mark) + number) + 1);
    connect(choice, &SampleChoice::Chosen, this, [this, number](const QString& sample) {
      emit Wanted(QStringLiteral("cell ") + number + u' ' + sample);
    });
    const int row = 1 + (cell - 1) % Rows;
    const int column = cell <= Rows ? 0 : 2;
    grid->addWidget(label, row, column);
    grid->addWidget(choice, row, column + 1);
    labels_[at] = label;
    choices_[at] = choice;
  }
  words_ = new QLabel(this);
  words_->setObjectName(QStringLiteral("samplerWords"));
  words_->setAccessibleName(QStringLiteral("Sampler"));
  words_->setWordWrap(true);
  grid->addWidget(words_, Rows + 1, 0, 1, 4);
  grid->setColumnStretch(1, 1);
  grid->setColumnStretch(3, 1);
  grid->setRowStretch(Rows + 2, 1);
}

void SamplerPage::ShowState(const CompartmentState& state) {
  fitted_->setChecked(state.SamplerFitted);
  for (int cell = 1; cell <= InstrumentModel::Cells; ++cell) {
    const auto at = static_cast<std::size_t>(cell - 1);
    const bool inBeam = state.SamplerFitted && cell == state.Cell;
    const QString number = QString::number(cell);
    labels_[at]->setText((inBeam ? QString::fromUtf16(Mark) : QString()) + u'&' + number);
    QFont font = this->font();
    font.setBold(inBeam);
    labels_[at]->setFont(font);
    choices_[at]->setAccessibleName(QStringLiteral("Cell ") + number +
                                    (inBeam ? QStringLiteral(", in the beam") : QString()));
    if (state.Cells[at] != nullptr) choices_[at]->ShowSample(*state.Cells[at]);
  }
  words_->setText(
      state.SamplerFitted
          ? QStringLiteral("Cell %1 stands in the beam. The program moves the sampler.").arg(state.Cell)
          : QStringLiteral("Not fitted. The cells can be filled beforehand."));
}

QLabel* InstrumentPage::MakeValue(const char* name, const QString& label) {
  auto* value = new QLabel(this);
  value->setObjectName(QString::fromLatin1(name));
  value->setAccessibleName(label);
  value->setTextInteractionFlags(Qt::TextSelectableByMouse);
  value->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
  return value;
}

InstrumentPage::InstrumentPage(QWidget* parent) : Page(parent) {
  auto* form = new QFormLayout(this);
  form->setLabelAlignment(Qt::AlignLeft);
  const auto row = [&](const char* name, const QString& label) {
    QLabel* value = MakeValue(name, label);
    form->addRow(label + u':', value);
    return value;
  };
  const auto lamp = [&](const char* name, const QString& label, QCheckBox* dead) {
    QLabel* value = MakeValue(name, QString(label).remove(u'&'));
    auto* caption = new QLabel(label + u':', this);
    caption->setBuddy(dead);
    auto* line = new QHBoxLayout;
    line->addWidget(value, 1);
    line->addWidget(dead);
    form->addRow(caption, line);
    return value;
  };
  const QString died = QStringLiteral("dead");
  const QString good = QStringLiteral("good");
  tungstenDead_ =
      MakeSwitch("tungstenDead", QStringLiteral("burnt out"), QStringLiteral("lamp tungsten"), died, good);
  deuteriumDead_ =
      MakeSwitch("deuteriumDead", QStringLiteral("burnt out"), QStringLiteral("lamp deuterium"), died, good);
  const QString hint = QStringLiteral("The lamp gives no light, and the instrument does not notice.");
  tungstenDead_->setToolTip(hint);
  tungstenDead_->setAccessibleName(QStringLiteral("Tungsten lamp burnt out"));
  deuteriumDead_->setToolTip(hint);
  deuteriumDead_->setAccessibleName(QStringLiteral("Deuterium lamp burnt out"));
  wavelength_ = row("wavelength", QStringLiteral("Wavelength"));
  slit_ = row("slit", QStringLiteral("Slit"));
  gain_ = row("gain", QStringLiteral("Amplifier"));
  tungsten_ = lamp("tungsten", QStringLiteral("Tungsten l&amp"), tungstenDead_);
  deuterium_ = lamp("deuterium", QStringLiteral("&Deuterium lamp"), deuteriumDead_);
  absorbance_ = row("absorbance", QStringLiteral("True absorbance"));
  absorbance_->setToolTip(QStringLiteral(
      "Of what stands in the beam, at this wavelength and slit, without stray light and noise"));
  noise_ = MakeSwitch("noise", QStringLiteral("Readings with &noise"), QStringLiteral("noise"),
                      QStringLiteral("on"), QStringLiteral("off"));
  QPushButton* restart =
      MakeButton("restart", QStringLiteral("&Restart"), QStringLiteral("Power off and on"));
  connect(restart, &QPushButton::clicked, this, [this] { emit Wanted(QStringLiteral("restart")); });
  auto* last = new QHBoxLayout;
  last->addWidget(noise_, 1);
  last->addWidget(restart);
  form->addRow(last);
}

void InstrumentPage::ShowState(const CompartmentState& state) {
  wavelength_->setText(Text(WavelengthWords(state)));
  slit_->setText(Text(SlitWords(state)));
  gain_->setText(Text(GainWords(state)));
  absorbance_->setText(Text(AbsorbanceWords(state)));
  tungsten_->setText(Text(LampWords(state.Tungsten)));
  deuterium_->setText(Text(LampWords(state.Deuterium)));
  tungstenDead_->setChecked(state.TungstenDead);
  deuteriumDead_->setChecked(state.DeuteriumDead);
  noise_->setChecked(state.Noisy);
}

FaultPage::FaultPage(QWidget* parent) : Page(parent) {
  auto* form = new QFormLayout(this);
  form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
  kind_ = new QComboBox(this);
  kind_->setObjectName(QStringLiteral("faultKind"));
  kind_->setAccessibleName(QStringLiteral("Kind of fault"));
  for (const FaultKindEntry& entry : FaultKinds()) {
    kind_->addItem(Text(FaultWords(entry.Kind)), Text(entry.Name));
  }
  request_ = new QComboBox(this);
  request_->setObjectName(QStringLiteral("faultRequest"));
  request_->setAccessibleName(QStringLiteral("Request whose answer is spoilt"));
  request_->addItem(QStringLiteral("whatever comes next"), QStringLiteral("*"));
  for (const CommandEntry& entry : Commands()) {
    request_->addItem(QStringLiteral("the next ") + Text(entry.Verb), Text(entry.Verb));
  }
  form->addRow(QStringLiteral("Fau&lty answer:"), kind_);
  form->addRow(QStringLiteral("To re&quest:"), request_);
  pending_ = new QLabel(this);
  pending_->setObjectName(QStringLiteral("faultsPending"));
  pending_->setAccessibleName(QStringLiteral("Faults that wait"));
  QPushButton* spoil =
      MakeButton("spoil", QStringLiteral("Sp&oil"), QStringLiteral("Spoils that answer, once"));
  clear_ = MakeButton("clearFaults", QStringLiteral("For&get"),
                      QStringLiteral("Forgets all faults that wait, random ones included"));
  auto* buttons = new QHBoxLayout;
  buttons->addWidget(pending_, 1);
  buttons->addWidget(spoil);
  buttons->addWidget(clear_);
  form->addRow(buttons);
  jammed_ = MakeSwitch("jammed", QStringLiteral("Wavelength drive &jammed"), QStringLiteral("jam"),
                       QStringLiteral("on"), QStringLiteral("off"));
  jammed_->setToolTip(QStringLiteral("The drive stands still, but the instrument answers as if it moved."));
  busy_ = MakeSwitch("busy", QStringLiteral("R&efuses to connect (busy)"), QStringLiteral("busy"),
                     QStringLiteral("on"), QStringLiteral("off"));
  form->addRow(jammed_);
  form->addRow(busy_);
  connect(spoil, &QPushButton::clicked, this, [this] { PlayFault(); });
  connect(clear_, &QPushButton::clicked, this, [this] { emit Wanted(QStringLiteral("faults clear")); });
}

void FaultPage::PlayFault() {
  emit Wanted(QStringLiteral("fault ") + kind_->currentData().toString() + u' ' +
              request_->currentData().toString());
}

void FaultPage::ShowState(const CompartmentState& state) {
  const std::size_t count = state.PendingFaults;
  pending_->setText(count == 0   ? QStringLiteral("No fault waits.")
                    : count == 1 ? QStringLiteral("1 fault waits.")
                                 : QStringLiteral("%1 faults wait.").arg(count));
  jammed_->setChecked(state.Jammed);
  busy_->setChecked(state.Busy);
}

}  // namespace spectrane
