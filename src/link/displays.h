#pragma once

#include <string>

namespace spectrane {

/// Message boxes, as the logic sees them: an information box with the main window's caption as its title.
class Messages {
 public:
  virtual ~Messages() = default;
  /// Shows the text of that number; `details` (may be empty) stands behind the message and does not change
  /// it.
  virtual void Show(int textId, const std::string& details = {}) = 0;
  /// The same with the icon of an error.
  virtual void ShowError(int textId) { Show(textId); }
};

/// Panes of the status bar, counted from 1.
enum class StatusPane { Connection = 1, Sampler = 2, Slit = 3, Wavelength = 4, Percent = 5 };

/// What the main window shows, as the logic sees it. No procedure here yields.
class MainDisplay {
 public:
  virtual ~MainDisplay() = default;
  /// The three fields of the data display toolbar.
  virtual void SetWavelengthField(const std::string& text) = 0;
  virtual void SetAbsField(const std::string& text) = 0;
  virtual void SetTransField(const std::string& text) = 0;
  virtual void SetStatus(StatusPane pane, const std::string& text) = 0;
  /// A passing remark in the status bar, for what gets no message box; empty takes it away.
  virtual void SetRemark(const std::string& text) = 0;
  /// The stored flag of the data display toolbar: the live reading runs for a visible one only.
  virtual bool DataDisplayShown() const = 0;
  virtual void EnableSampleTimer(bool on) = 0;
  /// The hourglass and a disabled main window, while no command may start.
  virtual void Lock(bool locked) = 0;
  /// Commands are enabled or not by what holds now.
  virtual void UpdateCommands() = 0;
};

}  // namespace spectrane
