#pragma once

#include <string>

#include "fuzz/checks/filetable.h"

namespace spectrane::fuzz {

/// A file below the platform's temporary folder (TMPDIR; a folder in memory is fastest) that takes one
/// content after the other and goes with this object.
class InputFile {
 public:
  /// Ends the program when the platform refuses: nothing could be checked then. Hold() does the same.
  InputFile();
  ~InputFile();
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;

  void Hold(Bytes content);
  const std::string& Path() const { return path_; }

 private:
  std::string path_;
  /// Kept open where that saves time; no standard stream, whose buffer would stand between.
  [[maybe_unused]] int descriptor_ = -1;
};

}  // namespace spectrane::fuzz
