#include "cli/instrumentsession.h"

#include <clocale>
#include <QCoreApplication>
#include <QLocale>

#include "base/applicationfolder.h"
#include "base/brand.h"
#include "base/language.h"
#include "base/textnumbers.h"
#include "base/windowsettings.h"

namespace spectrane {
namespace {

constexpr const char* kIncomplete = "the answer is incomplete";

/// Serial ports need an application object. The locale it would set stays out of the process, and its remarks
/// on the environment stay out of the one line that a refusal prints.
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

InstrumentSession::InstrumentSession()
    : application_(MakeApplication()),
      turn_(MakeNamedExclusion("ex_sim_sci")),
      settings_(ApplicationFolder(QCoreApplication::applicationDirPath().toStdString())) {
  link_ = std::make_unique<InstrumentLink>(
      LinkSurroundings{ports_, time_, loop_, *turn_, settings_, *this, *this, BuildBrand()});
  // Read only: a batch command leaves the defaults of the windows to the windows.
  WindowSettings stored;
  for (const auto& row : WindowSettingRows()) {
    const std::string text = settings_.GetSetting(row.Section, row.Key);
    if (!text.empty()) TakeSetting(row, text, stored);
  }
  link_->Apply(stored);
}

InstrumentSession::~InstrumentSession() = default;

void InstrumentSession::Show(int textId, const std::string& details) {
  messageId_ = textId;
  messageDetails_ = details;
}

std::string InstrumentSession::FailureWords() const {
  const ReplyQuality& last = link_->Instrument.LastReply();
  std::string cause = messageDetails_;
  if (cause.empty()) cause = last.End == ExchangeEnd::Passed ? kIncomplete : DescribeEnd(last.End);
  return Words(messageId_ != 0 ? messageId_ : kCommunicationError, cause);
}

std::string InstrumentSession::Words(int textId, const std::string& details) {
  std::string words = Text(textId);
  if (details.empty()) return words;
  words += " (";
  for (const char c : details) {
    if (c == '\n') {
      words += "; ";
    } else {
      words += c;
    }
  }
  return words + ")";
}

}  // namespace spectrane
