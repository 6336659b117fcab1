#include "fuzz/checks/cli/packcheck.h"

#include <filesystem>
#include <fstream>
#include <optional>
#include <random>

#include "base/utf8path.h"
#include "cli/command.h"
#include "cli/filekinds.h"
#include "cli/jsonblock.h"
#include "cli/packdocument.h"

namespace spectrane::fuzz {
namespace {

namespace fs = std::filesystem;

/// A folder for what is packed.
class PackFolder {
 public:
  PackFolder()
      : path_(fs::temp_directory_path() / ("spectrane-pack-" + std::to_string(std::random_device{}()))) {
    fs::create_directories(path_);
  }
  ~PackFolder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
  }
  PackFolder(const PackFolder&) = delete;
  PackFolder& operator=(const PackFolder&) = delete;

  std::string Path(const char* name) const { return Utf8FromPath(path_ / name); }
  bool Empty() const { return fs::is_empty(path_); }
  std::string Bytes(const char* name) const {
    std::ifstream file(path_ / name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  }
  void Remove(const char* name) const { fs::remove(path_ / name); }

 private:
  fs::path path_;
};

/// Nothing when the document is refused in the one way there is.
std::optional<PackedFile> Packed(const std::string& text, const std::string& path) {
  try {
    return PackDocument(text, path);
  } catch (const BadJson&) {
  }
  return std::nullopt;
}

/// Nothing when the file is refused.
std::optional<std::string> Dumped(const PackedFile& packed, const std::string& path) {
  try {
    // Smoothing derives values and has none to give back.
    return packed.Kind->Dump(path, false);
  } catch (const Refusal&) {
  }
  return std::nullopt;
}

/// What the document says and the file has to say too: the value of each member that both have.
std::string CheckSaid(const JsonInput& document, const JsonInput& dumped) {
  if (document.at("kind") != dumped.at("kind")) return "another kind";
  const auto data = document.find("data");
  if ((data == document.end() ? 0 : data->size()) != dumped.at("data").size())
    return "another number of records";
  const auto option = document.find("option");
  if (option == document.end()) return {};
  for (const auto& [name, value] : option->items()) {
    const auto told = dumped.at("option").find(name);
    // The number of records is the file's own, of a baseline by its range; a number of another form (1e0 for
    // 1) is compared as a number.
    if (told == dumped.at("option").end() || !value.is_number() || name == "EndWavelength" ||
        name.find("Count") != std::string::npos)
      continue;
    if (told->is_number() && told->get<double>() != value.get<double>() &&
        name.find("Count") == std::string::npos)
      return "another " + name;
  }
  return {};
}

}  // namespace

std::string CheckPack(Bytes input) {
  static const PackFolder folder;
  const std::string text(reinterpret_cast<const char*>(input.data()), input.size());
  const std::string path = folder.Path("first");
  const auto packed = Packed(text, path);
  if (!packed) return folder.Empty() ? "" : "a refused document left a file behind";
  const auto dump = Dumped(*packed, path);
  if (!dump) {
    folder.Remove("first");
    // A baseline states its records by its range, which has one at least.
    return packed->Records == 0 && packed->Kind->Kind->FileType == 6 ? "" : "dump refuses what was packed";
  }
  const JsonInput dumped = JsonInput::parse(*dump);
  std::string wrong = CheckSaid(JsonInput::parse(text), dumped);
  const auto again = Packed(*dump, folder.Path("second"));
  if (wrong.empty() && !again) wrong = "what dump printed is refused";
  if (wrong.empty() && again->Records != packed->Records) wrong = "another number of records the second time";
  // An infinity has no number in JSON: it comes back as one that is none.
  if (wrong.empty() && Dumped(*packed, folder.Path("second")) != dump) wrong = "dumps another document";
  if (wrong.empty() && folder.Bytes("first") != folder.Bytes("second")) wrong = "packs another file";
  folder.Remove("first");
  folder.Remove("second");
  return wrong;
}

}  // namespace spectrane::fuzz
