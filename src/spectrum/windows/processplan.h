#pragma once

#include <cstddef>
#include <span>

#include "spectrum/processsettings.h"

namespace spectrane {

/// What tells the windows that process spectra apart.
struct ProcessPlan {
  const char* Name;
  /// Under which the widths of its columns are remembered.
  const char* LayoutName;
  /// Of the main window; the window has its words and its icon.
  int Command;
  /// Rider of the result.
  int ResultTextId;
  std::size_t Sources;
  /// Of config.ini: the section and its keys.
  const char* Section;
  std::span<const ProcessRow> Rows;
  /// Of the option dialog.
  const char* ConfigName;
  int ConfigTitleTextId;
  /// The curve is drawn as long as both of its sides have room, or one of them.
  bool RoomInEither = true;
};

}  // namespace spectrane
