#include <QClipboard>
#include <QGridLayout>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "simulator/face/pages.h"
#include "simulator/facewords.h"

namespace spectrane {

LinePanel::LinePanel(QWidget* parent) : Page(parent) {
  auto* grid = new QGridLayout(this);
  grid->setContentsMargins(0, 0, 0, 0);
  path_ = new QLineEdit(this);
  path_->setObjectName(QStringLiteral("path"));
  path_->setAccessibleName(QStringLiteral("Port of the instrument"));
  path_->setReadOnly(true);
  path_->setToolTip(QStringLiteral("The serial port under which a program finds this instrument"));
  auto* label = new QLabel(QStringLiteral("&Port:"), this);
  label->setBuddy(path_);
  copy_ = MakeButton("copyPath", QStringLiteral("Cop&y"), QStringLiteral("Copies the port's name"));
  cable_ = MakeButton("cable", QStringLiteral("&Unplug"), QString());
  program_ = new QLabel(this);
  program_->setObjectName(QStringLiteral("program"));
  program_->setAccessibleName(QStringLiteral("Program on the line"));
  request_ = new QLabel(this);
  request_->setObjectName(QStringLiteral("lastRequest"));
  request_->setAccessibleName(QStringLiteral("Last request"));
  // A long request must not widen the window.
  request_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  grid->addWidget(label, 0, 0);
  grid->addWidget(path_, 0, 1);
  grid->addWidget(copy_, 0, 2);
  grid->addWidget(program_, 1, 0, 1, 2);
  grid->addWidget(cable_, 1, 2);
  grid->addWidget(request_, 2, 0, 1, 3);
  connect(copy_, &QPushButton::clicked, this,
          [this] { QGuiApplication::clipboard()->setText(path_->text()); });
  connect(cable_, &QPushButton::clicked, this,
          [this] { emit Wanted(plugged_ ? QStringLiteral("unplug") : QStringLiteral("plug")); });
}

void LinePanel::ShowState(const CompartmentState& state) {
  plugged_ = state.Plugged;
  const QString path = QString::fromStdString(state.Path);
  if (path_->text() != path) path_->setText(path);
  copy_->setEnabled(!path.isEmpty());
  cable_->setText(plugged_ ? QStringLiteral("&Unplug") : QStringLiteral("Pl&ug in"));
  cable_->setAccessibleName(plugged_ ? QStringLiteral("Unplug the cable")
                                     : QStringLiteral("Plug the cable in"));
  cable_->setToolTip(plugged_ ? QStringLiteral("Pulls the cable: open ports hang up, a running command ends")
                              : QStringLiteral("Puts the cable back"));
  program_->setText(QString::fromStdString(ProgramWords(state)));
  const QString request = QString::fromStdString(RequestWords(state));
  request_->setText(request);
  request_->setToolTip(request);
}

}  // namespace spectrane
