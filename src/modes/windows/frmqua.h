#pragma once

#include <optional>

#include "app/ground/keptcolumns.h"
#include "modes/quantitation/quantitationtest.h"
#include "modes/windows/recordwindow.h"

namespace spectrane {

class KeptSplitter;
class QuaLinePic;
class RecordTable;
class SheetGrid;
class StandardTable;

/// The quantitation window: standards, their curve, and samples with the concentration that the curve gives
/// them.
class FrmQua : public RecordWindow {
  Q_OBJECT

 public:
  explicit FrmQua(MainWindow& frame);
  ~FrmQua() override;

  const QuantitationDocument& Document() const { return document_; }
  const QuantitationTest& Test() const { return test_; }
  /// First wavelength of the test [nm].
  double GetWaveLength() const { return document_.Option().WaveLengthList[0]; }

  /// Measures one sample, or each position of the automatic sampler that is in use. Yields.
  void mmuStartTest() override;
  /// Takes the blank at each wavelength. Yields.
  void mmuOperationRezero() override;
  /// Measures the standard of that row, from 0. Yields.
  void MeasureStandard(int row);
  /// The curve into the clipboard, as it stands.
  void CopyPicture() override;
  void ShowConfigWindow() override;

  int CheckFileType() const override;
  bool Offers(int command) const override;
  void FormatsChanged() override;
  void CommitEditors() override;

 protected:
  FileKindWords FileWords() const override;
  bool IsModified() const override;
  std::optional<Report> MakeReport() override;
  std::optional<ExportSheet> MakeSheet() override;
  QImage MakePicture() override;
  bool HasWork() const override;
  void RecordRemoved(int row) override;
  void RecordsReplaced() override;

 private:
  void BuildStandards();
  void BuildRecords();
  void BuildLayout();
  void BuildActions();
  void ConnectTest();
  void ConnectPicture();
  void FitColumns();
  int StandardsWidth() const;
  void ShowEverything();
  void ShowCurve();
  void RunOf(const std::function<void()>& work);
  void TellFit(FitOutcome outcome);
  void TellFitLater(FitOutcome outcome);
  bool SelectSampler();
  QString NextStep() const;
  QString StandardsHint() const;

  QuantitationDocument document_;
  QuantitationTest test_;
  SheetGrid* standards_;
  StandardTable* standardTable_;
  // Of a cell that was filled in, until it is told.
  std::optional<FitOutcome> fitToTell_;
  SheetGrid* records_;
  RecordTable* recordTable_;
  QuaLinePic* picture_;
  KeptColumns standardColumns_;
  KeptColumns recordColumns_;
  KeptSplitter* columns_ = nullptr;
  KeptSplitter* rows_ = nullptr;
};

}  // namespace spectrane
