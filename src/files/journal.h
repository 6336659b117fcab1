#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace spectrane {

/// The format of a journal: what a document holds that no file has yet, written down as it comes. It begins
/// with JournalOpening(); entries follow, each with its length and a check sum. An entry that says that more
/// belongs to it counts only together with what follows, so that a change of several entries happens wholly
/// or not at all. Journals are read once, after a crash; docs/journal.md has the bytes.

/// Most bytes of a journal: the reader looks at no more, the writer ends there.
inline constexpr std::size_t kLargestJournal = std::size_t{64} << 20;
/// Most bytes of one text, of the option block and of one record.
inline constexpr std::size_t kLargestJournalPart = 65536;
/// Fewest bytes of a record.
inline constexpr std::size_t kSmallestJournalRecord = 8;

/// What a journal says of its document beside the records.
struct JournalHead {
  /// File type of the header that a file of the document has.
  std::int32_t FileType = 0;
  /// Bytes of a record, as in the file.
  std::size_t RecordSize = 0;
  /// Of the window, in UTF-8.
  std::string Caption;
  /// The document's file; empty before the first save.
  std::string Path;
  /// Only a part of the file at Path could be read.
  bool HalfRead = false;
  /// Another file that the document came from, of which only a part could be read.
  std::string HalfReadPath;
  /// The file at Path when it was last read or written: bytes (-1: there was none) and time [ms since 1970].
  std::int64_t FileSize = -1;
  std::int64_t FileTime = 0;
  /// The option block, as in the file.
  std::string Option;

  bool operator==(const JournalHead&) const = default;
};

/// A journal that was read.
struct Journal {
  JournalHead Head;
  /// Record behind record, as in the file.
  std::string Records;
  /// So many bytes from the beginning are whole; what follows them was left out.
  std::size_t WholeBytes = 0;

  std::size_t RecordCount() const { return Head.RecordSize == 0 ? 0 : Records.size() / Head.RecordSize; }
};

/// What every journal begins with.
std::string_view JournalOpening();
/// Entries to append. `more`: the next one belongs to this one.
/// The head anew; file type and record size never change. Empty when a part of it is too large.
std::string JournalHeadEntry(const JournalHead& head, bool more);
/// From record `first` on, `removed` records give way to those of `records`, which are whole ones and at most
/// kLargestJournalPart bytes.
std::string JournalRecordsEntry(std::size_t first, std::size_t removed, std::string_view records, bool more);

/// Reads a journal from its bytes, whatever they are. False: it names no document; `journal` is empty then.
bool ReadJournal(std::string_view bytes, Journal& journal);

}  // namespace spectrane
