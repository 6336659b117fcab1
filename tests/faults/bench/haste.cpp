#include "faults/bench/haste.h"

#include <utility>

namespace spectrane::campaign {
namespace {

/// A device whose waits take a share of their time.
class HastyPort : public Port {
 public:
  HastyPort(std::unique_ptr<Port> port, int factor) : port_(std::move(port)), factor_(factor) {}

  bool Open(const std::string& path) override {
    const bool opened = port_->Open(path);
    SetFault(port_->LastFault(), port_->LastReason());
    return opened;
  }
  bool Close() override { return port_->Close(); }
  bool IsOpen() const override { return port_->IsOpen(); }
  void DiscardInput() override { port_->DiscardInput(); }
  bool Write(std::string_view bytes, int timeoutMs) override {
    return port_->Write(bytes, timeoutMs / factor_ + 1);
  }
  std::string Read(int timeoutMs) override { return port_->Read(timeoutMs / factor_ + 1); }

 private:
  std::unique_ptr<Port> port_;
  int factor_;
};

}  // namespace

void HastyLoop::RunUntil(const Clock& clock, std::int64_t deadlineMs) {
  const std::int64_t rest = deadlineMs - clock.NowMs();
  loop_.RunUntil(clock_.Real(), clock_.Real().NowMs() + (rest > 0 ? rest / clock_.Factor() + 1 : 0));
}

std::unique_ptr<Port> HastyPorts::MakePort(int number) {
  return std::make_unique<HastyPort>(ports_.MakePort(number), factor_);
}

}  // namespace spectrane::campaign
