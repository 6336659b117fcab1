#include "cli/outputs.h"

#include <filesystem>
#include <system_error>

#include "base/language.h"
#include "base/utf8path.h"
#include "cli/command.h"
#include "cli/operator.h"
#include "cli/storedsettings.h"

namespace spectrane {
namespace {

constexpr int kMeasuredSaveError = 1213;

/// `path`, or where a file has come to stand there and must stay, the first free name beside it.
std::string FreeName(const std::string& path, bool force) {
  std::error_code error;
  const auto taken = [&error](const std::filesystem::path& name) {
    return std::filesystem::exists(std::filesystem::symlink_status(name, error));
  };
  const std::filesystem::path wanted = PathFromUtf8(path);
  if (force || !taken(wanted)) return path;
  std::filesystem::path free = wanted;
  for (int n = 2; taken(free); ++n) {
    free.replace_filename(wanted.stem() += std::filesystem::path("-" + std::to_string(n)) +=
                          wanted.extension());
  }
  return Utf8FromPath(free);
}

}  // namespace

void RefuseTakenOutput(const std::string& path, bool force, const std::vector<std::string>& inputs) {
  std::error_code code;
  if (!std::filesystem::exists(std::filesystem::symlink_status(PathFromUtf8(path), code))) return;
  if (!force) throw Refusal(path, "exists already; --force replaces it");
  for (const std::string& input : inputs) {
    if (SameFile(path, input)) throw Refusal(path, "is the file that the command reads");
  }
  if (SameFile(path, StoredSettings().File().Path()))
    throw Refusal(path, "holds the settings of the program");
}

void RefuseUnwritable(const std::string& path, bool force, std::uintmax_t bytes) {
  RefuseTakenOutput(path, force);
  std::error_code error;
  const std::filesystem::path target = PathFromUtf8(path);
  const auto kind = std::filesystem::status(target, error).type();
  if (kind != std::filesystem::file_type::not_found && kind != std::filesystem::file_type::regular) {
    throw Refusal(path, "not a regular file");
  }
  const std::filesystem::path folder = target.has_parent_path() ? target.parent_path() : ".";
  if (!std::filesystem::is_directory(folder, error)) throw Refusal(path, "its folder does not exist");
  if (!Operator::MayWrite(Utf8FromPath(folder))) throw Refusal(path, "its folder cannot be written to");
  const std::filesystem::space_info room = std::filesystem::space(folder, error);
  if (!error && room.available < bytes) throw Refusal(path, "its disk is full");
}

MeasuredOutput SaveMeasured(const std::string& path, bool force,
                            const std::function<FileFault(const std::string& path)>& save) {
  const std::string beside = FreeName(path, force);
  const FileFault fault = save(beside);
  if (!fault) return {beside, beside == path ? "" : path + " was made by somebody else during the run."};
  const std::string words = Text(kMeasuredSaveError) + " (" + FaultWords(fault) + ")";
  std::error_code error;
  const std::filesystem::path folder = std::filesystem::temp_directory_path(error);
  if (!error) {
    const std::string elsewhere = FreeName(Utf8FromPath(folder / PathFromUtf8(path).filename()), false);
    if (!save(elsewhere)) return {elsewhere, path + ": " + words};
  }
  throw Refusal(path, words);
}

}  // namespace spectrane
