#pragma once

#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

#include <initializer_list>
#include <span>
#include <vector>

class QAbstractButton;
class QBoxLayout;
class QButtonGroup;
class QComboBox;
class QDialog;
class QGridLayout;
class QGroupBox;
class QHBoxLayout;
class QLabel;
class QPushButton;
class QRadioButton;
class QWidget;

namespace spectrane {

class MainWindow;

/// Text numbers of the two usual buttons.
inline constexpr int kOKText = 712;
inline constexpr int kCancelText = 713;

/// Object name of a push button or an option and text number of its caption.
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
  /// An empty group with a title.
  QGroupBox* Group(const char* name, int titleTextId);
  /// A field in a row of its own at the end of `grid`, with its label in front and `unit` behind it.
  void AddRow(QGridLayout& grid, QWidget& field, const char* name, const char* labelName, int textId,
              QLabel* unit);
  /// Option buttons, numbered from `firstId`, at the end of `column`.
  void AddOptions(QBoxLayout& column, QButtonGroup& options, std::initializer_list<ButtonWords> words,
                  int firstId);
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

/// Groups in columns, from left to right and downward, as they are read and as Tab goes.
QHBoxLayout* GroupColumns(std::initializer_list<std::vector<QGroupBox*>> columns);

/// The rows of a list of choices, and the one that `row` names. A number that is no row stays as it is until
/// a row is chosen.
void FillList(QComboBox& list, const QStringList& rows, int row);

/// Wraps the texts that `label` will show in turn at `characters` of its font and reserves the room of the
/// tallest, so that nothing moves when one takes the place of another.
void KeepRoomFor(QLabel& label, const QStringList& texts, int characters);

/// Tab comes to the option that is chosen; the arrows go from one to the other.
void LetTabReachChosen(std::span<QRadioButton* const> options);

/// A range of wavelengths [nm] as it stands beside a field: "190.0 – 1100.0 nm".
QString WavelengthRangeText(double lowest, double highest);

/// Says in the status bar what keeps config.ini from taking the settings; silent when it took them.
void RemarkOnSettings(MainWindow& frame);

}  // namespace spectrane
