#pragma once

#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QTest>
#include <QTimer>

#include <deque>

#include "app/frmmain.h"
#include "app/ground/documentwindow.h"
#include "cli/processes.h"
#include "link/portlist.h"

namespace spectrane::testing_journey {

inline constexpr int kPatienceMs = 30000;

/// Hands at the dialogs: each that comes up must be the next one expected, and is dealt with.
class Hands : public QObject {
 public:
  using Act = std::function<void(QWidget&)>;

  Hands() {
    connect(&look_, &QTimer::timeout, this, [this] { Look(); });
    look_.start(20);
  }
  void Expect(const char* name, Act act) { expected_.push_back({QLatin1String(name), std::move(act)}); }
  /// A box with these words, answered by a button.
  void ExpectBox(const QString& words, QMessageBox::StandardButton answer) {
    Expect("MessageBox", [words, answer](QWidget& widget) {
      auto& box = dynamic_cast<QMessageBox&>(widget);
      EXPECT_EQ(box.text().toStdString(), words.toStdString());
      EXPECT_EQ(box.windowTitle(), QStringLiteral("Spectrane Basic"));
      EXPECT_EQ(box.icon(), QMessageBox::Information);
      QTest::mouseClick(box.button(answer), Qt::LeftButton);
    });
  }
  void ExpectFileDialog(const QString& path) {
    Expect("QFileDialog", [path](QWidget& widget) {
      auto* name = widget.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
      ASSERT_TRUE(name);
      // Pasted: what the completer offers while a person types is none of this journey.
      name->setText(path);
      auto* buttons = widget.findChild<QDialogButtonBox*>();
      ASSERT_TRUE(buttons);
      QTest::mouseClick(buttons->button(QDialogButtonBox::Save), Qt::LeftButton);
    });
  }
  bool Done() const { return expected_.empty(); }

 private:
  void Look() {
    QWidget* dialog = QApplication::activeModalWidget();
    if (!dialog || !dialog->isVisible() || inside_) return;
    const QString name = dialog->objectName().isEmpty() || qobject_cast<QFileDialog*>(dialog)
                             ? QString::fromLatin1(dialog->metaObject()->className())
                             : dialog->objectName();
    inside_ = true;
    if (expected_.empty() || expected_.front().first != name) {
      ADD_FAILURE() << "not expected: " << name.toStdString() << " " << dialog->windowTitle().toStdString();
      dialog->close();
    } else {
      const Act act = std::move(expected_.front().second);
      expected_.pop_front();
      act(*dialog);
    }
    inside_ = false;
  }

  std::deque<std::pair<QString, Act>> expected_;
  QTimer look_;
  bool inside_ = false;
};

/// The whole program with real windows, a real clock and the simulator on a pseudo-terminal.
class Journey : public testing_processes::SimulatorProcess {
 protected:
  void StartProgram(const QString& file = {}) {
    qputenv("SPECTRANE_PORTS", QByteArray::fromStdString(Path("line")));
    frame_.reset();
    frame_ = std::make_unique<FrmMain>(
        ProgramParts{ports_, time_, loop_, *turn_, Settings(), Path("home"), nullptr, file});
    frame_->ShowStored();
    frame_->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(frame_.get()));
  }
  Setting& Settings() {
    if (!settings_) settings_ = std::make_unique<Setting>(Path("home"));
    return *settings_;
  }
  /// The active child, which must be of that kind.
  template <typename T>
  T& Child() {
    return dynamic_cast<T&>(*frame_->ActiveForm());
  }
  bool Connected() const { return frame_->Link().State.InstrumentConnected; }
  void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    frame_->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(frame_.get()));
    QTest::keyClick(frame_.get(), key, modifiers);
  }
  /// Keeps what the screen shows, for people to look at.
  void Photograph(const char* name) {
    const QString folder = qEnvironmentVariable("SPECTRANE_PICTURES");
    if (folder.isEmpty()) return;
    QCoreApplication::processEvents();
    frame_->screen()->grabWindow(0).save(folder + u'/' + QString::fromLatin1(name) + QStringLiteral(".png"));
  }

  Hands hands_;
  std::unique_ptr<FrmMain> frame_;

 private:
  SteadyClock time_;
  QtMessageLoop loop_;
  std::unique_ptr<Exclusion> turn_ = MakeNamedExclusion("ex_sim_sci_journey");
  SerialPortList ports_;
  std::unique_ptr<Setting> settings_;
};

}  // namespace spectrane::testing_journey
