#include <CLI/CLI.hpp>
#include <QApplication>
#include <QLocale>

#include <clocale>
#include <cstdio>
#include <memory>

#include "base/numbers.h"
#include "link/shutdownsignals.h"
#include "simulator/face/compartmentwindow.h"
#include "simulator/simulatorprogram.h"

namespace {

using namespace spectrane;

const char* const Description =
    "A simulated spectrophotometer on a pseudo-terminal or a serial device. The first line printed is "
    "\"ready PATH\"; a\n"
    "program opens PATH like a serial port.";

std::string CheckSample(const std::string& name) {
  return FindSample(name) != nullptr ? std::string() : "unknown sample: " + name;
}

/// "190-1100" into the two ends; the result says what is wrong.
std::string ReadRange(const std::string& text, InstrumentOptions& instrument) {
  const std::size_t dash = text.find('-', 1);
  const auto start = ParseNumber(text.substr(0, dash));
  const auto end = dash == std::string::npos ? std::nullopt : ParseNumber(text.substr(dash + 1));
  if (!start || !end || *start < 100.0 || *end > 3000.0 || *start >= *end) {
    return "expected START-END in nm, start below end: " + text;
  }
  instrument.StartNm = *start;
  instrument.EndNm = *end;
  return {};
}

/// "3=dye-2" into a cell and its sample.
std::string ReadCell(const std::string& text, ProgramOptions& options) {
  const std::size_t equals = text.find('=');
  if (equals != 1 || text[0] < '1' || text[0] > '8') return "expected N=SAMPLE with N from 1 to 8: " + text;
  const std::string name = text.substr(2);
  options.Cells.emplace_back(text[0] - '0', name);
  return CheckSample(name);
}

void AddInstrumentOptions(CLI::App& app, ProgramOptions& options, std::string& range,
                          std::vector<std::string>& cells) {
  InstrumentOptions& instrument = options.Instrument;
  app.add_flag("--instant", instrument.Instant, "Commands take no time");
  app.add_option("--speed", instrument.Speed, "Factor on the speed of every command")
      ->check(CLI::Range(0.001, 1e6));
  app.add_option("--seed", instrument.Seed, "Seed of the noise (1)");
  app.add_option("--gains", instrument.Gains, "Number of gain steps, 8 or 11 (8)")
      ->check(CLI::IsMember({8, 11}));
  app.add_option("--range", range, "Wavelength range in nm (190-1100)");
  app.add_flag("--sampler", instrument.Sampler, "The eight-cell sampler is fitted");
  app.add_option("--beam", instrument.Beam, "Sample in the beam (blank; with the sampler: in cell 1)")
      ->check(CheckSample);
  app.add_option("--cell", cells, "Fills a cell of the sampler, N=SAMPLE; may be repeated");
  app.add_option("--noise", instrument.Noise, "Factor on the noise; 0 gives exact readings (1)")
      ->check(CLI::Range(0.0, 1e6));
  app.add_option("--company", instrument.Company, "Text of the company reply (Simulated instrument)");
}

void AddLineOptions(CLI::App& app, ProgramOptions& options) {
  auto* link =
      app.add_option("--link", options.Link, "Symbolic link that always leads to the pseudo-terminal");
  app.add_option("--device", options.Device, "Serial device to answer on instead of a pseudo-terminal")
      ->excludes(link);
  app.add_flag("--paced", options.Paced, "Bytes leave at the pace of 115200 baud");
  app.add_option("--reopen", options.ReopenSeconds, "Joins a line that a fault has broken after SECONDS")
      ->check(CLI::Range(0.0, 1e6));
  app.add_option("--faults", options.FaultFile, "Script of faults: VERB OCCURRENCE KIND [PARAMETERS] a line");
  auto* rate =
      app.add_option("--fault-rate", options.FaultRate, "Share of answers with a random fault, 0 to 1")
          ->check(CLI::Range(0.0, 1.0));
  app.add_option("--fault-seed", options.FaultSeed, "Seed of the random faults (that of the noise)")
      ->needs(rate);
  app.add_option("--log", options.LogFile, "File that gets one line for each request");
  app.add_option("--control", options.ControlPath,
                 "Path of a local socket that takes the commands of the prompt");
  app.add_flag("--headless", options.Headless, "Opens no window");
  app.add_flag("--prompt", options.Prompt, "Takes commands from standard input though it is no terminal");
  app.add_flag("--until-eof", options.UntilEof, "Takes commands from standard input and ends with it");
}

int Fail(const std::string& words, int status) {
  std::fprintf(stderr, "spectrane-simulator: %s\n", words.c_str());
  return status;
}

/// Whether windows can be shown. Without a display the toolkit would end the program.
bool HasDisplay() {
#if defined(Q_OS_WIN) || defined(Q_OS_MACOS)
  return true;
#else
  return !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") ||
         !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM");
#endif
}

/// The kind of application decides about the cost: without a window no display is ever asked for.
std::unique_ptr<QCoreApplication> MakeApplication(int& argc, char** argv, bool windows) {
  std::unique_ptr<QCoreApplication> application;
  if (windows) {
    application = std::make_unique<QApplication>(argc, argv);
  } else {
    application = std::make_unique<QCoreApplication>(argc, argv);
  }
  // The toolkit takes the locale of the environment; numbers are read and written in one way only.
  std::setlocale(LC_ALL, "C");
  QLocale::setDefault(QLocale::c());
  return application;
}

int Serve(const ProgramOptions& options, bool windows) {
  const ShutdownSignals shutdown([] { QCoreApplication::quit(); });
  SimulatorProgram program(options);
  if (const auto wrong = program.Start()) return Fail(*wrong, 1);
  if (!windows) return QCoreApplication::exec();
  // Its end is the program's end.
  CompartmentWindow window(program.View());
  window.show();
  return QCoreApplication::exec();
}

int Run(int argc, char** argv) {
  CLI::App app{Description, "spectrane-simulator"};
  app.set_version_flag("--version", std::string("spectrane-simulator " SPECTRANE_VERSION));
  ProgramOptions options;
  std::string range;
  std::vector<std::string> cells;
  AddInstrumentOptions(app, options, range, cells);
  AddLineOptions(app, options);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : 2;
  }
  if (!range.empty()) {
    if (const std::string wrong = ReadRange(range, options.Instrument); !wrong.empty()) return Fail(wrong, 2);
  }
  for (const std::string& cell : cells) {
    if (const std::string wrong = ReadCell(cell, options); !wrong.empty()) return Fail(wrong, 2);
  }
  const bool windows = !options.Headless && HasDisplay();
  if (!options.Headless && !windows) {
    std::fputs("spectrane-simulator: there is no display; going on without a window\n", stderr);
  }
  const auto application = MakeApplication(argc, argv, windows);
  return Serve(options, windows);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return Run(argc, argv);
  } catch (const std::exception& error) {
    return Fail(error.what(), 1);
  }
}
