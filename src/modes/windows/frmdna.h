#pragma once

#include "modes/dna/dnadocument.h"
#include "modes/windows/samplewindow.h"

namespace spectrane {

/// The DNA/protein window: samples with their absorbances at two wavelengths and a reference, and the
/// concentrations and the ratio that follow.
class FrmDNA : public SampleWindow {
  Q_OBJECT

 public:
  explicit FrmDNA(MainWindow& frame);
  ~FrmDNA() override;

  const DNADocument& Document() const { return document_; }
  /// [nm] The two wavelengths and the reference, by index from 0 to 2.
  double GetWaveLength(int index) const;

  void ShowConfigWindow() override;
  int CheckFileType() const override;

 protected:
  FileKindWords FileWords() const override;
  std::optional<Report> MakeReport() override;
  std::optional<ExportSheet> MakeSheet() override;
  spectrane::DataTable MakeTable() override;
  void TakeText(int row, int column, const std::string& text) override;

 private:
  DNADocument document_;
};

}  // namespace spectrane
