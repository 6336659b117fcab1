#include "fuzz/checks/journalcheck.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <vector>

#include "files/journal.h"

namespace spectrane::fuzz {
namespace {

// The format told a second time; docs/file-formats.md has it.
constexpr std::string_view kFirstLine = "Spectrane journal 1\n";
constexpr std::size_t kFrameBytes = 8;
constexpr std::size_t kMostText = 65536;
constexpr std::size_t kMostEntry = 4 * kMostText + 256;

/// The sum, moved on by four bits at a time.
constexpr std::array<std::uint32_t, 16> kHalfByte = [] {
  std::array<std::uint32_t, 16> table = {};
  for (std::uint32_t i = 0; i < 16; ++i) {
    std::uint32_t sum = i;
    for (int bit = 0; bit < 4; ++bit) sum = (sum >> 1) ^ (0xEDB88320U & (0U - (sum & 1U)));
    table[i] = sum;
  }
  return table;
}();

std::uint32_t SumOf(std::string_view bytes) {
  std::uint32_t sum = ~0U;
  for (const char c : bytes) {
    sum ^= static_cast<unsigned char>(c);
    for (int i = 0; i < 2; ++i) sum = (sum >> 4) ^ kHalfByte[sum & 15U];
  }
  return ~sum;
}

std::uint64_t NumberAt(std::string_view bytes, std::size_t at, std::size_t width) {
  std::uint64_t value = 0;
  for (std::size_t i = width; i-- > 0;) value = (value << 8) | static_cast<unsigned char>(bytes[at + i]);
  return value;
}

/// The length that the frame at `at` states; nothing where no entry can stand.
std::optional<std::size_t> EntryLength(std::string_view bytes, std::size_t at) {
  if (bytes.size() - at < kFrameBytes) return std::nullopt;
  const std::size_t length = NumberAt(bytes, at, 4);
  if (length == 0 || length > kMostEntry || length > bytes.size() - at - kFrameBytes) return std::nullopt;
  return length;
}

/// The same journal with the sums that belong to what its entries hold.
std::string WithSums(std::string_view bytes) {
  std::string mended(bytes);
  for (std::size_t at = kFirstLine.size(); at < bytes.size();) {
    const auto length = EntryLength(bytes, at);
    if (!length) break;
    const std::uint32_t sum = SumOf(bytes.substr(at + kFrameBytes, *length));
    for (std::size_t i = 0; i < 4; ++i) mended[at + 4 + i] = static_cast<char>(sum >> (8 * i));
    at += kFrameBytes + *length;
  }
  return mended;
}

struct Document {
  JournalHead Head;
  std::vector<std::string> Records;
};

std::optional<JournalHead> HeadOf(std::string_view content) {
  constexpr std::size_t kNumbers = 25;
  if (content.size() < kNumbers) return std::nullopt;
  JournalHead head;
  head.FileType = static_cast<std::int32_t>(NumberAt(content, 0, 4));
  head.RecordSize = NumberAt(content, 4, 4);
  head.HalfRead = content[8] != 0;
  head.FileSize = static_cast<std::int64_t>(NumberAt(content, 9, 8));
  head.FileTime = static_cast<std::int64_t>(NumberAt(content, 17, 8));
  content.remove_prefix(kNumbers);
  for (std::string* const text : {&head.Caption, &head.Path, &head.HalfReadPath, &head.Option}) {
    if (content.size() < 4) return std::nullopt;
    const std::size_t length = NumberAt(content, 0, 4);
    if (length > kMostText || length > content.size() - 4) return std::nullopt;
    *text = content.substr(4, length);
    content.remove_prefix(4 + length);
  }
  if (!content.empty() || head.RecordSize < 8 || head.RecordSize > kMostText) return std::nullopt;
  return head;
}

/// Carries out one entry; false when it makes no sense.
bool Carry(std::string_view entry, Document& document) {
  const int kind = entry.front() & 0x7F;
  const std::string_view content = entry.substr(1);
  JournalHead& head = document.Head;
  if (kind == 1) {
    const auto next = HeadOf(content);
    const bool same = next && next->FileType == head.FileType && next->RecordSize == head.RecordSize;
    if (!next || (head.RecordSize > 0 && !same)) return false;
    head = *next;
    return true;
  }
  if (kind != 2 || head.RecordSize == 0 || content.size() < 8) return false;
  const std::size_t first = NumberAt(content, 0, 4);
  const std::size_t removed = NumberAt(content, 4, 4);
  const std::string_view added = content.substr(8);
  auto& records = document.Records;
  if (added.size() % head.RecordSize != 0 || first > records.size() || removed > records.size() - first)
    return false;
  const auto place = records.begin() + static_cast<std::ptrdiff_t>(first);
  std::vector<std::string> pieces;
  for (std::size_t at = 0; at < added.size(); at += head.RecordSize)
    pieces.emplace_back(added.substr(at, head.RecordSize));
  const auto behind = records.erase(place, place + static_cast<std::ptrdiff_t>(removed));
  records.insert(behind, pieces.begin(), pieces.end());
  return true;
}

struct Expected {
  Document Read;
  std::size_t Whole = 0;
};

Expected Reckoned(std::string_view bytes) {
  Expected expected;
  if (!bytes.starts_with(kFirstLine)) return expected;
  expected.Whole = kFirstLine.size();
  Document now;
  bool possible = true;
  for (std::size_t at = expected.Whole; possible && at < bytes.size();) {
    const auto length = EntryLength(bytes, at);
    if (!length) break;
    const std::string_view entry = bytes.substr(at + kFrameBytes, *length);
    if (SumOf(entry) != NumberAt(bytes, at + 4, 4)) break;
    possible = Carry(entry, now);
    at += kFrameBytes + *length;
    if (!possible || (entry.front() & 0x80) != 0) continue;
    expected.Read = now;
    expected.Whole = at;
  }
  return expected;
}

std::string Joined(const std::vector<std::string>& records) {
  std::string all;
  for (const std::string& record : records) all += record;
  return all;
}

/// What was read, written down anew and read again.
std::string CheckAnew(const Journal& journal) {
  const std::size_t most = kLargestJournalPart / journal.Head.RecordSize * journal.Head.RecordSize;
  std::string bytes = std::string(JournalOpening()) + JournalHeadEntry(journal.Head, false);
  for (std::size_t at = 0; at < journal.Records.size(); at += most) {
    bytes += JournalRecordsEntry(at / journal.Head.RecordSize, 0,
                                 std::string_view(journal.Records).substr(at, most), false);
  }
  Journal again;
  if (!ReadJournal(bytes, again)) return "a journal written anew names no document";
  if (!(again.Head == journal.Head)) return "another head when written anew";
  if (again.Records != journal.Records) return "other records when written anew";
  return again.WholeBytes == bytes.size() ? "" : "a journal written anew is not whole";
}

std::string CheckBytes(std::string_view bytes) {
  const Expected expected = Reckoned(bytes);
  Journal journal;
  journal.Records = "before";
  const bool read = ReadJournal(bytes, journal);
  if (read != (expected.Read.Head.RecordSize > 0))
    return read ? "a document out of nothing" : "a document is lost";
  if (!read) return journal.Records.empty() && journal.WholeBytes == 0 ? "" : "not read, and changed";
  if (!(journal.Head == expected.Read.Head)) return "another head";
  if (journal.Records != Joined(expected.Read.Records)) return "other records";
  if (journal.WholeBytes != expected.Whole) return "another number of whole bytes";
  Journal again;
  if (!ReadJournal(bytes.substr(0, journal.WholeBytes), again) || again.WholeBytes != journal.WholeBytes ||
      again.Records != journal.Records || !(again.Head == journal.Head))
    return "the whole part reads otherwise";
  return CheckAnew(journal);
}

}  // namespace

std::string CheckJournal(Bytes input) {
  const std::string_view bytes(reinterpret_cast<const char*>(input.data()), input.size());
  std::string wrong = CheckBytes(bytes);
  if (!wrong.empty() || !bytes.starts_with(kFirstLine)) return wrong;
  const std::string mended = WithSums(bytes);
  return mended == bytes ? wrong : CheckBytes(mended);
}

}  // namespace spectrane::fuzz
