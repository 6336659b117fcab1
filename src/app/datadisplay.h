#pragma once

#include <QToolBar>

class QAction;
class QLabel;

namespace spectrane {

/// The data display toolbar: wavelength, absorbance and transmittance of the live reading.
class DataDisplay : public QToolBar {
  Q_OBJECT

 public:
  /// `setWavelength` stands as a button beside the wavelength.
  DataDisplay(QWidget* parent, QAction* setWavelength);

  enum class Field { Wavelength, Abs, Trans };
  void SetField(Field field, const QString& text);
  QString FieldText(Field field) const;

 protected:
  void changeEvent(QEvent* event) override;

 private:
  QLabel* AddField(const char* objectName, int captionTextId, int width);
  void SizeFields();

  QLabel* fields_[3] = {};
};

}  // namespace spectrane
