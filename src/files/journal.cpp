#include "files/journal.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "files/block.h"

namespace spectrane {
namespace {

using blockdetail::Load;
using blockdetail::Store;

constexpr std::string_view kOpening = "Spectrane journal 1\n";
/// In front of each entry: bytes of its content, and their check sum.
constexpr std::size_t kFrame = 8;
constexpr unsigned char kHeadEntry = 1;
constexpr unsigned char kRecordsEntry = 2;
/// Added to the kind: the next entry belongs to this one.
constexpr unsigned char kMore = 0x80;
/// A head at its largest: three texts and the option block, and the numbers beside them.
constexpr std::size_t kLargestEntry = 4 * kLargestJournalPart + 256;
/// Places of records that removing and inserting may move in one journal. Far beyond what a person can do by
/// hand; a broken journal must not keep the start of the program for minutes.
constexpr std::uint64_t kMostMoves = 250'000'000;

/// CRC-32 with the polynomial of IEEE 802.3, bits reflected.
constexpr std::array<std::uint32_t, 256> kCheckTable = [] {
  std::array<std::uint32_t, 256> table = {};
  for (std::uint32_t i = 0; i < 256; ++i) {
    std::uint32_t value = i;
    for (int bit = 0; bit < 8; ++bit) value = (value >> 1) ^ ((value & 1) != 0 ? 0xEDB88320U : 0U);
    table[i] = value;
  }
  return table;
}();

std::uint32_t CheckSum(std::string_view bytes) {
  std::uint32_t sum = 0xFFFFFFFFU;
  for (const char byte : bytes)
    sum = (sum >> 8) ^ kCheckTable[(sum ^ static_cast<unsigned char>(byte)) & 0xFF];
  return ~sum;
}

const unsigned char* BytesOf(std::string_view text) {
  return reinterpret_cast<const unsigned char*>(text.data());
}

/// Puts an entry together; its frame is filled in at the end.
class EntryWriter {
 public:
  EntryWriter(unsigned char kind, bool more) : bytes_(kFrame, '\0') {
    bytes_ += static_cast<char>(more ? kind | kMore : kind);
  }
  template <typename Unsigned>
  void Number(Unsigned value) {
    std::array<unsigned char, sizeof(Unsigned)> number = {};
    Store(number.data(), value);
    bytes_.append(number.begin(), number.end());
  }
  void Text(std::string_view text) {
    Number(static_cast<std::uint32_t>(text.size()));
    bytes_ += text;
  }
  void Rest(std::string_view bytes) { bytes_ += bytes; }
  std::string Finish() {
    const std::string_view content = std::string_view(bytes_).substr(kFrame);
    const auto size = static_cast<std::uint32_t>(content.size());
    const std::uint32_t sum = CheckSum(content);
    auto* const frame = reinterpret_cast<unsigned char*>(bytes_.data());
    Store(frame, size);
    Store(frame + 4, sum);
    return std::move(bytes_);
  }

 private:
  std::string bytes_;
};

/// Takes an entry apart. After the first piece that is not there everything is empty and Whole() false.
class EntryReader {
 public:
  explicit EntryReader(std::string_view content) : rest_(content) {}

  template <typename Unsigned>
  Unsigned Number() {
    const std::string_view bytes = Take(sizeof(Unsigned));
    return bytes.empty() ? Unsigned{0} : Load<Unsigned>(BytesOf(bytes));
  }
  std::string Text() {
    const std::size_t size = Number<std::uint32_t>();
    if (size > kLargestJournalPart) whole_ = false;
    return std::string(Take(size));
  }
  std::string_view Rest() const { return rest_; }
  bool Whole() const { return whole_; }

 private:
  std::string_view Take(std::size_t size) {
    whole_ = whole_ && size <= rest_.size();
    if (!whole_) return {};
    const std::string_view taken = rest_.substr(0, size);
    rest_.remove_prefix(size);
    return taken;
  }

  std::string_view rest_;
  bool whole_ = true;
};

bool ReadHead(std::string_view content, JournalHead& head) {
  EntryReader entry(content);
  head.FileType = static_cast<std::int32_t>(entry.Number<std::uint32_t>());
  head.RecordSize = entry.Number<std::uint32_t>();
  head.HalfRead = entry.Number<std::uint8_t>() != 0;
  head.FileSize = static_cast<std::int64_t>(entry.Number<std::uint64_t>());
  head.FileTime = static_cast<std::int64_t>(entry.Number<std::uint64_t>());
  head.Caption = entry.Text();
  head.Path = entry.Text();
  head.HalfReadPath = entry.Text();
  head.Option = entry.Text();
  return entry.Whole() && entry.Rest().empty() && head.RecordSize >= kSmallestJournalRecord &&
         head.RecordSize <= kLargestJournalPart;
}

struct Entry {
  unsigned char Kind = 0;
  std::string_view Content;
};

/// A change of the table of records.
struct Change {
  std::size_t First = 0;
  std::size_t Removed = 0;
  std::string_view Records;
};

Change ReadChange(std::string_view content, bool& whole) {
  EntryReader entry(content);
  Change change;
  change.First = entry.Number<std::uint32_t>();
  change.Removed = entry.Number<std::uint32_t>();
  change.Records = entry.Rest();
  whole = entry.Whole();
  return change;
}

/// The document as far as the journal was read. Records are where they stand in the journal.
class Replay {
 public:
  /// Carries out entries that belong together; false, with nothing done, when one of them makes no sense.
  bool Take(const std::vector<Entry>& group) {
    JournalHead head = head_;
    if (!Possible(group, head)) return false;
    head_ = std::move(head);
    for (const Entry& entry : group) {
      if (entry.Kind == kRecordsEntry) CarryOut(entry.Content);
    }
    return true;
  }
  bool Begun() const { return head_.RecordSize > 0; }
  const JournalHead& Head() const { return head_; }
  std::string Records() const {
    std::string records;
    records.reserve(records_.size() * head_.RecordSize);
    for (const char* const record : records_) records.append(record, head_.RecordSize);
    return records;
  }

 private:
  bool Possible(const std::vector<Entry>& group, JournalHead& head) {
    std::size_t count = records_.size();
    for (const Entry& entry : group) {
      if (entry.Kind == kHeadEntry) {
        JournalHead next;
        if (!ReadHead(entry.Content, next)) return false;
        if (head.RecordSize > 0 && (next.FileType != head.FileType || next.RecordSize != head.RecordSize))
          return false;
        head = std::move(next);
        continue;
      }
      bool whole = entry.Kind == kRecordsEntry && head.RecordSize > 0;
      const Change change = whole ? ReadChange(entry.Content, whole) : Change();
      if (!whole || change.Records.size() % head.RecordSize != 0) return false;
      if (change.First > count || change.Removed > count - change.First) return false;
      const std::size_t added = change.Records.size() / head.RecordSize;
      if (added != change.Removed) moves_ += count - change.First - change.Removed;
      if (moves_ > kMostMoves) return false;
      count = count - change.Removed + added;
    }
    return true;
  }

  void CarryOut(std::string_view content) {
    bool whole = true;
    const Change change = ReadChange(content, whole);
    std::vector<const char*> added;
    for (std::size_t at = 0; at < change.Records.size(); at += head_.RecordSize)
      added.push_back(change.Records.data() + at);
    const auto first = records_.begin() + static_cast<std::ptrdiff_t>(change.First);
    const std::size_t common = std::min(added.size(), change.Removed);
    const auto commonEnd = added.begin() + static_cast<std::ptrdiff_t>(common);
    const auto place = std::copy(added.begin(), commonEnd, first);
    records_.insert(records_.erase(place, first + static_cast<std::ptrdiff_t>(change.Removed)), commonEnd,
                    added.end());
  }

  JournalHead head_;
  std::vector<const char*> records_;
  std::uint64_t moves_ = 0;
};

/// The entry at the beginning of `bytes`; false when it is not whole.
bool NextEntry(std::string_view bytes, Entry& entry, std::size_t& size) {
  if (bytes.size() < kFrame) return false;
  const std::size_t length = Load<std::uint32_t>(BytesOf(bytes));
  if (length == 0 || length > kLargestEntry || length > bytes.size() - kFrame) return false;
  const std::string_view content = bytes.substr(kFrame, length);
  if (CheckSum(content) != Load<std::uint32_t>(BytesOf(bytes) + 4)) return false;
  entry = {static_cast<unsigned char>(content.front()), content.substr(1)};
  size = kFrame + length;
  return true;
}

}  // namespace

std::string_view JournalOpening() {
  return kOpening;
}

std::string JournalHeadEntry(const JournalHead& head, bool more) {
  for (const std::string* const part : {&head.Caption, &head.Path, &head.HalfReadPath, &head.Option}) {
    if (part->size() > kLargestJournalPart) return {};
  }
  EntryWriter entry(kHeadEntry, more);
  entry.Number(static_cast<std::uint32_t>(head.FileType));
  entry.Number(static_cast<std::uint32_t>(head.RecordSize));
  entry.Number(static_cast<std::uint8_t>(head.HalfRead ? 1 : 0));
  entry.Number(static_cast<std::uint64_t>(head.FileSize));
  entry.Number(static_cast<std::uint64_t>(head.FileTime));
  entry.Text(head.Caption);
  entry.Text(head.Path);
  entry.Text(head.HalfReadPath);
  entry.Text(head.Option);
  return entry.Finish();
}

std::string JournalRecordsEntry(std::size_t first, std::size_t removed, std::string_view records, bool more) {
  EntryWriter entry(kRecordsEntry, more);
  entry.Number(static_cast<std::uint32_t>(first));
  entry.Number(static_cast<std::uint32_t>(removed));
  entry.Rest(records);
  return entry.Finish();
}

bool ReadJournal(std::string_view bytes, Journal& journal) {
  journal = {};
  bytes = bytes.substr(0, kLargestJournal);
  if (!bytes.starts_with(kOpening)) return false;
  Replay replay;
  std::vector<Entry> group;
  Entry entry;
  std::size_t size = 0;
  std::size_t whole = kOpening.size();
  for (std::size_t at = whole; NextEntry(bytes.substr(at), entry, size); at += size) {
    const bool more = (entry.Kind & kMore) != 0;
    entry.Kind = static_cast<unsigned char>(entry.Kind & ~kMore);
    group.push_back(entry);
    if (more) continue;
    if (!replay.Take(group)) break;
    group.clear();
    whole = at + size;
  }
  if (!replay.Begun()) return false;
  journal.Head = replay.Head();
  journal.Records = replay.Records();
  journal.WholeBytes = whole;
  return true;
}

}  // namespace spectrane
