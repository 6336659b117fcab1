#include "app/datadock.h"

#include <QCloseEvent>
#include <QStackedWidget>

#include "app/ground/frmdatatabel.h"

namespace spectrane {

DataDock::DataDock(QWidget* parent) : QDockWidget(parent), pages_(new QStackedWidget(this)) {
  setObjectName(QStringLiteral("DockingTable"));
  setAccessibleName(tr("Data table"));
  setWidget(pages_);
  hide();
}

FrmDataTabel* DataDock::Table() const {
  return table_;
}

void DataDock::Follow(FrmDataTabel* table) {
  if (table != table_) {
    if (table_) disconnect(table_, nullptr, this, nullptr);
    table_ = table;
    if (table) {
      if (pages_->indexOf(table) < 0) pages_->addWidget(table);
      pages_->setCurrentWidget(table);
      connect(table, &FrmDataTabel::TitleChanged, this, &DataDock::Update);
    }
  }
  Update();
}

void DataDock::SetWanted(bool wanted) {
  if (wanted == wanted_) return;
  wanted_ = wanted;
  Update();
  emit WantedChanged(wanted);
}

void DataDock::Update() {
  if (table_) setWindowTitle(table_->windowTitle());
  setVisible(wanted_ && table_);
}

void DataDock::closeEvent(QCloseEvent* event) {
  QDockWidget::closeEvent(event);
  if (event->isAccepted()) SetWanted(false);
}

}  // namespace spectrane
