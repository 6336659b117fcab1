#pragma once

#include <optional>
#include <QString>

namespace spectrane {

/// Where the copies of the program that one user runs in one session find each other.
struct HandoverPlace {
  /// Name of the local socket, as QLocalServer and QLocalSocket take it.
  QString SocketName;
  /// File by which one copy at a time owns that name.
  QString LockPath;
};

/// Creates the user's own folder for it where it is missing: below XDG_RUNTIME_DIR, or else below the folder
/// for temporary files. Nothing when there is no folder that is certain to be this user's alone.
std::optional<HandoverPlace> FindHandoverPlace();

}  // namespace spectrane
