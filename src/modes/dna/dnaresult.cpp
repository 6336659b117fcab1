#include "modes/dna/dnaresult.h"

namespace spectrane {

void ComputeDNA(const DNAOption& option, DNARecord& record) {
  const double first = record.Abs[0] - record.Abs[2];
  const double second = record.Abs[1] - record.Abs[2];
  record.DNA = first * option.Factor[0] - second * option.Factor[1];
  record.Protein = second * option.Factor[2] - first * option.Factor[3];
  if (second != 0) record.Ratio = first / second;
}

}  // namespace spectrane
