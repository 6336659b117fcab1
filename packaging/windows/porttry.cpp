// Tries the serial port of the program for Windows by itself, without the toolkit: porttry PORT MISSING
// HANGUP. PORT has the simulated instrument behind it, MISSING nobody; creating the file HANGUP asks the
// caller to pull the cable. One line for each expectation; the status is the number of those that failed.
#include <windows.h>

#include <cstdio>
#include <string>

#include "link/win32port.h"

namespace {

using spectrane::PortFault;
using spectrane::Win32Port;

int failed = 0;

void Expect(bool held, const std::string& what) {
  std::printf("%s %s\n", held ? "ok     " : "FAILED ", what.c_str());
  std::fflush(stdout);
  if (!held) ++failed;
}

unsigned long long NowMs() {
  return GetTickCount64();
}

/// Reads until the prompt has come, nothing came for `timeoutMs`, or the line has gone.
std::string ReadReply(Win32Port& port, int timeoutMs) {
  std::string reply;
  while (reply.empty() || reply.back() != '>') {
    const std::string bytes = port.Read(timeoutMs);
    if (bytes.empty()) break;
    reply += bytes;
  }
  return reply;
}

void TryOpening(const std::string& path, const std::string& missing) {
  Win32Port nobody;
  const bool found = nobody.Open(missing);
  Expect(!found && nobody.LastFault() == PortFault::Missing,
         "a port that is not there: " + nobody.LastReason());
  Expect(!nobody.IsOpen() && !nobody.Close() && nobody.Read(10).empty() && !nobody.Write("x", 10),
         "a port that was never opened refuses everything");
  Win32Port first;
  Expect(first.Open(path), "opens " + path + " " + first.LastReason());
  Win32Port second;
  if (second.Open(path)) {
    std::printf("note    this system lets two programs open one port\n");
    second.Close();
  } else {
    Expect(second.LastFault() == PortFault::InUse, "a second one does not: " + second.LastReason());
  }
  Expect(first.Close() && !first.Close() && second.Open(path), "and does when the first is closed");
  Expect(second.Open(path), "opens again while it is open");
}

void TryExchanges(Win32Port& port) {
  Expect(port.Write("getwl\r", 1000), "writes");
  const std::string reply = ReadReply(port, 1000);
  Expect(reply.starts_with("getwl\r") && reply.ends_with(">"),
         "reads the reply, " + std::to_string(reply.size()) + " bytes");
  auto start = NowMs();
  bool quiet = port.Read(300).empty();
  auto took = NowMs() - start;
  Expect(quiet && took >= 280 && took < 450, "waits 300 ms for nothing: " + std::to_string(took) + " ms");
  start = NowMs();
  quiet = port.Read(0).empty();
  took = NowMs() - start;
  Expect(quiet && took < 50, "does not wait when it must not: " + std::to_string(took) + " ms");
  start = NowMs();
  port.Write("ge 200\r", 1000);
  const std::string energies = ReadReply(port, 2000);
  Expect(energies.starts_with("ge 200\r") && energies.ends_with(">") && energies.size() > 800,
         "reads a long reply, " + std::to_string(energies.size()) + " bytes in " +
             std::to_string(NowMs() - start) + " ms");
  port.Write("getwl\r", 1000);
  Sleep(300);
  port.DiscardInput();
  Expect(port.Read(100).empty(), "throws away what was not read");
  start = NowMs();
  int good = 0;
  for (int i = 0; i < 100; ++i) {
    port.Write("getwl\r", 1000);
    if (ReadReply(port, 1000) == reply) ++good;
  }
  Expect(good == 100, "a hundred exchanges, " + std::to_string((NowMs() - start) * 10) + " us each");
}

void TryHangUp(Win32Port& port, const char* wish) {
  HANDLE const file =
      CreateFileA(wish, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file != INVALID_HANDLE_VALUE) CloseHandle(file);
  const auto start = NowMs();
  // However the system tells of it: no call takes longer than it was given, and none brings anything.
  std::string bytes;
  while (port.IsOpen() && NowMs() - start < 5000) {
    const auto begun = NowMs();
    bytes += port.Read(200);
    if (NowMs() - begun > 1000)
      Expect(false, "a reading of 200 ms took " + std::to_string(NowMs() - begun) + " ms");
  }
  Expect(bytes.empty(), "nothing comes from a line that has gone");
  Expect(!port.IsOpen(),
         "the port closes itself after " + std::to_string(NowMs() - start) + " ms: " + port.LastReason());
  const auto begun = NowMs();
  Expect(!port.Write("getwl\r", 500) || ReadReply(port, 500).empty(), "no exchange on a line that has gone");
  Expect(NowMs() - begun < 2000, "and no endless wait");
}

}  // namespace

int main(int count, char** words) {
  if (count != 4) return 100;
  TryOpening(words[1], words[2]);
  Win32Port port;
  if (!port.Open(words[1])) {
    Expect(false, "opens once more: " + port.LastReason());
    return failed;
  }
  TryExchanges(port);
  TryHangUp(port, words[3]);
  return failed;
}
