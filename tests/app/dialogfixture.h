#pragma once

#include <QAbstractButton>
#include <QDialog>
#include <QLabel>

#include "windowsupport/windowfixture.h"

namespace spectrane::testing_windows {

/// The surroundings of the program's own dialogs.
class DialogFixture : public WindowFixture {
 protected:
  /// What the file says, as a copy of the program reads it that has just started.
  std::string Stored(const char* section, const char* key) const {
    return Setting(Folder.Path()).GetSetting(section, key);
  }
  /// Takes the settings over as the start of the program does.
  void Start() {
    LoadWindowSettings(Settings, Folder.Path(), Main.Window());
    Link.Apply(Main.Window());
  }
  /// A file that cannot be replaced: something else has its name.
  void BlockSettings() { std::filesystem::create_directory(Folder.Path("config.ini")); }

  static void Click(QWidget& dialog, const char* button) {
    QTest::mouseClick(Find<QAbstractButton>(dialog, button), Qt::LeftButton);
  }
  static void Press(QWidget& dialog, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QWidget* const focus = QApplication::focusWidget();
    QTest::keyClick(focus != nullptr && dialog.isAncestorOf(focus) ? focus : &dialog, key, modifiers);
  }
  static QString FocusName() {
    const QWidget* const focus = QApplication::focusWidget();
    return focus == nullptr ? QString() : focus->objectName();
  }
};

/// All access keys of a dialog; fails the test when one is given twice or a label has one without a field.
inline QString AccessKeys(const QWidget& dialog, const QStringList& further = {}) {
  QStringList captions = further;
  for (const QAbstractButton* button : dialog.findChildren<QAbstractButton*>()) {
    if (!button->text().isEmpty()) captions.append(button->text());
  }
  for (const QLabel* label : dialog.findChildren<QLabel*>()) {
    if (label->text().contains(u'&')) {
      EXPECT_NE(label->buddy(), nullptr) << label->text().toStdString();
    }
    if (label->buddy() != nullptr) captions.append(label->text());
  }
  QString keys;
  for (const QString& caption : captions) {
    const qsizetype mark = caption.indexOf(u'&');
    EXPECT_GE(mark, 0) << "no access key: " << caption.toStdString();
    if (mark < 0) continue;
    const QChar key = caption[mark + 1].toUpper();
    EXPECT_FALSE(keys.contains(key)) << "twice: " << caption.toStdString();
    keys += key;
  }
  return keys;
}

}  // namespace spectrane::testing_windows
