#include "cli/instrumentsession.h"

#include "base/brand.h"
#include "base/language.h"
#include "base/textnumbers.h"

namespace spectrane {
namespace {

constexpr const char* kIncomplete = "the answer is incomplete";
constexpr const char* kRestarted = "the instrument has restarted";

}  // namespace

InstrumentSession::InstrumentSession() : turn_(MakeNamedExclusion("ex_sim_sci")) {
  link_ = std::make_unique<InstrumentLink>(
      LinkSurroundings{ports_, time_, loop_, *turn_, stored_.File(), *this, *this, BuildBrand()});
  link_->Apply(stored_.StartSettings());
}

InstrumentSession::~InstrumentSession() = default;

void InstrumentSession::Show(int textId, const std::string& details) {
  messageId_ = textId;
  messageDetails_ = details;
}

std::string InstrumentSession::FailureWords() const {
  const ReplyQuality& last = link_->Instrument.LastReply();
  std::string cause = messageDetails_;
  // Commands after the one at which it was heard may have passed.
  const bool restarted = last.Restarted || (last.Complete() && link_->State.RestartCount > 0);
  if (cause.empty() && restarted) cause = kRestarted;
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
