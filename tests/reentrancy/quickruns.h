#pragma once

#include <QPointer>

#include "reentrancy/procedures.h"
#include "reentrancy/shownrecords.h"

namespace spectrane::testing_reentrancy {

/// The readings of the blank [counts].
struct Blank {
  std::int32_t FullEnergy = 0;
  std::int32_t DarkEnergy = 0;
  bool operator==(const Blank&) const = default;
};

/// A procedure to whom nothing happens, and what comes of it.
struct Undisturbed {
  int Yields = 0;
  /// Those of them in which a box is open.
  std::set<int> BoxYields;
  std::vector<std::string> Requests;
  /// The records that it adds, and the options of its document where it changes them.
  std::string Records;
  std::optional<std::string> NewOption;
  /// Nothing where the procedure leaves the blank alone.
  std::optional<Blank> NewBlank;
};

/// A program whose runs are short, and no two of whose readings in a run are alike.
class QuickRuns : public YieldYard {
 protected:
  QuickRuns();

  /// An instrument as it is after its power-up, and what has to stand before the procedure.
  void Prepare(const Procedure& procedure);
  Undisturbed Alone(const Procedure& procedure);
  /// The procedure once more, to which nothing happens: as it was the first time.
  void ExpectWhole(const Procedure& procedure, const Undisturbed& alone);

  Blank BlankNow() { return {State().FullEnergy, State().DarkEnergy}; }

  /// The window that the procedure is about, and its document before.
  QPointer<DocumentWindow> Measured;
  ShownRecords Before;
  Blank BlankBefore;
};

}  // namespace spectrane::testing_reentrancy
