#include "cli/operator.h"

#include <csignal>
#include <iostream>
#include <string>

#ifdef _WIN32
#include <io.h>

#include <cstdio>
#else
#include <poll.h>
#include <unistd.h>
#endif

namespace spectrane {
namespace {

volatile std::sig_atomic_t stopAsked = 0;

void OnStopSignal(int number) {
  stopAsked = 1;
  std::signal(number, SIG_DFL);
}

#ifdef _WIN32
constexpr int kStopSignals[] = {SIGINT, SIGTERM};
#else
constexpr int kStopSignals[] = {SIGINT, SIGTERM, SIGHUP};
constexpr int kLookMs = 100;

// Byte by byte past the stream's buffer, so that a signal can end the wait.
bool ReadLineFromTerminal() {
  while (!stopAsked) {
    pollfd input = {STDIN_FILENO, POLLIN, 0};
    if (poll(&input, 1, kLookMs) <= 0) continue;
    char c = 0;
    if (read(STDIN_FILENO, &c, 1) != 1) return false;
    if (c == '\n') return true;
  }
  return false;
}
#endif

}  // namespace

Operator::Operator(std::istream& in) : in_(in) {
  stopAsked = 0;
  for (const int number : kStopSignals) std::signal(number, OnStopSignal);
}

Operator::~Operator() {
  for (const int number : kStopSignals) std::signal(number, SIG_DFL);
}

bool Operator::PressesEnter() {
  if (stopAsked) return false;
#ifndef _WIN32
  if (&in_ == &std::cin) return ReadLineFromTerminal();
#endif
  std::string line;
  return static_cast<bool>(std::getline(in_, line)) && !stopAsked;
}

bool Operator::AsksToStop() const {
  return stopAsked != 0;
}

#ifdef _WIN32
bool Operator::IsThere() const {
  return &in_ == &std::cin && _isatty(_fileno(stdin)) != 0;
}
bool Operator::SeesErrors() {
  return _isatty(_fileno(stderr)) != 0;
}
bool Operator::MayWrite(const std::string&) {
  return true;
}
#else
bool Operator::IsThere() const {
  return &in_ == &std::cin && isatty(STDIN_FILENO) != 0;
}
bool Operator::SeesErrors() {
  return isatty(STDERR_FILENO) != 0;
}
bool Operator::MayWrite(const std::string& folder) {
  return access(folder.c_str(), W_OK | X_OK) == 0;
}
#endif

}  // namespace spectrane
