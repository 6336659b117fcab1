#pragma once

#include "modes/multi/multidocument.h"
#include "modes/windows/samplewindow.h"

namespace spectrane {

/// The multi wavelength window: samples with their absorbances at up to 15 wavelengths and one result each.
class FrmMulti : public SampleWindow {
  Q_OBJECT

 public:
  explicit FrmMulti(MainWindow& frame);
  ~FrmMulti() override;

  const MultiDocument& Document() const { return document_; }
  /// Wavelength [nm] and coefficient of the table, by index from 0 to 14.
  double GetWorkWaveLength(int index) const;
  double GetParameter(int index) const;

  void ShowConfigWindow() override;
  int CheckFileType() const override;

 protected:
  FileKindWords FileWords() const override;
  std::optional<Report> MakeReport() override;
  std::optional<ExportSheet> MakeSheet() override;
  spectrane::DataTable MakeTable() override;
  void TakeText(int row, int column, const std::string& text) override;

 private:
  MultiDocument document_;
};

}  // namespace spectrane
