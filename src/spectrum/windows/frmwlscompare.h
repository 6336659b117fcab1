#pragma once

#include <QPointer>

#include <array>
#include <vector>

#include "files/filefault.h"
#include "output/windows/curvewindow.h"
#include "spectrum/comparesettings.h"
#include "spectrum/scanscale.h"
#include "spectrum/spectrum.h"
#include "spectrum/windows/comparelegend.h"

namespace spectrane {

class FrmDataTabel;
class PointTable;

/// Up to ten spectra in one picture, each in the colour and the line pattern of its row, with a table each.
/// Nothing is calculated, searched or saved.
class FrmWLSCompare : public CurveWindow {
  Q_OBJECT

 public:
  explicit FrmWLSCompare(MainWindow& frame);
  ~FrmWLSCompare() override;

  /// Asks for the files and the options, and reads all files anew. Yields.
  void ShowConfigWindow() override;
  /// Both say that there is none. They yield.
  void mmuFileOutputXLS() override;
  void mmuFileOutputTXT() override;
  /// With the legend, as in picture files.

  int CheckFileType() const override { return 3; }
  QString OpenFileName() const override { return {}; }
  bool Offers(int command) const override;
  void FormatsChanged() override;
  FrmDataTabel* DataTable() const override;

  /// As config.ini has them.
  const CompareSettings& Settings() const { return settings_; }
  const Spectrum& Compared(std::size_t row) const { return compared_.at(row); }
  /// Rows that were read, at least in part: as many riders the tables have.
  int LoadedFiles() const;
  bool IsHidden(std::size_t row) const { return hidden_.at(row); }
  void Hide(std::size_t row, bool hidden);
  /// Reads a measured spectrum into a row; what could be read of a file that ends too early is kept. Nothing
  /// that is shown changes. False: there is nothing of it.
  bool LoadCompareFile(const QString& path, std::size_t index);

 protected:
  CurveView MakeView() const override;
  void TakeView(const CurveScale& scale) override;
  void TakeHomeView() override { view_ = ScaleOf(settings_.Option); }
  CurveScale SeenScale() const override;
  QString PointText(std::size_t line, std::size_t point) const override;
  QImage MakePicture() override;

  FileKindWords FileWords() const override;
  bool IsModified() const override { return false; }
  bool WriteDocument(const QString& path, QString& fault) override;
  bool ReadDocument(const QString& path, QString& fault) override;

 private:
  void BuildTables();
  bool IsLoaded(std::size_t row) const;
  std::vector<LegendEntry> LegendEntries() const;
  void LoadAll();
  void TellFaults();
  void ShowAll();
  ScanMode Mode() const;

  CompareSettings settings_;
  ScanScale view_;
  std::array<Spectrum, kMostCompared> compared_;
  std::array<FileFault, kMostCompared> faults_;
  // The file of the row was asked for since the options were last confirmed.
  std::array<bool, kMostCompared> asked_ = {};
  std::array<bool, kMostCompared> hidden_ = {};
  std::array<PointTable*, kMostCompared> tables_ = {};
  QPointer<FrmDataTabel> curveDataTabel_;
  CompareLegend* legend_;
};

}  // namespace spectrane
