#include "cli/measurecommand.h"

#include <algorithm>
#include <optional>
#include <ostream>

#include "acquire/acquisition.h"
#include "acquire/plan.h"
#include "base/language.h"
#include "cli/instrumentsession.h"
#include "cli/jsontext.h"
#include "cli/operator.h"
#include "cli/outputs.h"
#include "cli/progressbar.h"
#include "modes/photometry/photometrydocument.h"
#include "modes/photometry/photometrytest.h"

namespace spectrane {
namespace {

constexpr int kBlankWanted = 971;
constexpr int kSampleWanted = 978;
constexpr std::int32_t kPhotometrySamples = 10;
constexpr const char* kStopped = "The run was stopped.";
constexpr const char* kNoPosition = "No position of the sampler is in use.";

/// One run of `measure`: what it connected and measured.
class MeasureRun {
 public:
  MeasureRun(const MeasureOrder& order, BatchContext& run)
      : order_(order),
        prompts_(run.Err),
        person_(run.In),
        bench_{session_.Link().Instrument, session_.Link().State, session_.Link().Live,
               session_.Display(),         session_.Boxes(),      session_.Link().Formats},
        test_(bench_, document_) {}

  /// Connects, measures as ordered, releases. The words of the problem when it ended early.
  std::optional<std::string> Run() {
    Connection& connection = session_.Link().Connect;
    if (!connection.mmuOperationConnect()) return session_.FailureWords();
    std::optional<std::string> problem = BlankAndSamples();
    connection.ReleaseConnection();
    return problem;
  }

  PhotometryDocument& Document() { return document_; }

 private:
  std::optional<std::string> BlankAndSamples() {
    test_.WaveLength = order_.Wavelength;
    // A table that the connection did not get whole would make rows with dark energies of 0.
    if (!bench_.State.DarkTableWhole && !AcquisitionSteps(bench_).ReadDark()) return session_.FailureWords();
    if (!Ready(kBlankWanted)) return kStopped;
    test_.mmuOperationRezero();
    if (!test_.BlankDone) return session_.FailureWords();
    ProgressBar bar(prompts_, time_, "sample", order_.Count, order_.Count * SampleSeconds(), !order_.Yes);
    for (std::int32_t i = 0; i < order_.Count; ++i) {
      bar.Show(i);
      if (!Ready(kSampleWanted)) return kStopped;
      if (!test_.mmuStartTest()) return session_.FailureWords();
    }
    bar.Show(order_.Count);
    if (document_.RecordCount() == 0) return kNoPosition;
    return std::nullopt;
  }

  /// What one start takes on a real instrument.
  double SampleSeconds() {
    const InstrumentState& state = session_.Link().State;
    const auto cells = std::count(state.SamplerPositions.begin() + 1, state.SamplerPositions.end(), true);
    const double reading = ReadSeconds(kPhotometrySamples);
    return state.SamplerPresent ? static_cast<double>(cells) * (CellSeconds() + reading) : reading;
  }

  bool Ready(int promptId) {
    if (order_.Yes) return !person_.AsksToStop();
    prompts_ << Text(promptId) << " [Enter]" << std::endl;
    return person_.PressesEnter();
  }

  const MeasureOrder& order_;
  std::ostream& prompts_;
  Operator person_;
  SteadyClock time_;
  InstrumentSession session_;
  PhotometryDocument document_;
  TestBench bench_;
  PhotometryTest test_;
};

Json RowOf(const PhotometryDocument& document, std::int32_t row) {
  const BasicRecord& record = document.Record(row);
  return {{"SampleEnergy", record.SampleEnergy},
          {"ReferenceEnergy", record.ReferenceEnergy},
          {"DarkEnergy", record.DarkEnergy},
          {"Wavelength", record.Wavelength},
          {"Note", record.Note},
          {"Trans", document.RecordTrans(row)},
          {"Abs", document.RecordAbs(row)}};
}

std::string RowCount(const PhotometryDocument& document) {
  const std::int32_t rows = document.RecordCount();
  return std::to_string(rows) + (rows == 1 ? " row" : " rows");
}

}  // namespace

void Measure(const MeasureOrder& order, BatchContext& run) {
  RefuseUnwritable(order.Out, order.Force);
  MeasureRun measuring(order, run);
  std::optional<std::string> problem = measuring.Run();
  PhotometryDocument& document = measuring.Document();
  if (document.RecordCount() == 0) throw Refusal(problem.value_or(std::string()));
  const MeasuredOutput output = SaveMeasured(order.Out, order.Force, [&document](const std::string& path) {
    return document.SaveFile(path) ? FileFault{} : document.LastFault();
  });
  if (!problem && !output.Problem.empty()) problem = output.Problem;
  if (problem) throw Refusal(*problem + " Saved " + RowCount(document) + " in " + output.Path + ".");
  Json rows = Json::array();
  for (std::int32_t row = 0; row < document.RecordCount(); ++row) rows.push_back(RowOf(document, row));
  run.Result = JsonText({{"file", order.Out}, {"records", document.RecordCount()}, {"data", rows}});
}

}  // namespace spectrane
