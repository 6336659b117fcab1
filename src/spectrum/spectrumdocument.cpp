#include "spectrum/spectrumdocument.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "base/numericfault.h"
#include "base/utf8path.h"
#include "spectrum/scanvalues.h"

namespace spectrane {
namespace {

/// [0.001 nm]
constexpr std::array<std::int32_t, 6> kIntervalSteps = {100, 200, 500, 1000, 2000, 5000};
constexpr std::int32_t kUsualStep = 1000;

/// What the file of a processed spectrum has no use for is 0 in it.
WLSOption ForProcessedFile(WLSOption option) {
  option.EnergyTop = option.EnergyBottom = 0;
  option.EnergyAmp = option.EnergyFilter = option.EnergyLamp = 0;
  option.IntervalWavelength = 0;
  return option;
}

}  // namespace

int SpectrumDocument::FileType() const {
  return kind_ == Kind::Measured ? WLSModule().FileType : WLS2Module().FileType;
}

std::span<const double> SpectrumDocument::Values(ScanMode mode) const {
  return mode == ScanMode::Trans ? trans_ : mode == ScanMode::Energy ? energy_ : abs_;
}

WLSRecord SpectrumDocument::Record(std::int32_t index) const {
  if (index < 0 || index >= PointCount()) throw NumericFault("point outside the spectrum");
  const auto i = static_cast<std::size_t>(index);
  return kind_ == Kind::Measured ? records_[i] : WLSRecord{0, 0, 0, wavelength_[i], 0};
}

std::pair<double, double> SpectrumDocument::WavelengthRange() const {
  std::pair<double, double> range{0, 0};
  bool first = true;
  for (const double wavelength : wavelength_) {
    if (!std::isfinite(wavelength)) continue;
    range.first = first ? wavelength : std::min(range.first, wavelength);
    range.second = first ? wavelength : std::max(range.second, wavelength);
    first = false;
  }
  return range;
}

void SpectrumDocument::SetOption(const WLSOption& option) {
  WLSOption taken = option;
  taken.PointCount = PointCount();
  if (taken != option_ && PointCount() > 0) modified_ = true;
  option_ = taken;
  ShowHome();
}

ScanMode SpectrumDocument::Mode() const {
  const ScanMode mode = ScanModeOf(option_.DisplayMode);
  return kind_ == Kind::Processed && mode == ScanMode::Energy ? ScanMode::Abs : mode;
}

void SpectrumDocument::SetMode(ScanMode mode) {
  option_.DisplayMode = static_cast<std::int32_t>(mode);
}

std::int32_t SpectrumDocument::IntervalStep() const {
  const auto index = static_cast<std::size_t>(option_.IntervalWavelength);
  return index < kIntervalSteps.size() ? kIntervalSteps[index] : kUsualStep;
}

std::int32_t SpectrumDocument::ExpectedPoints() const {
  const double points =
      (option_.EndWavelength - option_.StartWavelength) / (static_cast<double>(IntervalStep()) / 1000.0) +
      1.0;
  if (!(points > 0)) return 0;
  return static_cast<std::int32_t>(std::min(points, static_cast<double>(kMostSpectrumPoints)));
}

void SpectrumDocument::ForgetSearch() {
  found_ = {};
  searched_ = false;
}

void SpectrumDocument::SetSmooth(bool smooth) {
  if (smooth == smooth_) return;
  smooth_ = smooth;
  Derive();
}

void SpectrumDocument::Derive() {
  if (kind_ == Kind::Processed) return;
  ScanValues values = DeriveScanValues(records_, smooth_);
  trans_ = std::move(values.Trans);
  abs_ = std::move(values.Abs);
}

bool SpectrumDocument::SetPoint(std::int32_t index, const WLS2Record& point) {
  if (kind_ != Kind::Processed || index < 0 || index >= kMostSpectrumPoints) return false;
  if (index >= PointCount()) SetPointCount(index + 1);
  const auto i = static_cast<std::size_t>(index);
  wavelength_[i] = point.Wavelength;
  trans_[i] = point.Trans;
  abs_[i] = point.Abs;
  modified_ = true;
  return true;
}

bool SpectrumDocument::SetPointCount(std::int32_t count) {
  if (kind_ != Kind::Processed || count < 0 || count > kMostSpectrumPoints) return false;
  for (std::vector<double>* values : {&wavelength_, &trans_, &abs_, &energy_}) {
    // Whoever looks at the points meanwhile keeps its place while they grow.
    values->reserve(static_cast<std::size_t>(kMostSpectrumPoints));
    values->resize(static_cast<std::size_t>(count));
  }
  option_.PointCount = count;
  ForgetSearch();
  modified_ = modified_ || count > 0;
  return true;
}

void SpectrumDocument::Take(const std::vector<WLS2Record>& points) {
  for (std::vector<double>* values : {&wavelength_, &trans_, &abs_}) values->clear();
  for (const WLS2Record& point : points) {
    wavelength_.push_back(point.Wavelength);
    trans_.push_back(point.Trans);
    abs_.push_back(point.Abs);
  }
  energy_.assign(points.size(), 0.0);
}

void SpectrumDocument::Take(std::vector<WLSRecord> records) {
  records_ = std::move(records);
  wavelength_.clear();
  energy_.clear();
  for (const WLSRecord& record : records_) {
    wavelength_.push_back(record.Wavelength);
    energy_.push_back(record.SampleEnergy);
  }
  Derive();
}

void SpectrumDocument::TakeOption(const WLSOption& option, const std::string& path) {
  option_ = option;
  option_.PointCount = PointCount();
  ShowHome();
  ForgetSearch();
  fileName_ = path;
}

WLS2Record SpectrumDocument::ProcessedPoint(std::int32_t index) const {
  const auto i = static_cast<std::size_t>(index);
  return {wavelength_[i], trans_[i], abs_[i]};
}

JournalImage SpectrumDocument::Image() const {
  JournalImage image = kind_ == Kind::Measured
                           ? JournalImageOf(WLSModule(), option_, PointCount(),
                                            [this](std::int32_t i) -> const WLSRecord& {
                                              return records_[static_cast<std::size_t>(i)];
                                            })
                           : JournalImageOf(WLS2Module(), ForProcessedFile(option_), PointCount(),
                                            [this](std::int32_t i) { return ProcessedPoint(i); });
  image.Head.HalfRead = halfLoaded_;
  return image;
}

bool SpectrumDocument::TakeJournal(const Journal& journal) {
  WLSOption option;
  if (kind_ == Kind::Measured) {
    std::vector<WLSRecord> records;
    if (!spectrane::TakeJournal(WLSModule(), journal, option, records)) return false;
    Take(std::move(records));
  } else {
    std::vector<WLS2Record> points;
    if (!spectrane::TakeJournal(WLS2Module(), journal, option, points)) return false;
    Take(points);
  }
  TakeOption(option, journal.Head.Path);
  fault_ = {};
  modified_ = true;
  halfLoaded_ = journal.Head.HalfRead;
  return true;
}

bool SpectrumDocument::OpenFile(const std::string& path) {
  WLSOption option;
  if (kind_ == Kind::Measured) {
    std::vector<WLSRecord> records;
    fault_ = LoadDataFile(WLSModule(), path, option, records);
    if (fault_ && records.empty()) return false;
    Take(std::move(records));
  } else {
    std::vector<WLS2Record> points;
    fault_ = LoadDataFile(WLS2Module(), path, option, points);
    if (fault_ && points.empty()) return false;
    Take(points);
  }
  TakeOption(option, path);
  modified_ = false;
  halfLoaded_ = static_cast<bool>(fault_);
  return !halfLoaded_;
}

bool SpectrumDocument::SaveFile(const std::string& path) {
  if (PointCount() == 0 || (halfLoaded_ && SameFile(path, fileName_))) {
    fault_ = {halfLoaded_ ? FileError::HalfRead : FileError::NotSavable, 0, 0, 0, {}};
    return false;
  }
  if (kind_ == Kind::Measured) {
    fault_ = SaveDataFile(
        WLSModule(), path, option_, PointCount(),
        [this](std::int32_t i) -> const WLSRecord& { return records_[static_cast<std::size_t>(i)]; });
  } else {
    fault_ = SaveDataFile(WLS2Module(), path, ForProcessedFile(option_), PointCount(),
                          [this](std::int32_t i) { return ProcessedPoint(i); });
  }
  if (fault_) return false;
  fileName_ = path;
  modified_ = false;
  halfLoaded_ = false;
  return true;
}

}  // namespace spectrane
