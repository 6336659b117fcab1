#pragma once

#include <QPointer>

#include <functional>
#include <vector>

#include "app/ground/frmdatatabel.h"
#include "app/ground/pointtable.h"
#include "output/scanoutput.h"
#include "output/windows/curvewindow.h"
#include "spectrum/scansettings.h"
#include "spectrum/spectrumdocument.h"

namespace spectrane {

/// What the windows of one spectrum have in common: the curve, the tables, the search, the zoom, the file,
/// and handing the spectrum on.
class SpectrumWindow : public CurveWindow {
  Q_OBJECT

 public:
  ~SpectrumWindow() override;

  const SpectrumDocument& Document() const { return document_; }
  std::int32_t GetRecordNo() const { return document_.PointCount(); }
  const ScanSettings& Settings() const { return settings_; }

  /// Searches peaks and valleys, marks and lists them.
  void FindPeak() override;
  /// Asks for the peak value. Yields.
  void mmuSetPeakHeight() override;
  /// Fills the tables anew.
  virtual void DisplayRecordTable();
  /// Opens a window that smooths this spectrum, or derives it. It has its own copy of the points.
  void mmuSpectrumSmooth() override;
  void mmuSpectrumDev() override;

  int CheckFileType() const override { return document_.FileType(); }
  QString OpenFileName() const override;
  bool Offers(int command) const override;
  void FormatsChanged() override;
  FrmDataTabel* DataTable() const override;

  /// What a window that processes this spectrum names as its source, and the colour of the curve there.
  virtual QString NameAsSource() const;
  virtual std::int32_t ColourAsSource() const { return settings_.CurveColor; }

 protected:
  SpectrumWindow(MainWindow& frame, SpectrumDocument::Kind kind);

  /// The tables of the window. To be called once, before anything else.
  struct TablePlan {
    QString Title;
    /// Rider of the spectrum's own points, and what of them stands beside number, wavelength, absorbance and
    /// transmittance.
    QString PointsCaption;
    std::vector<PointColumn> MoreColumns;
    /// In front of them. The Peak List comes last.
    std::vector<DataTab> Before;
  };
  void BuildTables(const char* layoutName, const TablePlan& plan);

  /// Shown or not.
  FrmDataTabel* Tables() const { return curveDataTabel_; }

  SpectrumDocument& ChangedDocument() { return document_; }
  /// Takes other settings: looks at their home view and values, and forgets what is not searched any more.
  void TakeSettings(const ScanSettings& settings);
  void SetPeakHeight(double height) { settings_.PeakHeight = height; }
  /// The peak value was confirmed.
  virtual void PeakHeightChanged() {}
  /// In the place of a curve while there are no points.
  virtual QString EmptyHint() const;

  /// The document as reports and exports see it, while this window stands.
  const ScanSource& Source();
  /// Of the statistics in a report [nm].
  virtual std::pair<double, double> ReportRange() const { return document_.WavelengthRange(); }
  std::optional<Report> MakeReport() override;
  std::optional<ExportSheet> MakeSheet() override;

  CurveView MakeView() const override;
  void TakeView(const CurveScale& scale) override;
  void TakeHomeView() override { document_.ShowHome(); }
  CurveScale SeenScale() const override;
  QString PointText(std::size_t line, std::size_t point) const override;

  FileKindWords FileWords() const override;
  bool HasWork() const override;
  bool IsModified() const override { return document_.IsModified(); }
  bool SavesElsewhere() const override;
  bool WriteDocument(const QString& path, QString& fault) override;
  bool ReadDocument(const QString& path, QString& fault) override;
  std::optional<JournalImage> MakeImage() const override { return document_.Image(); }
  bool TakeImage(const Journal& journal) override;

 private:
  SpectrumDocument document_;
  ScanSettings settings_;
  std::optional<ScanSource> source_;
  PointTable* recordTable_ = nullptr;
  PointTable* peakTable_ = nullptr;
  // The pane of the main window holds it; it goes with this window.
  QPointer<FrmDataTabel> curveDataTabel_;
};

}  // namespace spectrane
