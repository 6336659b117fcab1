#pragma once

#include <QLineEdit>
#include <QPushButton>

#include <algorithm>

#include "app/dialogfixture.h"
#include "app/ground/words.h"
#include "base/language.h"

namespace spectrane::testing_windows {

/// A tool's dialog before the simulated instrument, whose own state tells what became of a command.
class ToolFixture : public DialogFixture {
 protected:
  void SetUp() override {
    Start();
    Instrument.OnExchange = [this](const ExchangeRecord& record) { Commands.push_back(record.Request); };
  }
  /// Connects, with the live reading on as after every connection that worked.
  void Connect() {
    ConnectNow();
    ASSERT_TRUE(Display.TimerOn);
    Commands.clear();
  }
  InstrumentModel& Model() { return Instrument.Model(); }
  /// Spoils the answer to the next command that begins with `verb`, or to every one.
  void Fail(const char* verb, const char* fault, std::vector<std::string> parameters = {},
            const char* which = "1") {
    ASSERT_EQ(Instrument.Faults().Add(verb, which, fault, parameters), std::nullopt);
  }
  void FallSilent() { Fail("*", "no-reply", {}, "every"); }
  /// Opens a dialog, does something in it, and closes it by its button when that has not been done.
  template <typename Dialog, typename... Arguments>
  void Open(const char* closeButton, std::function<void(QWidget&)> act, Arguments&... arguments) {
    Dialog dialog(Main, arguments...);
    // What the dialog loads yields before it is open: it is waited for.
    QTimer poll;
    bool opened = false;
    QObject::connect(&poll, &QTimer::timeout, &poll, [&] {
      if (opened || QApplication::activeModalWidget() != &dialog) return;
      opened = true;
      poll.stop();
      EXPECT_TRUE(QTest::qWaitForWindowActive(&dialog));
      act(dialog);
      Loop.OnYield = {};
      if (dialog.isVisible()) Click(dialog, closeButton);
      EXPECT_FALSE(dialog.isVisible()) << "the dialog stayed open";
      if (dialog.isVisible()) QApplication::exit();
    });
    poll.start(0);
    dialog.exec();
    EXPECT_TRUE(opened);
  }
  static void Type(QWidget& dialog, const char* text) {
    auto* const field = Find<QLineEdit>(dialog, "WavelengthText");
    field->setFocus();
    field->selectAll();
    QTest::keyClick(field, Qt::Key_Delete);
    QTest::keyClicks(field, QString::fromUtf8(text));
  }
  static std::string FieldText(QWidget& dialog) {
    return Find<QLineEdit>(dialog, "WavelengthText")->text().toStdString();
  }
  static std::string State(QWidget& dialog) {
    return Find<QLabel>(dialog, "LabelState")->text().toStdString();
  }
  static bool IsEnabled(QWidget& dialog, const char* button) {
    return Find<QAbstractButton>(dialog, button)->isEnabled();
  }
  int Sent(const std::string& command) const {
    return static_cast<int>(std::count(Commands.begin(), Commands.end(), command));
  }
  /// Every way to close the dialog or to begin another command, tried at each yield of what follows; none may
  /// do anything.
  void TryToLeaveAtEachYield(QWidget& dialog, std::vector<const char*> buttons) {
    Loop.OnYield = [this, &dialog, buttons] {
      ++Yields;
      for (const char* button : buttons) {
        EXPECT_FALSE(IsEnabled(dialog, button)) << button;
        Click(dialog, button);
      }
      QTest::keyClick(&dialog, Qt::Key_Escape);
      QTest::keyClick(&dialog, Qt::Key_Return);
      dialog.close();
      static_cast<QDialog&>(dialog).reject();
      EXPECT_TRUE(dialog.isVisible());
      EXPECT_EQ(Main.RunDepth, 1);
      EXPECT_TRUE(Link.State.InstrumentBusy);
    };
  }

  std::vector<std::string> Commands;
  int Yields = 0;
};

/// The box over the dialog, as the person sees it while an exchange blocks the program.
inline std::string WaitTimeText() {
  for (QWidget* widget : QApplication::topLevelWidgets()) {
    if (widget->objectName() != QStringLiteral("FrmWait") || !widget->isVisible()) continue;
    const auto* const time = widget->findChild<QLabel*>(QStringLiteral("LabelTime"));
    return time == nullptr ? std::string() : time->text().toStdString();
  }
  return "no box";
}

}  // namespace spectrane::testing_windows
