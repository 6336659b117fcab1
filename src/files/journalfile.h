#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace spectrane {

/// The file of one journal. As long as an object lives no other one of this or another program can take the
/// file; when its program dies the file stays and is free. Paths in UTF-8.
class JournalFile {
 public:
  /// A new file that nobody but its owner reads. Null: `reason` says why.
  static std::unique_ptr<JournalFile> Create(const std::string& path, std::string& reason);
  /// A file that is there. Null: it is no plain file, cannot be written, is in use or has just gone.
  static std::unique_ptr<JournalFile> Take(const std::string& path);
  /// The file stays.
  ~JournalFile();
  JournalFile(const JournalFile&) = delete;
  JournalFile& operator=(const JournalFile&) = delete;

  const std::string& Path() const { return path_; }
  std::size_t Size() const { return size_; }
  /// At most `most` bytes from the beginning.
  std::string Read(std::size_t most) const;
  /// Writes behind the end, in one go and without waiting for the disk. False: the file is as it was, and
  /// `reason` says why.
  bool Append(std::string_view bytes, std::string& reason);
  /// Cuts the file. False: what stands behind that stays until the next one is written over it.
  bool CutTo(std::size_t size);
  /// Waits until the disk has everything.
  bool Sync();
  /// Deletes the file; the object is of no use from then on.
  void Remove();

 private:
  JournalFile() = default;

  std::string path_;
  std::size_t size_ = 0;
#ifdef _WIN32
  void* handle_ = nullptr;
#else
  int descriptor_ = -1;
#endif
};

}  // namespace spectrane
