#include "cli/instrumentcommands.h"

#include <ostream>

#include <nlohmann/json.hpp>

#include "base/fixedtext.h"
#include "cli/instrumentsession.h"
#include "link/replybuffer.h"
#include "link/replylines.h"

namespace spectrane {
namespace {

using Json = nlohmann::ordered_json;

constexpr int kPortError = 1097;
constexpr int kCommunicationError = 1096;

int Refuse(std::ostream& err, const std::string& words) {
  err << words << '\n';
  return 1;
}

void Print(std::ostream& out, const Json& json) {
  out << json.dump(2) << '\n';
}

template <class Value>
Json ValueOrNull(bool known, const Value& value) {
  return known ? Json(value) : Json(nullptr);
}

Json DarkOf(const InstrumentState& state) {
  Json dark = Json::array();
  for (int gain = 1; gain <= state.GainCount; ++gain)
    dark.push_back(state.DarkEnergies[static_cast<std::size_t>(gain)]);
  return dark;
}

/// The data lines of a reply; what stands before the prompt without a line end is a line too.
Json LinesOf(const std::string& reply, const std::string& command) {
  Json lines = Json::array();
  ReplyLines cut(reply, command);
  while (const auto line = cut.Next()) lines.push_back(FromSingleByte(*line));
  std::string_view rest = cut.Rest();
  if (!rest.empty() && rest.back() == ReplyBuffer::kPrompt) rest.remove_suffix(1);
  if (!rest.empty()) lines.push_back(FromSingleByte(rest));
  return lines;
}

}  // namespace

int ProbeInstrument(const std::string& folder, std::ostream& out, std::ostream& err) {
  InstrumentSession session(folder);
  InstrumentLink& link = session.Link();
  if (!link.Connect.mmuOperationConnect()) return Refuse(err, session.FailureWords());
  const ConnectionReport report = link.Connect.Report();
  const Json json = {{"port", link.Instrument.GetPortID()},
                     {"company", FromSingleByte(link.Instrument.Company())},
                     {"wavelength", ValueOrNull(report.HasWavelength, link.State.CurrentWavelength)},
                     {"gain", ValueOrNull(report.HasReference, report.Gain)},
                     {"full_energy", ValueOrNull(report.HasReference, report.FullEnergy)},
                     {"dark", ValueOrNull(report.HasDark, DarkOf(link.State))},
                     {"start", link.State.WavelengthMin},
                     {"end", link.State.WavelengthMax},
                     {"sampler", report.SamplerKind}};
  link.Connect.ReleaseConnection();
  Print(out, json);
  return 0;
}

int SendToInstrument(const std::string& folder, const std::string& text, int timeoutSeconds,
                     std::ostream& out, std::ostream& err) {
  InstrumentSession session(folder);
  InstrumentLink& link = session.Link();
  if (!link.Instrument.FindInstrument()) {
    return Refuse(err, InstrumentSession::Words(kPortError, DescribeAttempts(link.Instrument.Attempts())));
  }
  const std::string command = ToSingleByte(text);
  std::string reply;
  const bool passed = link.Transport.Exchange(
      command, reply, timeoutSeconds > 0 ? timeoutSeconds : Interface::TimeoutFor(command));
  const ExchangeEnd end = link.Transport.LastEnd();
  link.Instrument.ReleaseInstrument();
  if (!passed) return Refuse(err, InstrumentSession::Words(kCommunicationError, DescribeEnd(end)));
  Print(out, {{"ok", true}, {"lines", LinesOf(reply, command)}});
  return 0;
}

}  // namespace spectrane
