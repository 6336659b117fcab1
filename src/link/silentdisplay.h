#pragma once

#include "link/displays.h"

namespace spectrane {

/// For programs without a main window: nothing is shown, and the live reading does not run.
class SilentDisplay : public MainDisplay {
 public:
  void SetWavelengthField(const std::string&) override {}
  void SetAbsField(const std::string&) override {}
  void SetTransField(const std::string&) override {}
  void SetStatus(StatusPane, const std::string&) override {}
  void SetRemark(const std::string&) override {}
  bool DataDisplayShown() const override { return false; }
  void EnableSampleTimer(bool) override {}
  void Lock(bool) override {}
  void UpdateCommands() override {}
};

}  // namespace spectrane
