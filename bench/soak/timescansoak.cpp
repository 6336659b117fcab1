// A time scan at 0.1 s in the running program, curve and table shown, against the simulator on a
// pseudo-terminal: how exactly the wait of a point ends, beside a thread that only sleeps; what a point costs
// at the begin and at the end of the test; how soon a stop is seen. xvfb-run -a
// build/release/bin/time_scan_soak 600 (points; 10000 take 20 minutes)
#include <QApplication>
#include <QDialog>
#include <QLocalSocket>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>

#include <atomic>
#include <cstdio>
#include <ctime>
#include <thread>
#include <vector>

#include "app/frmmain.h"
#include "app/ground/languagefont.h"
#include "link/portlist.h"
#include "modes/windows/frmts.h"
#include "windows/windowreport.h"

namespace {

using namespace spectrane;

constexpr std::int64_t kUsPerMs = 1000;
constexpr std::int64_t kStepUs = 100 * kUsPerMs;

std::int64_t Us(clockid_t clock) {
  timespec now{};
  clock_gettime(clock, &now);
  return now.tv_sec * 1'000'000LL + now.tv_nsec / 1000;
}

/// The clock of the program, in microseconds for those who measure.
class FineClock : public Clock {
 public:
  std::int64_t NowUs() const { return Us(CLOCK_MONOTONIC) - startUs_; }
  std::int64_t NowMs() const override { return NowUs() / kUsPerMs; }

 private:
  std::int64_t startUs_ = Us(CLOCK_MONOTONIC);
};

struct Wait {
  /// How long after its deadline it ended.
  double LateMs = 0;
  /// Processor time since the exchange before it: table, curve, painting, waiting.
  double CpuMs = 0;
};

/// The message loop of the program. An exchange runs it once before and once after; all between two exchanges
/// is one point and its wait.
class WatchedLoop : public MessageLoop {
 public:
  explicit WatchedLoop(const FineClock& clock) : clock_(clock) {}
  void RunOnce() override {
    if (deadlineMs_ > 0) {
      Waits.push_back({static_cast<double>(endedUs_ - deadlineMs_ * kUsPerMs) / 1e3,
                       static_cast<double>(Us(CLOCK_THREAD_CPUTIME_ID) - exchangedCpuUs_) / 1e3});
    }
    deadlineMs_ = 0;
    inner_.RunOnce();
    exchangedCpuUs_ = Us(CLOCK_THREAD_CPUTIME_ID);
  }
  void RunUntil(const Clock& clock, std::int64_t deadlineMs) override {
    inner_.RunUntil(clock, deadlineMs);
    deadlineMs_ = deadlineMs;
    endedUs_ = clock_.NowUs();
  }

  std::vector<Wait> Waits;

 private:
  const FineClock& clock_;
  QtMessageLoop inner_;
  std::int64_t deadlineMs_ = 0;
  std::int64_t endedUs_ = 0;
  std::int64_t exchangedCpuUs_ = 0;
};

/// A person who stops what can be stopped, saves nothing, and is told nothing.
class Bystander : public Questions {
 public:
  void Show(int textId, const std::string&) override { std::printf("box %d\n", textId); }
  void ShowWords(const QString& words, const QString&, int) override {
    std::puts(words.toUtf8().constData());
  }
  Answer AskYesNo(const QString& words, int) override {
    if (!words.contains(QStringLiteral("Stop"))) return Answer::No;
    AnsweredAt = Wall::now();
    return Answer::Yes;
  }
  Answer AskYesNoCancel(const QString&, int) override { return Answer::No; }
  QString OpenFileName(const QString&, const QString&) override { return {}; }
  QString SaveFileName(const QString&, const QString&) override { return {}; }
  QColor AskColour(const QColor&, const QString&) override { return {}; }

  Wall::time_point AnsweredAt;
};

/// Steps of a thread that does nothing else, and how late each came.
class Sleeper {
 public:
  Sleeper() : thread_([this] { Sleep(); }) {}
  std::vector<double> End() {
    ended_ = true;
    thread_.join();
    return late_;
  }

 private:
  void Sleep() {
    for (std::int64_t next = Us(CLOCK_MONOTONIC) + kStepUs; !ended_; next += kStepUs) {
      const timespec until{next / 1'000'000, next % 1'000'000 * 1000};
      clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &until, nullptr);
      late_.push_back(static_cast<double>(Us(CLOCK_MONOTONIC) - next) / 1e3);
    }
  }

  std::atomic<bool> ended_ = false;
  std::vector<double> late_;
  std::thread thread_;
};

/// The simulator beside this program.
class SimulatorBeside {
 public:
  explicit SimulatorBeside(const QTemporaryDir& folder)
      : control_(folder.filePath(QStringLiteral("control"))) {
    process_.start(QCoreApplication::applicationDirPath() + QStringLiteral("/spectrane-simulator"),
                   {QStringLiteral("--headless"), QStringLiteral("--link"),
                    folder.filePath(QStringLiteral("line")), QStringLiteral("--control"), control_});
    while (!process_.canReadLine() && process_.waitForReadyRead(10000)) continue;
  }
  ~SimulatorBeside() {
    process_.terminate();
    process_.waitForFinished(5000);
  }
  void PutInBeam(const char* sample) const {
    QLocalSocket socket;
    socket.connectToServer(control_);
    socket.waitForConnected(5000);
    socket.write(QByteArray("beam ") + sample + '\n');
    socket.waitForReadyRead(5000);
  }

 private:
  QString control_;
  QProcess process_;
};

FrmTS* NewTimeScan(FrmMain& frame) {
  QTimer::singleShot(300, &frame, [] {
    if (auto* const options = qobject_cast<QDialog*>(QApplication::activeModalWidget())) options->accept();
  });
  frame.NewFile(2);
  return dynamic_cast<FrmTS*>(frame.ActiveForm());
}

void ReportWaits(const std::vector<Wait>& waits) {
  std::vector<double> late;
  std::vector<double> cpu;
  for (const Wait& wait : waits) {
    late.push_back(wait.LateMs);
    cpu.push_back(wait.CpuMs);
  }
  ReportTimes("end of the wait of a point after its deadline", late);
  ReportTimes("processor time of a point and its wait", cpu);
  const std::size_t part = std::min<std::size_t>(100, cpu.size() / 2);
  if (part == 0) return;
  const auto piece = static_cast<std::ptrdiff_t>(part);
  ReportTimes("  of the first points", {cpu.begin(), cpu.begin() + piece});
  ReportTimes("  of the last points", {cpu.end() - piece, cpu.end()});
}

void MeasureStops(FrmTS& window, const Bystander& person) {
  std::vector<double> seen;
  for (int i = 0; i < 20; ++i) {
    QTimer::singleShot(250 + 7 * i, Qt::PreciseTimer, &window, [&window] { window.mmuStopTest(); });
    window.mmuStartTest();
    seen.push_back(MsSince(person.AnsweredAt));
  }
  ReportTimes("from the word to stop to the end of the test", seen);
}

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  SelectLanguage();
  const int points = argc > 1 ? std::atoi(argv[1]) : 600;
  QTemporaryDir folder;
  const SimulatorBeside simulator(folder);
  qputenv("SPECTRANE_PORTS", folder.filePath(QStringLiteral("line")).toUtf8());
  FineClock time;
  WatchedLoop loop(time);
  NoExclusion turn;
  SerialPortList ports;
  Bystander person;
  Setting settings(folder.path().toStdString());
  settings.PutSetting(kTimeScanSection, "Work WaveLength", "340");
  settings.PutSetting(kTimeScanSection, "Interval Second", "0");
  settings.PutSetting(kTimeScanSection, "Abs Top", "1.5");
  settings.PutSetting(kTimeScanSection, "End Second", std::to_string((points - 1) / 10.0));
  FrmMain frame({ports, time, loop, turn, settings, folder.path().toStdString(), &person});
  frame.resize(1200, 800);
  frame.show();
  frame.mmuOperationConnect();
  FrmTS* const window = NewTimeScan(frame);
  simulator.PutInBeam("blank");
  window->mmuOperationRezero();
  simulator.PutInBeam("enzyme");

  loop.Waits.clear();
  Sleeper sleeper;
  const double cpu = static_cast<double>(Us(CLOCK_THREAD_CPUTIME_ID)) / 1e3;
  const auto from = Wall::now();
  window->mmuStartTest();
  const double tookMs = MsSince(from);
  const double usedMs = static_cast<double>(Us(CLOCK_THREAD_CPUTIME_ID)) / 1e3 - cpu;
  const std::vector<double> slept = sleeper.End();

  std::printf("%-48s %d in %.1f s\n", "points", window->Document().DataCount(), tookMs / 1e3);
  ReportWaits(loop.Waits);
  ReportTimes("a sleep of the same length in a thread of its own", slept);
  double beyond = 0;
  for (const Wait& wait : loop.Waits) beyond += wait.CpuMs;
  std::printf("%-48s %.2f %% of a core, beyond the exchanges %.2f %%\n", "processor time of the program",
              usedMs / tookMs * 100, beyond / tookMs * 100);
  MeasureStops(*window, person);
  return 0;
}
