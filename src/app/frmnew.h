#pragma once

#include <QDialog>

#include "app/ground/mainwindow.h"

class QBoxLayout;
class QButtonGroup;
class QLabel;

namespace spectrane {

class DialogParts;

/// The New File guide: one option for each kind of document, and what it is for.
class FrmNew : public QDialog {
  Q_OBJECT

 public:
  explicit FrmNew(MainWindow& frame);

  /// Shows the guide and creates what was chosen in it. Yields.
  static void Run(MainWindow& frame);

  /// File type number of the chosen option, 1 to 6; 0: none can be created.
  int FileType() const;

 protected:
  /// A double click on an option is its choice and New in one.
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QBoxLayout* MakeOptions(DialogParts& parts);
  QBoxLayout* MakeDescription();
  void SelectStored();
  void Describe(int fileType);
  void Store(int fileType);

  MainWindow& frame_;
  QButtonGroup* options_;
  QLabel* picture_;
  QLabel* description_;
};

}  // namespace spectrane
