#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "base/brand.h"
#include "base/setting.h"
#include "link/instrumentlink.h"
#include "link/memoryport.h"

namespace spectrane::testing_link {

/// An instrument that answers as its table says and keeps every byte it was sent.
class ScriptedPeer : public LinePeer {
 public:
  using Script = std::function<std::vector<Delivery>(const std::string& command)>;

  std::vector<Delivery> Receive(std::string_view bytes, std::int64_t) override {
    Received += bytes;
    pending_ += bytes;
    std::vector<Delivery> all;
    for (std::size_t end; (end = pending_.find('\r')) != std::string::npos; pending_.erase(0, end + 1)) {
      const std::string command = pending_.substr(0, end);
      Commands.push_back(command);
      for (Delivery& delivery : AnswerTo(command)) all.push_back(std::move(delivery));
    }
    return all;
  }

  /// A whole reply: echo, line end, each line with its end, prompt.
  static std::string Reply(const std::string& command, const std::vector<std::string>& lines = {}) {
    std::string text = command + "\r\n";
    for (const std::string& line : lines) text += line + "\r\n";
    return text + ">";
  }

  /// The next answers to `command` (each used once), before the table's.
  void Next(const std::string& command, std::vector<Delivery> deliveries) {
    scripted_[command].push_back(std::move(deliveries));
  }
  void NextText(const std::string& command, const std::string& text) { Next(command, {{0, text, false}}); }

  /// Data lines of each command; one that stands here with none answers without data.
  std::map<std::string, std::vector<std::string>> Lines = {
      {"check", {"Invalid Command."}},
      {"company", {"Qvr Works"}},
      {"connect", {"ok."}},
      {"quit", {}},
      {"getwl", {"546.0"}},
      {"getdark", {"101", "102", "103", "104", "105", "106", "107", "108"}},
      {"resetdark", {"201", "202", "203", "204", "205", "206", "207", "208"}},
      {"rezero", {"50000", "3"}},
      {"getsampler", {"0"}},
      {"startwl", {"195.0"}},
      {"endwl", {"1020.0"}},
      {"getslip", {"3"}},
  };
  std::string Received;
  std::vector<std::string> Commands;

 private:
  std::vector<Delivery> AnswerTo(const std::string& command) {
    auto& queue = scripted_[command];
    if (!queue.empty()) {
      std::vector<Delivery> deliveries = std::move(queue.front());
      queue.erase(queue.begin());
      return deliveries;
    }
    if (const auto row = Lines.find(command); row != Lines.end())
      return {{1, Reply(command, row->second), false}};
    if (command.starts_with("ge ")) {
      const auto count = static_cast<std::size_t>(std::stoul(command.substr(3)));
      return {{1, Reply(command, std::vector<std::string>(count, "25000")), false}};
    }
    return {{1, Reply(command), false}};
  }

  std::string pending_;
  std::map<std::string, std::vector<std::vector<Delivery>>> scripted_;
};

/// Ports in memory: number n has the peer put there, or no device.
class MemoryPortList : public PortList {
 public:
  explicit MemoryPortList(ManualClock& clock) : clock_(clock) {}

  void Put(int number, LinePeer& peer) { peers_[number] = &peer; }
  void Refuse(int number, PortFault fault, const std::string& reason) { refusals_[number] = {fault, reason}; }

  std::string Path(int number) const override {
    return peers_.contains(number) || refusals_.contains(number) ? "memory" + std::to_string(number)
                                                                 : std::string();
  }
  std::unique_ptr<Port> MakePort(int number) override {
    Opened.push_back(number);
    auto port = std::make_unique<MemoryPort>(clock_, peers_.contains(number) ? *peers_[number] : silent_);
    if (refusals_.contains(number)) port->RefuseOpen(refusals_[number].first, refusals_[number].second);
    Current = port.get();
    return port;
  }

  /// The port made last; dead after it was closed.
  MemoryPort* Current = nullptr;
  /// Numbers in the order in which they were opened.
  std::vector<int> Opened;

 private:
  ManualClock& clock_;
  ScriptedPeer silent_;
  std::map<int, LinePeer*> peers_;
  std::map<int, std::pair<PortFault, std::string>> refusals_;
};

/// A main window that writes down what it was told.
class RecordedDisplay : public MainDisplay {
 public:
  void SetWavelengthField(const std::string& text) override { Wavelength = text; }
  void SetAbsField(const std::string& text) override {
    Abs = text;
    ++AbsChanges;
  }
  void SetTransField(const std::string& text) override { Trans = text; }
  void SetStatus(StatusPane pane, const std::string& text) override { Panes[static_cast<int>(pane)] = text; }
  void SetRemark(const std::string& text) override { Remark = text; }
  bool DataDisplayShown() const override { return Shown; }
  void EnableSampleTimer(bool on) override { TimerOn = on; }
  void Lock(bool locked) override { Locked = locked; }
  void UpdateCommands() override {}

  std::string Wavelength = "unset";
  std::string Abs = "unset";
  std::string Trans = "unset";
  std::string Remark;
  std::map<int, std::string> Panes;
  int AbsChanges = 0;
  bool Shown = true;
  bool TimerOn = false;
  bool Locked = false;
};

class RecordedMessages : public Messages {
 public:
  void Show(int textId, const std::string& details) override {
    Ids.push_back(textId);
    Details = details;
  }
  std::vector<int> Ids;
  std::string Details;
};

/// The whole link on simulated time, with one healthy instrument on port 1.
class LinkFixture : public ::testing::Test {
 protected:
  explicit LinkFixture(int brandNumber = 9)
      : Folder(MakeFolder()),
        Settings(Folder),
        Link({Ports, Time, Loop, Turn, Settings, Display, Boxes, BrandRow(brandNumber)}) {
    Ports.Put(1, Peer);
  }
  ~LinkFixture() override { std::filesystem::remove_all(Folder); }

  /// Opens port 1 without the connection sequence.
  void OpenLine() {
    int number = 1;
    ASSERT_TRUE(Link.Transport.OpenPort(number));
  }
  /// Runs the connection sequence and forgets what was sent in it.
  void ConnectNow() {
    ASSERT_TRUE(Link.Connect.mmuOperationConnect());
    Peer.Commands.clear();
    Peer.Received.clear();
  }

  std::string Folder;
  ManualClock Time;
  ManualMessageLoop Loop{Time};
  NoExclusion Turn;
  ScriptedPeer Peer;
  MemoryPortList Ports{Time};
  Setting Settings;
  RecordedDisplay Display;
  RecordedMessages Boxes;
  InstrumentLink Link;

 private:
  static std::string MakeFolder() {
    const auto* test = ::testing::UnitTest::GetInstance()->current_test_info();
    const std::filesystem::path folder =
        std::filesystem::path(::testing::TempDir()) /
        (std::string("link_") + test->test_suite_name() + "_" + test->name() + "_" +
         std::to_string(std::hash<std::string>{}(std::to_string(::getpid()))));
    std::string name = folder.string();
    for (char& c : name) {
      if (c == '/' && &c > &name[std::string(::testing::TempDir()).size()]) c = '_';
    }
    std::filesystem::create_directories(name);
    return name;
  }
};

}  // namespace spectrane::testing_link
