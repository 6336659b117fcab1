#include "files/journalkeeper.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <iterator>
#include <map>
#include <random>
#include <string_view>
#include <system_error>
#include <utility>

#include "base/applicationfolder.h"
#include "base/utf8path.h"

namespace spectrane {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kEnding = ".journal";
/// So much that has been replaced may stand in a file beside what counts [bytes].
constexpr std::size_t kMostReplaced = std::size_t{4} << 20;
/// Most journals that one start takes.
constexpr std::size_t kMostJournals = 64;
/// Of all of them together [bytes]; the rest waits for the next start.
constexpr std::size_t kMostRead = std::size_t{256} << 20;

/// A name that no other journal has; names sort by the time of their making. The number behind the last "-"
/// counts how often the journal was written anew.
std::string NewName() {
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
  char name[64];
  std::snprintf(name, sizeof(name), "%015lld-%08x-0", static_cast<long long>(ms), std::random_device{}());
  return name;
}

/// The part of a journal's path that stays when it is written anew, and how often it was.
struct Generation {
  std::string Base;
  unsigned long Number = 0;
};

Generation GenerationOf(const std::string& path) {
  const std::string stem = path.substr(0, path.size() - std::min(path.size(), kEnding.size()));
  const std::size_t dash = stem.rfind('-');
  if (dash == std::string::npos) return {stem, 0};
  const std::string digits = stem.substr(dash + 1);
  const bool number =
      !digits.empty() && digits.size() < 9 && digits.find_first_not_of("0123456789") == std::string::npos;
  return number ? Generation{stem.substr(0, dash), std::stoul(digits)} : Generation{stem, 0};
}

std::string NextPath(const std::string& path) {
  const Generation now = GenerationOf(path);
  return now.Base + '-' + std::to_string(now.Number + 1) + std::string(kEnding);
}

std::size_t Hash(std::string_view bytes) {
  return std::hash<std::string_view>{}(bytes);
}

}  // namespace

JournalKeeper::JournalKeeper(std::unique_ptr<JournalFile> file, const Journal& journal)
    : file_(std::move(file)), head_(journal.Head) {
  const std::size_t size = head_.RecordSize;
  for (std::size_t i = 0; i < journal.RecordCount(); ++i)
    hashes_.push_back(Hash(std::string_view(journal.Records).substr(i * size, size)));
  folder_ = Utf8FromPath(PathFromUtf8(file_->Path()).parent_path());
  // What follows the whole entries would hide what comes behind it. Where it cannot be cut it is written
  // over.
  file_->CutTo(journal.WholeBytes);
}

std::size_t JournalKeeper::HashOf(const JournalImage& image, std::size_t record) {
  image.Encode(static_cast<std::int32_t>(record), reinterpret_cast<unsigned char*>(record_.data()));
  return Hash(record_);
}

/// Records `first` up to `end` in the place of `removed` ones, in pieces that belong together.
void JournalKeeper::AddRecords(const JournalImage& image, std::size_t first, std::size_t removed,
                               std::size_t end, std::string& entries) {
  const std::size_t most = std::max<std::size_t>(1, kLargestJournalPart / image.Head.RecordSize);
  std::string piece;
  do {
    const std::size_t count = std::min(most, end - first);
    piece.resize(count * image.Head.RecordSize);
    for (std::size_t i = 0; i < count; ++i) {
      image.Encode(static_cast<std::int32_t>(first + i),
                   reinterpret_cast<unsigned char*>(piece.data()) + i * image.Head.RecordSize);
    }
    entries += JournalRecordsEntry(first, removed, piece, first + count < end);
    removed = 0;
    first += count;
  } while (first < end);
}

std::string JournalKeeper::AllEntries(const JournalImage& image) {
  const std::string head = JournalHeadEntry(image.Head, image.Count > 0);
  if (head.empty()) return {};
  std::string entries = std::string(JournalOpening()) + head;
  if (image.Count > 0) AddRecords(image, 0, 0, static_cast<std::size_t>(image.Count), entries);
  return entries;
}

bool JournalKeeper::Keep(const JournalImage& image, std::int32_t first, bool mayTidy) {
  // What the last call did not bring into the file may be anywhere in the document; nor is it brought by a
  // call that an exception ends.
  if (!std::exchange(fault_, "the document could not be read").empty()) first = 0;
  record_.assign(image.Head.RecordSize, '\0');
  const bool other =
      file_ && (image.Head.FileType != head_.FileType || image.Head.RecordSize != head_.RecordSize);
  if (!file_ || other) {
    if (!WriteAnew(image, false)) return false;
  } else if (!Append(image, static_cast<std::size_t>(std::max(first, 0)))) {
    return false;
  }
  const std::size_t counts =
      image.Head.Option.size() + image.Head.RecordSize * static_cast<std::size_t>(image.Count);
  // A file that cannot be written anew stays as it is: it says the same.
  if (mayTidy && file_->Size() > 2 * counts + kMostReplaced) WriteAnew(image, true);
  fault_.clear();
  return true;
}

bool JournalKeeper::Append(const JournalImage& image, std::size_t first) {
  const auto count = static_cast<std::size_t>(image.Count);
  first = std::min({first, count, hashes_.size()});
  std::vector<std::size_t> hashes;
  for (std::size_t i = first; i < count; ++i) hashes.push_back(HashOf(image, i));
  const auto old = hashes_.begin() + static_cast<std::ptrdiff_t>(first);
  const auto [oldBegin, newBegin] = std::mismatch(old, hashes_.end(), hashes.begin(), hashes.end());
  auto oldEnd = hashes_.end();
  auto newEnd = hashes.end();
  while (oldEnd != oldBegin && newEnd != newBegin && *std::prev(oldEnd) == *std::prev(newEnd)) {
    --oldEnd;
    --newEnd;
  }
  const bool records = oldBegin != oldEnd || newBegin != newEnd;
  std::string entries;
  const bool headChanged = image.Head != head_;
  JournalHead head;
  if (headChanged) {
    head = image.Head;
    entries = JournalHeadEntry(head, records);
    if (entries.empty()) return false;
  }
  if (records) {
    const std::size_t from = first + static_cast<std::size_t>(newBegin - hashes.begin());
    AddRecords(image, from, static_cast<std::size_t>(oldEnd - oldBegin),
               from + static_cast<std::size_t>(newEnd - newBegin), entries);
  }
  if (entries.empty()) return true;
  if (file_->Size() + entries.size() > kLargestJournal) {
    fault_ = "the journal is full";
    return false;
  }
  // Before anything is written: memory that runs out afterwards would part them from the file.
  if (hashes_.capacity() < count) hashes_.reserve(std::max(count, 2 * hashes_.capacity()));
  if (!file_->Append(entries, fault_)) return false;
  if (headChanged) head_ = std::move(head);
  hashes_.resize(first);
  hashes_.insert(hashes_.end(), hashes.begin(), hashes.end());
  return true;
}

bool JournalKeeper::WriteAnew(const JournalImage& image, bool synced) {
  const std::string entries = AllEntries(image);
  if (entries.empty() || entries.size() > kLargestJournal) {
    fault_ = "the document is too large for a journal";
    return false;
  }
  std::vector<std::size_t> hashes;
  for (std::size_t i = 0; i < static_cast<std::size_t>(image.Count); ++i) hashes.push_back(HashOf(image, i));
  JournalHead head = image.Head;
  EnsureFolder(folder_);
  const std::string path = file_ ? NextPath(file_->Path())
                                 : Utf8FromPath(PathFromUtf8(folder_) / (NewName() + std::string(kEnding)));
  std::unique_ptr<JournalFile> file = JournalFile::Create(path, fault_);
  if (!file) return false;
  if (!file->Append(entries, fault_) || (synced && !file->Sync())) {
    file->Remove();
    return false;
  }
  if (file_) file_->Remove();
  file_ = std::move(file);
  head_ = std::move(head);
  hashes_ = std::move(hashes);
  return true;
}

void JournalKeeper::Drop() {
  if (file_) file_->Remove();
  file_.reset();
  head_ = {};
  hashes_.clear();
}

std::vector<LeftJournal> TakeLeftJournals(const std::string& folder) {
  std::error_code fault;
  std::vector<std::string> paths;
  for (fs::directory_iterator it(PathFromUtf8(folder), fault), end; !fault && it != end;
       it.increment(fault)) {
    const std::string path = Utf8FromPath(it->path());
    if (path.ends_with(kEnding)) paths.push_back(path);
  }
  std::ranges::sort(paths, [](const std::string& one, const std::string& other) {
    const Generation a = GenerationOf(one);
    const Generation b = GenerationOf(other);
    return a.Base != b.Base ? a.Base < b.Base : a.Number > b.Number;
  });
  std::vector<LeftJournal> journals;
  std::size_t read = 0;
  for (const std::string& path : paths) {
    if (journals.size() == kMostJournals || read > kMostRead) break;
    LeftJournal left;
    left.File = JournalFile::Take(path);
    if (!left.File) continue;
    const std::string bytes = left.File->Read(kLargestJournal);
    read += bytes.size();
    // Of a journal that was just being written anew the newer file counts; it is whole or says nothing.
    const bool older =
        !journals.empty() && GenerationOf(journals.back().File->Path()).Base == GenerationOf(path).Base;
    if (!older && ReadJournal(bytes, left.Content)) {
      journals.push_back(std::move(left));
    } else if (older || JournalOpening().starts_with(bytes) || bytes.starts_with(JournalOpening())) {
      left.File->Remove();
    }
  }
  return journals;
}

}  // namespace spectrane
