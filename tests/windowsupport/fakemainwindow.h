#pragma once

#include <QMainWindow>
#include <QPointer>

#include <functional>
#include <memory>
#include <vector>

#include "app/ground/documentwindow.h"
#include "app/ground/layoutstore.h"
#include "app/ground/reportprinter.h"
#include "app/ground/words.h"
#include "link/linkfixture.h"
#include "windowsupport/scriptedquestions.h"

namespace spectrane::testing_windows {

/// A main window without bars that keeps what it was told.
class FakeMainWindow : public MainWindow {
 public:
  FakeMainWindow(InstrumentLink& link, Setting& settings, MainDisplay& display, ScriptedQuestions& boxes,
                 const QString& folder)
      : link_(link), settings_(settings), display_(display), boxes_(boxes), layout_(folder) {
    printer_.HasPrinter = [] { return false; };
  }

  InstrumentLink& Link() override { return link_; }
  Setting& Settings() override { return settings_; }
  WindowSettings& Window() override { return window_; }
  MainDisplay& Display() override { return display_; }
  Questions& Boxes() override { return boxes_; }
  QWidget& Frame() override { return frame_; }
  LayoutStore& Layout() override { return layout_; }
  ReportPrinter& Printer() override { return printer_; }
  DocumentWindow* ActiveForm() const override { return Active; }
  void NewFile(int newFileType) override {
    Created.push_back(newFileType);
    if (OnNewFile) OnNewFile();
  }
  QString NextCaption(int captionTextId) override { return Caption(captionTextId); }
  bool ShowsFile(const QString& path, const DocumentWindow*) const override { return path == Shown; }
  void ShowChild(DocumentWindow* window) override {
    Children.emplace_back(window);
    window->show();
    Active = window;
  }
  void NoteFile(const QString& path) override { Files.append(path); }
  void SetMenuStyle(int style) override {
    MenuStyle = style;
    if (OnMenuStyle) OnMenuStyle();
  }
  void FormatsChanged() override {
    ++FormatChanges;
    if (Active) Active->FormatsChanged();
  }
  void DataTableChanged(DocumentWindow*) override { ++TableChanges; }
  void ShowReadout(const QString& text) override { Readout = text; }
  std::string JournalFolder() const override { return Journals; }
  void JournalFailed(const std::string& reason) override { JournalFaults.push_back(reason); }
  void RunBegins(DocumentWindow* window) override {
    ++RunDepth;
    ++Runs;
    RunWindow = window;
  }
  void RunEnds() override { --RunDepth; }

  QPointer<DocumentWindow> Active;
  std::vector<int> Created;
  std::function<void()> OnNewFile;
  std::function<void()> OnMenuStyle;
  int FormatChanges = 0;
  QStringList Files;
  /// The file of some other window.
  QString Shown = QStringLiteral(":none");
  int TableChanges = 0;
  /// Where windows keep their journals; none by itself.
  std::string Journals;
  std::vector<std::string> JournalFaults;
  QString Readout;
  int MenuStyle = -1;
  /// Runs under way, runs begun so far, and who began the last one.
  int RunDepth = 0;
  int Runs = 0;
  DocumentWindow* RunWindow = nullptr;

 private:
  InstrumentLink& link_;
  Setting& settings_;
  MainDisplay& display_;
  ScriptedQuestions& boxes_;
  WindowSettings window_;
  LayoutStore layout_;
  ReportPrinter printer_{*this};
  QMainWindow frame_;

 public:
  /// Shown by other windows, the last one active. They go before anything that they talk to.
  std::vector<std::unique_ptr<DocumentWindow>> Children;
};

}  // namespace spectrane::testing_windows
