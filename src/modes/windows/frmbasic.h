#pragma once

#include "app/ground/documentwindow.h"
#include "app/ground/keptcolumns.h"
#include "modes/photometry/photometrytest.h"

class QAction;

namespace spectrane {

class BasicTable;
class NoteGrid;

/// The photometry window: absorbance and transmittance of one sample after another at one wavelength.
class FrmBasic : public DocumentWindow {
  Q_OBJECT

 public:
  explicit FrmBasic(MainWindow& frame);
  ~FrmBasic() override;

  /// Test wavelength [nm]. A blank holds for the wavelength it was taken at, so after a change the next start
  /// asks for a new one.
  double WaveLength() const { return test_.WaveLength; }
  void SetWaveLength(double wavelength);
  const PhotometryDocument& Document() const { return document_; }
  const PhotometryTest& Test() const { return test_; }

  /// Measures one sample, or each position of the automatic sampler that is in use. Yields.
  void mmuStartTest() override;
  /// Takes the blank. Yields.
  void mmuOperationRezero() override;
  /// Removes the selected row after a question. Yields.
  void mmuDeleteReport() override;
  void mmuFileOutputBMP() override;
  void ShowConfigWindow() override;

  int CheckFileType() const override;
  QString OpenFileName() const override;
  bool Offers(int command) const override;
  void FormatsChanged() override;
  void CommitEditors() override;

 protected:
  FileKindWords FileWords() const override;
  bool IsModified() const override;
  bool SavesElsewhere() const override;
  std::optional<Report> MakeReport() override;
  std::optional<ExportSheet> MakeSheet() override;
  bool WriteDocument(const QString& path, QString& fault) override;
  bool ReadDocument(const QString& path, QString& fault) override;

 private:
  void LoadSettings();
  void BuildGrid();
  void BuildActions();
  void FitColumns();
  void ShowNewRow(int row);
  void UpdateOffers();
  QString NextStep() const;

  PhotometryDocument document_;
  PhotometryTest test_;
  NoteGrid* grid_;
  BasicTable* table_;
  KeptColumns columns_;
  QAction* copyAction_ = nullptr;
  QAction* deleteAction_ = nullptr;
};

}  // namespace spectrane
