#pragma once

#include <memory>
#include <string>
#include <vector>

#include "base/clock.h"
#include "cli/storedsettings.h"
#include "link/exclusion.h"
#include "link/instrumentlink.h"
#include "link/messageloop.h"
#include "link/portlist.h"
#include "link/silentdisplay.h"

namespace spectrane {

/// The link on the machine's own ports, without a window: what a main window would show is kept, what a
/// message box would say is kept for the one line that a failing command prints.
class InstrumentSession : private SilentDisplay, private Messages {
 public:
  /// Reads the settings of the application folder. Brings an application object up when the process has none.
  InstrumentSession();
  ~InstrumentSession() override;

  InstrumentLink& Link() { return *link_; }
  StoredSettings& Stored() { return stored_; }

  MainDisplay& Display() { return *this; }
  Messages& Boxes() { return *this; }

  /// Why a step failed, in one line: the words of the last message box, or those of a communication error
  /// where the step shows none; behind them in brackets its details or how the last exchange ended.
  std::string FailureWords() const;
  /// The words of `textId` in one line, `details` in brackets behind them.
  static std::string Words(int textId, const std::string& details);

 private:
  void Show(int textId, const std::string& details) override;

  StoredSettings stored_;
  SteadyClock time_;
  QtMessageLoop loop_;
  std::unique_ptr<Exclusion> turn_;
  SerialPortList ports_;
  std::unique_ptr<InstrumentLink> link_;
  int messageId_ = 0;
  std::string messageDetails_;
};

}  // namespace spectrane
