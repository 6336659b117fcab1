#pragma once

#include <QPalette>

namespace spectrane {

/// The palette with the colour of hints (QPalette::PlaceholderText) as strong as a text has to be that is
/// read: ranges, units and remarks stand in it. One that is strong enough already stays.
QPalette WithReadableHints(QPalette palette);

}  // namespace spectrane
