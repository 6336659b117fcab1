// The time scan window while it measures.

#include <QApplication>
#include <QPointer>
#include <QTableView>

#include "app/ground/busycursor.h"
#include "app/ground/commands.h"
#include "app/ground/frmdatatabel.h"
#include "app/ground/words.h"
#include "base/numbers.h"
#include "modes/windows/frmts.h"
#include "output/windows/piccurve.h"

namespace spectrane {
namespace {

constexpr int kScanFinished = 926;
constexpr int kRecordTab = 0;
/// Waits from this on [ms] are counted down before the eyes of whoever waits.
constexpr std::int32_t kLongWaitMs = 2000;

std::string SecondsOf(std::int64_t ms) {
  return Format(static_cast<double>(ms) / 1000.0, "0.0 s");
}

}  // namespace

void FrmTS::ConnectTest() {
  test_.OnBegin = [this] { BeginTest(); };
  test_.OnWait = [this](std::int64_t restMs) { ShowWait(restMs); };
  test_.OnPoint = [this](std::int32_t point) { ShowPoint(point); };
  test_.OnFinished = [this] { AskToSaveTest(); };
}

void FrmTS::mmuStartTest() {
  if (RunsNow()) return;
  {
    const Run run(*this);
    TellEnd(test_.mmuStartTest());
  }
  if (points_.Count() == 0) ShowPicture();
  DocumentChanged();
}

void FrmTS::mmuOperationRezero() {
  if (RunsNow()) return;
  {
    const Run run(*this);
    const BusyCursor busy(*this);
    // It ends what a start without a blank has left behind.
    test_.TestRunning = false;
    test_.mmuOperationRezero();
  }
  if (points_.Count() == 0) ShowPicture();
  DocumentChanged();
}

void FrmTS::mmuStopTest() {
  if (!test_.TestRunning) return;
  const QPointer<FrmTS> self(this);
  const std::int64_t askedMs = Frame().Link().Time.NowMs();
  const bool stop = AskToStop();
  if (!self) return;
  if (stop) {
    StopTest();
    return;
  }
  // No point is read while the question stands, and the schedule goes on.
  const std::int64_t heldMs = Frame().Link().Time.NowMs() - askedMs;
  if (RunsNow() && heldMs > document_.Interval())
    Frame().Display().SetRemark("The question has held the test up for " + SecondsOf(heldMs) + ".");
}

void FrmTS::StopTest() {
  test_.TestRunning = false;
  // The live reading has waited for an action since a start found no blank.
  if (!RunsNow() && test_.IsConnected()) Frame().Link().Live.SampleTimerStart();
  Frame().Display().UpdateCommands();
}

void FrmTS::BeginTest() {
  found_ = {};
  points_.TakeAll(document_);
  readMs_.clear();
  shownWait_ = -1;
  ShowPicture();
  ShowTables();
  curveDataTabel_->SelectTab(kRecordTab);
  DocumentChanged();
}

void FrmTS::ShowPoint(std::int32_t point) {
  readMs_.push_back(Frame().Link().Time.NowMs());
  points_.TakeNext(document_);
  recordTable_->Grow(points_.Count());
  curveDataTabel_->Grid(kRecordTab)->scrollToBottom();
  Curve().Extend(0, points_.Time, points_.Values(document_.ShowsTrans()));
  shownWait_ = -1;
  KeepJournal(point);
  if (document_.Interval() < kLongWaitMs) {
    Frame().Display().SetRemark("Point " + std::to_string(point + 1) + " of " +
                                std::to_string(document_.PointTotal()));
  }
}

void FrmTS::ShowWait(std::int64_t restMs) {
  const std::int32_t points = document_.DataCount();
  if (points > 0 && document_.Interval() < kLongWaitMs) return;
  const std::int64_t seconds = (restMs + 999) / 1000;
  if (seconds == shownWait_) return;
  shownWait_ = seconds;
  const std::string done = points == 0 ? "First reading in "
                                       : "Point " + std::to_string(points) + " of " +
                                             std::to_string(document_.PointTotal()) + ". Next reading in ";
  Frame().Display().SetRemark(done + std::to_string(seconds) + " s");
}

void FrmTS::AskToSaveTest() {
  DocumentChanged();
  if (document_.DataCount() > 0 &&
      Frame().Boxes().AskYesNo(Words(kScanFinished), kScanFinished) == Answer::Yes)
    mmuSaveAsFile();
  QApplication::beep();
}

void FrmTS::TellEnd(TimeScanEnd end) {
  const std::int32_t count = document_.DataCount();
  const std::string points = std::to_string(count) + (count == 1 ? " point" : " points");
  std::string words;
  switch (end) {
    case TimeScanEnd::NotBegun:
      // What was in the way has been said.
      return;
    case TimeScanEnd::StoppedBefore:
      words = "Stopped before the first reading.";
      break;
    case TimeScanEnd::Stopped:
      words = "Ended after " + points + ".";
      break;
    case TimeScanEnd::Finished:
      words = count > 0 ? points + "." : "Nothing was measured: the end lies before the start.";
      break;
  }
  // The schedule counts the intervals alone; a reading and its drawing come on top.
  if (count > 1) {
    const double scheduled = document_.Point(count - 1).Time - document_.Point(0).Time;
    words += " By the schedule they took " + Format(scheduled, "0.0 s") + ", by the clock " +
             SecondsOf(readMs_[static_cast<std::size_t>(count) - 1] - readMs_[0]) + ".";
  }
  Frame().Display().SetRemark(words);
}

bool FrmTS::Offers(int command) const {
  switch (command) {
    case kStopTest:
      return test_.TestRunning;
    case kStartTest:
    case kSetBlank:
    case kTestOption:
    case kSearchPeak:
    case kPeakValueSetup:
      return !RunsNow();
    default:
      return CurveWindow::Offers(command);
  }
}

bool FrmTS::HasWork() const {
  return document_.DataCount() > 0;
}

}  // namespace spectrane
