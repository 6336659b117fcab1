#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "files/datafile.h"
#include "files/journal.h"
#include "files/journalfile.h"

namespace spectrane {

/// A document as its data file would have it.
struct JournalImage {
  JournalHead Head;
  std::int32_t Count = 0;
  /// Writes the bytes of a record, Head.RecordSize of them.
  std::function<void(std::int32_t record, unsigned char* bytes)> Encode;
};

/// The image of a document with these options and records, for as long as they live; `recordAt(i)` gives
/// record i. Caption, path and what is known of the file are the caller's to fill in.
template <typename OptionT, typename RecordT, typename RecordAt>
JournalImage JournalImageOf(const FileModule<OptionT, RecordT>& module, OptionT option, std::int32_t count,
                            RecordAt recordAt) {
  JournalImage image;
  image.Head.FileType = module.FileType;
  image.Head.RecordSize = module.Record.Size;
  // The number of records is not among the options here, or each new one would bring all of them along.
  module.StateCount(option, 0);
  image.Head.Option.resize(module.Option.Size);
  bool lost = false;
  module.Option.Encode(&option, reinterpret_cast<unsigned char*>(image.Head.Option.data()), lost);
  image.Count = count;
  image.Encode = [&module, recordAt](std::int32_t index, unsigned char* bytes) {
    bool textLost = false;
    const auto& record = recordAt(index);
    module.Record.Encode(&record, bytes, textLost);
  };
  return image;
}

/// Options and records of a journal. False: it is one of another kind, or has more records than the program
/// takes; nothing is changed then.
template <typename OptionT, typename RecordT>
bool TakeJournal(const FileModule<OptionT, RecordT>& module, const Journal& journal, OptionT& option,
                 std::vector<RecordT>& records) {
  const JournalHead& head = journal.Head;
  if (head.FileType != module.FileType || head.RecordSize != module.Record.Size ||
      head.Option.size() != module.Option.Size ||
      journal.RecordCount() > static_cast<std::size_t>(module.MostRecords))
    return false;
  module.Option.Decode(reinterpret_cast<const unsigned char*>(head.Option.data()), &option, 1);
  records.resize(journal.RecordCount());
  module.Record.Decode(reinterpret_cast<const unsigned char*>(journal.Records.data()), records.data(),
                       records.size());
  module.StateCount(option, static_cast<std::int32_t>(records.size()));
  return true;
}

/// Keeps the journal of one document up to date with the document.
class JournalKeeper {
 public:
  /// The journal gets its file in `folder`, which is created when it is needed, with the first Keep().
  explicit JournalKeeper(std::string folder) : folder_(std::move(folder)) {}
  /// Goes on with a journal that was read from `file`.
  JournalKeeper(std::unique_ptr<JournalFile> file, const Journal& journal);
  /// The file stays.
  ~JournalKeeper() = default;

  /// Appends what differs from the last call: one write, which does not wait for the disk. `first`: records
  /// before that one are as they were. `mayTidy`: nothing is being measured, and a file that is mostly what
  /// has long been replaced may be written anew. False: the journal is as it was, LastFault() says why; the
  /// next call tries again, and looks at all records then.
  bool Keep(const JournalImage& image, std::int32_t first, bool mayTidy);
  /// The document is saved, or given up on purpose: the journal goes.
  void Drop();
  /// There is a file.
  bool Begun() const { return file_ != nullptr; }
  std::size_t Size() const { return file_ ? file_->Size() : 0; }
  /// The platform's words.
  const std::string& LastFault() const { return fault_; }

 private:
  bool Append(const JournalImage& image, std::size_t first);
  bool WriteAnew(const JournalImage& image, bool synced);
  std::size_t HashOf(const JournalImage& image, std::size_t record);
  std::string AllEntries(const JournalImage& image);
  void AddRecords(const JournalImage& image, std::size_t first, std::size_t removed, std::size_t end,
                  std::string& entries);

  std::string folder_;
  std::unique_ptr<JournalFile> file_;
  std::string fault_;
  // What the file says.
  JournalHead head_;
  std::vector<std::size_t> hashes_;
  std::string record_;
};

/// A journal that a program left behind. It is nobody else's while this lives.
struct LeftJournal {
  std::unique_ptr<JournalFile> File;
  Journal Content;
};

/// The journals in `folder` that no living program uses, in the order they were begun; those that say nothing
/// are deleted.
std::vector<LeftJournal> TakeLeftJournals(const std::string& folder);

}  // namespace spectrane
