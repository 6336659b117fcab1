// What the windows cost the interface thread: a live reading tick beyond its exchange, a click that waits for
// the end of an exchange, the processor time of waiting, and a redraw of the curve of a quantitation.
// QT_QPA_PLATFORM=offscreen build/release/bin/window_bench
#include <unistd.h>

#include <QApplication>
#include <QTemporaryDir>

#include <cstdio>
#include <vector>

#include "app/frmmain.h"
#include "app/ground/commands.h"
#include "app/ground/languagefont.h"
#include "link/memoryport.h"
#include "modes/windows/qualinepic.h"
#include "simulator/simulatedline.h"
#include "windows/windowreport.h"

namespace {

using namespace spectrane;

/// The simulated instrument in memory, which sleeps for as long as a reading of a real one takes on the line.
class SleepingPeer : public LinePeer {
 public:
  std::vector<Delivery> Receive(std::string_view bytes, std::int64_t nowMs) override {
    if (SleepMs > 0) usleep(static_cast<useconds_t>(SleepMs * 1000));
    std::vector<Delivery> answer = line_.Receive(bytes, nowMs);
    AnsweredAt = Wall::now();
    return answer;
  }
  int SleepMs = 0;
  Wall::time_point AnsweredAt;

 private:
  static InstrumentOptions Instant() {
    InstrumentOptions options;
    options.Instant = true;
    return options;
  }
  SimulatedLine line_{Instant()};
};

class OnePort : public PortList {
 public:
  OnePort(ManualClock& clock, LinePeer& peer) : clock_(clock), peer_(peer) {}
  std::string Path(int number) const override { return number == 1 ? "memory" : std::string(); }
  std::unique_ptr<Port> MakePort(int) override { return std::make_unique<MemoryPort>(clock_, peer_); }

 private:
  ManualClock& clock_;
  LinePeer& peer_;
};

void MeasureTicks(FrmMain& frame) {
  std::vector<double> quiet;
  std::vector<double> showing;
  for (int i = 0; i < 2000; ++i) {
    const auto from = Wall::now();
    frame.Link().Live.SampleTimerTick();
    QCoreApplication::processEvents();
    (frame.Link().State.SampleIndex % 5 == 0 ? showing : quiet).push_back(MsSince(from));
  }
  ReportTimes("live reading tick, fields unchanged", quiet);
  ReportTimes("live reading tick, fields written and painted", showing);
}

void MeasureClicks(FrmMain& frame, SleepingPeer& peer) {
  // The click is queued before the exchange begins and can be looked at only when it is over.
  peer.SleepMs = 8;
  std::vector<double> waits;
  Wall::time_point clickedAt;
  QAction* action = frame.ActionOf(kBigIcon);
  QObject::connect(action, &QAction::triggered, &frame, [&clickedAt] { clickedAt = Wall::now(); });
  for (int i = 0; i < 100; ++i) {
    QCoreApplication::processEvents();
    QTimer::singleShot(0, Qt::PreciseTimer, &frame,
                       [action] { QTimer::singleShot(0, action, &QAction::trigger); });
    frame.Link().Live.SampleTimerTick();
    QCoreApplication::processEvents();
    if (clickedAt > peer.AnsweredAt)
      waits.push_back(std::chrono::duration<double, std::milli>(clickedAt - peer.AnsweredAt).count());
  }
  peer.SleepMs = 0;
  if (!waits.empty()) ReportTimes("command chosen during an exchange, after its end", waits);
}

void MeasureWaiting() {
  SteadyClock clock;
  QtMessageLoop loop;
  const double cpu = CpuMs();
  const auto from = Wall::now();
  loop.RunUntil(clock, clock.NowMs() + 3000);
  std::printf("%-48s %.2f %% of a core\n", "waiting 3 s in the message loop",
              (CpuMs() - cpu) / MsSince(from) * 100);
}

/// Twenty standards on a parabola at 1200 by 700 pixels: painted anew, and shown from the finished picture.
void MeasureCurve() {
  QuantitationDocument document;
  QuantitationSettings settings;
  settings.SampleNumber = kMostStandards;
  settings.FittingMethod = static_cast<std::int32_t>(FittingMethod::SecondOrder);
  document.Configure(settings);
  for (std::int32_t row = 0; row < kMostStandards; ++row) {
    const double abs = 0.09 * (row + 1);
    document.SetStandardReadings(row, abs);
    document.SetStandardConc(row, 3 + abs * (40 + 25 * abs));
  }
  const DisplayFormats formats;
  QuaLinePic picture(document, formats);
  picture.resize(1200, 700);
  QImage screen(picture.size(), QImage::Format_RGB32);
  std::vector<double> anew;
  std::vector<double> kept;
  for (int i = 0; i < 500; ++i) {
    picture.Redraw();
    for (std::vector<double>* times : {&anew, &kept}) {
      const auto from = Wall::now();
      picture.render(&screen);
      times->push_back(MsSince(from));
    }
  }
  ReportTimes("curve of 20 standards, 1200 by 700, painted anew", anew);
  ReportTimes("the same from the finished picture", kept);
}

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  SelectLanguage();
  QTemporaryDir folder;
  ManualClock time;
  QtMessageLoop loop;
  NoExclusion turn;
  SleepingPeer peer;
  OnePort ports(time, peer);
  Setting settings(folder.path().toStdString());
  FrmMain frame({ports, time, loop, turn, settings, folder.path().toStdString()});
  frame.show();
  frame.mmuOperationConnect();
  frame.SampleTimer().stop();
  MeasureTicks(frame);
  MeasureClicks(frame, peer);
  MeasureWaiting();
  MeasureCurve();
  return 0;
}
