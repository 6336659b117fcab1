#include "cli/curveexport.h"

#include "base/utf8path.h"
#include "cli/command.h"
#include "cli/filekinds.h"
#include "exchange/exchangecurve.h"
#include "files/tsfile.h"
#include "files/wlsfile.h"
#include "files/wlsfile2.h"

namespace spectrane {
namespace {

constexpr std::int32_t kShowsTrans = 2;

/// The option block of a file that has been read before.
template <typename OptionT, typename RecordT>
OptionT OptionOfFile(const FileModule<OptionT, RecordT>& module, const std::string& path) {
  OptionT option;
  ClosedAtEnd file;
  if (!module.Open(path, file.Number, option)) throw Refusal(path, FaultOf(file.Number));
  return option;
}

void TakeOption(const std::string& path, std::int32_t fileType, ExchangeCurve& curve) {
  if (fileType == TSModule().FileType) {
    const TSOption option = OptionOfFile(TSModule(), path);
    curve.TimeScanWavelength = option.WorkWL;
    curve.ShowsTrans = option.DisplayMode == kShowsTrans;
  } else {
    const bool measured = fileType == WLSModule().FileType;
    const WLSOption option = measured ? OptionOfFile(WLSModule(), path) : OptionOfFile(WLS2Module(), path);
    curve.ShowsTrans = option.DisplayMode == kShowsTrans;
  }
}

}  // namespace

std::optional<std::string> CurveExport(const std::string& path, const std::string& ending,
                                       const ExportSurroundings& around) {
  const bool jcamp = ending == ".jdx" || ending == ".dx";
  if (!jcamp && ending != ".csv") return std::nullopt;
  const BatchKind& kind = KindOfFile(path);
  if (!kind.Curve) return std::nullopt;
  BatchCurve points = kind.Curve(path, around.Smooth);
  ExchangeCurve curve;
  curve.Title = Utf8FromPath(PathFromUtf8(path).filename());
  curve.Owner = around.Head.Operator;
  curve.Origin = around.Head.Company;
  TakeOption(path, kind.Kind->FileType, curve);
  curve.X = std::move(points.X);
  curve.Abs = std::move(points.Abs);
  curve.Trans = std::move(points.Trans);
  return jcamp ? JcampText(curve) : CsvText(curve);
}

}  // namespace spectrane
