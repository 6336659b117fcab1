#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "files/filefault.h"
#include "files/journalkeeper.h"
#include "files/wlsfile.h"
#include "files/wlsfile2.h"
#include "spectrum/findpeak.h"
#include "spectrum/scanscale.h"

namespace spectrane {

/// One spectrum, the file it belongs to, and how it is looked at: either measured, as energies from which
/// %T and absorbance follow, or processed, as the values themselves. Points count from 0.
class SpectrumDocument {
 public:
  enum class Kind { Measured, Processed };
  explicit SpectrumDocument(Kind kind) : kind_(kind) {}

  /// File type of the header, 3 or 12.
  int FileType() const;
  std::int32_t PointCount() const { return static_cast<std::int32_t>(wavelength_.size()); }
  /// The points [nm], [%T], [Abs], [counts]. The energies of a processed spectrum are 0. Valid until the
  /// points change.
  std::span<const double> Wavelength() const { return wavelength_; }
  std::span<const double> Trans() const { return trans_; }
  std::span<const double> Abs() const { return abs_; }
  std::span<const double> Energy() const { return energy_; }
  std::span<const double> Values(ScanMode mode) const;
  /// A point of a measured spectrum as its file has it; of a processed one all but the wavelength is 0. An
  /// index outside the spectrum throws NumericFault.
  WLSRecord Record(std::int32_t index) const;
  /// Lowest and highest wavelength of the points that have one [nm]; both 0 without points.
  std::pair<double, double> WavelengthRange() const;

  /// What a save writes: the home view, the mode and the measuring parameters. PointCount is that of the
  /// points.
  const WLSOption& Option() const { return option_; }
  /// Takes everything but the number of points, and looks at the new home view. A document with points has
  /// then what no file has, unless nothing was new.
  void SetOption(const WLSOption& option);
  ScanMode Mode() const;
  /// Not a change that a file would miss.
  void SetMode(ScanMode mode);

  /// The view in force; a change is stored nowhere.
  const ScanScale& View() const { return view_; }
  void SetView(const ScanScale& view) { view_ = view; }
  void ShowHome() { view_ = ScaleOf(option_); }
  /// Distance of the points as the option block tells it [0.001 nm], and how many the home view then has; at
  /// most as many as a spectrum can have.
  std::int32_t IntervalStep() const;
  std::int32_t ExpectedPoints() const;

  /// The values of a measured spectrum are weighted means of five points. Found peaks stay.
  void SetSmooth(bool smooth);
  bool Smooth() const { return smooth_; }

  /// Searches the absorbance, whatever the mode.
  void FindPeak(const PeakSearch& search) {
    found_ = spectrane::FindPeak(wavelength_, abs_, search);
    searched_ = true;
  }
  /// These points were searched, whatever was found.
  bool IsSearched() const { return searched_; }
  const FoundPeaks& Found() const { return found_; }
  void ForgetPeaks() { found_.PeakIndex.clear(); }
  void ForgetValleys() { found_.ValleyIndex.clear(); }
  /// As before the first search.
  void ForgetSearch();

  /// A processed spectrum from outside, point by point. False, and nothing is done, for an index beyond the
  /// last point that a spectrum can have and for a measured spectrum.
  bool SetPoint(std::int32_t index, const WLS2Record& point);
  bool SetPointCount(std::int32_t count);

  /// There is something that no file has yet.
  bool IsModified() const { return modified_; }
  /// Only a part of the points of its file could be read. Such a document is shown; it never takes the place
  /// of that file.
  bool IsHalfLoaded() const { return halfLoaded_; }
  /// Path of the file; empty before the first save.
  const std::string& FileName() const { return fileName_; }
  /// Why the last OpenFile() or SaveFile() gave false.
  const FileFault& LastFault() const { return fault_; }

  /// Takes the points, the home view and the parameters of a file, and looks at its home view. Found peaks
  /// are forgotten. False: the document is as it was, except that a file with fewer points than it states
  /// gives those it has (IsHalfLoaded).
  bool OpenFile(const std::string& path);
  /// Writes the spectrum with its home view to `path`, whose old file is replaced when the new one is whole.
  /// False: the old file is as it was and the document stays modified. A document without points is refused,
  /// and a half-loaded one onto its own file.
  bool SaveFile(const std::string& path);

  /// As a file would have it, for its journal; while it lives unchanged.
  JournalImage Image() const;
  /// Takes the spectrum of a journal in the place of its own, with the file that it belonged to; no file has
  /// it. False: it is one of another kind, nothing is changed.
  bool TakeJournal(const Journal& journal);

 private:
  void Take(std::vector<WLSRecord> records);
  void Take(const std::vector<WLS2Record>& points);
  void TakeOption(const WLSOption& option, const std::string& path);
  WLS2Record ProcessedPoint(std::int32_t index) const;
  void Derive();

  Kind kind_;
  WLSOption option_{350, 1100, 3, 0, 100, 0, 65535, 0, 0, 0, 0, 0, 0, 1};
  ScanScale view_;
  std::vector<WLSRecord> records_;
  std::vector<double> wavelength_;
  std::vector<double> trans_;
  std::vector<double> abs_;
  std::vector<double> energy_;
  FoundPeaks found_;
  bool searched_ = false;
  std::string fileName_;
  FileFault fault_;
  bool smooth_ = false;
  bool modified_ = false;
  bool halfLoaded_ = false;
};

}  // namespace spectrane
