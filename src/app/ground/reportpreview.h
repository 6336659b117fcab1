#pragma once

#include <QDialog>

class QLabel;
class QPrinter;
class QPrintPreviewWidget;
class QPushButton;

namespace spectrane {

struct Report;

/// The pages of a report on the screen. Accepted: it is to be printed.
class ReportPreview : public QDialog {
  Q_OBJECT

 public:
  /// `printer` gives the paper. Both must outlive the dialog.
  ReportPreview(QWidget& parent, QPrinter& printer, const Report& report);

 private:
  void TurnPages(int pages);
  void ShowPlace();

  QPrintPreviewWidget* pages_;
  QLabel* place_;
  QPushButton* previous_;
  QPushButton* next_;
};

}  // namespace spectrane
