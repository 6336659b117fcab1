#pragma once

#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

#include <initializer_list>

class QAbstractButton;
class QDialog;
class QHBoxLayout;
class QLabel;
class QPushButton;

class QWidget;

namespace spectrane {

class MainWindow;

/// Text numbers of the two usual buttons.
inline constexpr int kOKText = 712;
inline constexpr int kCancelText = 713;

/// Object name of a push button and text number of its caption.
struct ButtonWords {
  const char* Name;
  int TextId;
};

/// Finishes the controls of one dialog: each gets its object name, its name for a screen reader, and an
/// access key that no other control of the dialog has. Controls come in reading order, which is the order of
/// Tab and of the choice of keys.
class DialogParts {
 public:
  /// Begins the dialog: language font, object name and title.
  DialogParts(QDialog& dialog, const char* name, const QString& title);

  /// A push button, option button or check box.
  void Finish(QAbstractButton& button, const char* name, const QString& caption);
  /// A field and the label in front of it, which carries the field's access key. Gives the label.
  QLabel* Finish(QWidget& field, const char* name, const char* labelName, const QString& caption);
  /// A caption with an access key of its own, for what is no widget: the rider of a page.
  QString Keyed(const QString& caption);
  /// `OKCmd`, the default, and `CancelCmd` at the right of a row, equally wide; they accept and reject.
  QHBoxLayout* OKAndCancel(int okText = kOKText, int cancelText = kCancelText);
  /// Push buttons at the right of a row, equally wide, in that order; the first is the default. They do
  /// nothing yet.
  QHBoxLayout* ButtonRow(std::initializer_list<ButtonWords> buttons);
  /// `OKCmd` alone; Esc and the close box do the same.
  QHBoxLayout* OKAlone();

 private:
  QPushButton* MakeButton(const char* name, int textId);
  static QHBoxLayout* RightAligned(const QList<QPushButton*>& buttons);

  QDialog& dialog_;
  QSet<QChar> usedKeys_;
};

/// Wraps the texts that `label` will show in turn at `characters` of its font and reserves the room of the
/// tallest, so that nothing moves when one takes the place of another.
void KeepRoomFor(QLabel& label, const QStringList& texts, int characters);

/// A range of wavelengths [nm] as it stands beside a field: "190.0 – 1100.0 nm".
QString WavelengthRangeText(double lowest, double highest);

/// Says in the status bar what keeps config.ini from taking the settings; silent when it took them.
void RemarkOnSettings(MainWindow& frame);

}  // namespace spectrane
