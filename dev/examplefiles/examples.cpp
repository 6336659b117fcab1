#include "examplefiles/examples.h"

#include "base/dateserial.h"

namespace spectrane {
namespace {

struct Example {
  void (*Make)(ExampleBench& bench, const std::string& folder);
  /// Of the noise: each example has its own, so that a change to one leaves the others alone.
  std::uint64_t Seed;
  bool Sampler;
};

constexpr Example kExamples[] = {
    {MakePhotometry, 11, false}, {MakeHolmium, 12, false}, {MakeDye, 13, false},      {MakeEnzyme, 14, false},
    {MakeMulti, 15, true},       {MakeNucleic, 16, true},  {MakeBaseline, 17, false},
};

}  // namespace

double ExampleDate() {
  return SerialFromCivil({2026, 10, 5, 9, 30, 0, 0});
}

std::string LabelOf(const std::string& sample) {
  const Sample* const found = FindSample(sample);
  if (found == nullptr) throw ExampleFailure("there is no sample " + sample);
  return found->Label;
}

void WriteExamples(const std::string& folder) {
  for (const Example& example : kExamples) {
    ExampleBench bench(folder + "/settings-of-this-run", example.Seed, example.Sampler);
    example.Make(bench, folder);
  }
}

}  // namespace spectrane
