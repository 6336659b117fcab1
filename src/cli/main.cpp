#include <clocale>
#include <iostream>

#include "cli/batch.h"

#ifdef _WIN32
#include <string>
#include <vector>

#include "base/utf8path.h"

int wmain(int argc, wchar_t** argv) {
  std::setlocale(LC_ALL, "C");
  std::vector<std::string> texts;
  for (int i = 0; i < argc; ++i) texts.push_back(spectrane::Utf8FromPath(argv[i]));
  std::vector<const char*> arguments;
  for (const std::string& text : texts) arguments.push_back(text.c_str());
  return spectrane::RunBatch(argc, arguments.data(), std::cin, std::cout, std::cerr);
}

#else
#include <csignal>

int main(int argc, char** argv) {
  std::setlocale(LC_ALL, "C");
  // A file that grows beyond the limit of its size is a failed write, not the end of the program.
  std::signal(SIGXFSZ, SIG_IGN);
  return spectrane::RunBatch(argc, argv, std::cin, std::cout, std::cerr);
}

#endif
