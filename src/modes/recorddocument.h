#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "base/numericfault.h"
#include "files/datafile.h"
#include "files/filefault.h"
#include "files/journalkeeper.h"

namespace spectrane {

/// A document of records and the file it belongs to, whatever the records are.
class RecordDocument {
 public:
  virtual ~RecordDocument() = default;

  virtual std::int32_t RecordCount() const = 0;
  /// Removes the row that the grid numbers `number`, from 1; later rows move up. False when it is 0 or beyond
  /// the last.
  virtual bool DeleteRecord(std::int32_t number) = 0;

  /// Changes that no file has yet.
  bool IsModified() const { return modified_; }
  /// Only a part of its file could be read. Such a document is shown; it never takes the place
  /// of that file.
  bool IsHalfLoaded() const { return halfLoaded_; }
  /// Path of the file; empty before the first save.
  const std::string& FileName() const { return fileName_; }
  /// The last save had texts with characters that the file has no place for; "?" stands there.
  bool TextWasLost() const { return textLost_; }
  /// Why the last OpenFile() or SaveFile() gave false.
  const FileFault& LastFault() const { return fault_; }

  /// Takes the contents of a file in the place of its own. False: the document is as it was, except that a
  /// file with fewer records than it states gives those it has (IsHalfLoaded).
  bool OpenFile(const std::string& path);
  /// Writes everything to `path`, whose old file is replaced when the new one is whole. False: the old file
  /// is as it was and the document stays modified. A document without contents is refused. A half-loaded one
  /// is saved only when it was modified, and elsewhere than in its own file, which still has what was not
  /// read; from then on it is whole.
  bool SaveFile(const std::string& path);

  /// As a file would have it, for its journal; while it lives unchanged.
  JournalImage Image() const;
  /// Takes the document of a journal in the place of its own, with the file that it belonged to; no file has
  /// it. False: it is one of another kind, nothing is changed.
  bool TakeJournal(const Journal& journal);

 protected:
  RecordDocument() = default;
  RecordDocument(const RecordDocument&) = default;
  RecordDocument& operator=(const RecordDocument&) = default;

  void MarkModified() { modified_ = true; }
  /// From now on the document is one that was never saved.
  void LeaveFile();

  /// Reads the file. `taken`: the document is now what could be read, which with a fault is a part of it.
  virtual FileFault Load(const std::string& path, bool& taken) = 0;
  virtual FileFault Store(const std::string& path, bool& textLost) const = 0;
  virtual JournalImage OwnImage() const = 0;
  virtual bool TakeRecords(const Journal& journal) = 0;
  /// There is something to put into a file.
  virtual bool HasContents() const { return RecordCount() > 0; }

 private:
  bool MaySave(const std::string& path) const;
  /// The file there has records that could not be read.
  bool HoldsMore(const std::string& path) const;

  std::string fileName_;
  // The file that was left with records in it that could not be read.
  std::string halfRead_;
  FileFault fault_;
  bool modified_ = false;
  bool halfLoaded_ = false;
  bool textLost_ = false;
};

/// The same with its option block and its records. Rows count from 0; a row outside the table throws
/// NumericFault.
template <typename OptionT, typename RecordT>
class RecordDocumentOf : public RecordDocument {
 public:
  std::int32_t RecordCount() const override { return static_cast<std::int32_t>(records_.size()); }
  const RecordT& Record(std::int32_t row) const { return records_[RowIndex(row)]; }
  void Append(RecordT record) {
    records_.push_back(std::move(record));
    RecordsChanged();
  }
  bool DeleteRecord(std::int32_t number) override {
    if (number < 1 || number > RecordCount()) return false;
    records_.erase(records_.begin() + (number - 1));
    RecordsChanged();
    return true;
  }

 protected:
  explicit RecordDocumentOf(const FileModule<OptionT, RecordT>& module) : module_(&module) {}

  RecordT& MutableRecord(std::int32_t row) { return records_[RowIndex(row)]; }
  /// Puts `value` in the place of a text of the document.
  void SetText(std::string& text, const std::string& value) {
    if (text == value) return;
    text = value;
    MarkModified();
  }
  void RecordsChanged() {
    module_->StateCount(option_, RecordCount());
    MarkModified();
  }
  /// The options are worth showing when none of the records that a file states could be read.
  virtual bool StandsWithoutRecords() const { return false; }
  /// What the option block of a file says beside what the document holds.
  virtual void StampOption(OptionT&) const {}

  OptionT option_;
  std::vector<RecordT> records_;

 private:
  std::size_t RowIndex(std::int32_t row) const {
    if (row < 0 || row >= RecordCount()) throw NumericFault("row outside the table");
    return static_cast<std::size_t>(row);
  }

  FileFault Load(const std::string& path, bool& taken) override {
    OptionT option;
    std::vector<RecordT> records;
    FileFault fault = LoadDataFile(*module_, path, option, records);
    const bool recordsMissing = fault.Error == FileError::Damaged && fault.Stated > 0;
    taken = !fault || !records.empty() || (recordsMissing && StandsWithoutRecords());
    if (!taken) return fault;
    option_ = std::move(option);
    records_ = std::move(records);
    module_->StateCount(option_, RecordCount());
    return fault;
  }
  FileFault Store(const std::string& path, bool& textLost) const override {
    OptionT option = option_;
    StampOption(option);
    return SaveDataFile(
        *module_, path, option, RecordCount(),
        [this](std::int32_t i) -> const RecordT& { return records_[static_cast<std::size_t>(i)]; },
        &textLost);
  }

  JournalImage OwnImage() const override {
    return JournalImageOf(*module_, option_, RecordCount(), [this](std::int32_t i) -> const RecordT& {
      return records_[static_cast<std::size_t>(i)];
    });
  }
  bool TakeRecords(const Journal& journal) override {
    return spectrane::TakeJournal(*module_, journal, option_, records_);
  }

  const FileModule<OptionT, RecordT>* module_;
};

}  // namespace spectrane
