#include "app/desktop/filetypes.h"

#include "app/desktop/desktopfiles.h"

#ifdef _WIN32
#include "base/windowsheader.h"
// After windows.h.
#include <shlobj.h>

#include <QSettings>
#else
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <optional>
#include <QCoreApplication>
#include <QProcess>
#include <QStandardPaths>
#include <sstream>
#include <string_view>

#include "base/applicationfolder.h"
#include "base/environment.h"
#include "base/filereplacement.h"
#include "base/utf8path.h"
#endif

namespace spectrane {
namespace {

#ifndef _WIN32

namespace fs = std::filesystem;

/// The folder of the user's own data, without a slash at its end; nothing for a user who has none.
std::optional<std::string> UserDataFolder() {
  std::optional<std::string> data = EnvironmentText("XDG_DATA_HOME");
  if (data && data->front() == '/') return data;
  const std::optional<std::string> home = EnvironmentText("HOME");
  if (home && home->front() == '/') return *home + "/.local/share";
  return std::nullopt;
}

std::string EntryBelow(const std::string& dataFolder) {
  return dataFolder + "/applications/" + kDesktopId + ".desktop";
}

/// The package that brought the program has told the desktops of all users.
bool IsKnownToAll(const std::string& programPath) {
  const fs::path own = PathFromUtf8(programPath).parent_path() / "../share";
  std::error_code fault;
  if (!fs::is_regular_file(PathFromUtf8(EntryBelow(Utf8FromPath(own))), fault)) return false;
  std::istringstream folders(EnvironmentText("XDG_DATA_DIRS").value_or("/usr/local/share:/usr/share"));
  for (std::string folder; std::getline(folders, folder, ':');) {
    if (folder.starts_with('/') && fs::equivalent(PathFromUtf8(folder), own, fault)) return true;
  }
  return false;
}

/// `path` is a plain file with exactly this content. Few system calls: every start asks this of every file.
bool FileHolds(const std::string& path, std::string_view bytes) {
  // Opening a pipe would otherwise wait for its other end.
  const int file = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  if (file < 0) return false;
  struct stat status {};
  bool same = ::fstat(file, &status) == 0 && S_ISREG(status.st_mode) &&
              static_cast<std::size_t>(status.st_size) == bytes.size();
  std::array<char, 32768> held;
  for (std::size_t at = 0; same && at < bytes.size();) {
    const ssize_t count = ::read(file, held.data(), std::min(held.size(), bytes.size() - at));
    const auto length = static_cast<std::size_t>(std::max<ssize_t>(count, 0));
    same = count > 0 && bytes.substr(at, length) == std::string_view(held.data(), length);
    at += length;
  }
  ::close(file);
  return same;
}

/// True when the file had another content, and has this one now.
bool PutFile(const std::string& path, std::string_view bytes) {
  if (bytes.empty() || FileHolds(path, bytes)) return false;
  return EnsureFolder(Utf8FromPath(PathFromUtf8(path).parent_path())) && ReplaceFileContent(path, bytes);
}

/// A file made from `source` is missing or older: the tool that makes it was not there the last time, or was
/// interrupted.
bool Outdated(const std::string& made, const std::string& source) {
  std::error_code fault;
  const auto sourceTime = fs::last_write_time(PathFromUtf8(source), fault);
  if (fault) return false;
  const auto madeTime = fs::last_write_time(PathFromUtf8(made), fault);
  return fault || madeTime < sourceTime;
}

void StartTool(const QString& name, const std::string& folder) {
  const QString program = QStandardPaths::findExecutable(name);
  if (program.isEmpty()) return;
  QProcess tool;
  tool.setProgram(program);
  tool.setArguments({QString::fromStdString(folder)});
  tool.setStandardInputFile(QProcess::nullDevice());
  tool.setStandardOutputFile(QProcess::nullDevice());
  tool.setStandardErrorFile(QProcess::nullDevice());
  tool.startDetached();
}

void PutIcons(const std::string& dataFolder, const std::vector<DesktopIcon>& icons) {
  const std::string theme = dataFolder + "/icons/hicolor";
  bool changed = false;
  for (const DesktopIcon& icon : icons) {
    const std::string place = ThemePath(icon);
    if (!place.empty()) changed = PutFile(theme + "/" + place, icon.Bytes) || changed;
  }
  // Running programs look at the age of the theme's own folder to see that something below it is new.
  std::error_code fault;
  if (changed) fs::last_write_time(PathFromUtf8(theme), fs::file_time_type::clock::now(), fault);
}

#endif

}  // namespace

#ifdef _WIN32

void RegisterFileTypes(const QString& programPath, const std::vector<DesktopIcon>&) {
  QSettings classes(QStringLiteral("HKEY_CURRENT_USER\\Software\\Classes"), QSettings::NativeFormat);
  if (WriteRegistryValues(classes, RegistryValues(programPath)))
    SHChangeNotify(SHCNE_ASSOCCHANGED, SHCNF_IDLIST, nullptr, nullptr);
}

#else

void RegisterFileTypes(const QString& programPath, const std::vector<DesktopIcon>& icons) {
  const std::optional<std::string> data = UserDataFolder();
  if (!data) return;
  const std::string entry = EntryBelow(*data);
  // One that the user has already goes before that of the system, and has to name this program.
  std::error_code fault;
  if (IsKnownToAll(programPath.toStdString()) && !fs::exists(PathFromUtf8(entry), fault)) return;
  PutIcons(*data, icons);

  const std::string mimeFolder = *data + "/mime";
  const std::string package = mimeFolder + "/packages/" + kDesktopId + ".xml";
  if (PutFile(package, MimePackage()) || Outdated(mimeFolder + "/mime.cache", package))
    StartTool(QStringLiteral("update-mime-database"), mimeFolder);

  const std::string entries = *data + "/applications";
  const std::string windowClass = QCoreApplication::applicationName().toStdString();
  if (PutFile(entry, DesktopEntry(programPath.toStdString(), windowClass)) ||
      Outdated(entries + "/mimeinfo.cache", entry))
    StartTool(QStringLiteral("update-desktop-database"), entries);
}

#endif

}  // namespace spectrane
