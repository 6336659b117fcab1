// Exports and reports of all document windows.

#include <QBuffer>
#include <QClipboard>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QPointer>

#include "app/ground/documentwindow.h"
#include "app/ground/filequestions.h"
#include "app/ground/reportprinter.h"
#include "app/ground/simulated.h"
#include "app/ground/words.h"
#include "base/filereplacement.h"

namespace spectrane {
namespace {

constexpr int kTextFilter = 921;
constexpr int kPictureFilter = 934;
constexpr int kWorkbookFilter = 935;
constexpr int kOutputError = 1213;
constexpr const char* kNoPicture = "There is no picture: the curve has no room in its window.";

std::string PictureBytes(const QImage& picture, const char* format) {
  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  return picture.save(&buffer, format) ? buffer.data().toStdString() : std::string();
}

}  // namespace

DocumentHead DocumentWindow::OutputHead() const {
  return {OpenFileName().toStdString(), caption_.toStdString(),     QDateTime::currentDateTime(),
          frame_.Window().Operator,     frame_.Window().Department, IsSimulated(frame_.Link())};
}

void DocumentWindow::PrintReport() {
  if (RunsNow()) return;
  CommitEditors();
  const std::optional<Report> report = MakeReport();
  if (!report) return;
  const Run run(*this);
  frame_.Printer().Print(*report, ProposedOutput(".pdf"), [this] { return stopWanted_; });
}

void DocumentWindow::PreviewReport() {
  if (RunsNow()) return;
  CommitEditors();
  const std::optional<Report> report = MakeReport();
  if (!report) return;
  const Run run(*this);
  frame_.Printer().Preview(*report, ProposedOutput(".pdf"), [this] { return stopWanted_; });
}

QString DocumentWindow::ProposedOutput(const char* ending) const {
  const QFileInfo begin(PathToBeginWith());
  const bool unsaved = OpenFileName().isEmpty();
  const QDir folder = unsaved && begin.isDir() ? QDir(begin.filePath()) : begin.absoluteDir();
  return folder.filePath((unsaved ? CaptionAsName() : begin.completeBaseName()) + QLatin1String(ending));
}

QString DocumentWindow::AskOutputPath(int filterText, const char* ending) {
  const QPointer<DocumentWindow> self(this);
  const QString chosen = frame_.Boxes().SaveFileName(Words(filterText), ProposedOutput(ending));
  if (chosen.isEmpty() || !self) return {};
  const QString path = WithEnding(chosen, ending);
  // Not onto the file of this document either: an export would take the place of measured data.
  return MayWriteTo(frame_, path, nullptr) && self ? path : QString();
}

void DocumentWindow::WriteOutput(const QString& path,
                                 const std::function<std::string(const WorkProgress&)>& make) {
  const Run run(*this);
  ShownProgress progress(frame_);
  progress.StopWanted = [this] { return stopWanted_; };
  const std::string bytes = make(progress.Steps());
  if (progress.IsCancelled()) {
    frame_.Display().SetRemark("The export was cancelled; there is no file.");
    return;
  }
  std::string reason;
  if (bytes.empty() || !ReplaceFileContent(path.toStdString(), bytes, &reason)) {
    frame_.Boxes().ShowWords(Words(kOutputError), QString::fromStdString(reason), kOutputError);
    return;
  }
  frame_.Display().SetRemark("Exported: " + path.toStdString());
}

void DocumentWindow::mmuFileOutputTXT() {
  if (RunsNow()) return;
  CommitEditors();
  const QString path = AskOutputPath(kTextFilter, ".txt");
  if (path.isEmpty()) return;
  WriteOutput(path, [this](const WorkProgress& progress) {
    const std::optional<ExportSheet> sheet = MakeSheet();
    return sheet ? ExportText(*sheet, progress) : std::string();
  });
}

void DocumentWindow::mmuFileOutputXLS() {
  if (RunsNow()) return;
  CommitEditors();
  // Nobody is asked for the name of a file that there will not be.
  if (const std::optional<ExportSheet> sheet = MakeSheet(); sheet && !FitsWorkbook(*sheet)) {
    frame_.Boxes().ShowWords(Words(kOutputError), QString::fromUtf8(kTooLongForWorkbook), kOutputError);
    return;
  }
  const QString path = AskOutputPath(kWorkbookFilter, ".xls");
  if (path.isEmpty()) return;
  WriteOutput(path, [this](const WorkProgress& progress) {
    const std::optional<ExportSheet> sheet = MakeSheet();
    if (!sheet) return std::string();
    std::optional<SheetPicture> picture;
    const QImage image = MakePicture();
    const QSize size = image.deviceIndependentSize().toSize();
    if (!image.isNull()) picture = SheetPicture{PictureBytes(image, "PNG"), size.width(), size.height()};
    const std::optional<Workbook> book = ExportWorkbook(*sheet, picture, progress);
    return book ? book->Bytes() : std::string();
  });
}

void DocumentWindow::CopyToClipboard(const QImage& picture) {
  // A picture that is none would empty the clipboard.
  if (picture.isNull()) {
    frame_.Display().SetRemark(kNoPicture);
  } else {
    QGuiApplication::clipboard()->setImage(picture);
  }
}

void DocumentWindow::OutputPicture(const QImage& picture) {
  if (RunsNow()) return;
  if (picture.isNull()) {
    frame_.Display().SetRemark(kNoPicture);
    return;
  }
  const QString path = AskOutputPath(kPictureFilter, ".bmp");
  if (path.isEmpty()) return;
  WriteOutput(path, [&picture](const WorkProgress&) {
    return PictureBytes(picture.convertToFormat(QImage::Format_RGB32), "BMP");
  });
}

}  // namespace spectrane
