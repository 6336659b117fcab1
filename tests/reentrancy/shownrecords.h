#pragma once

#include <string>

#include "app/ground/documentwindow.h"

namespace spectrane::testing_reentrancy {

/// A document as its file would have it.
struct ShownRecords {
  std::string Option;
  std::string Records;
  std::size_t RecordSize = 0;
};

/// Nothing for no window, or one that keeps no journal.
ShownRecords RecordsOf(const DocumentWindow* window);

}  // namespace spectrane::testing_reentrancy
