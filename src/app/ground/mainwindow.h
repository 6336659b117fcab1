#pragma once

#include <string>

#include "app/ground/questions.h"
#include "base/setting.h"
#include "base/windowsettings.h"
#include "link/instrumentlink.h"
#include "modes/testbench.h"

class QAction;
class QString;
class QWidget;

namespace spectrane {

class DocumentWindow;
class LayoutStore;
class ReportPrinter;

/// The main window as every other window sees it. One per process; it outlives all others.
class MainWindow {
 public:
  virtual ~MainWindow() = default;

  virtual InstrumentLink& Link() = 0;
  virtual Setting& Settings() = 0;
  /// The general options, as config.ini has them.
  virtual WindowSettings& Window() = 0;
  virtual MainDisplay& Display() = 0;
  virtual Questions& Boxes() = 0;
  /// Parent of dialogs.
  virtual QWidget& Frame() = 0;
  /// Where reports go.
  virtual ReportPrinter& Printer() = 0;
  /// Sizes and places that are remembered from one start to the next.
  virtual LayoutStore& Layout() = 0;

  /// The active child, or null.
  virtual DocumentWindow* ActiveForm() const = 0;
  /// Creates, shows and sets up a document of that kind (numbers of the New File guide, 1 to 6). Yields.
  virtual void NewFile(int newFileType) = 0;
  /// A caption of that kind (text number of its new documents) that no window has had: its words and a
  /// number.
  virtual QString NextCaption(int captionTextId) = 0;
  /// Takes over a window that has its caption, and shows it as the active child.
  virtual void ShowChild(DocumentWindow* window) = 0;
  /// Another window than `besides` shows the file.
  virtual bool ShowsFile(const QString&, const DocumentWindow* /*besides*/) const { return false; }
  /// The file was opened or saved: head of the recent files.
  virtual void NoteFile(const QString& path) = 0;
  /// The action of that command, for menus of a window's own; null for one that there is not.
  virtual QAction* ActionOf(int /*command*/) const { return nullptr; }
  /// Draws the command bars in another look of the style list, at once.
  virtual void SetMenuStyle(int style) = 0;
  /// Number formats have changed: what is on show is written anew.
  virtual void FormatsChanged() = 0;

  /// Where documents keep what no file has yet, in UTF-8; empty: they do not.
  virtual std::string JournalFolder() const { return {}; }
  /// That could not be done, for that reason. The person is told once.
  virtual void JournalFailed(const std::string& /*reason*/) {}

  /// The tables of `document` have come, gone or changed.
  virtual void DataTableChanged(DocumentWindow* /*document*/) {}
  /// A line in the status bar for as long as the pointer is over something; empty gives the place back.
  virtual void ShowReadout(const QString& /*text*/) {}

  /// A routine of several instrument commands begins and ends; between the two the measuring commands are
  /// disabled and the main window does not close. `window` (may be null) is the one that measures.
  virtual void RunBegins(DocumentWindow* window) = 0;
  virtual void RunEnds() = 0;
};

/// Tells the main window of a run while it lives.
class RunNotice {
 public:
  RunNotice(MainWindow& frame, DocumentWindow* window) : frame_(frame) { frame_.RunBegins(window); }
  ~RunNotice() { frame_.RunEnds(); }
  RunNotice(const RunNotice&) = delete;
  RunNotice& operator=(const RunNotice&) = delete;

 private:
  MainWindow& frame_;
};

/// What the test runs work with, taken from the main window.
inline TestBench BenchOf(MainWindow& frame) {
  InstrumentLink& link = frame.Link();
  return {link.Instrument, link.State, link.Live, frame.Display(), frame.Boxes(), link.Formats};
}

}  // namespace spectrane
