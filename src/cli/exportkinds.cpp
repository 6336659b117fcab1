#include "cli/exportkinds.h"

#include <QPainter>

#include "base/language.h"
#include "cli/command.h"
#include "cli/storedsettings.h"
#include "output/baselineoutput.h"
#include "output/curvepicture.h"
#include "output/dnaoutput.h"
#include "output/multioutput.h"
#include "output/photometryoutput.h"
#include "output/quantitationoutput.h"
#include "output/quantitationpicture.h"
#include "output/scanreport.h"
#include "output/timescanoutput.h"

namespace spectrane {
namespace {

/// Size of a picture where there is no window that has one [pixels].
constexpr QSize kPictureSize(800, 500);

QFont PictureFont() {
  return QFont(QString::fromStdString(FontFor(GetLanguageIndex()).Name));
}

template <typename Document>
void OpenWhole(Document& document, const std::string& path) {
  if (!document.OpenFile(path)) throw Refusal(path, document.LastFault());
}

/// A kind without a curve; its picture is refused in the words of that number.
template <typename Document, auto kSheet, auto kReport, int kRefusal>
class TableExport : public ExportDocument {
 public:
  void Open(const std::string& path, const ExportSurroundings&) override { OpenWhole(document_, path); }
  ExportSheet Sheet(const ExportSurroundings& around) override {
    return kSheet(document_, around.Formats, around.Head);
  }
  QImage Picture(const ExportSurroundings&) override { return {}; }
  int PictureRefusal() const override { return kRefusal; }
  Report MakeReport(const ExportSurroundings& around) override {
    return kReport(document_, around.Formats, around.Head);
  }

 private:
  Document document_;
};

using PhotometryExport = TableExport<PhotometryDocument, &PhotometrySheet, &PhotometryReport, 969>;
using MultiExport = TableExport<MultiDocument, &MultiSheet, &MultiReport, 1015>;
using DNAExport = TableExport<DNADocument, &DNASheet, &DNAReport, 1025>;

class QuantitationExport : public ExportDocument {
 public:
  void Open(const std::string& path, const ExportSurroundings&) override { OpenWhole(document_, path); }
  ExportSheet Sheet(const ExportSurroundings& around) override {
    return QuantitationSheet(document_, around.Formats, around.Head);
  }
  QImage Picture(const ExportSurroundings& around) override {
    QImage image(kPictureSize, QImage::Format_RGB32);
    QPainter painter(&image);
    QuantitationPictureOptions options;
    options.Font = PictureFont();
    PaintQuantitation(painter, QRectF(QPointF(), kPictureSize), document_.Option(), around.Formats, options);
    return image;
  }
  int PictureRefusal() const override { return 1046; }
  Report MakeReport(const ExportSurroundings& around) override {
    return QuantitationReport(document_, around.Formats, around.Head);
  }

 private:
  QuantitationDocument document_;
};

class ScanExport : public ExportDocument {
 public:
  explicit ScanExport(SpectrumDocument::Kind kind) : document_(kind) {}

  void Open(const std::string& path, const ExportSurroundings& around) override {
    OpenWhole(document_, path);
    ReadStored<ScanSettings>(around.Settings, kScanSettingRows, settings_);
    if (!IsMeasured()) settings_.PeakHeight = kProcessedPeakHeight;
    document_.SetSmooth(around.Smooth);
    document_.FindPeak({settings_.PeakHeight, settings_.PeakEnable, settings_.ValleyEnable});
    source_.emplace(ScanSourceOf(document_));
  }
  ExportSheet Sheet(const ExportSurroundings& around) override {
    return ScanSheet(*source_, around.Formats, around.Head);
  }
  QImage Picture(const ExportSurroundings& around) override {
    return CurveImage(View(around), kPictureSize, {15.0, PictureFont()});
  }
  Report MakeReport(const ExportSurroundings& around) override {
    ScanReportParts parts = ReportPartsOf(settings_);
    std::tie(parts.MaxStartWavelength, parts.MaxEndWavelength) = document_.WavelengthRange();
    return ScanReport(*source_, around.Formats, around.Head, parts,
                      ScanReportPicture(document_, settings_, around.Formats, {}));
  }

 private:
  static constexpr double kProcessedPeakHeight = 0.01;

  bool IsMeasured() const { return document_.FileType() == 3; }
  CurveView View(const ExportSurroundings& around) const {
    return ScanView(document_, settings_, around.Formats, {});
  }

  SpectrumDocument document_;
  ScanSettings settings_;
  std::optional<ScanSource> source_;
};

class BaselineExport : public ExportDocument {
 public:
  void Open(const std::string& path, const ExportSurroundings&) override {
    FileFault fault;
    path_ = path;
    if (!baseline_.Load(path, fault) || fault) throw Refusal(path, FaultWords(fault));
  }
  ExportSheet Sheet(const ExportSurroundings&) override {
    return {.Lines = {}, .Tables = {BaselineDataTable(baseline_, baseline_.Count())}};
  }
  QImage Picture(const ExportSurroundings&) override { return {}; }
  Report MakeReport(const ExportSurroundings&) override {
    throw Refusal(path_, "a system baseline has no report");
  }

 private:
  std::string path_;
  SystemBaseline baseline_;
};

class TimeScanExport : public ExportDocument {
 public:
  void Open(const std::string& path, const ExportSurroundings& around) override {
    OpenWhole(document_, path);
    ReadStored<TimeScanSettings>(around.Settings, kTimeScanSettingRows, settings_);
    formats_ = around.Formats;
    points_.TakeAll(document_);
    found_ = FindPeaks(document_, settings_);
  }
  ExportSheet Sheet(const ExportSurroundings& around) override { return TimeScanSheet(source_, around.Head); }
  QImage Picture(const ExportSurroundings&) override {
    return CurveImage(TimeScanCurve(source_, HomeView(document_), {}), kPictureSize, {15.0, PictureFont()});
  }
  Report MakeReport(const ExportSurroundings& around) override {
    return TimeScanReport(source_, around.Head, HomeView(document_));
  }

 private:
  TimeScanDocument document_;
  TimeScanSettings settings_;
  TimeScanPoints points_;
  FoundPeaks found_;
  DisplayFormats formats_;
  TimeScanSource source_{document_, points_, found_, settings_, formats_};
};

template <typename Export, auto... kArguments>
std::unique_ptr<ExportDocument> MakeExport() {
  return std::make_unique<Export>(kArguments...);
}

struct ExportKind {
  std::int32_t FileType;
  std::unique_ptr<ExportDocument> (*Make)();
};

constexpr ExportKind kExportKinds[] = {
    {1, &MakeExport<QuantitationExport>},
    {2, &MakeExport<TimeScanExport>},
    {3, &MakeExport<ScanExport, SpectrumDocument::Kind::Measured>},
    {4, &MakeExport<MultiExport>},
    {5, &MakeExport<DNAExport>},
    {6, &MakeExport<BaselineExport>},
    {11, &MakeExport<PhotometryExport>},
    {12, &MakeExport<ScanExport, SpectrumDocument::Kind::Processed>},
};

}  // namespace

std::unique_ptr<ExportDocument> ExportDocumentOf(std::int32_t fileType) {
  for (const ExportKind& kind : kExportKinds) {
    if (kind.FileType == fileType) return kind.Make();
  }
  return nullptr;
}

}  // namespace spectrane
