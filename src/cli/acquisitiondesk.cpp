#include "cli/acquisitiondesk.h"

#include <algorithm>
#include <filesystem>
#include <ostream>

#include "base/language.h"
#include "base/numbers.h"
#include "base/textnumbers.h"
#include "base/utf8path.h"
#include "cli/outputs.h"

namespace spectrane {
namespace {

constexpr int kAskBlank = 977;
constexpr int kAskSample = 978;
constexpr int kSamplerTrouble = 1912;
constexpr const char* kRunStopped = "The run was stopped";

std::string Nanometres(double wavelength) {
  return ShortestText(wavelength) + " nm";
}

}  // namespace

AcquisitionDesk::AcquisitionDesk(const AcquisitionOrder& order, BatchContext& run)
    : order_(order), run_(run), places_(order.Cells), person_(run.In), steps_(Bench()) {
  if (places_.empty()) places_.push_back(0);
  steps_.StopWanted = [this] { return person_.AsksToStop(); };
}

AcquisitionDesk::~AcquisitionDesk() {
  if (connected_) session_.Link().Connect.ReleaseConnection();
}

TestBench AcquisitionDesk::Bench() {
  InstrumentLink& link = session_.Link();
  return {link.Instrument, link.State, link.Live, session_.Display(), session_.Boxes(), link.Formats};
}

std::string AcquisitionDesk::OutputOf(std::int32_t place) const {
  if (place == 0) return order_.Out;
  std::filesystem::path path = PathFromUtf8(order_.Out);
  path.replace_filename(path.stem() += std::filesystem::path("-cell" + std::to_string(place)) +=
                        path.extension());
  return Utf8FromPath(path);
}

void AcquisitionDesk::RefuseOutputs(bool fileOfEach, std::uintmax_t bytes) const {
  if (!fileOfEach) return RefuseUnwritable(order_.Out, order_.Force, bytes);
  for (const std::int32_t place : places_) {
    RefuseUnwritable(OutputOf(place), order_.Force, bytes * places_.size());
  }
}

void AcquisitionDesk::Connect() {
  InstrumentLink& link = session_.Link();
  if (!link.Connect.mmuOperationConnect()) throw Refusal(session_.FailureWords());
  connected_ = true;
  if (!order_.Cells.empty() && !link.State.SamplerPresent)
    throw Refusal(InstrumentSession::Words(kSamplerTrouble, "no automatic sampler is fitted"));
}

void AcquisitionDesk::Connect(double lowest, double highest) {
  Connect();
  const InstrumentState& state = session_.Link().State;
  for (const double wavelength : {lowest, highest}) {
    if (wavelength >= state.WavelengthMin && wavelength <= state.WavelengthMax) continue;
    throw Refusal(Nanometres(wavelength) + " is outside the range of this instrument, " +
                  Nanometres(state.WavelengthMin) + " to " + Nanometres(state.WavelengthMax) + ".");
  }
}

void AcquisitionDesk::Announce(const std::vector<PlannedPass>& plan) {
  Remark(PlanText(plan));
}

void AcquisitionDesk::Remark(const std::string& line) {
  run_.Err << line << std::endl;
}

AcquisitionDesk::Problem AcquisitionDesk::Ask(int promptId, bool alone) {
  const bool asks = AsksForSamples() && (!alone || person_.IsThere());
  if (asks) run_.Err << Text(promptId) << " [Enter]" << std::endl;
  const bool goesOn = asks ? person_.PressesEnter() : !person_.AsksToStop();
  return goesOn ? std::nullopt : Problem(std::string(kRunStopped) + ".");
}

AcquisitionDesk::Problem AcquisitionDesk::Failed(const std::string& words) {
  linkHolds_ = false;
  return words;
}

AcquisitionDesk::Problem AcquisitionDesk::Joined(const Problem& first, const Problem& second) {
  if (!first || !second) return first ? first : second;
  return *first + " " + *second;
}

std::string AcquisitionDesk::SamplerWords() const {
  return InstrumentSession::Words(kSamplerTrouble, session_.FailureWords());
}

AcquisitionDesk::Problem AcquisitionDesk::AskForBlank(bool alone) {
  if (person_.AsksToStop()) return std::string(kRunStopped) + ".";
  if (!steps_.MoveToBlankCell()) return Failed(SamplerWords());
  return Ask(kAskBlank, alone);
}

AcquisitionDesk::Problem AcquisitionDesk::AskForSample(std::int32_t place, bool alone) {
  if (person_.AsksToStop()) return std::string(kRunStopped) + ".";
  if (place != 0 && !steps_.MoveSampler(place)) return Failed(SamplerWords());
  return Ask(kAskSample, alone);
}

AcquisitionDesk::Problem AcquisitionDesk::ReadDark() {
  if (steps_.ReadDark()) return std::nullopt;
  return Failed(session_.FailureWords());
}

AcquisitionDesk::Problem AcquisitionDesk::Run(const PlannedPass& plan,
                                              const std::function<AcquisitionEnd()>& pass) {
  ProgressBar bar = MakeBar(plan);
  bar.Show(0);
  steps_.OnDone = [&bar](std::int32_t done) { bar.Show(done); };
  const AcquisitionEnd end = pass();
  steps_.OnDone = {};
  return ProblemOf(end);
}

ProgressBar AcquisitionDesk::MakeBar(const PlannedPass& plan, bool hidden) const {
  return {run_.Err, time_, plan.Name, plan.Points, plan.Seconds(), hidden};
}

AcquisitionDesk::Problem AcquisitionDesk::ProblemOf(AcquisitionEnd end) {
  switch (end) {
    case AcquisitionEnd::Finished:
      return std::nullopt;
    case AcquisitionEnd::Stopped:
      return std::string(kRunStopped) + " at " + Nanometres(steps_.At()) + ".";
    case AcquisitionEnd::NotBegun:
      return Text(kNoInstrument);
    case AcquisitionEnd::Failed:
      break;
  }
  return FailedAt(steps_.At());
}

AcquisitionDesk::Problem AcquisitionDesk::FailedAt(double wavelength) {
  return Failed(session_.FailureWords() + " At " + Nanometres(wavelength) + ".");
}

AcquisitionDesk::Problem AcquisitionDesk::Save(
    std::int32_t place, std::int32_t records, const std::function<FileFault(const std::string& path)>& save) {
  if (records == 0) return std::nullopt;
  try {
    const MeasuredOutput output = SaveMeasured(OutputOf(place), order_.Force, save);
    saved_.push_back({output.Path, place, records});
    if (output.Problem.empty()) return std::nullopt;
    return output.Problem;
  } catch (const Refusal& nowhere) {
    // What else went wrong, and what was saved before, is told beside it.
    return nowhere.what();
  }
}

std::string AcquisitionDesk::SavedText(const char* unit) const {
  std::string text;
  for (const Saved& file : saved_) {
    text += (text.empty() ? " Saved " : ", ") + std::to_string(file.Records) + " " + unit +
            (file.Records == 1 ? "" : "s") + " in " + file.Path;
  }
  return text.empty() ? text : text + ".";
}

void AcquisitionDesk::Finish(const Problem& problem, const char* unit,
                             const std::function<void(Json& result)>& more) {
  if (problem) throw Refusal(*problem + SavedText(unit));
  Json result;
  if (order_.Cells.empty() || (saved_.size() == 1 && saved_.front().Place == 0)) {
    result = {{"file", saved_.front().Path}, {"records", saved_.front().Records}};
  } else {
    Json files = Json::array();
    for (const Saved& file : saved_) {
      files.push_back({{"file", file.Path}, {"cell", file.Place}, {"records", file.Records}});
    }
    result = {{"files", files}};
  }
  if (more) more(result);
  run_.Result = JsonText(result);
}

}  // namespace spectrane
