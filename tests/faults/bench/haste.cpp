#include "faults/bench/haste.h"

#include <utility>

namespace spectrane::campaign {
namespace {

/// A device whose waits take a share of their time.
class HastyPort : public Port {
 public:
  HastyPort(std::unique_ptr<Port> port, const HastyClock& clock, std::vector<WireRecord>& wire)
      : port_(std::move(port)), clock_(clock), wire_(wire) {}

  bool Open(const std::string& path) override {
    const bool opened = port_->Open(path);
    SetFault(port_->LastFault(), port_->LastReason());
    return opened;
  }
  bool Close() override { return port_->Close(); }
  bool IsOpen() const override { return port_->IsOpen(); }
  void DiscardInput() override { port_->DiscardInput(); }
  bool Write(std::string_view bytes, int timeoutMs) override {
    wire_.push_back({std::string(bytes.substr(0, bytes.find('\r'))), {}, false, clock_.NowMs(), timeoutMs});
    return port_->Write(bytes, timeoutMs / clock_.Factor() + 1);
  }
  std::string Read(int timeoutMs) override {
    std::string piece = port_->Read(timeoutMs > 0 ? timeoutMs / clock_.Factor() + 1 : 0);
    if (!wire_.empty() && !piece.empty()) Note(wire_.back(), piece);
    return piece;
  }

 private:
  void Note(WireRecord& record, const std::string& piece) const {
    if (record.Ended || clock_.NowMs() >= record.SentMs + record.TimeoutMs) return;
    record.Collected += piece;
    record.Ended = piece.ends_with('>');
  }

  std::unique_ptr<Port> port_;
  const HastyClock& clock_;
  std::vector<WireRecord>& wire_;
};

}  // namespace

void HastyLoop::RunUntil(const Clock& clock, std::int64_t deadlineMs) {
  const std::int64_t rest = deadlineMs - clock.NowMs();
  loop_.RunUntil(clock_.Real(), clock_.Real().NowMs() + (rest > 0 ? rest / clock_.Factor() + 1 : 0));
}

std::unique_ptr<Port> HastyPorts::MakePort(int number) {
  return std::make_unique<HastyPort>(ports_.MakePort(number), clock_, Wire);
}

}  // namespace spectrane::campaign
