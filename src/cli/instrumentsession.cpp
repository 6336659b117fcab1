#include "cli/instrumentsession.h"

#include "base/brand.h"
#include "base/language.h"
#include "base/windowsettings.h"

namespace spectrane {
namespace {

constexpr int kCommunicationError = 1096;
constexpr const char* kIncomplete = "the answer is incomplete";

}  // namespace

InstrumentSession::InstrumentSession(const std::string& folder)
    : turn_(MakeNamedExclusion("ex_sim_sci")), settings_(folder) {
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
