#include "examplefiles/examplebench.h"

#include <filesystem>

#include "base/brand.h"
#include "base/language.h"
#include "base/utf8path.h"

namespace spectrane {
namespace {

std::string MadeFolder(const std::string& path) {
  if (!std::filesystem::create_directory(PathFromUtf8(path))) {
    throw ExampleFailure(path + " is there already");
  }
  return path;
}

InstrumentOptions Options(std::uint64_t seed, bool sampler) {
  InstrumentOptions options;
  options.Seed = seed;
  options.Sampler = sampler;
  return options;
}

}  // namespace

ExampleBench::ExampleBench(const std::string& scratch, std::uint64_t seed, bool sampler)
    : scratch_(MadeFolder(scratch)),
      instrument_(Options(seed, sampler)),
      settings_(scratch_),
      link_(std::make_unique<InstrumentLink>(
          LinkSurroundings{ports_, clock_, loop_, turn_, settings_, *this, *this, BuildBrand()})) {
  Require(link_->Connect.mmuOperationConnect(), "connecting");
}

ExampleBench::~ExampleBench() {
  std::error_code ignored;
  std::filesystem::remove_all(PathFromUtf8(scratch_), ignored);
}

void ExampleBench::PutInBeam(const std::string& sample) {
  Require(instrument_.Model().PutInBeam(sample, clock_.NowMs()), "putting " + sample + " into the beam");
}

void ExampleBench::FillCell(int cell, const std::string& sample) {
  Require(instrument_.Model().FillCell(cell, sample, clock_.NowMs()), "filling a cell with " + sample);
}

void ExampleBench::MoveTo(double nm) {
  Require(link_->Instrument.SetWavelength(nm), "setting the wavelength");
}

void ExampleBench::MoveSampler(std::int32_t cell) {
  Require(link_->Instrument.SetSampler(cell), "moving the sampler");
}

void ExampleBench::ChangeLampsAt(double nm) {
  Require(link_->Instrument.SetLampWavelength(nm), "setting the change of lamps");
}

Blank ExampleBench::TakeBlank() {
  Require(link_->Live.mmuRezeroEnergy(), "taking the blank");
  return {link_->State.FullEnergy, link_->State.DarkEnergy, link_->State.GainIndex};
}

void ExampleBench::UseGain(std::int32_t gain) {
  Require(link_->Instrument.SetGain(gain), "setting the gain");
}

std::int32_t ExampleBench::Read(std::int32_t samples) {
  const std::int32_t energy = link_->Instrument.GetEnergy(samples);
  Require(link_->Instrument.LastReply().Complete(), "reading the energy");
  return energy;
}

void ExampleBench::Wait(std::int64_t ms) {
  clock_.Advance(ms);
}

TestBench ExampleBench::Tools() {
  return {link_->Instrument, link_->State, link_->Live, *this, *this, link_->Formats};
}

void ExampleBench::Show(int textId, const std::string& details) {
  throw ExampleFailure(Text(textId) + " " + details);
}

void ExampleBench::Require(bool done, const std::string& step) const {
  if (!done) throw ExampleFailure(step + " failed");
}

}  // namespace spectrane
