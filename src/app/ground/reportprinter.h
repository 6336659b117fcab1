#pragma once

#include <QObject>
#include <QString>

#include <functional>
#include <memory>

#include "output/exportsheet.h"
#include "output/report.h"

class QEvent;
class QPrinter;

namespace spectrane {

class MainWindow;

/// Puts reports on paper, on the screen, or into a PDF file. Outlives every window but the main one.
class ReportPrinter {
 public:
  explicit ReportPrinter(MainWindow& frame);
  ~ReportPrinter();
  ReportPrinter(const ReportPrinter&) = delete;
  ReportPrinter& operator=(const ReportPrinter&) = delete;

  /// Printer and paper for the rest of the run. Yields.
  void Setup();
  /// On the printer. Without one asks for the name of a PDF file, `path` to begin with. Ends early, without a
  /// file, when `stopWanted` says so. Yields.
  void Print(const Report& report, const QString& path, const std::function<bool()>& stopWanted = {});
  /// On the screen, from where it can be printed. Yields.
  void Preview(const Report& report, const QString& path, const std::function<bool()>& stopWanted = {});

  /// Whether this machine has a printer. Replaced by tests.
  std::function<bool()> HasPrinter;

 private:
  QPrinter& Printer();
  void PrintOn(QPrinter& printer, const Report& report, const std::function<bool()>& stopWanted);
  void PrintToFile(const Report& report, const QString& path, const std::function<bool()>& stopWanted);

  MainWindow& frame_;
  // Made when it is first needed: asking the system for its printers takes time.
  std::unique_ptr<QPrinter> printer_;
};

/// How far a piece of work is, in the status bar; Esc ends it. The message loop runs at each step.
class ShownProgress : public QObject {
  Q_OBJECT

 public:
  explicit ShownProgress(MainWindow& frame);
  ~ShownProgress() override;

  WorkProgress Steps();
  bool IsCancelled() const { return cancelled_; }
  /// Asked at each step; true ends the work.
  std::function<bool()> StopWanted;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  MainWindow& frame_;
  bool cancelled_ = false;
};

}  // namespace spectrane
