#include "app/mainstatus.h"

#include <QLabel>

#include "app/ground/simulated.h"
#include "base/numbers.h"

namespace spectrane {
namespace {

struct PaneRow {
  const char* ObjectName;
  const char* AccessibleName;
  /// Width of this text is kept free, so that the panes stay where they are.
  const char* Widest;
};

const PaneRow kPanes[] = {
    {"ConnectionPane", "Connection", "connectted."},
    {"SamplerPane", "Sampler", "Sampler"},
    {"SlitPane", "Slit", "Slip"},
    {"WavelengthPane", "Wavelength", "1100.0nm"},
    {"PercentPane", "Progress", "100%"},
};

}  // namespace

MainStatus::MainStatus(QWidget* parent)
    : QStatusBar(parent), remark_(new QLabel(this)), simulated_(new QLabel(this)) {
  setObjectName(QStringLiteral("MainStatus"));
  remark_->setObjectName(QStringLiteral("RemarkPane"));
  remark_->setAccessibleName(tr("Remark"));
  remark_->setTextFormat(Qt::PlainText);
  // A long remark must not widen the window; the tool tip has the rest.
  remark_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  addWidget(remark_, 1);
  simulated_->setObjectName(QStringLiteral("SimulatedPane"));
  simulated_->setText(QLatin1String(kSimulatedInstrument));
  simulated_->setAccessibleName(simulated_->text());
  simulated_->setToolTip(tr("What is measured now comes from a simulated instrument."));
  QFont bold = font();
  bold.setBold(true);
  simulated_->setFont(bold);
  addPermanentWidget(simulated_);
  simulated_->hide();
  for (std::size_t i = 0; i < panes_.size(); ++i) {
    panes_[i] = new QLabel(this);
    panes_[i]->setObjectName(QString::fromLatin1(kPanes[i].ObjectName));
    panes_[i]->setAccessibleName(QString::fromLatin1(kPanes[i].AccessibleName));
    panes_[i]->setTextFormat(Qt::PlainText);
    panes_[i]->setFrameStyle(static_cast<int>(QFrame::Panel) | static_cast<int>(QFrame::Sunken));
    panes_[i]->setMargin(2);
    panes_[i]->setMinimumWidth(fontMetrics().horizontalAdvance(QString::fromLatin1(kPanes[i].Widest)) + 12);
    addPermanentWidget(panes_[i]);
  }
}

void MainStatus::SetPane(StatusPane pane, const QString& text) {
  Label(pane)->setText(text);
}

QString MainStatus::PaneText(StatusPane pane) const {
  return Label(pane)->text();
}

void MainStatus::StatusBarWaveLength(double wavelength, const std::string& format) {
  SetPane(StatusPane::Wavelength, QString::fromStdString(Format(wavelength, format)) + QStringLiteral("nm"));
}

void MainStatus::StatusBarPercent(int percent) {
  SetPane(StatusPane::Percent, QString::number(percent) + u'%');
}

void MainStatus::SetRemark(const QString& text, bool urgent) {
  if (remark_->text() == text && remark_->font().bold() == urgent) return;
  QFont weight = font();
  weight.setBold(urgent);
  remark_->setFont(weight);
  remark_->setText(text);
  remark_->setToolTip(text);
}

QString MainStatus::Remark() const {
  return remark_->text();
}

void MainStatus::ShowSimulated(bool simulated) {
  simulated_->setVisible(simulated);
}

bool MainStatus::IsSimulatedShown() const {
  return simulated_->isVisibleTo(this);
}

}  // namespace spectrane
