#include "cli/filekinds.h"

#include <array>
#include <vector>

#include "cli/command.h"
#include "cli/jsonblock.h"
#include "files/basicfile.h"
#include "files/bslfile.h"
#include "files/dnafile.h"
#include "files/fileheader.h"
#include "files/multifile.h"
#include "files/quafile.h"
#include "files/tsfile.h"
#include "files/wlsfile.h"
#include "files/wlsfile2.h"
#include "link/function.h"

namespace spectrane {
namespace {

/// Closes the file of a number at the end of a block.
struct ClosedAtEnd {
  int Number = 0;
  ClosedAtEnd() = default;
  ClosedAtEnd(const ClosedAtEnd&) = delete;
  ClosedAtEnd& operator=(const ClosedAtEnd&) = delete;
  ~ClosedAtEnd() { CloseDataFile(Number); }
};

Json HeaderJson(int fileNumber) {
  FileHeader header;
  ReadFileHeader(fileNumber, header);
  return {{"Version", header.Version},
          {"Author", header.Author},
          {"Contact", header.Contact},
          {"Magic", header.Magic}};
}

/// Adds what is derived from a record and stored nowhere.
template <typename OptionT, typename RecordT>
using AddDerived = void (*)(const OptionT& option, const RecordT& record, Json& json);

template <typename OptionT, typename RecordT>
std::string Describe(const FileModule<OptionT, RecordT>& module, AddDerived<OptionT, RecordT> addDerived,
                     const std::string& path, bool data) {
  ClosedAtEnd file;
  OptionT option;
  if (!module.Open(path, file.Number, option)) throw Refusal(path, FaultOf(file.Number));
  FileFault fault;
  const std::int32_t count = ReadableCount(module, file.Number, module.StatedCount(option), fault);
  const bool fewer = fault.Error == FileError::Damaged && fault.Stated > 0;
  if (fault && (data || !fewer)) throw Refusal(path, fault);

  Json json = {{"kind", module.Name}, {"file_type", module.FileType}, {"header", HeaderJson(file.Number)}};
  json["option"] = JsonOfBlock(module.Option.Fields, &option);
  json["records"] = count;
  std::string text = JsonText(json);
  if (!data) return text;
  text.back() = ',';
  text += "\"data\":[";
  for (std::int32_t i = 0; i < count; ++i) {
    RecordT record;
    if (!module.Read(file.Number, record, i)) {
      NoteFault(file.Number, {FileError::Damaged, FileLength(file.Number), count, i, {}});
      throw Refusal(path, FaultOf(file.Number));
    }
    Json row = JsonOfBlock(module.Record.Fields, &record);
    if (addDerived != nullptr) addDerived(option, record, row);
    text += i == 0 ? "\n" : ",\n";
    text += JsonText(row);
  }
  return text + "]}";
}

template <typename OptionT, typename RecordT>
FileFault Pack(const FileModule<OptionT, RecordT>& module, const Json& document, const std::string& path,
               std::size_t& records, bool& lost) {
  OptionT option;
  if (const auto found = document.find("option"); found != document.end()) {
    BlockFromJson(module.Option.Fields, *found, "option", &option);
  }
  std::vector<RecordT> rows;
  if (const auto data = document.find("data"); data != document.end()) {
    if (!data->is_array()) throw BadJson("data is not an array");
    if (data->size() > static_cast<std::size_t>(module.MostRecords)) throw BadJson("data is too long");
    rows.resize(data->size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
      BlockFromJson(module.Record.Fields, (*data)[i], "data[" + std::to_string(i) + "]", &rows[i]);
    }
  }
  records = rows.size();
  return SaveDataFile(
      module, path, option, static_cast<std::int32_t>(rows.size()),
      [&rows](std::int32_t i) -> const RecordT& { return rows[static_cast<std::size_t>(i)]; }, &lost);
}

template <typename OptionT, typename RecordT>
BatchKind MakeKind(const FileModule<OptionT, RecordT>& module,
                   AddDerived<OptionT, RecordT> addDerived = nullptr) {
  return {&module,
          [&module, addDerived](const std::string& path, bool data) {
            return Describe(module, addDerived, path, data);
          },
          [&module](const Json& document, const std::string& path, std::size_t& records, bool& lost) {
            return Pack(module, document, path, records, lost);
          }};
}

void AddPhotometry(std::int32_t energy, std::int32_t full, std::int32_t dark, Json& json) {
  json["Trans"] = TransFromEnergy(energy, full, dark);
  json["Abs"] = AbsFromEnergy(energy, full, dark);
}

/// Of a record that has its own blank.
template <typename OptionT, typename RecordT>
void AddOwnPhotometry(const OptionT&, const RecordT& record, Json& json) {
  AddPhotometry(record.SampleEnergy, record.ReferenceEnergy, record.DarkEnergy, json);
}

void AddTimeScanPhotometry(const TSOption& option, const TSRecord& record, Json& json) {
  AddPhotometry(record.Energy, option.FullEnergy, option.DarkEnergy, json);
}

const auto& Kinds() {
  static const std::array kinds = {
      MakeKind(BasicModule(), AddOwnPhotometry),
      MakeKind(QuaModule()),
      MakeKind(TSModule(), AddTimeScanPhotometry),
      MakeKind(WLSModule(), AddOwnPhotometry),
      MakeKind(WLS2Module()),
      MakeKind(MultiModule()),
      MakeKind(DNAModule()),
      MakeKind(BSLModule()),
  };
  return kinds;
}

}  // namespace

const BatchKind* KindOfType(std::int32_t fileType) {
  for (const BatchKind& kind : Kinds()) {
    if (kind.Kind->FileType == fileType) return &kind;
  }
  return nullptr;
}

const BatchKind* KindOfName(const std::string& name) {
  for (const BatchKind& kind : Kinds()) {
    if (kind.Kind->Name == name) return &kind;
  }
  return nullptr;
}

}  // namespace spectrane
