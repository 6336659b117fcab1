#include "modes/recorddocument.h"

#include "base/utf8path.h"

namespace spectrane {

void RecordDocument::LeaveFile() {
  if (halfLoaded_) halfRead_ = fileName_;
  fileName_.clear();
  halfLoaded_ = false;
}

bool RecordDocument::OpenFile(const std::string& path) {
  bool taken = false;
  fault_ = Load(path, taken);
  if (!taken) return false;
  fileName_ = path;
  halfRead_.clear();
  modified_ = false;
  halfLoaded_ = static_cast<bool>(fault_);
  textLost_ = false;
  return !halfLoaded_;
}

JournalImage RecordDocument::Image() const {
  JournalImage image = OwnImage();
  image.Head.HalfRead = halfLoaded_;
  image.Head.HalfReadPath = halfRead_;
  return image;
}

bool RecordDocument::TakeJournal(const Journal& journal) {
  if (!TakeRecords(journal)) return false;
  fileName_ = journal.Head.Path;
  halfLoaded_ = journal.Head.HalfRead;
  halfRead_ = journal.Head.HalfReadPath;
  fault_ = {};
  textLost_ = false;
  modified_ = true;
  return true;
}

bool RecordDocument::MaySave(const std::string& path) const {
  return HasContents() && !HoldsMore(path) && (!halfLoaded_ || modified_);
}

bool RecordDocument::HoldsMore(const std::string& path) const {
  return (halfLoaded_ && SameFile(path, fileName_)) || (!halfRead_.empty() && SameFile(path, halfRead_));
}

bool RecordDocument::SaveFile(const std::string& path) {
  if (!MaySave(path)) {
    fault_ = {halfLoaded_ || HoldsMore(path) ? FileError::HalfRead : FileError::NotSavable, 0, 0, 0, {}};
    return false;
  }
  bool lost = false;
  fault_ = Store(path, lost);
  if (fault_) return false;
  fileName_ = path;
  halfRead_.clear();
  modified_ = false;
  halfLoaded_ = false;
  textLost_ = lost;
  return true;
}

}  // namespace spectrane
