#include "app/ground/reportprinter.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QKeyEvent>
#include <QPrintDialog>
#include <QPrinter>
#include <QPrinterInfo>
#include <QPushButton>

#include "app/ground/commands.h"
#include "app/ground/dialogparts.h"
#include "app/ground/filequestions.h"
#include "app/ground/mainwindow.h"
#include "app/ground/reportpreview.h"
#include "app/ground/words.h"
#include "base/filereplacement.h"
#include "output/reportpages.h"

namespace spectrane {
namespace {

constexpr int kReportSaveError = 1213;
constexpr double kPrinterMarginMm = 15;
const QString kPdfFilter = QStringLiteral("PDF files(*.pdf)|*.pdf");
constexpr const char* kPdfEnding = ".pdf";

void SetUpPaper(QPrinter& printer) {
  printer.setPageSize(QPageSize(QPageSize::A4));
  printer.setPageMargins(QMarginsF(kPrinterMarginMm, kPrinterMarginMm, kPrinterMarginMm, kPrinterMarginMm),
                         QPageLayout::Millimeter);
  printer.setCreator(QStringLiteral("Spectrane"));
}

/// The toolkit's own dialog says Print, where nothing is printed; that of the system says OK.
void NameOKButton(const QPrintDialog& dialog) {
  const auto* const box = dialog.findChild<QDialogButtonBox*>();
  if (QPushButton* const accept = box ? box->button(QDialogButtonBox::Ok) : nullptr)
    accept->setText(PlainWords(kOKText));
}

}  // namespace

ReportPrinter::ReportPrinter(MainWindow& frame)
    : HasPrinter([] { return !QPrinterInfo::availablePrinterNames().isEmpty(); }), frame_(frame) {}

ReportPrinter::~ReportPrinter() = default;

QPrinter& ReportPrinter::Printer() {
  if (!printer_) {
    printer_ = std::make_unique<QPrinter>(QPrinter::HighResolution);
    SetUpPaper(*printer_);
  }
  return *printer_;
}

void ReportPrinter::Setup() {
  if (!HasPrinter()) {
    frame_.Display().SetRemark("This machine has no printer. Print saves reports as PDF files.");
    return;
  }
  QPrintDialog dialog(&Printer(), &frame_.Frame());
  dialog.setObjectName(QStringLiteral("PrinterSetup"));
  dialog.setWindowTitle(PlainWords(kPrinterSetup));
  dialog.setOption(QAbstractPrintDialog::PrintToFile, false);
  NameOKButton(dialog);
  dialog.exec();
}

void ReportPrinter::PrintOn(QPrinter& printer, const Report& report,
                            const std::function<bool()>& stopWanted) {
  printer.setDocName(report.DocumentName);
  ShownProgress progress(frame_);
  progress.StopWanted = stopWanted;
  const bool done = PaintReport(printer, report, progress.Steps());
  if (done) {
    frame_.Display().SetRemark("Printed on " + printer.printerName().toStdString() + ".");
  } else {
    if (printer.printerState() == QPrinter::Active) printer.abort();
    frame_.Display().SetRemark(progress.IsCancelled() ? "Printing was cancelled."
                                                      : "The printer took no more; the report is not whole.");
  }
}

void ReportPrinter::Print(const Report& report, const QString& path,
                          const std::function<bool()>& stopWanted) {
  if (HasPrinter()) {
    PrintOn(Printer(), report, stopWanted);
  } else {
    PrintToFile(report, path, stopWanted);
  }
}

void ReportPrinter::PrintToFile(const Report& report, const QString& path,
                                const std::function<bool()>& stopWanted) {
  const QFileInfo document(path);
  const QString name =
      document.completeBaseName().isEmpty() ? QStringLiteral("Report") : document.completeBaseName();
  const QString answer = frame_.Boxes().SaveFileName(
      kPdfFilter, document.absolutePath() + u'/' + name + QLatin1String(kPdfEnding));
  if (answer.isEmpty()) return;
  const QString chosen = WithEnding(answer, kPdfEnding);
  if (!MayWriteTo(frame_, chosen, nullptr)) return;
  ShownProgress progress(frame_);
  progress.StopWanted = stopWanted;
  const QByteArray pdf = ReportPdf(report, progress.Steps());
  if (progress.IsCancelled()) {
    frame_.Display().SetRemark("The report was cancelled; there is no file.");
    return;
  }
  std::string reason;
  if (pdf.isEmpty() || !ReplaceFileContent(chosen.toStdString(), pdf.toStdString(), &reason)) {
    frame_.Boxes().ShowWords(Words(kReportSaveError), QString::fromStdString(reason), kReportSaveError);
    return;
  }
  frame_.Display().SetRemark("Report: " + chosen.toStdString());
}

void ReportPrinter::Preview(const Report& report, const QString& path,
                            const std::function<bool()>& stopWanted) {
  QPrinter paper(QPrinter::ScreenResolution);
  if (!HasPrinter()) {
    paper.setOutputFormat(QPrinter::PdfFormat);
    SetUpPaper(paper);
  }
  ReportPreview dialog(frame_.Frame(), HasPrinter() ? Printer() : paper, report);
  if (dialog.exec() == QDialog::Accepted) Print(report, path, stopWanted);
}

ShownProgress::ShownProgress(MainWindow& frame) : frame_(frame) {
  frame_.Display().SetRemark("Writing ... Esc ends it.");
  qApp->installEventFilter(this);
}

ShownProgress::~ShownProgress() {
  qApp->removeEventFilter(this);
  frame_.Display().SetStatus(StatusPane::Percent, {});
}

bool ShownProgress::eventFilter(QObject* /*watched*/, QEvent* event) {
  if (event->type() != QEvent::KeyPress || static_cast<QKeyEvent*>(event)->key() != Qt::Key_Escape)
    return false;
  cancelled_ = true;
  return true;
}

WorkProgress ShownProgress::Steps() {
  return [this](int percent) {
    frame_.Display().SetStatus(StatusPane::Percent, std::to_string(percent) + "%");
    QCoreApplication::processEvents();
    cancelled_ = cancelled_ || (StopWanted && StopWanted());
    return !cancelled_;
  };
}

}  // namespace spectrane
