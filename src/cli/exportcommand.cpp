#include "cli/exportcommand.h"

#include <QBuffer>
#include <QGuiApplication>
#include <QLocale>

#include <clocale>
#include <filesystem>
#include <memory>

#include "base/clock.h"
#include "base/filereplacement.h"
#include "base/language.h"
#include "base/utf8path.h"
#include "base/windowsettings.h"
#include "cli/curveexport.h"
#include "cli/exportkinds.h"
#include "cli/filecommands.h"
#include "cli/filekinds.h"
#include "cli/jsontext.h"
#include "cli/outputs.h"
#include "cli/progressbar.h"
#include "cli/storedsettings.h"
#include "output/reportpages.h"

namespace spectrane {
namespace {

/// So long an export may take without a sign of life [ms].
constexpr std::int64_t kPatienceMs = 300;

struct ExportArguments {
  std::string File;
  std::string Out;
  bool Force = false;
  bool Smooth = false;
};

/// Fonts and pictures need an application object, and no screen. The locale it would set stays out of the
/// process, and its remarks on the environment out of the one line of a refusal.
std::unique_ptr<QCoreApplication> MakeDrawingApplication() {
  if (QCoreApplication::instance()) return nullptr;
  static int count = 3;
  static char name[] = "spectrane-cli";
  static char option[] = "-platform";
#ifdef _WIN32
  // The one that is at hand there. No window is ever shown.
  static char platform[] = "windows";
#else
  static char platform[] = "offscreen";
#endif
  static char* arguments[] = {name, option, platform, nullptr};
  qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
  auto application = std::make_unique<QGuiApplication>(count, arguments);
  std::setlocale(LC_ALL, "C");
  QLocale::setDefault(QLocale::c());
  return application;
}

std::string ImageBytes(const QImage& image, const char* format) {
  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  return image.save(&buffer, format) ? buffer.data().toStdString() : std::string();
}

std::string WorkbookBytes(const ExportArguments& arguments, ExportDocument& document,
                          const ExportSurroundings& around, const WorkProgress& progress) {
  const ExportSheet sheet = document.Sheet(around);
  if (!FitsWorkbook(sheet)) throw Refusal(arguments.Out, kTooLongForWorkbook);
  std::optional<SheetPicture> picture;
  const QImage image = document.Picture(around);
  if (!image.isNull()) picture = SheetPicture{ImageBytes(image, "PNG"), image.width(), image.height()};
  return ExportWorkbook(sheet, picture, progress)->Bytes();
}

/// What goes into the file, by its ending.
std::string OutputBytes(const ExportArguments& arguments, ExportDocument& document,
                        const ExportSurroundings& around, const std::string& ending,
                        const WorkProgress& progress) {
  if (ending == ".txt") return ExportText(document.Sheet(around), progress);
  if (ending == ".xls") return WorkbookBytes(arguments, document, around, progress);
  if (ending == ".bmp") {
    if (document.PictureRefusal() != 0) throw Refusal(arguments.File, Text(document.PictureRefusal()));
    return ImageBytes(document.Picture(around).convertToFormat(QImage::Format_RGB32), "BMP");
  }
  if (ending != ".pdf") {
    const bool curve = static_cast<bool>(KindOfFile(arguments.File).Curve);
    throw Refusal(arguments.Out, curve ? "not one of .txt, .xls, .bmp, .pdf, .csv and .jdx"
                                       : "not one of .txt, .xls, .bmp and .pdf");
  }
  return ReportPdf(document.MakeReport(around), progress).toStdString();
}

/// What the window of that kind gives.
std::string DocumentBytes(const ExportArguments& arguments, const ExportSurroundings& around,
                          const std::string& ending, const WorkProgress& progress) {
  const std::unique_ptr<ExportDocument> document =
      ExportDocumentOf(KindOfFile(arguments.File).Kind->FileType);
  if (!document) throw Refusal(arguments.File, "files of this kind cannot be exported");
  document->Open(arguments.File, around);
  return OutputBytes(arguments, *document, around, ending, progress);
}

void RunExport(const ExportArguments& arguments, BatchContext& run) {
  RefuseTakenOutput(arguments.Out, arguments.Force, {arguments.File});
  std::error_code code;
  const std::unique_ptr<QCoreApplication> application = MakeDrawingApplication();
  StoredSettings settings;
  const WindowSettings stored = settings.StartSettings();
  const std::string path =
      Utf8FromPath(std::filesystem::absolute(PathFromUtf8(arguments.File), code).lexically_normal());
  const ExportSurroundings around{
      settings.File(),
      DisplayFormats::AtStart(stored.PrecisionMode),
      {path, {}, QDateTime::currentDateTime(), stored.Operator, stored.Department, false},
      arguments.Smooth};
  const std::string ending = LowerEnding(arguments.Out);
  std::optional<std::string> bytes = CurveExport(arguments.File, ending, around);
  const SteadyClock clock;
  ProgressBar bar(run.Err, clock, Utf8FromPath(PathFromUtf8(arguments.Out).filename()), 100, 0);
  const std::int64_t startMs = clock.NowMs();
  const auto progress = [&](int percent) {
    // What is done at once needs no bar.
    if (clock.NowMs() - startMs > kPatienceMs) bar.Show(percent);
    return true;
  };
  if (!bytes) bytes = DocumentBytes(arguments, around, ending, progress);
  std::string reason = "cannot be drawn";
  if (bytes->empty() || !ReplaceFileContent(arguments.Out, *bytes, &reason))
    throw Refusal(arguments.Out, reason);
  run.Result = JsonText({{"file", arguments.Out}, {"bytes", bytes->size()}});
}

}  // namespace

void AddExportCommand(CLI::App& root, BatchContext& context) {
  const auto arguments = std::make_shared<ExportArguments>();
  CLI::App* const command = root.add_subcommand(
      "export",
      "A window's text (.txt), spreadsheet (.xls), picture (.bmp) or report (.pdf), or a curve (.csv, .jdx)");
  AddText(command, "FILE", arguments->File, "A data file")->required();
  AddText(command, "OUT", arguments->Out, "The file to write; its ending chooses")->required();
  command->add_flag("--force", arguments->Force, "Replace an existing file");
  command->add_flag("--smooth-enable", arguments->Smooth,
                    "%T and Abs of a measured spectrum as weighted means of five points");
  RunsAs(command, context, [arguments](BatchContext& run) { RunExport(*arguments, run); });
}

}  // namespace spectrane
