#include "base/applicationfolder.h"

#include <optional>
#include <system_error>

#include "base/environment.h"
#include "base/utf8path.h"

#ifdef _WIN32
#include "base/windowsheader.h"
#else
#include <pwd.h>
#include <unistd.h>
#endif

namespace spectrane {
namespace {

namespace fs = std::filesystem;

bool HasSettings(const fs::path& folder) {
  std::error_code fault;
  return fs::exists(folder / "config.ini", fault);
}

#ifdef _WIN32

/// A folder that takes a file: rights and shares are too varied to be computed.
bool CanBeWritten(const fs::path& folder) {
  const fs::path probe = folder / (".spectrane-" + std::to_string(GetCurrentProcessId()) + ".tmp");
  HANDLE file = CreateFileW(probe.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                            FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  CloseHandle(file);
  return true;
}

std::optional<fs::path> ConfigurationFolder() {
  const std::optional<std::string> base = EnvironmentText("APPDATA");
  if (!base) return std::nullopt;
  return PathFromUtf8(*base) / "Spectrane";
}

/// True where an installer put the program: no place for settings, not even for somebody who could write
/// there. Whoever unpacked the program keeps them beside it.
bool IsInstalled(const fs::path& folder) {
  std::error_code fault;
  return fs::exists(folder / "uninstall.exe", fault);
}

#else

bool CanBeWritten(const fs::path& folder) {
  return ::access(folder.c_str(), W_OK | X_OK) == 0;
}

/// Where relative paths are written into the variables they count as unset.
std::optional<fs::path> AbsolutePathIn(const char* variable) {
  const std::optional<std::string> text = EnvironmentText(variable);
  if (!text || !PathFromUtf8(*text).is_absolute()) return std::nullopt;
  return PathFromUtf8(*text);
}

std::optional<fs::path> ConfigurationFolder() {
  if (const auto base = AbsolutePathIn("XDG_CONFIG_HOME")) return *base / "spectrane";
  if (const auto home = AbsolutePathIn("HOME")) return *home / ".config" / "spectrane";
  const passwd* const user = ::getpwuid(::getuid());
  if (user == nullptr || user->pw_dir == nullptr || *user->pw_dir != '/') return std::nullopt;
  return fs::path(user->pw_dir) / ".config" / "spectrane";
}

/// True for the folder of programs of an installed tree, shared with other programs: no place for settings,
/// not even for somebody who could write there.
bool IsInstalled(const fs::path& folder) {
  std::error_code fault;
  return fs::exists(folder.parent_path() / "share" / "applications" / (std::string(kDesktopId) + ".desktop"),
                    fault);
}

#endif

fs::path Choose(const fs::path& executableFolder) {
  if (const auto named = EnvironmentText("SPECTRANE_HOME")) return PathFromUtf8(*named);
  if (HasSettings(executableFolder)) return executableFolder;
  if (CanBeWritten(executableFolder) && !IsInstalled(executableFolder)) return executableFolder;
  return ConfigurationFolder().value_or(executableFolder);
}

}  // namespace

std::string ApplicationFolder(const std::string& executableFolder) {
  std::error_code fault;
  const fs::path chosen = Choose(PathFromUtf8(executableFolder));
  const fs::path whole = fs::absolute(chosen, fault);
  std::string folder = Utf8FromPath(fault ? chosen : whole);
  EnsureFolder(folder);
  return folder;
}

bool EnsureFolder(const std::string& folder) {
  if (folder.empty() || folder.find('\0') != std::string::npos) return false;
  std::error_code fault;
  const fs::path path = PathFromUtf8(folder);
  fs::create_directories(path, fault);
  return fs::is_directory(path, fault);
}

}  // namespace spectrane
