#pragma once

#include <QPointer>

#include "app/ground/documentwindow.h"
#include "app/ground/pointtable.h"
#include "base/displayformats.h"
#include "output/curveview.h"
#include "output/scanoutput.h"
#include "spectrum/scansettings.h"
#include "spectrum/spectrumdocument.h"

namespace spectrane {

class PicCurve;

/// What the windows of one spectrum have in common: the curve, the tables, the search, the zoom, the file.
class SpectrumWindow : public DocumentWindow {
  Q_OBJECT

 public:
  ~SpectrumWindow() override;

  const SpectrumDocument& Document() const { return document_; }
  std::int32_t GetRecordNo() const { return document_.PointCount(); }
  const ScanSettings& Settings() const { return settings_; }

  /// Rounds the view outward to its divisions; the next rectangle that is drawn becomes the view.
  void mmuZoomIn() override;
  /// Back to the home view.
  void mmuZoomWindow() override;
  /// The cursor goes.
  void mmuZoomOut() override;
  /// Searches peaks and valleys, marks and lists them.
  void FindPeak() override;
  /// Asks for the peak value. Yields.
  void mmuSetPeakHeight() override;
  /// The picture into the clipboard.
  void CopyPicture() override;
  /// The picture as it stands into a file.
  void mmuFileOutputBMP() override;
  /// Draws scale, curve and marks anew.
  void ShowPicture();
  /// Fills the tables anew.
  void DisplayRecordTable();

  int CheckFileType() const override { return document_.FileType(); }
  QString OpenFileName() const override;
  bool Offers(int command) const override;
  void FormatsChanged() override;
  FrmDataTabel* DataTable() const override;

 protected:
  /// `columns` in addition to number, wavelength, absorbance and transmittance.
  SpectrumWindow(MainWindow& frame, SpectrumDocument::Kind kind, const QString& tableTitle,
                 const std::vector<PointColumn>& columns);

  SpectrumDocument& ChangedDocument() { return document_; }
  /// Takes other settings: looks at their home view and values, and forgets what is not searched any more.
  void TakeSettings(const ScanSettings& settings);
  void SetPeakHeight(double height) { settings_.PeakHeight = height; }
  /// The peak value was confirmed.
  virtual void PeakHeightChanged() {}

  /// The document as reports and exports see it, while this window stands.
  const ScanSource& Source();
  /// Of the statistics in a report [nm].
  virtual std::pair<double, double> ReportRange() const { return document_.WavelengthRange(); }
  std::optional<Report> MakeReport() override;
  std::optional<ExportSheet> MakeSheet() override;
  QImage MakePicture() override;

  FileKindWords FileWords() const override;
  bool IsModified() const override { return document_.IsModified(); }
  bool SavesElsewhere() const override;
  bool WriteDocument(const QString& path, QString& fault) override;
  bool ReadDocument(const QString& path, QString& fault) override;

 private:
  std::vector<PointColumn> UsualColumns() const;
  void BuildTables(const QString& title, const std::vector<PointColumn>& more);
  void ConnectCurve();
  QString PointText(std::size_t point) const;
  void LookAt(const CurveScale& scale);

  const DisplayFormats& formats_;
  SpectrumDocument document_;
  ScanSettings settings_;
  PicCurve* curve_;
  std::optional<ScanSource> source_;
  PointTable* recordTable_ = nullptr;
  PointTable* peakTable_ = nullptr;
  // The pane of the main window holds it; it goes with this window.
  QPointer<FrmDataTabel> curveDataTabel_;
};

}  // namespace spectrane
