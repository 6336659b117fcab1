#pragma once

#include "app/ground/keptcolumns.h"
#include "modes/windows/recordwindow.h"
#include "output/datatable.h"

namespace spectrane {

class SampleTable;
class SheetGrid;

/// A window of samples that come from files: it measures nothing, the procedures of a run are there and
/// empty. Names and notes can be edited.
class SampleWindow : public RecordWindow {
  Q_OBJECT

 public:
  void FormatsChanged() override;
  void CommitEditors() override;
  QString WhyNot(int command) const override;

 protected:
  /// `name` is the object name of the window.
  SampleWindow(MainWindow& frame, const char* name, int captionText, int noPictureText);

  /// To be called at the end of the constructor: the grid on the samples of `document`.
  void BuildOn(RecordDocument& document);
  /// To be called first in the destructor, while there is a document: an editor that is still open would hand
  /// its text to what is no longer there.
  void LetGo();
  /// Other samples, wavelengths or headings.
  void ShowEverything();
  /// What follows new settings, when `hadFile` says that there was one before: a document that has none any
  /// more has the caption of a new one.
  void ShowSettings(bool hadFile);

  virtual spectrane::DataTable MakeTable() = 0;
  virtual void TakeText(int row, int column, const std::string& text) = 0;

  void RecordRemoved(int row) override;
  void RecordsReplaced() override;

 private:
  void FitColumns();
  void ShowRow(int row);

  int captionText_;
  SheetGrid* grid_;
  SampleTable* table_ = nullptr;
  KeptColumns columns_;
};

}  // namespace spectrane
