#pragma once

#include <QDialog>

#include <map>
#include <memory>
#include <set>

#include "app/frmmain.h"
#include "app/ground/commands.h"
#include "app/ground/documentwindow.h"
#include "base/basesupport.h"
#include "link/linkfixture.h"
#include "simulator/simulatedline.h"

namespace spectrane::testing_reentrancy {

/// The tests are to try everything, however long it takes.
inline bool IsLongForm() {
  return qEnvironmentVariableIsSet("SPECTRANE_LONG");
}

/// The message loop of the program on simulated time. One thing happens at one yield, in the middle of it.
class WatchedLoop : public MessageLoop {
 public:
  explicit WatchedLoop(ManualClock& clock) : clock_(clock) {}
  void RunOnce() override { Yield(false); }
  void RunUntil(const Clock&, std::int64_t deadlineMs) override {
    Yield(false);
    if (deadlineMs > clock_.NowMs()) clock_.Set(deadlineMs);
  }
  /// A box that is open yields as well; only what gets past a box happens there.
  void YieldInBox() { Yield(true); }

  /// From now on yields are counted from 1; `act` is told whether it happens in a box.
  void Arm(int yield, std::function<void(bool inBox)> act) {
    Yields = 0;
    BoxYields.clear();
    Deepest = 0;
    actAt_ = yield;
    act_ = std::move(act);
  }
  void Disarm() { act_ = {}; }

  int Yields = 0;
  /// Those of them in which a box was open.
  std::set<int> BoxYields;
  /// Most yields that were under way at a time.
  int Deepest = 0;
  /// Looks at the program at every yield.
  std::function<void()> Look;

 private:
  void Yield(bool inBox);

  ManualClock& clock_;
  int depth_ = 0;
  int actAt_ = 0;
  std::function<void(bool)> act_;
};

/// A box on the screen while the program goes on behind it. False: somebody else has closed it.
bool ShowBox(WatchedLoop& loop);

/// Fails the test when an exchange begins inside another one.
class StrictTurn : public Exclusion {
 public:
  bool Acquire() override {
    EXPECT_FALSE(held_) << "an exchange inside another one";
    held_ = true;
    return true;
  }
  void Release() override { held_ = false; }

 private:
  bool held_ = false;
};

/// A device that is no instrument.
class SilentPeer : public LinePeer {
 public:
  std::vector<Delivery> Receive(std::string_view, std::int64_t) override { return {}; }
};

/// A person who answers every question by a list, No or nothing where it has no answer. A box is on the
/// screen while it asks, and the program goes on behind it.
class PatientPerson : public Questions {
 public:
  using Questions::ShowWords;
  explicit PatientPerson(WatchedLoop& loop) : loop_(loop) {}

  void Show(int textId, const std::string&) override { Ask(QString::number(textId)); }
  void ShowWords(const QString& words, const QString&, int) override { Ask(words); }
  Answer AskYesNo(const QString& words, int) override { return AnswerTo(words, Answer::No); }
  Answer AskYesNoCancel(const QString& words, int) override { return AnswerTo(words, Answer::Cancel); }
  QString OpenFileName(const QString& filter, const QString&) override {
    return Ask(filter) ? OpenPath : QString();
  }
  QString SaveFileName(const QString& filter, const QString&) override {
    return Ask(filter) ? SavePath : QString();
  }
  QColor AskColour(const QColor&, const QString& title) override {
    Ask(title);
    return {};
  }

  /// What is said to these words.
  std::map<QString, Answer> Says;
  QString OpenPath;
  QString SavePath;
  /// Asked, it throws.
  bool Throws = false;
  /// Boxes and dialogs since the test last forgot them.
  QStringList Asked;

 private:
  bool Ask(const QString& words);
  Answer AnswerTo(const QString& words, Answer escape) {
    return Ask(words) && Says.contains(words) ? Says[words] : escape;
  }

  WatchedLoop& loop_;
};

/// The whole program with a simulated instrument on simulated time, where things happen at yields.
class YieldYard : public ::testing::Test {
 public:
  YieldYard();
  ~YieldYard() override;

  static constexpr int kNeverMs = 3'600'000;

  /// A program start without the guide and without the connection that would come by itself.
  void Start();
  FrmMain& Main() { return *main_; }
  InstrumentState& State() { return main_->Link().State; }
  /// Connected, with an intact line, in whatever state the last test has left the program.
  void Connect();
  void Release();
  /// The active window, and the only one, is one of that kind that was opened for that purpose; its options
  /// stay as they are.
  void Open(int newFileType, const char* purpose = "");
  /// Chooses an enabled command as a menu does.
  void Choose(int command);
  /// A sampler with three positions in use, or none.
  void SetSampler(bool fitted);
  void PullCable();
  /// A file from another copy of the program.
  void HandOver();
  /// Accepts the dialog of that name once it is open.
  void AcceptDialog(const char* name);
  /// While the lamps drift, no two of a hundred requests find the same light.
  void KeepRequests();
  /// One tick of a timer of the main window, when it runs.
  void Fire(QTimer& timer);
  QTimer& ConnectTimer() { return *main_->findChild<QTimer*>(QStringLiteral("TimerConnect")); }
  qsizetype WindowCount() const;
  /// Closes what shows files, unasked.
  void CloseWindows();
  /// The loop runs until nothing is due any more.
  void Settle();
  /// Nothing runs, nothing is locked, nothing is open.
  void ExpectIdle();
  QString PathOf(const std::string& name) const { return QString::fromStdString(Folder.Path(name.c_str())); }

  TemporaryFolder Folder;
  ManualClock Time;
  WatchedLoop Loop{Time};
  StrictTurn Turn;
  SimulatedLine Instrument;
  SilentPeer Nobody;
  testing_link::MemoryPortList Ports{Time};
  Setting Settings{Folder.Path()};
  PatientPerson Person{Loop};
  /// Whom the program asks from its next start on.
  Questions* Asks = &Person;
  /// Requests that came to the instrument, kept from KeepRequests() on.
  std::vector<std::string> Requests;
  bool LampsDrift = false;
  /// What was to happen could not: the cable is out, or the timer stands.
  bool WasNothing = false;
  /// Modal dialogs that came up unasked and were closed.
  QStringList Intruders;
  /// A procedure has opened the dialog of a tool, and closes it.
  bool ToolIsExpected = false;
  /// Sends modal dialogs away while it is on.
  QTimer Guard;

 private:
  void SendIntrudersAway();
  /// The light behind the next request.
  void Drift(std::int64_t requests);

  std::unique_ptr<FrmMain> main_;
  int files_ = 0;
};

}  // namespace spectrane::testing_reentrancy
