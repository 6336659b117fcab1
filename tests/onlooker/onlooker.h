#pragma once

#include <QStringList>
#include <QWidget>

namespace spectrane::testing_windows {

/// What an operator would find fault with in a window or dialog that is on show, one sentence each; empty for
/// none. A child that is a window of its own is left out.

/// Those who cannot see it: every control that takes the focus has an object name of its own, and a name and
/// a role for a screen reader; one that is painted has a description as well.
QStringList NameFaults(const QWidget& window);
/// Those without a mouse: no access key stands for two controls, every key of a label leads to a field, and
/// Tab goes to the right or downward but for the way back to the first control.
QStringList KeyFaults(const QWidget& window);
/// Texts that are cut off, and controls that lie over each other.
QStringList RoomFaults(const QWidget& window);
/// Texts that stand out too little from what is below them, by the contrast of palette colours.
QStringList ContrastFaults(const QWidget& window);

QStringList FaultsOf(const QWidget& window);

}  // namespace spectrane::testing_windows
