#pragma once

#include <span>

#include "app/ground/commands.h"

namespace spectrane {

class DocumentWindow;
class FrameCommands;

/// When a command can be chosen.
enum class EnabledWhen {
  Always,
  NoRun,  ///< they open a dialog, which would hold a run up
  NotConnected,
  Connected,          ///< and no run under way
  Document,           ///< the active child offers it
  ConnectedDocument,  ///< the same, with an instrument and no run under way
  BlankTarget,        ///< connected, and the active child takes blanks or none is open
  Children,           ///< a child is open
  Kind,               ///< this program can make a document of the command's kind
};

/// One command: everything that menus, bars, the enabling pass and the routing need to know.
struct CommandRow {
  int Number;
  /// Text number of the caption; 0: the words are Own.
  int TextId;
  EnabledWhen When;
  /// Key sequences in portable words, separated by ";"; may be empty.
  const char* Keys;
  bool Checkable;
  /// One of the two: what the main window does, or what the active child does.
  void (*OnFrame)(FrameCommands&);
  void (*OnDocument)(DocumentWindow&);
  const char* Own = nullptr;
};

std::span<const CommandRow> CommandRows();
/// The row of a command; throws std::out_of_range for a number without one.
const CommandRow& CommandRowOf(int command);

/// The menu bar, in order.
struct MenuRow {
  enum class Kind { Menu, Submenu, SubmenuEnd, Item, NewFiles, Separator, RecentFiles } Is;
  /// Command number, or text number of a menu's caption.
  int Number = 0;
};
std::span<const MenuRow> MenuRows();
/// The short menu of a right click in the empty frame.
std::span<const int> PopupCommands();

/// A bar of buttons: its view command names it and toggles it.
struct BarRow {
  int ViewCommand;
  const char* ObjectName;
  std::span<const int> Commands;
};
std::span<const BarRow> BarRows();

}  // namespace spectrane
