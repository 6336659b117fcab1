#include "app/desktop/commandline.h"

#include <QFileInfo>

#include <algorithm>
#include <cstdio>
#include <string>
#include <string_view>

#include "app/desktop/associations.h"
#include "base/version.h"

namespace spectrane {
namespace {

/// Behind it come the endings of data files.
const char* const kUsageHead =
    R"(Runs a UV-visible spectrophotometer: connects it, takes blanks, measures, keeps the results as files.
Usage: spectrane [OPTIONS] [FILE]

  FILE                        A data file to show, the instrument is left alone then. Without one the
                              New File guide comes up, and the instrument is connected after two seconds.
                              Endings:)";

const char* const kUsageRest = R"(

Options:
  -h,--help                   Print this help message and exit
  --version                   Display program version information and exit

Options of the toolkit (-platform, -style, -display, ...) are taken too.

Environment:
  SPECTRANE_HOME              Folder of the settings
  SPECTRANE_PORTS             Serial ports to search for the instrument; unset: those of the machine

The handbook is in the program: Help, Help Book, or F1. "spectrane-cli --help" tells what goes without
windows, "spectrane-simulator --help" how to work without an instrument.
)";

std::string Usage() {
  std::string usage = kUsageHead;
  for (const FileAssociation& each : FileAssociations()) usage += std::string(" ") + each.Extension;
  return usage + kUsageRest;
}

/// The exit status with the words on standard output.
int Print(const std::string& words) {
  const bool printed = std::fputs(words.c_str(), stdout) >= 0 && std::fflush(stdout) == 0;
#ifdef _WIN32
  // A windowed program has no console: unless its output leads to a file, the words reach nobody.
  static_cast<void>(printed);
  return 0;
#else
  return printed ? 0 : 1;
#endif
}

}  // namespace

std::optional<int> AnswerInWords(int argc, const char* const* argv) {
  const auto asks = [&](std::string_view word) {
    return std::find(argv + 1, argv + argc, word) != argv + argc;
  };
  // A start without so much as a name is one without words.
  if (argc < 2) return std::nullopt;
  if (asks("--help") || asks("-h")) return Print(Usage());
  if (asks("--version")) return Print("spectrane " + VersionText() + "\n");
  return std::nullopt;
}

QString WrongOption(const QStringList& arguments) {
  const auto wrong =
      std::find_if(arguments.begin() + (arguments.isEmpty() ? 0 : 1), arguments.end(),
                   [](const QString& word) { return word.startsWith(u'-') && !QFileInfo::exists(word); });
  return wrong == arguments.end() ? QString() : *wrong;
}

QString FileOfCommandLine(const QStringList& arguments) {
  QString path = arguments.value(1);
  if (path.size() >= 2 && path.startsWith(u'"') && path.endsWith(u'"')) path = path.mid(1, path.size() - 2);
  return path.isEmpty() ? path : QFileInfo(path).absoluteFilePath();
}

}  // namespace spectrane
