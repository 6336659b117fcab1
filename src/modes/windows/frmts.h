#pragma once

#include <QPointer>

#include "app/ground/pointtable.h"
#include "modes/timescan/timescantest.h"
#include "output/timescancurve.h"
#include "output/windows/curvewindow.h"

namespace spectrane {

/// The time scan window: readings at one wavelength on a fixed schedule, as a curve that grows while one
/// watches, and as a table.
class FrmTS : public CurveWindow {
  Q_OBJECT

 public:
  explicit FrmTS(MainWindow& frame);
  ~FrmTS() override;

  const TimeScanDocument& Document() const { return document_; }
  const TimeScanTest& Test() const { return test_; }
  const TimeScanSettings& Settings() const { return settings_; }
  /// What is seen now; the home view is the document's.
  const TimeScanView& View() const { return view_; }
  const FoundPeaks& Found() const { return found_; }

  /// Runs the whole test. Yields, all the time.
  void mmuStartTest() override;
  /// Asks whether the test is to end. Yields.
  void mmuStopTest() override;
  /// Takes the blank. Yields.
  void mmuOperationRezero() override;
  bool mmuOpenFile(const QString& path) override;
  /// Asks for the options. Yields.
  void ShowConfigWindow() override;
  /// Searches peaks and valleys of the absorbance, marks and lists them.
  void FindPeak() override;
  /// Asks for the peak value. Yields.
  void mmuSetPeakHeight() override;
  /// The next rectangle becomes the view; a second time takes that back.
  void mmuZoomOut() override;
  /// The view grows to round steps. A time axis whose step overflows leaves it as it is.
  void mmuZoomIn() override;

  int CheckFileType() const override;
  QString OpenFileName() const override;
  bool Offers(int command) const override;
  void FormatsChanged() override;
  FrmDataTabel* DataTable() const override;

 protected:
  FileKindWords FileWords() const override;
  bool HasWork() const override;
  bool IsModified() const override;
  std::optional<JournalImage> MakeImage() const override { return document_.Image(); }
  bool TakeImage(const Journal& journal) override;
  /// The points of a test that runs count as unsaved at its end only.
  bool NeedsJournal() const override { return IsModified() || (RunsNow() && document_.DataCount() > 0); }
  bool SavesElsewhere() const override;
  bool HoldsTest() const override { return test_.TestRunning; }
  void StopTest() override;
  std::optional<Report> MakeReport() override;
  std::optional<ExportSheet> MakeSheet() override;
  bool WriteDocument(const QString& path, QString& fault) override;
  bool ReadDocument(const QString& path, QString& fault) override;
  CurveView MakeView() const override;
  void TakeView(const CurveScale& scale) override;
  void TakeHomeView() override;
  CurveScale SeenScale() const override;
  QString PointText(std::size_t line, std::size_t point) const override;
  void LookAtRectangle(const CurveScale& scale, const QSize& pixels) override;

 private:
  std::vector<PointColumn> Columns() const;
  /// What an empty window asks for; empty when there is nothing to say.
  QString NextStep() const;
  void BuildTables();
  void ConnectTest();
  void TakeSettings(const TimeScanSettings& settings);
  void BeginTest();
  void ShowPoint(std::int32_t point);
  void ShowWait(std::int64_t restMs);
  void AskToSaveTest();
  void TellEnd(TimeScanEnd end);
  void ShowTables();
  void ShowReplaced();
  TimeScanDocument document_;
  TimeScanSettings settings_;
  TimeScanView view_;
  TimeScanPoints points_;
  FoundPeaks found_;
  TimeScanSource source_;
  TimeScanTest test_;
  PointTable* recordTable_ = nullptr;
  PointTable* peakTable_ = nullptr;
  // The pane of the main window holds it; it goes with this window.
  QPointer<FrmDataTabel> curveDataTabel_;
  /// The seconds of a wait that were told last.
  std::int64_t shownWait_ = -1;
  /// When the points of the test were read [ms].
  std::vector<std::int64_t> readMs_;
};

}  // namespace spectrane
