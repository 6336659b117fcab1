#pragma once

#include <QPushButton>

namespace spectrane {

class MainWindow;

/// A button filled with a colour; a click asks for another one. Yields.
class ColourButton : public QPushButton {
  Q_OBJECT

 public:
  /// `title` is that of the question.
  ColourButton(MainWindow& frame, const QString& title, QWidget* parent);

  QColor Colour() const { return colour_; }
  void SetColour(const QColor& colour);

 private:
  MainWindow& frame_;
  QString title_;
  QColor colour_;
};

}  // namespace spectrane
