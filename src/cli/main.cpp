#include <clocale>
#include <iostream>

#include "cli/batch.h"

#ifdef _WIN32
// The second header needs the first.
// clang-format off
#include <windows.h>
#include <shellapi.h>
// clang-format on

#include <string>
#include <vector>

#include "base/utf8path.h"
#else
#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#endif

int main(int argc, char** argv) {
  std::setlocale(LC_ALL, "C");
#ifdef _WIN32
  // The narrow arguments have lost what the code page of the system cannot hold.
  static_cast<void>(argv);
  wchar_t** const wide = CommandLineToArgvW(GetCommandLineW(), &argc);
  std::vector<std::string> texts;
  for (int i = 0; i < argc; ++i) texts.push_back(spectrane::Utf8FromPath(wide[i]));
  LocalFree(wide);
  std::vector<const char*> arguments;
  for (const std::string& text : texts) arguments.push_back(text.c_str());
  return spectrane::RunBatch(argc, arguments.data(), std::cin, std::cout, std::cerr);
#else
  // A file that grows beyond the limit of its size is a failed write, not the end of the program.
  std::signal(SIGXFSZ, SIG_IGN);
  // So is a reader that has gone away.
  std::signal(SIGPIPE, SIG_IGN);
  // A standard stream that came closed must not become the number of a file or a serial line. Read-only, so
  // that a result that reaches nobody still is a failed write.
  int opened = open("/dev/null", O_RDONLY);
  while (opened >= 0 && opened <= STDERR_FILENO) opened = open("/dev/null", O_RDONLY);
  if (opened >= 0) close(opened);
  return spectrane::RunBatch(argc, argv, std::cin, std::cout, std::cerr);
#endif
}
