#pragma once

#include <QWidget>

#include <array>

namespace spectrane {

/// The formulas of DNA and protein as a picture, with the wavelengths as they are typed.
class PicFormular : public QWidget {
  Q_OBJECT

 public:
  explicit PicFormular(QWidget* parent);

  /// The texts of the two wavelengths and the reference; one that is no wavelength shows as "?".
  void ShowWavelengths(const std::array<QString, 3>& wavelengths);
  /// The same in plain text, a line each.
  QString PlainText() const;

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  std::array<QString, 3> wavelengths_;
};

}  // namespace spectrane
