#include "cli/measurecommand.h"

#include <filesystem>
#include <iostream>
#include <optional>
#include <system_error>

#include "base/language.h"
#include "base/utf8path.h"
#include "cli/filecommands.h"
#include "cli/instrumentsession.h"
#include "cli/jsontext.h"
#include "cli/operator.h"
#include "modes/photometry/photometrydocument.h"
#include "modes/photometry/photometrytest.h"

namespace spectrane {
namespace {

constexpr int kBlankWanted = 971;
constexpr int kSampleWanted = 978;
constexpr int kSaveError = 1213;
constexpr const char* kStopped = "The run was stopped.";
constexpr const char* kNoPosition = "No position of the sampler is in use.";

/// One run of `measure`: what it connected and measured.
class MeasureRun {
 public:
  MeasureRun(const MeasureOrder& order, BatchContext& run)
      : order_(order),
        prompts_(run.Err),
        person_(run.In),
        test_({session_.Link().Instrument, session_.Link().State, session_.Link().Live, session_.Display(),
               session_.Boxes(), session_.Link().Formats},
              document_) {}

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
    if (!Ready(kBlankWanted)) return kStopped;
    test_.mmuOperationRezero();
    if (!test_.BlankDone) return session_.FailureWords();
    for (std::int32_t i = 0; i < order_.Count; ++i) {
      ShowProgress(i);
      if (!Ready(kSampleWanted)) return kStopped;
      if (!test_.mmuStartTest()) return session_.FailureWords();
    }
    ShowProgress(order_.Count);
    if (document_.RecordCount() == 0) return kNoPosition;
    return std::nullopt;
  }

  bool Ready(int promptId) {
    if (order_.Yes) return !person_.AsksToStop();
    prompts_ << Text(promptId) << " [Enter]" << std::endl;
    return person_.PressesEnter();
  }

  /// A bar on the terminal while nobody is asked to press Enter.
  void ShowProgress(std::int32_t done) {
    constexpr std::int32_t kWidth = 40;
    if (!order_.Yes || &prompts_ != &std::cerr || !Operator::SeesErrors()) return;
    const auto filled = static_cast<std::size_t>(std::int64_t{done} * kWidth / order_.Count);
    prompts_ << "\r[" << std::string(filled, '#') << std::string(kWidth - filled, ' ') << "] " << done
             << " of " << order_.Count << (done == order_.Count ? "\n" : "") << std::flush;
  }

  const MeasureOrder& order_;
  std::ostream& prompts_;
  Operator person_;
  InstrumentSession session_;
  PhotometryDocument document_;
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

/// Found out before anything is measured.
void RefuseUnwritable(const MeasureOrder& order) {
  RefuseTakenOutput(order.Out, order.Force);
  std::error_code error;
  const std::filesystem::path target = PathFromUtf8(order.Out);
  const auto kind = std::filesystem::status(target, error).type();
  if (kind != std::filesystem::file_type::not_found && kind != std::filesystem::file_type::regular) {
    throw Refusal(order.Out, "not a regular file");
  }
  const std::filesystem::path folder = target.has_parent_path() ? target.parent_path() : ".";
  if (!std::filesystem::is_directory(folder, error)) throw Refusal(order.Out, "its folder does not exist");
  if (!Operator::MayWrite(Utf8FromPath(folder))) throw Refusal(order.Out, "its folder cannot be written to");
}

/// `path`, or where a file has come to stand there since the run began and must stay, the first free name
/// beside it.
std::string FreeName(const std::string& path, bool force) {
  std::error_code error;
  const auto taken = [&error](const std::filesystem::path& name) {
    return std::filesystem::exists(std::filesystem::symlink_status(name, error));
  };
  const std::filesystem::path wanted = PathFromUtf8(path);
  if (force || !taken(wanted)) return path;
  std::filesystem::path free = wanted;
  for (int n = 2; taken(free); ++n) {
    free.replace_filename(wanted.stem() += std::filesystem::path("-" + std::to_string(n)) +=
                          wanted.extension());
  }
  return Utf8FromPath(free);
}

}  // namespace

void Measure(const MeasureOrder& order, BatchContext& run) {
  RefuseUnwritable(order);
  MeasureRun measuring(order, run);
  std::optional<std::string> problem = measuring.Run();
  PhotometryDocument& document = measuring.Document();
  if (document.RecordCount() == 0) throw Refusal(problem.value_or(std::string()));
  const std::string path = FreeName(order.Out, order.Force);
  if (!document.SaveFile(path)) {
    throw Refusal(path, Text(kSaveError) + " (" + FaultWords(document.LastFault()) + ")");
  }
  if (!problem && path != order.Out) problem = order.Out + " was made by somebody else during the run.";
  if (problem) throw Refusal(*problem + " Saved " + RowCount(document) + " in " + path + ".");
  Json rows = Json::array();
  for (std::int32_t row = 0; row < document.RecordCount(); ++row) rows.push_back(RowOf(document, row));
  run.Result = JsonText({{"file", order.Out}, {"records", document.RecordCount()}, {"data", rows}});
}

}  // namespace spectrane
