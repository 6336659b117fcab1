#include "simulator/simulatorprogram.h"

#include <QCoreApplication>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "base/numbers.h"
#include "simulator/devicetransport.h"
#include "simulator/ptytransport.h"

namespace spectrane {
namespace {

std::unique_ptr<Transport> MakeTransport(const ProgramOptions& options) {
  if (!options.Device.empty())
    return std::make_unique<DeviceTransport>(QString::fromStdString(options.Device));
  return std::make_unique<PtyTransport>(QString::fromStdString(options.Link));
}

void Say(const std::string& text) {
  std::fputs(text.c_str(), stdout);
  std::fflush(stdout);
}

}  // namespace

SimulatorProgram::SimulatorProgram(const ProgramOptions& options)
    : options_(options),
      line_(options.Instrument),
      transport_(MakeTransport(options)),
      driver_(line_, clock_, *transport_, options.Paced, options.ReopenSeconds),
      console_(
          line_, clock_,
          {[this] { driver_.Unplug(); }, [this] { return driver_.Plug(); },
           [this] { return driver_.Plugged(); }, [this](const Deliveries& pieces) { driver_.Play(pieces); },
           [this](const std::string& text) {
             if (logging_) log_.Remark(clock_.NowMs(), text);
           }}),
      compartment_(line_, clock_, console_, [this] { return driver_.Plugged(); }),
      control_(console_) {
  line_.OnExchange = [this](const ExchangeRecord& record) {
    if (logging_) log_.Write(record);
    compartment_.NoteRequest(record);
  };
  connect(&driver_, &LineDriver::LineJoined, this, [this](const QString& name) {
    // Nobody may be reading any more: only what is new is told again.
    if (interactive_ || name != announced_) Say("ready " + name.toStdString() + "\n");
    announced_ = name;
    compartment_.NoteJoined(name.toStdString());
    if (logging_) log_.Remark(clock_.NowMs(), "line joined");
  });
  connect(&driver_, &LineDriver::LineBroken, this, [this] {
    if (interactive_) Say("broken\n");
    compartment_.NoteBroken();
    if (logging_) log_.Remark(clock_.NowMs(), "line broken");
  });
  connect(&control_, &ControlServer::QuitWanted, this, [] { QCoreApplication::quit(); });
  for (const auto& [cell, sample] : options.Cells) line_.Model().FillCell(cell, sample, 0);
}

std::optional<std::string> SimulatorProgram::Start() {
  if (auto wrong = LoadFaults()) return wrong;
  if (!options_.ControlPath.empty()) {
    QString reason;
    if (!control_.Listen(QString::fromStdString(options_.ControlPath), reason)) return reason.toStdString();
  }
  if (auto wrong = OpenLog()) return wrong;
  if (auto wrong = driver_.Plug()) return wrong;
  if (options_.FaultRate > 0.0) {
    const std::uint64_t seed = options_.FaultSeed.value_or(options_.Instrument.Seed);
    Say("fault seed " + std::to_string(seed) + " rate " + ShortestText(options_.FaultRate) + "\n");
  }
  interactive_ = options_.Prompt || StandardInput::IsTerminal();
  if (interactive_ || options_.UntilEof) StartPrompt();
  return std::nullopt;
}

std::optional<std::string> SimulatorProgram::LoadFaults() {
  if (!options_.FaultFile.empty()) {
    const std::filesystem::path path(reinterpret_cast<const char8_t*>(options_.FaultFile.c_str()));
    std::ifstream file(path, std::ios::binary);
    const std::string script{std::istreambuf_iterator<char>(file), {}};
    if (!file) return options_.FaultFile + ": cannot be read";
    if (auto wrong = line_.Faults().Load(script)) return options_.FaultFile + ": " + *wrong;
  }
  if (options_.FaultRate > 0.0) {
    line_.Faults().DrawAtRandom(options_.FaultSeed.value_or(options_.Instrument.Seed), options_.FaultRate);
  }
  return std::nullopt;
}

std::optional<std::string> SimulatorProgram::OpenLog() {
  if (options_.LogFile.empty()) return std::nullopt;
  if (!log_.Open(options_.LogFile)) return options_.LogFile + ": cannot be written";
  logging_ = true;
  return std::nullopt;
}

void SimulatorProgram::StartPrompt() {
  input_ = new StandardInput(this);
  connect(input_, &StandardInput::LineRead, this, [this](const QByteArray& line) { TakeLine(line); });
  connect(input_, &StandardInput::Ended, this, [this] {
    if (options_.UntilEof) QCoreApplication::quit();
  });
  if (interactive_) Say(line_.Model().Company + " stands ready; help lists the commands.\n> ");
}

void SimulatorProgram::TakeLine(const QByteArray& line) {
  const ConsoleAnswer answer = console_.Execute(line.toStdString());
  Say(answer.Text() + (interactive_ ? "> " : ""));
  if (answer.Quit) QCoreApplication::quit();
}

}  // namespace spectrane
