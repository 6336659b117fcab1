#include "fuzz/checks/targets.h"

#include "files/basicfile.h"
#include "files/bslfile.h"
#include "files/dnafile.h"
#include "files/multifile.h"
#include "files/quafile.h"
#include "files/tsfile.h"
#include "files/wlsfile.h"
#include "files/wlsfile2.h"
#include "fuzz/checks/filecheck.h"

namespace spectrane::fuzz {
namespace {

std::string CheckTypeOfInput(Bytes file) {
  static InputFile input;
  input.Hold(file);
  return CheckFileType(input.Path(), file);
}

/// `kModule` gives the module of the kind with the number `kFileType`.
template <const auto& kModule, std::int32_t kFileType>
std::string CheckKind(Bytes file) {
  static FileCheck check(TableOf(kFileType), kModule());
  return check.Run(file);
}

template <typename OptionT, typename RecordT>
Reload LoadAndSaveWith(const FileModule<OptionT, RecordT>& module, Bytes file, const std::string& path) {
  InputFile input;
  input.Hold(file);
  OptionT option;
  std::vector<RecordT> records;
  Reload reload;
  reload.Fault = LoadDataFile(module, input.Path(), option, records);
  reload.Records = records.size();
  reload.SaveFault =
      SaveDataFile(module, path, option, static_cast<std::int32_t>(records.size()),
                   [&](std::int32_t i) -> const RecordT& { return records[static_cast<std::size_t>(i)]; });
  return reload;
}

template <const auto& kModule>
Reload LoadAndSaveKind(Bytes file, const std::string& path) {
  return LoadAndSaveWith(kModule(), file, path);
}

template <const auto& kModule, std::int32_t kFileType>
Target KindTarget() {
  const FileTable& table = TableOf(kFileType);
  return {table.Name, &table, &CheckKind<kModule, kFileType>, &LoadAndSaveKind<kModule>};
}

}  // namespace

std::span<const Target> Targets() {
  static const Target targets[] = {
      {"filetype", nullptr, &CheckTypeOfInput, nullptr},
      KindTarget<QuaModule, 1>(),
      KindTarget<TSModule, 2>(),
      KindTarget<WLSModule, 3>(),
      KindTarget<MultiModule, 4>(),
      KindTarget<DNAModule, 5>(),
      KindTarget<BSLModule, 6>(),
      KindTarget<BasicModule, 11>(),
      KindTarget<WLS2Module, 12>(),
  };
  return targets;
}

const Target* TargetNamed(const std::string& name) {
  for (const Target& target : Targets()) {
    if (name == target.Name) return &target;
  }
  return nullptr;
}

}  // namespace spectrane::fuzz
