#pragma once

#include "app/ground/documentwindow.h"
#include "modes/recorddocument.h"

class QAction;

namespace spectrane {

class EditGrid;

/// A window of records in one file: what those windows have in common, whether they measure or not.
class RecordWindow : public DocumentWindow {
  Q_OBJECT

 public:
  /// Removes the selected record after a question. Yields.
  void mmuDeleteReport() override;
  /// There is no picture file of such a window: says so.
  void mmuFileOutputBMP() override;
  QString OpenFileName() const override;
  /// What every window of records offers; the measuring commands are not among it.
  bool Offers(int command) const override;

 protected:
  /// `noPictureText` is the number of the words that refuse a picture file.
  RecordWindow(MainWindow& frame, int noPictureText);

  /// To be called once: the document, and the grid of its records, which gets the actions of its menu. Both
  /// live as long as the window.
  void Keeps(RecordDocument& document, EditGrid& records);
  /// `Copy` for the menu and the keyboard of a grid.
  QAction* AddCopyAction(EditGrid& grid);
  /// The selection, the number of records or what may be done with them has changed.
  void UpdateOffers();

  /// The record of that row has left the document.
  virtual void RecordRemoved(int row) = 0;
  /// Another document altogether.
  virtual void RecordsReplaced() = 0;
  bool HasWork() const override;
  bool IsModified() const override;
  bool SavesElsewhere() const override;
  bool WriteDocument(const QString& path, QString& fault) override;
  bool ReadDocument(const QString& path, QString& fault) override;
  std::optional<JournalImage> MakeImage() const override { return document_->Image(); }
  bool TakeImage(const Journal& journal) override;

 private:
  int noPictureText_;
  RecordDocument* document_ = nullptr;
  EditGrid* records_ = nullptr;
  QAction* copyAction_ = nullptr;
  QAction* deleteAction_ = nullptr;
};

}  // namespace spectrane
