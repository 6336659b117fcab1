#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "acquire/acquisition.h"
#include "acquire/plan.h"
#include "cli/command.h"
#include "cli/instrumentsession.h"
#include "cli/jsontext.h"
#include "cli/operator.h"
#include "cli/progressbar.h"

namespace spectrane {

/// What every command that measures with the whole command set is told.
struct AcquisitionOrder {
  /// The file to write; with cells, a name is made of it for each cell that gets a file of its own.
  std::string Out;
  /// Cells of the automatic sampler, 1 to 8; empty: what stands in the beam, put there by hand.
  std::vector<std::int32_t> Cells;
  /// No waiting for Enter.
  bool Yes = false;
  /// Existing files may be replaced.
  bool Force = false;
};

/// Instrument, person and files of one measuring command. What keeps a run from beginning is thrown as a
/// Refusal; what ends it early is handed back in words, so that what was measured can be saved first.
class AcquisitionDesk {
 public:
  using Problem = std::optional<std::string>;

  /// Nothing is sent yet. Both must outlive this object.
  AcquisitionDesk(const AcquisitionOrder& order, BatchContext& run);
  /// Releases the instrument.
  ~AcquisitionDesk();
  AcquisitionDesk(const AcquisitionDesk&) = delete;
  AcquisitionDesk& operator=(const AcquisitionDesk&) = delete;

  InstrumentSession& Session() { return session_; }
  AcquisitionSteps& Steps() { return steps_; }
  TestBench Bench();
  const Clock& Time() const { return time_; }
  bool AsksToStop() const { return person_.AsksToStop(); }

  /// Cells to measure one after the other; a single 0 stands for what is put into the beam by hand.
  const std::vector<std::int32_t>& Places() const { return places_; }
  /// The file of a place.
  std::string OutputOf(std::int32_t place) const;
  /// Refuses paths that cannot be written: that of every place, or the one of them all.
  void RefuseOutputs(bool fileOfEach, std::uintmax_t bytes) const;

  /// Connects and refuses what this instrument cannot do: wavelengths outside its range [nm], cells without a
  /// sampler.
  void Connect(double lowest, double highest);
  void Connect();
  /// Says what is going to happen.
  void Announce(const std::vector<PlannedPass>& plan);
  void Remark(const std::string& line);
  /// Moves the sampler, where there is one, to the cell of the blank, and asks for it. `alone`: nothing else
  /// is going to be asked for; then a script, which may have put it there before, is not kept waiting.
  Problem AskForBlank(bool alone);
  /// Moves the sampler to the place, or asks for a sample there.
  Problem AskForSample(std::int32_t place, bool alone);
  /// The dark energies that the instrument has stored.
  Problem ReadDark();

  /// Runs one pass with its bar. `pass` is told through the hooks of Steps().
  Problem Run(const PlannedPass& plan, const std::function<AcquisitionEnd()>& pass);
  ProgressBar MakeBar(const PlannedPass& plan, bool hidden = false) const;
  /// The words for an end; none for one that is finished.
  Problem ProblemOf(AcquisitionEnd end);
  /// The words for a step that failed at that wavelength [nm].
  Problem FailedAt(double wavelength);
  /// No step has failed so far.
  bool LinkHolds() const { return linkHolds_; }
  /// Both problems in one text.
  static Problem Joined(const Problem& first, const Problem& second);
  /// A person puts each sample into the beam.
  bool AsksForSamples() const { return !order_.Yes && order_.Cells.empty(); }

  /// Saves what a place gave; nothing without records. `save` writes to a path. The problem of a name that
  /// could not be had.
  Problem Save(std::int32_t place, std::int32_t records,
               const std::function<FileFault(const std::string& path)>& save);
  /// Sets the result, with `more` beside the files; throws when there was a problem.
  void Finish(const Problem& problem, const char* unit, const std::function<void(Json& result)>& more = {});

 private:
  struct Saved {
    std::string Path;
    std::int32_t Place;
    std::int32_t Records;
  };

  Problem Ask(int promptId, bool alone);
  Problem Failed(const std::string& words);
  std::string SamplerWords() const;
  std::string SavedText(const char* unit) const;

  const AcquisitionOrder& order_;
  BatchContext& run_;
  std::vector<std::int32_t> places_;
  Operator person_;
  InstrumentSession session_;
  SteadyClock time_;
  AcquisitionSteps steps_;
  bool connected_ = false;
  bool linkHolds_ = true;
  std::vector<Saved> saved_;
};

}  // namespace spectrane
