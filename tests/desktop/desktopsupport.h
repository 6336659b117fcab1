#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <functional>
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QProcess>
#include <QStandardPaths>
#include <QString>
#include <QStringList>
#include <string>
#include <system_error>

#include "base/basesupport.h"

namespace spectrane {

inline QString Q(const std::string& text) {
  return QString::fromStdString(text);
}

/// An empty folder for this user alone, with a name short enough for sockets.
class ShortFolder {
 public:
  ShortFolder() : path_(testing::TempDir() + "spXXXXXX") {
    if (::mkdtemp(path_.data()) == nullptr) ADD_FAILURE() << "no folder " << path_;
  }
  ~ShortFolder() {
    std::error_code fault;
    std::filesystem::remove_all(path_, fault);
  }
  ShortFolder(const ShortFolder&) = delete;
  ShortFolder& operator=(const ShortFolder&) = delete;

  const std::string& Path() const { return path_; }

 private:
  std::string path_;
};

/// Runs the event loop until `done`; false after `timeoutMs`.
inline bool WaitFor(const std::function<bool()>& done, int timeoutMs = 5000) {
  const QDeadlineTimer deadline(timeoutMs);
  while (!done()) {
    if (deadline.hasExpired()) return false;
    QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 10);
  }
  return true;
}

struct ToolResult {
  int ExitCode = -1;
  std::string Output;
};

/// Runs a program to its end; output and errors together.
inline ToolResult RunTool(const QString& program, const QStringList& arguments) {
  QProcess tool;
  tool.setProcessChannelMode(QProcess::MergedChannels);
  tool.start(program, arguments);
  if (!tool.waitForFinished(20000)) return {};
  return {tool.exitCode(), tool.readAll().toStdString()};
}

inline bool HasTool(const char* name) {
  return !QStandardPaths::findExecutable(QString::fromUtf8(name)).isEmpty();
}

}  // namespace spectrane
