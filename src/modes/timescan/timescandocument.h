#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "files/filefault.h"
#include "files/journalkeeper.h"
#include "files/tsfile.h"

namespace spectrane {

/// The points of one time scan, its home view and blank, and the file it belongs to. Points count from 0; a
/// point outside throws NumericFault.
class TimeScanDocument {
 public:
  TimeScanDocument();

  /// Home view, wavelength, interval and blank. DataCount is not kept here; the points tell it.
  const TSOption& Option() const { return option_; }
  /// The ends of the home view as they were set [s]; a file rounds them.
  double StartSecond() const { return startSecond_; }
  double EndSecond() const { return endSecond_; }
  /// Takes everything but blank and count from `option`; the points stay, and what has to be saved as well.
  void Configure(const TSOption& option, double startSecond, double endSecond);
  /// The values of the mode that is shown are %T; absorbance otherwise, also in a mode that there is not.
  bool ShowsTrans() const { return option_.DisplayMode == 2; }
  /// What the points were measured with, whatever was configured since; without points, what a test would
  /// use. A file has these. Wavelength [nm], and index of the interval.
  double PointWavelength() const { return points_.empty() ? option_.WorkWL : measuredWavelength_; }
  std::int32_t PointInterval() const { return points_.empty() ? option_.IntervalSecond : measuredInterval_; }
  /// Energies [counts] of the blank and without light, and the gain, that all points are shown with.
  void SetBlank(std::int32_t fullEnergy, std::int32_t darkEnergy, std::int32_t gain);

  /// Milliseconds between two points, and how many the settings ask for.
  std::int32_t Interval() const;
  std::int32_t PointTotal() const;

  std::int32_t DataCount() const { return static_cast<std::int32_t>(points_.size()); }
  const TSRecord& Point(std::int32_t index) const;
  double PointTrans(std::int32_t index) const;
  double PointAbs(std::int32_t index) const;
  /// Absorbance of all points, for a search.
  std::vector<double> AllAbs() const;

  /// A test begins: the points go.
  void BeginTest();
  /// The next point, with the time that its place in the schedule has. False at the limit of 10000 points.
  bool Append(std::int32_t energy);
  /// The test ended with that many points, of which the file has none. Points beyond go.
  void EndTest(std::int32_t count);

  /// Changes that no file has yet.
  bool IsModified() const { return modified_; }
  /// Path of the file; empty before the first save.
  const std::string& FileName() const { return fileName_; }
  /// Why the last OpenFile() or SaveFile() gave false.
  const FileFault& LastFault() const { return fault_; }

  /// Takes the contents of a file in the place of its own. False: the document is as it was, or, when some of
  /// the points could be read, it has these and IsHalfLoaded().
  bool OpenFile(const std::string& path);
  /// The file states more points than are here; they would be lost if it were replaced.
  bool IsHalfLoaded() const { return halfLoaded_; }
  /// Writes everything to `path`, whose old file is replaced when the new one is whole. False: the old file
  /// is as it was and the document stays modified.
  bool SaveFile(const std::string& path);

  /// As a file would have it, for its journal; while it lives unchanged.
  JournalImage Image() const;
  /// Takes the document of a journal in the place of its own, with the file that it belonged to; no file has
  /// it. False: it is one of another kind, nothing is changed.
  bool TakeJournal(const Journal& journal);

 private:
  void NoteMeasurement();
  TSOption FileOption() const;
  void Take(const TSOption& option, std::vector<TSRecord> points, const std::string& path);

  TSOption option_;
  double startSecond_ = 0;
  double endSecond_ = 1000;
  std::vector<TSRecord> points_;
  std::string fileName_;
  FileFault fault_;
  double measuredWavelength_ = 0;
  std::int32_t measuredInterval_ = 0;
  bool modified_ = false;
  bool halfLoaded_ = false;
};

}  // namespace spectrane
