#include "cli/scancommand.h"

#include <cmath>

#include "acquire/baselinereferences.h"
#include "acquire/spectrumscan.h"
#include "base/brand.h"
#include "base/dateserial.h"
#include "base/language.h"
#include "base/numbers.h"
#include "base/utf8path.h"
#include "spectrum/scansettings.h"

namespace spectrane {
namespace {

constexpr int kNoBaseline = 930;
constexpr std::int32_t kWholeNanometre = 10;
constexpr const char* kPointUnit = "point";

template <typename OptionT, typename RecordT>
std::uintmax_t FileBytes(const FileModule<OptionT, RecordT>& module, std::int64_t records) {
  return module.FirstRecord + module.Record.Size * static_cast<std::uintmax_t>(records);
}

// The next connection takes a reference wherever the monochromator stands, with whatever is in the beam then.
// Between whole nanometres that leaves every point of the baseline as it was measured.
void ParkBetweenPoints(AcquisitionSteps& steps) {
  const double at = std::floor(steps.At());
  const double before = at - 0.5;
  steps.MoveTo(before >= steps.State().WavelengthMin ? before : at + 0.5);
}

void RefuseTooManyPoints(const ScanGrid& grid) {
  if (grid.Count() > kMostSpectrumPoints) {
    throw Refusal(std::to_string(grid.Count()) + " points are more than the " +
                  std::to_string(kMostSpectrumPoints) + " that a spectrum can have.");
  }
}

std::string BaselinePath(const ScanOrder& order, InstrumentSession& session) {
  if (!order.Baseline.empty()) return order.Baseline;
  std::string stored = session.Stored().StartSettings().BaselinePath;
  if (!stored.empty()) return stored;
  const std::filesystem::path settings = PathFromUtf8(session.Stored().File().Path());
  return Utf8FromPath(settings.parent_path() / "Baseline.bsl");
}

std::vector<BSLRecord> ReferencesOf(const ScanOrder& order, InstrumentSession& session) {
  const std::string path = BaselinePath(order, session);
  BaselineReferences found = FindReferences(path, order.Grid, BuildBrand().GainCount);
  if (!found.Reason.empty()) throw Refusal(path, InstrumentSession::Words(kNoBaseline, found.Reason));
  return std::move(found.References);
}

WLSOption OptionOf(const ScanOrder& order, InstrumentSession& session) {
  ScanSettings settings;
  ReadStored<ScanSettings>(session.Stored().File(), kScanSettingRows, settings);
  WLSOption option = settings.Option;
  option.StartWavelength = order.Grid.First();
  option.EndWavelength = order.Grid.Last();
  option.IntervalWavelength = IntervalIndex(order.Grid.StepTenths).value_or(0);
  return option;
}

/// One `scan` from the connection on.
class ScanRun {
 public:
  ScanRun(const ScanOrder& order, AcquisitionDesk& desk)
      : order_(order), desk_(desk), option_(OptionOf(order, desk.Session())) {}

  void RefuseWhatCannotBe() {
    RefuseTooManyPoints(order_.Grid);
    desk_.RefuseOutputs(true, FileBytes(WLSModule(), order_.Grid.Count()));
    if (!order_.Blank) references_ = ReferencesOf(order_, desk_.Session());
  }

  AcquisitionDesk::Problem Run() {
    Announce();
    if (auto problem = desk_.ReadDark()) return problem;
    if (order_.Blank) {
      if (auto problem = TakeBlank()) return problem;
    }
    AcquisitionDesk::Problem problem;
    for (const std::int32_t place : desk_.Places()) {
      if ((problem = MeasurePlace(place))) break;
    }
    if (!order_.Blank && desk_.LinkHolds()) ParkBetweenPoints(desk_.Steps());
    return problem;
  }

 private:
  void Announce() {
    std::vector<PlannedPass> plan;
    if (order_.Blank) plan.push_back(PlanReferences(order_.Grid));
    for (const std::int32_t place : desk_.Places()) {
      plan.push_back(PlanSpectrum(order_.Grid, order_.Samples));
      if (place != 0) plan.back().Name = "cell " + std::to_string(place);
    }
    desk_.Announce(plan);
    TellOfReference();
  }

  void TellOfReference() {
    const ConnectionReport& report = desk_.Session().Link().Connect.Report();
    for (const BSLRecord& reference : references_) {
      if (reference.Wavelength == desk_.Steps().At() && report.HasReference && report.Gain == reference.Amp) {
        desk_.Remark(
            "The connection took a new reference at " + ShortestText(reference.Wavelength) +
            " nm. If it was not the blank that stood in the beam, this point does not fit the baseline.");
      }
    }
  }

  AcquisitionDesk::Problem TakeBlank() {
    if (auto problem = desk_.AskForBlank(false)) return problem;
    return desk_.Run(PlanReferences(order_.Grid),
                     [this] { return ScanReferences(desk_.Steps(), order_.Grid, references_); });
  }

  AcquisitionDesk::Problem MeasurePlace(std::int32_t place) {
    if (auto problem = desk_.AskForSample(place, !order_.Blank)) return problem;
    std::vector<WLSRecord> points;
    PlannedPass plan = PlanSpectrum(order_.Grid, order_.Samples);
    if (place != 0) plan.Name = "cell " + std::to_string(place);
    const auto problem =
        desk_.Run(plan, [&] { return ScanSpectrum(desk_.Steps(), references_, order_.Samples, points); });
    const auto unsaved =
        desk_.Save(place, static_cast<std::int32_t>(points.size()), [&](const std::string& path) {
          return SaveDataFile(
              WLSModule(), path, option_, static_cast<std::int32_t>(points.size()),
              [&](std::int32_t i) -> const WLSRecord& { return points[static_cast<std::size_t>(i)]; });
        });
    return AcquisitionDesk::Joined(problem, unsaved);
  }

  const ScanOrder& order_;
  AcquisitionDesk& desk_;
  WLSOption option_;
  std::vector<BSLRecord> references_;
};

}  // namespace

void MeasureBaseline(const BaselineOrder& order, BatchContext& run) {
  AcquisitionDesk desk(order, run);
  if (order.HasRange) RefuseTooManyPoints(order.Grid);
  desk.RefuseOutputs(false, FileBytes(BSLModule(), order.HasRange ? order.Grid.Count() : 0));
  ScanGrid grid = order.Grid;
  if (order.HasRange) {
    desk.Connect(grid.First(), grid.Last());
  } else {
    desk.Connect();
    const InstrumentState& state = desk.Session().Link().State;
    grid = ScanGrid::Between(static_cast<std::int32_t>(std::ceil(state.WavelengthMin)) * kWholeNanometre,
                             static_cast<std::int32_t>(std::floor(state.WavelengthMax)) * kWholeNanometre,
                             kWholeNanometre);
    RefuseTooManyPoints(grid);
  }
  const PlannedPass plan = PlanReferences(grid);
  desk.Announce({plan});
  std::vector<BSLRecord> references;
  AcquisitionDesk::Problem problem = desk.AskForBlank(true);
  if (!problem) problem = desk.Run(plan, [&] { return ScanReferences(desk.Steps(), grid, references); });
  const auto unsaved =
      desk.Save(0, static_cast<std::int32_t>(references.size()),
                [&](const std::string& path) { return SaveBaseline(path, references, Now()); });
  if (!references.empty() && desk.LinkHolds()) ParkBetweenPoints(desk.Steps());
  desk.Finish(AcquisitionDesk::Joined(problem, unsaved), kPointUnit);
}

void MeasureSpectrum(const ScanOrder& order, BatchContext& run) {
  AcquisitionDesk desk(order, run);
  ScanRun scan(order, desk);
  scan.RefuseWhatCannotBe();
  desk.Connect(order.Grid.First(), order.Grid.Last());
  desk.Finish(scan.Run(), kPointUnit);
}

}  // namespace spectrane
