#pragma once

#include <QDialog>
#include <QList>
#include <QPointer>

#include <functional>

#include "app/ground/mainwindow.h"

class QLabel;

namespace spectrane {

/// A modal dialog that works with the instrument: its traffic, what keeps others out meanwhile, and a line
/// for what gets no message box.
class ToolDialog : public QDialog {
  Q_OBJECT

 public:
  /// Loads the dialog before it comes up. Yields.
  int exec() override;
  /// Nothing closes the dialog while the instrument is being spoken to.
  void done(int result) override;

 protected:
  enum class Live { GoesOn, Stands };
  /// Live::Stands: the live reading is off from here to the end of the dialog, and then on again.
  ToolDialog(MainWindow& frame, Live live);
  ~ToolDialog() override;

  MainWindow& Frame() { return frame_; }
  InstrumentLink& Link() { return frame_.Link(); }
  bool IsConnected() { return Link().State.InstrumentConnected; }

  /// What the dialog shows when it comes up. May yield.
  virtual void Load() {}

  /// A command of the dialog: runs `work` now, or after the live reading that is in the middle of its
  /// exchange.
  void WhenFree(std::function<void()> work);
  /// Runs `work` with the instrument to itself and every control disabled; with `longestSeconds` a box asks
  /// to wait meanwhile. Then `tell`, with the box gone and the controls still disabled. Nothing happens when
  /// somebody else has the instrument. Yields.
  void WithInstrument(int longestSeconds, const std::function<void()>& work,
                      const std::function<void()>& tell);

  /// The line of the dialog, with room for `texts`; to be placed by the dialog.
  QLabel* MakeStateLine(const QStringList& texts);
  void Tell(const QString& text);
  /// The words for an instrument that did not answer, or that is not there at all; in the status bar too.
  void TellLinkLost();

 private:
  class Busy;
  void SetBusy(bool busy);

  MainWindow& frame_;
  Live live_;
  QLabel* state_ = nullptr;
  bool busy_ = false;
  QList<QPointer<QWidget>> disabled_;
  QPointer<QWidget> focus_;
};

}  // namespace spectrane
