#pragma once

#include "tools/windows/tooldialog.h"

class QStandardItemModel;

namespace spectrane {

/// Has the instrument measure the dark energy of every gain anew.
class FrmDarkEnergy : public ToolDialog {
  Q_OBJECT

 public:
  explicit FrmDarkEnergy(MainWindow& frame);

 protected:
  void Load() override;

 private:
  void BuildGrid();
  void Test();
  void ShowTable();

  QStandardItemModel* table_;
};

}  // namespace spectrane
