#pragma once

#include <QTableView>

#include "app/ground/frmdatatabel.h"
#include "app/ground/words.h"
#include "modes/windows/frmts.h"
#include "output/windows/piccurve.h"
#include "windowsupport/windowfixture.h"

namespace spectrane::testing_windows {

/// A time scan window on show: one second between points, `end` seconds long.
class TimeScanWindow : public WindowFixture {
 protected:
  void Open(int start = 0, int end = 5) {
    Settings.PutSetting(kTimeScanSection, "Start Second", std::to_string(start));
    Settings.PutSetting(kTimeScanSection, "End Second", std::to_string(end));
    Settings.PutSetting(kTimeScanSection, "Interval Second", "3");
    Show();
  }
  void Show() {
    Window = new FrmTS(Main);
    Present(*Window);
    Window->resize(900, 560);
    QCoreApplication::processEvents();
    Curve = Find<PicCurve>(*Window, "PicCurve");
  }
  void Blank() {
    if (!Link.State.InstrumentConnected) ConnectNow();
    Insert("blank");
    Window->mmuOperationRezero();
    ASSERT_TRUE(Window->Test().BlankHolds());
  }
  /// Blank, sample, and the whole test, whose end is not saved.
  void Measure(const char* sample = "dye-3") {
    Blank();
    Insert(sample);
    Boxes.ExpectYesNo(Words(926), Answer::No);
    Window->mmuStartTest();
  }
  ~TimeScanWindow() override { delete Window.data(); }

  QAbstractItemModel& Records() const { return *Window->DataTable()->Grid(0)->model(); }
  QAbstractItemModel& Peaks() const { return *Window->DataTable()->Grid(1)->model(); }
  static QString Row(const QAbstractItemModel& model, int row) {
    QStringList cells;
    for (int column = 0; column < model.columnCount(); ++column)
      cells.append(model.index(row, column).data().toString());
    return cells.join(u'|');
  }
  CurveScale Seen() const { return Curve->View().Scale; }
  std::string StoredHere(const char* key) { return Setting(Folder.Path()).GetSetting(kTimeScanSection, key); }
  /// Does `act` at one yield of `work`.
  void AtYield(int yield, const std::function<void()>& act, const std::function<void()>& work) {
    Loop.Yields = 0;
    Loop.OnYield = [this, yield, act] {
      if (Loop.Yields == yield) act();
    };
    work();
    Loop.OnYield = {};
  }
  /// Does `act` once, when the test has that many points.
  void WithPoints(int points, const std::function<void()>& act) {
    Loop.OnYield = [this, points, act] {
      if (Window->Document().DataCount() != points) return;
      const std::function<void()> once = act;
      Loop.OnYield = {};
      once();
    };
  }

  QPointer<FrmTS> Window;
  PicCurve* Curve = nullptr;
};

}  // namespace spectrane::testing_windows
