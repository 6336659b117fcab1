#include "cli/instrumentcommands.h"

#include <algorithm>
#include <memory>

#include "base/fixedtext.h"
#include "base/textnumbers.h"
#include "cli/acquisitioncommands.h"
#include "cli/instrumentsession.h"
#include "cli/jsontext.h"
#include "cli/measurecommand.h"
#include "link/replybuffer.h"
#include "link/replylines.h"

namespace spectrane {
namespace {

constexpr int kPortError = 1097;
constexpr std::int32_t kLongestTimeout = 3600;

template <class Value>
Json ValueOrNull(bool known, const Value& value) {
  return known ? Json(value) : Json(nullptr);
}

Json DarkOf(const InstrumentState& state) {
  Json dark = Json::array();
  for (int gain = 1; gain <= state.GainCount; ++gain) {
    dark.push_back(state.DarkEnergies[static_cast<std::size_t>(gain)]);
  }
  return dark;
}

void Probe(BatchContext& run) {
  InstrumentSession session;
  InstrumentLink& link = session.Link();
  if (!link.Connect.mmuOperationConnect()) throw Refusal(session.FailureWords());
  const ConnectionReport report = link.Connect.Report();
  run.Result = JsonText({{"port", link.Instrument.GetPortID()},
                         {"company", FromSingleByte(link.Instrument.Company())},
                         {"wavelength", ValueOrNull(report.HasWavelength, link.State.CurrentWavelength)},
                         {"gain", ValueOrNull(report.HasReference, report.Gain)},
                         {"full_energy", ValueOrNull(report.HasReference, report.FullEnergy)},
                         {"dark", ValueOrNull(report.HasDark, DarkOf(link.State))},
                         {"start", link.State.WavelengthMin},
                         {"end", link.State.WavelengthMax},
                         {"sampler", report.SamplerKind}});
  link.Connect.ReleaseConnection();
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

struct SendArguments {
  std::string Text;
  std::int32_t TimeoutSeconds = 0;
};

void Send(const SendArguments& arguments, BatchContext& run) {
  InstrumentSession session;
  InstrumentLink& link = session.Link();
  if (!link.Instrument.FindInstrument()) {
    throw Refusal(InstrumentSession::Words(kPortError, DescribeAttempts(link.Instrument.Attempts())));
  }
  const std::string command = ToSingleByte(arguments.Text);
  const int timeout =
      arguments.TimeoutSeconds > 0 ? arguments.TimeoutSeconds : Interface::TimeoutFor(command);
  std::string reply;
  const bool passed = link.Transport.Exchange(command, reply, timeout);
  const ExchangeEnd end = link.Transport.LastEnd();
  link.Instrument.ReleaseInstrument();
  if (!passed) throw Refusal(InstrumentSession::Words(kCommunicationError, DescribeEnd(end)));
  run.Result = JsonText({{"ok", true}, {"lines", LinesOf(reply, command)}});
}

/// A control character would make two commands of one.
std::string CheckOneLine(const std::string& text) {
  const bool control = std::any_of(text.begin(), text.end(), [](char c) { return c >= 0 && c < 0x20; });
  return control ? "the text is not one line" : "";
}

void AddSend(CLI::App* group, BatchContext& context) {
  const auto arguments = std::make_shared<SendArguments>();
  CLI::App* const command = group->add_subcommand("send", "One exchange with the instrument");
  AddText(command, "TEXT", arguments->Text, "The command text, as it goes over the line")
      ->required()
      ->check(CheckOneLine);
  AddLong(command, "--timeout", arguments->TimeoutSeconds, "Seconds to wait (the command's own time-out)")
      ->check([](const std::string& text) { return CheckWhole(text, 1, kLongestTimeout); });
  RunsAs(command, context, [arguments](BatchContext& run) { Send(*arguments, run); });
}

void AddMeasure(CLI::App* group, BatchContext& context) {
  const auto order = std::make_shared<MeasureOrder>();
  CLI::App* const command = group->add_subcommand("measure", "Blank and samples into a photometry file");
  AddNumber(command, "--wavelength", order->Wavelength, "Test wavelength in nm")->required();
  AddLong(command, "--count", order->Count, "How many samples")
      ->required()
      ->check([](const std::string& text) { return CheckWhole(text, 1, kMostMeasurements); });
  AddText(command, "--out", order->Out, "The .bas file to write")->required()->check(CheckPath);
  command->add_flag("--yes", order->Yes, "No waiting for Enter before the blank and the samples");
  command->add_flag("--force", order->Force, "Replace an existing file");
  RunsAs(command, context, [order](BatchContext& run) { Measure(*order, run); });
}

}  // namespace

void AddInstrumentCommands(CLI::App& root, BatchContext& context) {
  CLI::App* const group = root.add_subcommand("instrument", "The instrument on its serial line");
  group->require_subcommand(1);
  CLI::App* const probe = group->add_subcommand("probe", "Connect, tell what was learned, release");
  RunsAs(probe, context, Probe);
  AddSend(group, context);
  AddMeasure(group, context);
  AddAcquisitionCommands(group, context);
}

}  // namespace spectrane
