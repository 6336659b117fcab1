#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "files/bslfile.h"
#include "files/filefault.h"

namespace spectrane {

/// The stored baseline of the instrument: gain and energy at each whole nanometre. The program has one.
class SystemBaseline {
 public:
  static constexpr std::int32_t kSize = 912;

  /// Records that a range [nm] has: one a nanometre, both ends included and cut to whole numbers; kSize at
  /// most.
  static std::int32_t RecordsOfRange(double wavelengthMin, double wavelengthMax);

  /// Takes the records of a file, kSize at most, in the place of what was here. True: some were taken; with a
  /// fault, the file holds fewer than it states. False: nothing could be read, and everything here stays as
  /// it was.
  bool Load(const std::string& path, FileFault& fault);
  /// Writes one record for each nanometre of the range; where there is none here, its figures are zero. The
  /// old file at `path` stays as it was on any fault, and is not replaced at all when it is the one of which
  /// only a part could be read. `now` is the date serial of the moment.
  FileFault Save(const std::string& path, double wavelengthMin, double wavelengthMax, double now) const;

  bool BaselinePresent() const { return present_; }
  /// Name part of the loaded file.
  const std::string& BaselineFileName() const { return fileName_; }
  /// Records that were loaded.
  std::int32_t Count() const { return count_; }
  /// Records that the loaded file states beyond those that have a place here.
  std::int64_t LeftOut() const { return leftOut_; }
  /// [nm], gain number and counts by record, 0 to kSize - 1.
  double BaselineWavelength(std::int32_t index) const { return records_.at(At(index)).Wavelength; }
  std::int32_t BaselineAmp(std::int32_t index) const { return records_.at(At(index)).Amp; }
  std::int32_t BaselineEnergy(std::int32_t index) const { return records_.at(At(index)).Energy; }

 private:
  static std::size_t At(std::int32_t index) { return static_cast<std::size_t>(index); }

  std::array<BSLRecord, kSize> records_ = {};
  std::int32_t count_ = 0;
  std::int64_t leftOut_ = 0;
  bool present_ = false;
  std::string fileName_;
  // Path of the file when only a part of it could be read.
  std::string halfReadPath_;
};

}  // namespace spectrane
