#pragma once

#include <functional>
#include <span>
#include <string>
#include <vector>

#include "reentrancy/yieldyard.h"

namespace spectrane::testing_reentrancy {

/// Something that yields: what has to stand before it, and the procedure itself.
struct Procedure {
  const char* Name;
  std::function<void(YieldYard&)> Prepare;
  std::function<void(YieldYard&)> Run;
  /// It begins its document anew each time; others add to what is there.
  bool OwnsRecords = false;
};
const std::vector<Procedure>& Procedures();

/// Something that a person, the line or a timer does.
struct Happening {
  enum class Effect {
    None,  ///< the procedure goes on as if nothing had happened
    Ends,  ///< it comes to its end, sooner or as planned
  };
  std::string Name;
  Effect What = Effect::None;
  /// Comes even while a box stands over the windows.
  bool PassesBoxes = false;
  std::function<void(YieldYard&)> Do;
  /// What the person says.
  std::map<QString, Answer> Says;
  bool Closes = false;
};
const std::vector<Happening>& Happenings();

}  // namespace spectrane::testing_reentrancy
