#include "app/messageboxes.h"

#include <QAbstractButton>
#include <QApplication>
#include <QColorDialog>
#include <QFileDialog>
#include <QMessageBox>

#include "app/ground/languagefont.h"
#include "app/ground/words.h"

namespace spectrane {
namespace {

QString ButtonNameOf(QMessageBox::StandardButton button) {
  switch (button) {
    case QMessageBox::Ok:
      return QStringLiteral("OKCmd");
    case QMessageBox::Yes:
      return QStringLiteral("YesCmd");
    case QMessageBox::No:
      return QStringLiteral("NoCmd");
    case QMessageBox::Cancel:
      return QStringLiteral("CancelCmd");
    default:
      return QStringLiteral("DetailsCmd");
  }
}

/// The arrow stands over a box that comes up during the hourglass.
class ArrowPointer {
 public:
  ArrowPointer() {
    if (wanted_) QGuiApplication::setOverrideCursor(Qt::ArrowCursor);
  }
  ~ArrowPointer() {
    if (wanted_) QGuiApplication::restoreOverrideCursor();
  }
  ArrowPointer(const ArrowPointer&) = delete;
  ArrowPointer& operator=(const ArrowPointer&) = delete;

 private:
  bool wanted_ = QGuiApplication::overrideCursor() != nullptr;
};

int Run(QWidget* parent, const QString& title, const QString& words, const QString& details,
        QMessageBox::StandardButtons buttons, QMessageBox::StandardButton safest,
        QMessageBox::StandardButton escape, int textId, QMessageBox::Icon icon = QMessageBox::Information) {
  const ArrowPointer pointer;
  QMessageBox box(icon, title, words, buttons, parent);
  box.setObjectName(QString::fromLatin1(kMessageBoxName));
  box.setProperty(kBoxTextProperty, textId);
  ApplyLanguageFont(box);
  box.setTextFormat(Qt::PlainText);
  if (!details.isEmpty()) box.setDetailedText(details);
  box.setDefaultButton(safest);
  box.setEscapeButton(escape);
  for (QAbstractButton* button : box.buttons())
    button->setObjectName(ButtonNameOf(box.standardButton(button)));
  return box.exec();
}

}  // namespace

QWidget* MessageBoxes::Parent() const {
  QWidget* dialog = QApplication::activeModalWidget();
  return dialog ? dialog : &frame_;
}

void MessageBoxes::Show(int textId, const std::string& details) {
  Run(Parent(), title_, Words(textId), QString::fromStdString(details), QMessageBox::Ok, QMessageBox::Ok,
      QMessageBox::Ok, textId);
}

void MessageBoxes::ShowError(int textId) {
  Run(Parent(), title_, Words(textId), {}, QMessageBox::Ok, QMessageBox::Ok, QMessageBox::Ok, textId,
      QMessageBox::Critical);
}

void MessageBoxes::ShowWords(const QString& words, const QString& details, int textId) {
  Run(Parent(), title_, words, details, QMessageBox::Ok, QMessageBox::Ok, QMessageBox::Ok, textId);
}

Answer MessageBoxes::AskYesNo(const QString& words, int textId) {
  const int button = Run(Parent(), title_, words, {}, QMessageBox::Yes | QMessageBox::No, QMessageBox::No,
                         QMessageBox::No, textId);
  return button == QMessageBox::Yes ? Answer::Yes : Answer::No;
}

Answer MessageBoxes::AskYesNoCancel(const QString& words, int textId) {
  const int button =
      Run(Parent(), title_, words, {}, QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel,
          QMessageBox::Yes, QMessageBox::Cancel, textId);
  if (button == QMessageBox::Yes) return Answer::Yes;
  return button == QMessageBox::No ? Answer::No : Answer::Cancel;
}

QString MessageBoxes::OpenFileName(const QString& filter, const QString& path) {
  return QFileDialog::getOpenFileName(Parent(), PlainCaption(Words(109)), path, DialogFilter(filter));
}

QString MessageBoxes::SaveFileName(const QString& filter, const QString& path) {
  // The question before overwriting is the program's own.
  return QFileDialog::getSaveFileName(Parent(), PlainCaption(Words(111)), path, DialogFilter(filter), nullptr,
                                      QFileDialog::DontConfirmOverwrite);
}

QColor MessageBoxes::AskColour(const QColor& now, const QString& title) {
  return QColorDialog::getColor(now, Parent(), title);
}

}  // namespace spectrane
