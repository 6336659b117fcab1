#include "cli/filekinds.h"

#include <array>
#include <utility>
#include <vector>

#include "cli/command.h"
#include "cli/jsonblock.h"
#include "files/basicfile.h"
#include "files/bslfile.h"
#include "files/dnafile.h"
#include "files/file.h"
#include "files/fileheader.h"
#include "files/multifile.h"
#include "files/quafile.h"
#include "files/tsfile.h"
#include "files/wlsfile.h"
#include "files/wlsfile2.h"
#include "link/function.h"
#include "spectrum/scanvalues.h"

namespace spectrane {
namespace {

Json HeaderJson(int fileNumber) {
  FileHeader header;
  ReadFileHeader(fileNumber, header);
  return {{"Version", header.Version},
          {"Author", header.Author},
          {"Contact", header.Contact},
          {"Magic", header.Magic}};
}

/// What follows from the records of a file and is stored nowhere: a value of each name for every record.
struct DerivedColumn {
  const char* Name;
  std::vector<double> Values;
};
template <typename OptionT, typename RecordT>
using Derive = std::vector<DerivedColumn> (*)(const OptionT& option, const std::vector<RecordT>& records,
                                              bool smooth);

/// An open file of a kind, as far as `info` tells of it.
template <typename OptionT, typename RecordT>
struct DescribedFile {
  DescribedFile(const FileModule<OptionT, RecordT>& module, const std::string& path) : Module(module) {
    if (!module.Open(path, File.Number, Option)) throw Refusal(path, FaultOf(File.Number));
    Count = ReadableCount(module, File.Number, module.StatedCount(Option), Fault);
  }

  std::string Text() const {
    Json json = {{"kind", Module.Name}, {"file_type", Module.FileType}, {"header", HeaderJson(File.Number)}};
    json["option"] = JsonOfBlock(Module.Option.Fields, &Option);
    json["records"] = Count;
    return JsonText(json);
  }

  /// A file that states more records than can be taken, and holds few enough of them: those can be read.
  bool TakeFewerThanTooMany() {
    const std::int64_t held = RecordsInFile(Module, File.Number);
    if (Fault.Error != FileError::TooBig || held >= Fault.Stated || held > Module.MostRecords) return false;
    Count = static_cast<std::int32_t>(held);
    return true;
  }

  const FileModule<OptionT, RecordT>& Module;
  ClosedAtEnd File;
  OptionT Option;
  /// Records that can be read of those that the file states.
  std::int32_t Count = 0;
  FileFault Fault;
};

/// `info` of a file. Throws Refusal.
template <typename OptionT, typename RecordT>
std::string Describe(const FileModule<OptionT, RecordT>& module, const std::string& path) {
  DescribedFile file(module, path);
  const bool fewer = file.Fault.Error == FileError::Damaged && file.Fault.Stated > 0;
  if (file.Fault && !fewer && !file.TakeFewerThanTooMany()) throw Refusal(path, file.Fault);
  return file.Text();
}

template <typename OptionT, typename RecordT>
std::string Dump(const FileModule<OptionT, RecordT>& module, Derive<OptionT, RecordT> derive,
                 const std::string& path, bool smooth) {
  const DescribedFile file(module, path);
  if (file.Fault) throw Refusal(path, file.Fault);
  std::vector<RecordT> records(static_cast<std::size_t>(file.Count));
  const std::int32_t read =
      ReadDataRecords(module, file.File.Number, records.data(), sizeof(RecordT), 0, file.Count);
  if (read < file.Count) {
    throw Refusal(path, {FileError::Damaged, FileLength(file.File.Number), file.Count, read, {}});
  }
  std::vector<DerivedColumn> columns;
  if (derive != nullptr) columns = derive(file.Option, records, smooth);

  std::string text = file.Text();
  text.back() = ',';
  text += "\"data\":[";
  for (std::size_t i = 0; i < records.size(); ++i) {
    Json row = JsonOfBlock(module.Record.Fields, &records[i]);
    for (const DerivedColumn& column : columns) row[column.Name] = column.Values[i];
    text += i == 0 ? "\n" : ",\n";
    text += JsonText(row);
  }
  return text + "]}";
}

template <typename OptionT, typename RecordT>
FileFault Pack(const FileModule<OptionT, RecordT>& module, const JsonInput& document, const std::string& path,
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
BatchKind MakeKind(const FileModule<OptionT, RecordT>& module, Derive<OptionT, RecordT> derive = nullptr) {
  return {
      &module,
      [&module](const std::string& path) { return Describe(module, path); },
      [&module, derive](const std::string& path, bool smooth) { return Dump(module, derive, path, smooth); },
      [&module](const JsonInput& document, const std::string& path, std::size_t& records, bool& lost) {
        return Pack(module, document, path, records, lost);
      },
      {},
      0};
}

/// A whole file as a curve over the field `x`; `columns` gives %T and absorbance, in this order.
template <typename OptionT, typename RecordT>
BatchCurve ReadCurve(const FileModule<OptionT, RecordT>& module, Derive<OptionT, RecordT> columns,
                     double RecordT::*x, const std::string& path, bool smooth) {
  OptionT option;
  std::vector<RecordT> records;
  const FileFault fault = LoadDataFile(module, path, option, records);
  if (fault) throw Refusal(path, fault);
  BatchCurve curve;
  for (const RecordT& record : records) curve.X.push_back(record.*x);
  std::vector<DerivedColumn> derived = columns(option, records, smooth);
  curve.Trans = std::move(derived[0].Values);
  curve.Abs = std::move(derived[1].Values);
  return curve;
}

/// A kind with a curve over the field `x`.
template <typename OptionT, typename RecordT>
BatchKind WithCurve(BatchKind kind, const FileModule<OptionT, RecordT>& module,
                    Derive<OptionT, RecordT> columns, double RecordT::*x, double peakHeight) {
  kind.Curve = [&module, columns, x](const std::string& path, bool smooth) {
    return ReadCurve(module, columns, x, path, smooth);
  };
  kind.PeakHeight = peakHeight;
  return kind;
}

std::vector<DerivedColumn> Columns(std::vector<double> trans, std::vector<double> abs) {
  return {{"Trans", std::move(trans)}, {"Abs", std::move(abs)}};
}

/// Of an energy, its blank and the dark energy, given by `energies(record)`.
template <typename RecordT, typename Energies>
std::vector<DerivedColumn> Photometry(const std::vector<RecordT>& records, Energies energies) {
  std::vector<double> trans;
  std::vector<double> abs;
  for (const RecordT& record : records) {
    const auto [energy, full, dark] = energies(record);
    trans.push_back(TransFromEnergy(energy, full, dark));
    abs.push_back(AbsFromEnergy(energy, full, dark));
  }
  return Columns(std::move(trans), std::move(abs));
}

std::vector<DerivedColumn> DeriveBasic(const BasicOption&, const std::vector<BasicRecord>& records, bool) {
  return Photometry(records, [](const BasicRecord& record) {
    return std::array{record.SampleEnergy, record.ReferenceEnergy, record.DarkEnergy};
  });
}

std::vector<DerivedColumn> DeriveTimeScan(const TSOption& option, const std::vector<TSRecord>& records,
                                          bool) {
  return Photometry(records, [&option](const TSRecord& record) {
    return std::array{record.Energy, option.FullEnergy, option.DarkEnergy};
  });
}

std::vector<DerivedColumn> DeriveScan(const WLSOption&, const std::vector<WLSRecord>& records, bool smooth) {
  ScanValues values = DeriveScanValues(records, smooth);
  return Columns(std::move(values.Trans), std::move(values.Abs));
}

std::vector<DerivedColumn> StoredScan(const WLSOption&, const std::vector<WLS2Record>& records, bool) {
  std::vector<double> trans;
  std::vector<double> abs;
  for (const WLS2Record& record : records) {
    trans.push_back(record.Trans);
    abs.push_back(record.Abs);
  }
  return Columns(std::move(trans), std::move(abs));
}

const auto& Kinds() {
  static const std::array kinds = {
      MakeKind(BasicModule(), DeriveBasic),
      MakeKind(QuaModule()),
      WithCurve(MakeKind(TSModule(), DeriveTimeScan), TSModule(), DeriveTimeScan, &TSRecord::Time, 0.001),
      WithCurve(MakeKind(WLSModule(), DeriveScan), WLSModule(), DeriveScan, &WLSRecord::Wavelength, 0.001),
      WithCurve(MakeKind(WLS2Module()), WLS2Module(), StoredScan, &WLS2Record::Wavelength, 0.01),
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

const BatchKind& KindOfFile(const std::string& path) {
  std::int32_t fileType = 0;
  FileFault fault;
  if (!GetFileType(path, fileType, &fault)) throw Refusal(path, fault);
  const BatchKind* const kind = KindOfType(fileType);
  if (kind == nullptr) throw Refusal(path, "unknown file type " + std::to_string(fileType));
  return *kind;
}

}  // namespace spectrane
