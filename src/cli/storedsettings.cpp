#include "cli/storedsettings.h"

#include <clocale>
#include <QCoreApplication>
#include <QLocale>

#include "base/applicationfolder.h"

namespace spectrane {
namespace {

/// The locale that an application object would set stays out of the process, and its remarks on the
/// environment stay out of the one line that a refusal prints.
std::unique_ptr<QCoreApplication> MakeApplication() {
  if (QCoreApplication::instance()) return nullptr;
  static int count = 1;
  static char name[] = "spectrane-cli";
  static char* arguments[] = {name, nullptr};
  qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
  auto application = std::make_unique<QCoreApplication>(count, arguments);
  std::setlocale(LC_ALL, "C");
  QLocale::setDefault(QLocale::c());
  return application;
}

}  // namespace

StoredSettings::StoredSettings()
    : application_(MakeApplication()),
      file_(ApplicationFolder(QCoreApplication::applicationDirPath().toStdString())) {}

StoredSettings::~StoredSettings() = default;

WindowSettings StoredSettings::StartSettings() {
  WindowSettings stored;
  for (const auto& row : WindowSettingRows()) {
    const std::string text = file_.GetSetting(row.Section, row.Key);
    if (!text.empty()) TakeSetting(row, text, stored);
  }
  return stored;
}

}  // namespace spectrane
