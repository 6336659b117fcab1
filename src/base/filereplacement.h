#pragma once

#include <string>
#include <string_view>

namespace spectrane {

/// Puts a new file in the place of an old one, whole or not at all. The new content is built under
/// TemporaryPath(), beside the target; Commit() brings it to the disk, keeps the old file's permission bits,
/// follows a symbolic link and renames. Until Commit() returns true the old file is untouched; an uncommitted
/// replacement removes its temporary file when it goes.
class FileReplacement {
 public:
  /// `path` in UTF-8. Nothing is created yet.
  explicit FileReplacement(std::string path);
  ~FileReplacement();
  FileReplacement(const FileReplacement&) = delete;
  FileReplacement& operator=(const FileReplacement&) = delete;

  /// The target exists and not everybody may read it: the temporary file is to be created with no rights but
  /// its owner's. Commit() gives it the bits of the target.
  bool OwnerOnly() const { return ownerOnly_; }
  /// Path of the file to build: in the target's own folder, a name that no other file has. The caller creates
  /// and closes it.
  const std::string& TemporaryPath() const { return temporaryPath_; }
  /// Syncs the temporary file, checks the result, renames it over the target and syncs the folder. False: the
  /// old file stands as it was, the temporary one is gone, `reason` (when given) has the platform's words.
  bool Commit(std::string* reason = nullptr);

 private:
  std::string targetPath_;
  std::string temporaryPath_;
  bool ownerOnly_ = false;
  bool committed_ = false;
};

/// Writes `bytes` as the whole content of `path` by a FileReplacement.
bool ReplaceFileContent(const std::string& path, std::string_view bytes, std::string* reason = nullptr);

}  // namespace spectrane
