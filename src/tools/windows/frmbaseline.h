#pragma once

#include "tools/systembaseline.h"
#include "tools/windows/tooldialog.h"

class QLayout;
class QPushButton;

namespace spectrane {

class BaselineTable;
class DialogParts;
class EditGrid;

/// The stored system baseline: loaded, saved and written out as a table. It is filled from files; measuring
/// it is not part of this program. The live reading stands meanwhile.
class FrmBaseLine : public ToolDialog {
  Q_OBJECT

 public:
  /// `baseline` is the program's own and outlives the dialog.
  FrmBaseLine(MainWindow& frame, SystemBaseline& baseline);

  /// Loads the file at `path`. What keeps it from being read, or from being read as a whole, is told. True:
  /// the dialog shows the file, be it in part. Yields.
  bool mmuOpenFile(const QString& path);

 public slots:
  /// A window in whose run a baseline is being measured stays.
  void done(int result) override;

 protected:
  /// A run that measures a baseline begins or ends.
  void SetTestRunning(bool running);
  bool TestRunning() const { return testRunning_; }

 private:
  void BuildControls();
  QLayout* MakeButtons(DialogParts& parts);
  QPushButton* Button(const char* name) const;
  void UpdateControls();
  void LoadFile();
  void SaveFile();
  void Output();
  void StopTest();
  QString StoredPath();
  void StorePath(const QString& path);
  std::int32_t Rows();

  SystemBaseline& baseline_;
  EditGrid* grid_;
  BaselineTable* table_;
  bool testRunning_ = false;
};

}  // namespace spectrane
