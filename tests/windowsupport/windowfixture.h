#pragma once

#include <QApplication>
#include <QSet>
#include <QTest>
#include <QTimer>

#include "base/basesupport.h"
#include "simulator/simulatedline.h"
#include "windowsupport/fakemainwindow.h"

namespace spectrane::testing_windows {

/// The message loop of the application on simulated time, with a person who does something at each yield.
class YieldingLoop : public MessageLoop {
 public:
  explicit YieldingLoop(ManualClock& clock) : clock_(clock) {}
  void RunOnce() override {
    ++Yields;
    QCoreApplication::processEvents();
    // What is done there may run the loop again.
    if (OnYield && !inside_) {
      inside_ = true;
      OnYield();
      inside_ = false;
    }
  }
  void RunUntil(const Clock&, std::int64_t deadlineMs) override {
    RunOnce();
    if (deadlineMs > clock_.NowMs()) clock_.Set(deadlineMs);
  }

  int Yields = 0;
  std::function<void()> OnYield;

 private:
  ManualClock& clock_;
  bool inside_ = false;
};

inline InstrumentOptions QuietInstrument() {
  InstrumentOptions options;
  options.Noise = 0.0;
  return options;
}

/// From 325 to 1000 nm.
inline InstrumentOptions NarrowInstrument() {
  InstrumentOptions options = QuietInstrument();
  options.StartNm = 325.0;
  options.EndNm = 1000.0;
  return options;
}

/// A child of `parent` by object name; fails the test when there is none.
template <typename T>
T* Find(const QObject& parent, const char* name) {
  T* const child = parent.findChild<T*>(QLatin1String(name));
  EXPECT_NE(child, nullptr) << "no control " << name;
  return child;
}

/// Does something in the next modal dialog, which must have that name, as soon as it is open.
inline void InDialog(const char* name, std::function<void(QWidget&)> act) {
  QTimer::singleShot(0, qApp, [name = QLatin1String(name), act = std::move(act)] {
    QWidget* const dialog = QApplication::activeModalWidget();
    ASSERT_NE(dialog, nullptr) << "no dialog " << name.toString().toStdString();
    EXPECT_EQ(dialog->objectName(), name);
    EXPECT_TRUE(QTest::qWaitForWindowActive(dialog));
    act(*dialog);
    if (dialog->isVisible()) {
      ADD_FAILURE() << "the dialog stayed open";
      dialog->close();
    }
  });
}

/// Every control and command of a window can be found by name, and is named to those who cannot see it.
inline void ExpectNamesEverywhere(const QWidget& window) {
  QSet<QString> names;
  for (const QWidget* widget : window.findChildren<QWidget*>()) {
    if (widget->focusPolicy() == Qt::NoFocus || widget->objectName().startsWith(QLatin1String("qt_")))
      continue;
    EXPECT_FALSE(widget->objectName().isEmpty()) << widget->metaObject()->className();
    EXPECT_FALSE(widget->accessibleName().isEmpty()) << widget->objectName().toStdString();
    EXPECT_FALSE(names.contains(widget->objectName())) << widget->objectName().toStdString() << " twice";
    names.insert(widget->objectName());
  }
}

/// The surroundings of a window: a main window, settings in a folder of the test, a person with a script, and
/// the simulated instrument on simulated time.
class WindowFixture : public ::testing::Test {
 protected:
  WindowFixture() { Ports.Put(1, Instrument); }

  void ConnectNow() { ASSERT_TRUE(Link.Connect.mmuOperationConnect()); }
  void FitSampler(std::initializer_list<int> positionsInUse) {
    Instrument.Model().FitSampler(true, Time.NowMs());
    Link.State.SamplerPositions.fill(false);
    for (const int position : positionsInUse)
      Link.State.SamplerPositions[static_cast<std::size_t>(position)] = true;
  }
  void Insert(const char* sample) { ASSERT_TRUE(Instrument.Model().PutInBeam(sample, Time.NowMs())); }
  void PullCable() { Ports.Current->HangUp(); }
  QString PathOf(const char* name) const { return QString::fromStdString(Folder.Path(name)); }
  /// Shows a window as the active child.
  void Present(DocumentWindow& window) {
    Main.Active = &window;
    window.resize(700, 400);
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    window.setFocus();
  }

  TemporaryFolder Folder;
  ManualClock Time;
  YieldingLoop Loop{Time};
  NoExclusion Turn;
  SimulatedLine Instrument{QuietInstrument()};
  testing_link::MemoryPortList Ports{Time};
  Setting Settings{Folder.Path()};
  testing_link::RecordedDisplay Display;
  ScriptedQuestions Boxes;
  InstrumentLink Link{{Ports, Time, Loop, Turn, Settings, Display, Boxes, BrandRow(9)}};
  FakeMainWindow Main{Link, Settings, Display, Boxes, QString::fromStdString(Folder.Path())};
};

}  // namespace spectrane::testing_windows
