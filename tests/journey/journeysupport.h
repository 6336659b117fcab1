#pragma once

#include <QAbstractItemModel>
#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
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
      QAbstractButton* const save = buttons->button(QDialogButtonBox::Save);
      QTest::mouseClick(save ? save : buttons->button(QDialogButtonBox::Open), Qt::LeftButton);
    });
  }
  /// Asked before a dialog is dealt with: what a person does by one click at a time would hold something up
  /// now.
  std::function<bool()> NotNow;
  /// Nothing is expected any more, and every dialog has been dealt with.
  bool Done() const { return expected_.empty() && entered_.isEmpty(); }

 private:
  void Look() {
    QWidget* dialog = QApplication::activeModalWidget();
    // The box that asks to wait is nobody's to deal with.
    if (!dialog || !dialog->isVisible() || dialog->objectName() == QStringLiteral("FrmWait")) return;
    if (entered_.contains(dialog)) return;
    const QString name = dialog->objectName().isEmpty() || qobject_cast<QFileDialog*>(dialog)
                             ? QString::fromLatin1(dialog->metaObject()->className())
                             : dialog->objectName();
    entered_.append(dialog);
    if (expected_.empty() || expected_.front().first != name) {
      ADD_FAILURE() << "not expected: " << name.toStdString() << " " << dialog->windowTitle().toStdString();
      dialog->close();
    } else {
      const Act act = std::move(expected_.front().second);
      expected_.pop_front();
      // Not from within the timer's own call, in which it would not go on looking for what opens over this.
      EnterLater(dialog, act);
      return;
    }
    entered_.removeOne(dialog);
  }

  void EnterLater(QWidget* dialog, const Act& act) {
    QTimer::singleShot(1, dialog, [this, dialog, act] {
      if (NotNow && NotNow()) {
        EnterLater(dialog, act);
        return;
      }
      act(*dialog);
      entered_.removeOne(dialog);
    });
  }

  std::deque<std::pair<QString, Act>> expected_;
  QTimer look_;
  // Dialogs whose turn it is, the innermost last.
  QList<QWidget*> entered_;
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
  /// Over what stands in a field of a dialog.
  static void Type(QWidget& dialog, const char* field, const char* text) {
    auto* const line = dialog.findChild<QLineEdit*>(QLatin1String(field));
    ASSERT_TRUE(line) << field;
    line->setFocus();
    line->selectAll();
    QTest::keyClicks(line, QLatin1String(text));
  }
  /// The New File guide that comes up: the option of that name, and New.
  void ChooseInGuide(const char* option) {
    hands_.Expect("FrmNew", [option](QWidget& guide) {
      auto* const kind = guide.findChild<QRadioButton*>(QLatin1String(option));
      ASSERT_TRUE(kind);
      QTest::mouseClick(kind, Qt::LeftButton);
      QTest::keyClick(&guide, Qt::Key_Return);
    });
  }
  /// The document, which has nothing to save, and then the program.
  void CloseAndQuit() {
    Press(Qt::Key_W, Qt::ControlModifier);
    ASSERT_TRUE(QTest::qWaitFor([this] { return frame_->ActiveForm() == nullptr; }, kPatienceMs));
    Press(Qt::Key_Q, Qt::ControlModifier);
    ASSERT_TRUE(QTest::qWaitFor([this] { return !frame_->isVisible(); }, kPatienceMs));
  }
  /// Another start with a file, as large as the window was before. Nothing is sent to the instrument.
  void StartAgainWith(const QString& path) {
    const QSize size = frame_->size();
    const std::size_t requests = Requests().size();
    StartProgram(path);
    ASSERT_TRUE(QTest::qWaitFor([this] { return frame_->ActiveForm() != nullptr; }, kPatienceMs));
    frame_->resize(size);
    QTest::qWait(300);
    EXPECT_EQ(Requests().size(), requests) << "a file needs no instrument";
  }
  /// What a table shows, row by row.
  static QStringList CellsOf(const QAbstractItemModel& table) {
    QStringList cells;
    for (int row = 0; row < table.rowCount(); ++row)
      for (int column = 0; column < table.columnCount(); ++column)
        cells += table.index(row, column).data().toString();
    return cells;
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
