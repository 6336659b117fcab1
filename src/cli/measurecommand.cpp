#include <filesystem>
#include <istream>
#include <optional>
#include <ostream>
#include <system_error>

#include <nlohmann/json.hpp>

#include "base/language.h"
#include "cli/instrumentcommands.h"
#include "cli/instrumentsession.h"
#include "cli/operator.h"
#include "link/function.h"
#include "modes/photometry/photometrydocument.h"
#include "modes/photometry/photometrytest.h"

namespace spectrane {
namespace {

using Json = nlohmann::ordered_json;

constexpr int kBlankWanted = 971;
constexpr int kSampleWanted = 978;
constexpr int kSaveError = 1213;
constexpr const char* kStopped = "The run was stopped.";

/// One run of `measure`: what it connected and measured.
class MeasureRun {
 public:
  MeasureRun(const std::string& folder, const MeasureOrder& order, std::istream& in, std::ostream& err)
      : order_(order),
        err_(err),
        person_(in),
        session_(folder),
        test_({session_.Link().Instrument, session_.Link().State, session_.Link().Live, session_.Display(),
               session_.Boxes(), session_.Link().Formats},
              document_) {}

  /// Connects, measures as ordered, releases. The words of the problem when it ended early.
  std::optional<std::string> Run() {
    Connection& connection = session_.Link().Connect;
    if (!connection.mmuOperationConnect()) return session_.FailureWords();
    const std::optional<std::string> problem = Measure();
    connection.ReleaseConnection();
    return problem;
  }

  PhotometryDocument& Document() { return document_; }

 private:
  std::optional<std::string> Measure() {
    test_.WaveLength = order_.Wavelength;
    if (!Ready(kBlankWanted)) return kStopped;
    test_.mmuOperationRezero();
    if (!test_.BlankDone) return session_.FailureWords();
    for (int i = 0; i < order_.Count; ++i) {
      if (!Ready(kSampleWanted)) return kStopped;
      if (!test_.mmuStartTest()) return session_.FailureWords();
    }
    return std::nullopt;
  }

  bool Ready(int promptId) {
    if (order_.Yes) return !person_.AsksToStop();
    err_ << Text(promptId) << " [Enter]" << std::endl;
    return person_.PressesEnter();
  }

  const MeasureOrder& order_;
  std::ostream& err_;
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

/// Why `path` cannot take the file, found out before anything is measured; empty when it can.
std::string WhyNotWritable(const std::string& path, bool force) {
  const std::filesystem::path target(std::u8string(path.begin(), path.end()));
  std::error_code error;
  const auto kind = std::filesystem::symlink_status(target, error).type();
  if (kind == std::filesystem::file_type::directory) return "is a folder";
  if (kind != std::filesystem::file_type::not_found && !force) return "exists already; --force replaces it";
  const std::filesystem::path folder = target.has_parent_path() ? target.parent_path() : ".";
  if (!std::filesystem::is_directory(folder, error)) return "its folder does not exist";
  return {};
}

}  // namespace

int MeasureWithInstrument(const std::string& folder, const MeasureOrder& order, std::istream& in,
                          std::ostream& out, std::ostream& err) {
  if (const std::string reason = WhyNotWritable(order.Out, order.Force); !reason.empty()) {
    err << order.Out << ": " << reason << '\n';
    return 1;
  }
  MeasureRun run(folder, order, in, err);
  const std::optional<std::string> problem = run.Run();
  PhotometryDocument& document = run.Document();
  if (document.RecordCount() == 0) {
    err << problem.value_or("") << '\n';
    return 1;
  }
  if (!document.SaveFile(order.Out)) {
    err << order.Out << ": " << Text(kSaveError) << " (" << document.LastFault().Reason << ")\n";
    return 1;
  }
  if (problem) {
    err << *problem << " Saved " << RowCount(document) << " in " << order.Out << ".\n";
    return 1;
  }
  Json rows = Json::array();
  for (std::int32_t row = 0; row < document.RecordCount(); ++row) rows.push_back(RowOf(document, row));
  out << Json{{"file", order.Out}, {"records", document.RecordCount()}, {"data", rows}}.dump(2) << '\n';
  return 0;
}

}  // namespace spectrane
