#pragma once

#include <QDialog>
#include <QTimer>

#include "app/ground/mainwindow.h"
#include "base/brand.h"

class QFormLayout;
class QLabel;
class QToolButton;

namespace spectrane {

class DialogParts;

/// The about box: product, version, company and its contact rows.
class FrmAbout : public QDialog {
  Q_OBJECT

 public:
  explicit FrmAbout(MainWindow& frame, const Brand& brand = BuildBrand());

 private:
  QFormLayout* MakeContacts();
  /// Fills in what is shown, from the first picture on.
  void Load();
  void ShowPicture(int index);

  const Brand& brand_;
  QTimer timer_{this};
  int picture_ = 0;
  QLabel* logo_;
  QToolButton* icon_;
  QLabel* title_;
  QLabel* company_;
  QLabel* edition_;
  QLabel* toolkit_;
  QLabel* folder_;
};

}  // namespace spectrane
