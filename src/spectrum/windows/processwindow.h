#pragma once

#include <vector>

#include "spectrum/spectrum.h"
#include "spectrum/windows/processplan.h"
#include "spectrum/windows/spectrumwindow.h"

namespace spectrane {

/// The windows that show what was calculated from one or two spectra, with these and their tables. The result
/// is the spectrum of the window: it is searched, exported, saved and handed on. The sources are copies; a
/// result is made by GetResultData() alone. Nothing is ever unsaved: a result can be made again.
class ProcessWindow : public SpectrumWindow {
  Q_OBJECT

 public:
  /// The first source, point by point: wavelength [nm], transmittance [%T], absorbance. False, with nothing
  /// done, beyond what a spectrum can have.
  bool SetWLSRecord(std::int32_t index, double wavelength, double trans, double abs);
  bool SetWLSRecordNo(std::int32_t count);
  /// A source without a name counts as none.
  void SetSourceFileName(const QString& name) { fileName_[0] = name; }
  const QString& SourceFileName(std::size_t source = 0) const { return fileName_.at(source); }
  const Spectrum& SourcePoints(std::size_t source = 0) const { return sources_.at(source); }
  /// Calculates the result anew; the status bar says why there is none.
  void GetResultData();
  /// Why there is no result.
  NoResult Reason() const { return reason_; }
  /// Scales, range of wavelengths and colours of the window that hands over.
  void TakeLook(const SpectrumWindow& from);
  /// 1 Abs, 2 %T; anything else shows absorbance.
  virtual void SetDisplayMode(std::int32_t mode);

  /// Asks for the options. Yields.
  void ShowConfigWindow() override;
  void DisplayRecordTable() override;
  bool Offers(int command) const override;
  void FormatsChanged() override;
  /// What it shows is a wavelength scan.
  int CheckFileType() const override { return 3; }
  QString NameAsSource() const override { return fileName_[0]; }
  std::int32_t ColourAsSource() const override { return sourceColor_[0]; }
  /// As config.ini has them, with the home view in force.
  ProcessSettings AllSettings() const;

 protected:
  ProcessWindow(MainWindow& frame, const ProcessPlan& plan, const ProcessSettings& first);

  virtual ProcessedSpectrum Calculate(const std::vector<const Spectrum*>& sources) const = 0;
  /// Other options were confirmed and taken, names of sources included.
  virtual void OptionsChanged() {}
  void SetSource(std::size_t source, const QString& name, Spectrum points);

  std::optional<Report> MakeReport() override { return {}; }
  CurveView MakeView() const override;
  QString EmptyHint() const override;
  QString PointText(std::size_t line, std::size_t point) const override;
  void PeakHeightChanged() override;
  FileKindWords FileWords() const override;
  bool IsModified() const override { return false; }
  bool ReadDocument(const QString& path, QString& fault) override;

 private:
  std::vector<DataTab> SourceTabs();
  void TakeAll(const ProcessSettings& settings);
  void StoreAll();

  ProcessPlan plan_;
  std::array<QString, kMostSources> fileName_;
  std::array<std::int32_t, kMostSources> sourceColor_ = {};
  std::array<Spectrum, kMostSources> sources_;
  std::array<PointTable*, kMostSources> sourceTables_ = {};
  NoResult reason_ = plan_.Sources > 1 ? NoResult::MissingFile : NoResult::NoSource;
};

}  // namespace spectrane
