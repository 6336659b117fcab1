#pragma once

#include <QDockWidget>
#include <QPointer>

class QStackedWidget;

namespace spectrane {

class FrmDataTabel;

/// The pane `DockingTable`: the tables of the active chart window. Without one it is not seen; closed by the
/// person, it stays away until they ask for it again.
class DataDock : public QDockWidget {
  Q_OBJECT

 public:
  explicit DataDock(QWidget* parent);

  /// Null: no table to show.
  void Follow(FrmDataTabel* table);
  /// Whether the person wants to see tables.
  bool IsWanted() const { return wanted_; }
  void SetWanted(bool wanted);
  FrmDataTabel* Table() const;

 signals:
  void WantedChanged(bool wanted);

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  void Update();

  QStackedWidget* pages_;
  QPointer<FrmDataTabel> table_;
  bool wanted_ = true;
};

}  // namespace spectrane
