#include "cli/kineticscommand.h"

#include <algorithm>
#include <cmath>

#include "base/language.h"
#include "link/messageloop.h"
#include "modes/timescan/timescanaxes.h"
#include "modes/timescan/timescansettings.h"
#include "modes/timescan/timescantest.h"

namespace spectrane {
namespace {

constexpr const char* kTimePointUnit = "point";

/// Boxes of a test in whose place the command asks.
class NoBoxes : public Messages {
 public:
  void Show(int, const std::string&) override {}
};

/// The loop of the program that ends a test when the person wants it.
class StoppableLoop : public MessageLoop {
 public:
  explicit StoppableLoop(std::function<void()> look) : look_(std::move(look)) {}
  void RunOnce() override { loop_.RunOnce(); }
  void RunUntil(const Clock& clock, std::int64_t deadlineMs) override {
    loop_.RunUntil(clock, deadlineMs);
    look_();
  }

 private:
  QtMessageLoop loop_;
  std::function<void()> look_;
};

/// One `kinetics` from the connection on.
class KineticsRun {
 public:
  KineticsRun(const KineticsOrder& order, AcquisitionDesk& desk)
      : order_(order), desk_(desk), seconds_(IntervalMs(order.Interval) / 1000.0) {}

  AcquisitionDesk::Problem Run() {
    std::vector<PlannedPass> plan;
    for (const std::int32_t place : desk_.Places()) plan.push_back(PlanOf(place));
    desk_.Announce(plan);
    if (auto problem = desk_.ReadDark()) return problem;
    if (auto problem = desk_.AskForBlank(false)) return problem;
    TakeScales();
    Configure(LastSecond());
    if (auto problem = TakeBlank()) return problem;
    for (const std::int32_t place : desk_.Places()) {
      if (auto problem = MeasurePlace(place)) return problem;
    }
    return std::nullopt;
  }

 private:
  PlannedPass PlanOf(std::int32_t place) const {
    PlannedPass plan = PlanTimeScan(order_.Points, seconds_);
    if (place != 0) plan.Name = "cell " + std::to_string(place);
    return plan;
  }

  double LastSecond() const { return seconds_ * (order_.Points - 1); }

  AcquisitionDesk::Problem TakeBlank() {
    if (!test_.BlankHolds()) test_.mmuOperationRezero();
    if (!test_.BlankHolds()) return desk_.FailedAt(order_.Wavelength);
    return std::nullopt;
  }

  /// Scales and mode of the home view as the window would have them.
  void TakeScales() {
    TimeScanSettings settings;
    ReadStored<TimeScanSettings>(desk_.Session().Stored().File(), kTimeScanSettingRows, settings);
    TSOption option = settings.Option;
    option.DisplayMode = static_cast<std::int16_t>(settings.DisplayMode);
    document_.Configure(option, 0.0, settings.EndSecond);
  }

  void Configure(double endSecond) {
    TSOption option = document_.Option();
    option.WorkWL = order_.Wavelength;
    option.IntervalSecond = order_.Interval;
    document_.Configure(option, 0.0, endSecond);
  }

  AcquisitionDesk::Problem MeasurePlace(std::int32_t place) {
    Configure(LastSecond());
    // The cells stand in the beam by now: without its blank the run is over.
    if (!test_.BlankHolds()) return desk_.FailedAt(order_.Wavelength);
    if (auto problem = desk_.AskForSample(place, false)) return problem;
    ProgressBar bar = desk_.MakeBar(PlanOf(place));
    bar.Show(0);
    test_.OnPoint = [&bar](std::int32_t point) { bar.Show(point + 1); };
    const TimeScanEnd end = test_.mmuStartTest();
    test_.OnPoint = {};
    AcquisitionDesk::Problem problem;
    if (end != TimeScanEnd::Finished) {
      problem =
          desk_.AsksToStop() ? desk_.ProblemOf(AcquisitionEnd::Stopped) : desk_.FailedAt(order_.Wavelength);
    }
    // The file has whole seconds; all points are to be seen in its home view.
    Configure(std::max(std::ceil(LastSecond()), 1.0));
    const auto unsaved = desk_.Save(place, document_.DataCount(), [this](const std::string& path) {
      return document_.SaveFile(path) ? FileFault{} : document_.LastFault();
    });
    return AcquisitionDesk::Joined(problem, unsaved);
  }

  const KineticsOrder& order_;
  AcquisitionDesk& desk_;
  double seconds_;
  NoBoxes boxes_;
  StoppableLoop loop_{[this] {
    if (desk_.AsksToStop()) test_.TestRunning = false;
  }};
  TimeScanDocument document_;
  TimeScanTest test_{BenchWith(desk_, boxes_), document_, desk_.Time(), loop_};

  static TestBench BenchWith(AcquisitionDesk& desk, Messages& boxes) {
    const TestBench bench = desk.Bench();
    return {bench.Instrument, bench.State, bench.Live, bench.Display, boxes, bench.Formats};
  }
};

}  // namespace

void MeasureKinetics(const KineticsOrder& order, BatchContext& run) {
  AcquisitionDesk desk(order, run);
  const FileModule<TSOption, TSRecord>& module = TSModule();
  desk.RefuseOutputs(true, module.FirstRecord + module.Record.Size * static_cast<std::size_t>(order.Points));
  desk.Connect(order.Wavelength, order.Wavelength);
  KineticsRun kinetics(order, desk);
  desk.Finish(kinetics.Run(), kTimePointUnit);
}

}  // namespace spectrane
