#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/initext.h"

namespace spectrane {

/// The settings of the program: config.ini in the application folder, sections and keys of text.
///
/// The file is read again when it has changed on the disk, so copies of the program that run side by side see
/// each other's values; a write changes nothing but its own keys. A file that is no settings file (a folder,
/// bytes that are no text, more than 16 MiB, no right to read) is left alone. Values that cannot be stored
/// hold for the life of this object and go into the file with the first write that succeeds.
class Setting {
 public:
  /// `folder` in UTF-8. Nothing is read or created yet.
  explicit Setting(std::string folder);

  /// The value without blanks at its ends, at most 255 characters; empty when there is none. A value that is
  /// no UTF-8, from a file of an older version, is read as single-byte text.
  std::string GetSetting(std::string_view section, std::string_view key);

  /// Stores a value; line breaks and NUL in it become blanks. False: the file is as it was and the value
  /// holds in memory (Problem() says why), or the names are not fit for a settings file and nothing was
  /// taken.
  bool PutSetting(std::string_view section, std::string_view key, std::string_view value);
  /// Stores several values with one replacement of the file.
  bool PutSettings(const std::vector<SettingValue>& values);
  /// Stores those of the values whose keys are missing or empty at the moment of the write. One that cannot
  /// be stored never takes the place of a value that the file turns out to have. False: as PutSettings.
  bool PutDefaults(const std::vector<SettingValue>& values);

  /// What keeps the file from being read or written, in words that name it; empty when all is well.
  const std::string& Problem() const { return readProblem_.empty() ? writeProblem_ : readProblem_; }
  const std::string& Path() const { return path_; }

 private:
  /// What tells one state of the file from the next without reading it.
  struct Stamp {
    enum class Kind { Missing, Regular, Other } Is = Kind::Missing;
    std::uint64_t Size = 0;
    std::int64_t Modified = 0;  ///< in the platform's own unit; only compared
    std::uint64_t Device = 0;
    std::uint64_t Number = 0;
    bool operator==(const Stamp&) const = default;
  };

  static Stamp StampOf(const std::string& path, std::string& reason);
  static std::string ReadWhole(const std::string& path, std::string& reason);
  void Refresh();
  void Read(const Stamp& stamp, std::string reason);
  bool Keep(const std::vector<SettingValue>& values, std::vector<SettingValue>& kept);
  bool WritePending();

  std::string folder_;
  std::string path_;
  bool read_ = false;
  bool failedToRead_ = false;  ///< by a fault that may pass: the next question tries again
  Stamp stamp_;
  IniText text_;
  std::vector<SettingValue> pending_;
  std::vector<SettingValue> pendingDefaults_;
  std::string readProblem_;
  std::string writeProblem_;
};

}  // namespace spectrane
