#include "app/desktop/handoverplace.h"

#include <QCryptographicHash>

#ifdef _WIN32
#include "base/windowsheader.h"

#include <QDir>
#else
#include <sys/stat.h>
#include <unistd.h>
#endif

#include <string>

#include "base/environment.h"

namespace spectrane {
namespace {

/// Short and free of characters with a meaning in file names.
QString ShortName(const std::string& text) {
  constexpr qsizetype kLetters = 12;
  const QByteArray hash =
      QCryptographicHash::hash(QByteArray::fromStdString(text), QCryptographicHash::Sha256).toHex();
  return QString::fromLatin1(hash.first(kLetters));
}

#ifndef _WIN32

/// The folder itself (no link to one) belongs to this user, and nobody else has any right in it.
bool IsOwnAndPrivate(const std::string& folder) {
  struct stat status {};
  return ::lstat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == ::geteuid() &&
         (status.st_mode & (S_IRWXG | S_IRWXO)) == 0;
}

bool MakePrivate(const std::string& folder) {
  // An existing one is looked at just like a new one.
  static_cast<void>(::mkdir(folder.c_str(), S_IRWXU));
  return IsOwnAndPrivate(folder);
}

std::optional<std::string> PrivateFolder() {
  if (const auto runtime = EnvironmentText("XDG_RUNTIME_DIR"); runtime && IsOwnAndPrivate(*runtime)) {
    const std::string folder = *runtime + "/spectrane";
    if (runtime->front() == '/' && MakePrivate(folder)) return folder;
  }
  const auto temporary = EnvironmentText("TMPDIR");
  const std::string base = temporary && temporary->front() == '/' ? *temporary : "/tmp";
  const std::string folder = base + "/spectrane-" + std::to_string(::geteuid());
  if (MakePrivate(folder)) return folder;
  return std::nullopt;
}

/// The screen that the user sits at: a file handed to a copy on another one would open out of sight.
std::string SessionText() {
  if (const auto display = EnvironmentText("WAYLAND_DISPLAY")) return *display;
  return EnvironmentText("DISPLAY").value_or("");
}

#endif

}  // namespace

#ifdef _WIN32

std::optional<HandoverPlace> FindHandoverPlace() {
  DWORD session = 0;
  ProcessIdToSessionId(GetCurrentProcessId(), &session);
  // One name for the whole machine; the folder for temporary files is each user's own.
  const QString temporary = QDir::tempPath();
  const QString name =
      QStringLiteral("spectrane-%1-%2").arg(ShortName(temporary.toStdString()), QString::number(session));
  return HandoverPlace{name, temporary + u'/' + name + QStringLiteral(".lock")};
}

#else

std::optional<HandoverPlace> FindHandoverPlace() {
  const auto folder = PrivateFolder();
  if (!folder) return std::nullopt;
  const QString path = QString::fromStdString(*folder) + u'/' + ShortName(SessionText());
  return HandoverPlace{path, path + QStringLiteral(".lock")};
}

#endif

}  // namespace spectrane
