// Tables of samples: photometry, several wavelengths, DNA and protein.
#include <vector>

#include "base/dateserial.h"
#include "base/version.h"
#include "examplefiles/examples.h"
#include "files/basicfile.h"
#include "files/dnafile.h"
#include "files/multifile.h"
#include "link/function.h"
#include "modes/photometry/photometrytest.h"

namespace spectrane {
namespace {

constexpr std::int32_t kCellSamples = 10;
constexpr std::int32_t kBlankCell = 1;

/// Absorbances of the samples, which stand in cells 2 and up behind the blank in cell 1: a row a sample, a
/// column a wavelength [nm]. The blank is taken anew at each wavelength.
std::vector<std::vector<double>> MeasureCells(ExampleBench& bench, const std::vector<std::string>& samples,
                                              const std::vector<double>& wavelengths) {
  std::vector<std::vector<double>> rows(samples.size());
  bench.FillCell(kBlankCell, "blank");
  for (std::size_t i = 0; i < samples.size(); ++i) bench.FillCell(static_cast<int>(i) + 2, samples[i]);
  for (const double nm : wavelengths) {
    bench.MoveTo(nm);
    bench.MoveSampler(kBlankCell);
    const Blank blank = bench.TakeBlank();
    for (std::size_t i = 0; i < samples.size(); ++i) {
      bench.MoveSampler(static_cast<std::int32_t>(i) + 2);
      rows[i].push_back(AbsFromEnergy(bench.Read(kCellSamples), blank.FullEnergy, blank.DarkEnergy));
    }
  }
  return rows;
}

}  // namespace

void MakePhotometry(ExampleBench& bench, const std::string& folder) {
  PhotometryDocument document;
  PhotometryTest test(bench.Tools(), document);
  for (const double nm : {440.0, 546.0, 635.0}) {
    test.WaveLength = nm;
    bench.PutInBeam("blank");
    test.mmuOperationRezero();
    for (const char* sample : {"filter-0.3", "filter-1.0", "filter-2.0"}) {
      bench.PutInBeam(sample);
      if (!test.mmuStartTest()) throw ExampleFailure("a photometry row failed");
      document.SetRecordNote(document.RecordCount() - 1, LabelOf(sample));
    }
  }
  BasicOption option;
  option.Version = VersionText();
  option.Written = DateTimeText(ExampleDate());
  std::vector<BasicRecord> records;
  for (std::int32_t row = 0; row < document.RecordCount(); ++row) records.push_back(document.Record(row));
  Save(BasicModule(), folder + "/photometry.bas", option, records);
}

void MakeMulti(ExampleBench& bench, const std::string& folder) {
  const std::vector<std::string> samples = {"dichromate-20", "dichromate-40", "dichromate-60",
                                            "dichromate-80", "dichromate-100"};
  const std::vector<double> wavelengths = {235.0, 257.0, 313.0, 350.0};
  MultiOption option;
  option.WorkWLNo = static_cast<std::int32_t>(wavelengths.size());
  // Places that are not in use hold what a new window has there.
  for (std::size_t k = 0; k < 15; ++k) {
    option.WorkWaveLength[k] = 546.0;
    option.Parameter[k] = 1.0;
  }
  // A quarter of 60 mg/L over the nominal absorbance of that solution: the results are the means of four
  // concentrations [mg/L].
  constexpr double kParameters[] = {20.188, 17.341, 51.724, 23.328};
  for (std::size_t k = 0; k < wavelengths.size(); ++k) {
    option.WorkWaveLength[k] = wavelengths[k];
    option.Parameter[k] = kParameters[k];
  }
  std::vector<MultiRecord> records;
  for (const std::vector<double>& row : MeasureCells(bench, samples, wavelengths)) {
    MultiRecord record;
    record.Name = LabelOf(samples[records.size()]);
    for (std::size_t k = 0; k < row.size(); ++k) {
      record.Abs[k] = row[k];
      record.Result += option.Parameter[k] * row[k];
    }
    records.push_back(record);
  }
  Save(MultiModule(), folder + "/multi.mul", option, records);
}

void MakeNucleic(ExampleBench& bench, const std::string& folder) {
  const std::vector<std::string> samples = {"dna-10", "dna-25", "dna-50",     "mix-1",
                                            "mix-2",  "mix-3",  "protein-0.5"};
  const std::vector<std::string> notes = {"", "", "", "", "", "hazy", "no DNA"};
  DNAOption option;
  option.WaveLength = {260.0, 280.0, 320.0, 0.0};
  option.Factor = {62.9, 36.0, 1552.0, 757.3};
  option.Option = 1;
  std::vector<DNARecord> records;
  for (const std::vector<double>& row : MeasureCells(bench, samples, {260.0, 280.0, 320.0})) {
    DNARecord record;
    record.Name = LabelOf(samples[records.size()]);
    record.Note = notes[records.size()];
    record.Abs = {row[0], row[1], row[2], 0.0};
    const double first = row[0] - row[2];
    const double second = row[1] - row[2];
    record.DNA = first * option.Factor[0] - second * option.Factor[1];
    record.Protein = second * option.Factor[2] - first * option.Factor[3];
    record.Ratio = first / second;
    records.push_back(record);
  }
  Save(DNAModule(), folder + "/nucleic.dna", option, records);
}

}  // namespace spectrane
