#pragma once

#include "app/ground/keptcolumns.h"
#include "modes/photometry/photometrytest.h"
#include "modes/windows/recordwindow.h"

namespace spectrane {

class BasicTable;
class NoteGrid;

/// The photometry window: absorbance and transmittance of one sample after another at one wavelength.
class FrmBasic : public RecordWindow {
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
  void ShowConfigWindow() override;

  int CheckFileType() const override;
  bool Offers(int command) const override;
  void FormatsChanged() override;
  void CommitEditors() override;

 protected:
  FileKindWords FileWords() const override;
  std::optional<Report> MakeReport() override;
  std::optional<ExportSheet> MakeSheet() override;
  void RecordRemoved(int row) override;
  void RecordsReplaced() override;

 private:
  void LoadSettings();
  void BuildGrid();
  void FitColumns();
  void ShowNewRow(int row);
  QString NextStep() const;

  PhotometryDocument document_;
  PhotometryTest test_;
  NoteGrid* grid_;
  BasicTable* table_;
  KeptColumns columns_;
};

}  // namespace spectrane
