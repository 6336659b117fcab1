#include "modes/timescan/timescandocument.h"

#include <algorithm>
#include <limits>

#include "base/numbers.h"
#include "base/numericfault.h"
#include "base/utf8path.h"
#include "link/function.h"
#include "modes/timescan/timescanaxes.h"

namespace spectrane {
namespace {

// What stands in for a blank that was never taken.
constexpr std::int32_t kNoFullEnergy = 30000;
constexpr std::int32_t kNoDarkEnergy = 100;
constexpr std::int32_t kNoGain = 1;

/// As a file has it; beyond its range the nearest that it holds.
std::int32_t WholeSeconds(double seconds) {
  using Limits = std::numeric_limits<std::int32_t>;
  if (!(seconds > Limits::min())) return seconds < 0 ? Limits::min() : 0;
  return seconds >= Limits::max() ? Limits::max() : ToLong(seconds);
}

}  // namespace

TimeScanDocument::TimeScanDocument() {
  option_.WorkWL = 546;
  option_.IntervalSecond = 1;
  option_.DisplayMode = 1;
  option_.AbsTop = 3;
  option_.TransTop = 100;
  SetBlank(kNoFullEnergy, kNoDarkEnergy, kNoGain);
}

void TimeScanDocument::Configure(const TSOption& option, double startSecond, double endSecond) {
  const TSOption blank = option_;
  option_ = option;
  SetBlank(blank.FullEnergy, blank.DarkEnergy, blank.GainNo);
  startSecond_ = startSecond;
  endSecond_ = endSecond;
}

void TimeScanDocument::SetBlank(std::int32_t fullEnergy, std::int32_t darkEnergy, std::int32_t gain) {
  option_.FullEnergy = fullEnergy;
  option_.DarkEnergy = darkEnergy;
  option_.GainNo = gain;
}

std::int32_t TimeScanDocument::Interval() const {
  return IntervalMs(option_.IntervalSecond);
}

std::int32_t TimeScanDocument::PointTotal() const {
  return spectrane::PointTotal(startSecond_, endSecond_, Interval());
}

const TSRecord& TimeScanDocument::Point(std::int32_t index) const {
  if (index < 0 || index >= DataCount()) throw NumericFault("no such point");
  return points_[static_cast<std::size_t>(index)];
}

double TimeScanDocument::PointTrans(std::int32_t index) const {
  return TransFromEnergy(Point(index).Energy, option_.FullEnergy, option_.DarkEnergy);
}

double TimeScanDocument::PointAbs(std::int32_t index) const {
  return AbsFromEnergy(Point(index).Energy, option_.FullEnergy, option_.DarkEnergy);
}

std::vector<double> TimeScanDocument::AllAbs() const {
  std::vector<double> abs;
  abs.reserve(points_.size());
  for (const TSRecord& point : points_) {
    abs.push_back(AbsFromEnergy(point.Energy, option_.FullEnergy, option_.DarkEnergy));
  }
  return abs;
}

void TimeScanDocument::NoteMeasurement() {
  measuredWavelength_ = option_.WorkWL;
  measuredInterval_ = option_.IntervalSecond;
}

void TimeScanDocument::BeginTest() {
  points_.clear();
  NoteMeasurement();
}

bool TimeScanDocument::Append(std::int32_t energy) {
  if (DataCount() >= kMostTestPoints) return false;
  const double time = static_cast<double>(DataCount()) * Interval() / 1000 + startSecond_;
  points_.push_back({energy, time});
  return true;
}

void TimeScanDocument::EndTest(std::int32_t count) {
  points_.resize(static_cast<std::size_t>(std::clamp(count, 0, DataCount())));
  modified_ = true;
}

void TimeScanDocument::Take(const TSOption& option, std::vector<TSRecord> points, const std::string& path) {
  option_ = option;
  NoteMeasurement();
  startSecond_ = option.StartSecond;
  endSecond_ = option.EndSecond;
  points_ = std::move(points);
  fileName_ = path;
}

TSOption TimeScanDocument::FileOption() const {
  TSOption option = option_;
  option.WorkWL = PointWavelength();
  option.IntervalSecond = PointInterval();
  option.StartSecond = WholeSeconds(startSecond_);
  option.EndSecond = WholeSeconds(endSecond_);
  return option;
}

JournalImage TimeScanDocument::Image() const {
  JournalImage image = JournalImageOf(
      TSModule(), FileOption(), DataCount(),
      [this](std::int32_t i) -> const TSRecord& { return points_[static_cast<std::size_t>(i)]; });
  image.Head.HalfRead = halfLoaded_;
  return image;
}

bool TimeScanDocument::TakeJournal(const Journal& journal) {
  TSOption option;
  std::vector<TSRecord> points;
  if (!spectrane::TakeJournal(TSModule(), journal, option, points)) return false;
  Take(option, std::move(points), journal.Head.Path);
  fault_ = {};
  modified_ = true;
  halfLoaded_ = journal.Head.HalfRead;
  return true;
}

bool TimeScanDocument::OpenFile(const std::string& path) {
  TSOption option;
  std::vector<TSRecord> points;
  fault_ = LoadDataFile(TSModule(), path, option, points);
  if (fault_ && points.empty()) return false;
  Take(option, std::move(points), path);
  modified_ = false;
  halfLoaded_ = static_cast<bool>(fault_);
  return !halfLoaded_;
}

bool TimeScanDocument::SaveFile(const std::string& path) {
  if (halfLoaded_ && SameFile(path, fileName_)) {
    fault_ = {FileError::HalfRead, 0, 0, 0, {}};
    return false;
  }
  fault_ = SaveDataFile(
      TSModule(), path, FileOption(), DataCount(),
      [this](std::int32_t i) -> const TSRecord& { return points_[static_cast<std::size_t>(i)]; });
  if (fault_) return false;
  fileName_ = path;
  modified_ = false;
  halfLoaded_ = false;
  return true;
}

}  // namespace spectrane
