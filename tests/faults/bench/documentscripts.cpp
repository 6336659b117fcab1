// The scripts of photometry, kinetics and quantitation.

#include <QFile>

#include <algorithm>

#include "app/ground/commands.h"
#include "app/ground/words.h"
#include "faults/bench/script.h"
#include "files/basicfile.h"
#include "files/quafile.h"
#include "files/tsfile.h"
#include "modes/windows/frmbasic.h"
#include "modes/windows/frmqua.h"
#include "modes/windows/frmts.h"

namespace spectrane::campaign {
namespace {

constexpr int kBlankWanted = 971;  // the words of 1048 too
constexpr int kLost = 1096;        // the words of 972 and 1045 too
constexpr int kSamplerError = 1912;
constexpr int kPutBlank = 977;
constexpr int kPutSample = 978;

std::vector<std::string> With(std::vector<std::string> verbs, bool sampler) {
  if (sampler) verbs.emplace_back("setsampler");
  return verbs;
}

/// The only blank of an act, as its verb gave it.
std::int32_t ReferenceOf(const std::vector<Exchanged>& exchanges, const char* verb) {
  std::int32_t reference = 0;
  for (const Exchanged& each : exchanges) {
    if (each.Verb() != verb || !each.Sound()) continue;
    reference = each.Verb() == "ge" ? EnergyOf(each.Request, each.Collected).value_or(0)
                                    : NumbersOf(each.Request, each.Collected, 2)->at(0);
  }
  return reference;
}

/// What all documents that grow by rows have in common.
template <typename Window, typename OptionT, typename RecordT>
class RowScript : public Script {
 public:
  using Script::Script;

 protected:
  Window& Form() { return Person().template Child<Window>(); }
  bool BlankHolds() override { return Form().Test().BlankHolds(); }
  virtual bool Same(const RecordT& stored, const Reading& reading) const = 0;
  bool Fits(const std::vector<RecordT>& stored) const {
    return Fit(Expected, stored.size(),
               [&](std::size_t i, const Reading& reading) { return Same(stored[i], reading); });
  }
  std::vector<RecordT> Shown() {
    std::vector<RecordT> records;
    for (std::int32_t i = 0; i < Form().Document().RecordCount(); ++i) {
      records.push_back(Form().Document().Record(i));
    }
    return records;
  }
  void Grow(const Act& act, std::int32_t reference, std::int32_t dark) {
    for (const Reading& reading : ReadingsOf(act.Exchanges, "ge 10", reference, dark)) {
      Expected.push_back(reading);
    }
    Expect(Fits(Shown()), act.Name + ": rows that were not answered so, or answers without their row");
  }
  void SaveAndRead(const FileModule<OptionT, RecordT>& module, const char* name) {
    const QString path = Person().PathOf(name);
    const std::vector<RecordT> shown = Shown();
    Expect(Person().SaveAs(path), "not saved");
    Person().CloseAll();
    OptionT option;
    std::vector<RecordT> stored;
    Expect(!LoadDataFile(module, path.toStdString(), option, stored), "the file does not open");
    Expect(Fits(stored), "rows in the file that were not answered so, or answers without their row");
    Person().Hands().File = path;
    Person().Choose(kOpen);
    Expect(Person().Frame().ActiveForm() && Shown() == shown, "other rows when the file is opened again");
    Person().CloseAll();
    QFile::remove(path);
  }
};

class PhotometryScript : public RowScript<FrmBasic, BasicOption, BasicRecord> {
 public:
  using RowScript::RowScript;

 protected:
  int NewCommand() const override { return kNewBasic; }
  std::vector<std::string> MeasureVerbs() const override { return With({"getwl", "ge", "ge"}, HasSampler()); }

  void JudgeBlank(const Act& act) override {
    const Exchanged* const broken = act.Broken();
    ExpectTold(act, broken && broken->Verb() == "setsampler" ? kSamplerError : 0, kSamplerError);
    if (act.Unsound()) {
      Expect(act.Count("rezero") == 0 || !BlankHolds(), "a blank that was not read");
      if (!broken || broken->Verb() != "setsampler") {
        Expect(act.Remark.starts_with(Words(kLost).toStdString()), "a lost blank is not told");
      }
    } else if (act.Count("ge") > 0) {
      reference_ = ReferenceOf(act.Exchanges, "ge");
      Expect(BlankHolds() && Form().Test().BlankFullEnergy == reference_, "not the blank that was read");
    }
  }
  void JudgeMeasurement(const Act& act, bool) override {
    const Exchanged* const unsound = act.Unsound();
    const bool atFirst = unsound && (unsound->Verb() == "getwl" || unsound->Verb() == "swl");
    const bool begun = act.Count("ge") + act.Count("setsampler") > 0;
    if (!begun && !unsound && !act.LineGone) {
      ExpectTold(act, kBlankWanted);
    } else {
      ExpectTold(act, unsound && !atFirst ? kLost : 0, kLost);
    }
    if (atFirst || (!begun && act.LineGone && act.Told.isEmpty())) {
      Expect(act.Remark.starts_with(Words(kLost).toStdString()), "a lost run is not told");
    }
    Grow(act, reference_, Form().Test().BlankDarkEnergy);
  }
  void JudgeFile() override { SaveAndRead(BasicModule(), "script.bas"); }
  bool Same(const BasicRecord& stored, const Reading& reading) const override {
    return stored.SampleEnergy == reading.Energy && stored.ReferenceEnergy == reading.Reference &&
           stored.DarkEnergy == reading.Dark;
  }

 private:
  std::int32_t reference_ = 0;
};

class QuantitationScript : public RowScript<FrmQua, QuaOption, QuaRecord> {
 public:
  using RowScript::RowScript;

 protected:
  int NewCommand() const override { return kNewQua; }
  std::vector<std::string> MeasureVerbs() const override {
    return With({"getwl", "sa", "ge", "ge"}, HasSampler());
  }

  void JudgeBlank(const Act& act) override {
    const Exchanged* const broken = act.Broken();
    const Exchanged* const unsound = act.Unsound();
    const std::string verb = unsound ? unsound->Verb() : std::string();
    const auto gain = [&]() -> std::int32_t {
      for (const Exchanged& each : act.Exchanges) {
        if (each.Verb() == "rezero" && each.Sound()) return NumbersOf(each.Request, each.Collected, 2)->at(1);
      }
      return 0;
    }();
    const bool outside = !unsound && act.Count("rezero") > 0 && (gain < 1 || gain > 11);
    ExpectTold(act,
               broken && broken->Verb() == "setsampler"       ? kSamplerError
               : verb == "swl" || verb == "rezero" || outside ? kLost
                                                              : 0,
               act.Count("rezero") + act.Count("swl") == 0 && HasSampler() ? kSamplerError : kLost);
    if (unsound || outside) {
      Expect(verb == "getwl" || !BlankHolds(), "a blank that was not read");
    } else if (act.Count("rezero") > 0) {
      reference_ = ReferenceOf(act.Exchanges, "rezero");
      Expect(BlankHolds() && Form().Document().Option().BlankFullEnergy[0] == reference_,
             "not the blank that was read");
    }
  }
  void JudgeMeasurement(const Act& act, bool) override {
    const Exchanged* const unsound = act.Unsound();
    ExpectTold(act, unsound ? kLost : act.Exchanges.empty() && !act.LineGone ? kBlankWanted : 0, kLost);
    Grow(act, reference_, Form().Document().Option().BlankDarkEnergy[0]);
  }
  void JudgeFile() override { SaveAndRead(QuaModule(), "script.qua"); }
  bool Same(const QuaRecord& stored, const Reading& reading) const override {
    return IsAbsorbanceOf(stored.Abs[0], reading);
  }

 private:
  std::int32_t reference_ = 0;
};

/// Each test takes the place of the one before, and is saved and read by itself.
class KineticsScript : public Script {
 public:
  using Script::Script;

 protected:
  FrmTS& Form() { return Person().Child<FrmTS>(); }
  QString File() { return Person().PathOf("script.tis"); }
  int NewCommand() const override { return kNewTS; }
  std::vector<std::string> MeasureVerbs() const override { return {"ge"}; }
  bool BlankHolds() override { return Form().Test().BlankHolds(); }

  void JudgeBlank(const Act& act) override {
    ExpectTold(WithoutPrompts(act), 0);
    if (act.Unsound()) {
      Expect(act.Count("rezero") == 0 || !BlankHolds(), "a blank that was not read");
    } else if (act.Count("ge") > 0) {
      reference_ = ReferenceOf(act.Exchanges, "ge");
      Expect(BlankHolds() && Person().Frame().Link().State.FullEnergy == reference_,
             "not the blank that was read");
    }
  }
  void JudgeMeasurement(const Act& act, bool) override {
    const TimeScanDocument& document = Form().Document();
    // On the way it may have been asked to take the blank.
    for (const Exchanged& each : act.Exchanges) {
      if (each.Request == "ge 30" && each.Sound() && act.Count("rezero") > 0)
        reference_ = EnergyOf(each.Request, each.Collected).value_or(0);
    }
    const bool read =
        std::ranges::any_of(act.Exchanges, [](const Exchanged& each) { return each.Request == "ge 20"; });
    if (!read) {
      JudgeNoReading(act);
      return;
    }
    Expected = ReadingsOf(act.Exchanges, "ge 20", reference_, document.Option().DarkEnergy);
    const bool whole = document.DataCount() == document.PointTotal();
    Expect(whole || act.LineGone || !act.Exchanges.back().Sound(), "ended early without a reason");
    ExpectTold(WithoutPrompts(act), whole ? 0 : kLost);
    if (document.DataCount() == 0) {
      Expect(Fit(Expected, 0, {}), "answers without their point");
      return;
    }
    Expect(whole || Person().SaveAs(File()), "not saved");
    TSOption option;
    stored_.clear();
    Expect(!LoadDataFile(TSModule(), File().toStdString(), option, stored_), "the file does not open");
    Expect(option.FullEnergy == reference_, "not the blank that was read, in the file");
    Expect(Fit(Expected, stored_.size(),
               [&](std::size_t i, const Reading& reading) { return stored_[i].Energy == reading.Energy; }),
           "points in the file that were not answered so, or answers without their point");
    storedBlank_ = option.FullEnergy;
    QFile::remove(Kept());
    Expect(QFile::rename(File(), Kept()), "the file is gone");
  }
  /// A start that came to no reading: no point, and the reason in one box.
  void JudgeNoReading(const Act& act) {
    const TimeScanDocument& document = Form().Document();
    const bool arrived = Person().Frame().Link().State.CurrentWavelength == document.Option().WorkWL;
    Expect(document.DataCount() == 0, "points of readings that nobody asked for");
    if (!arrived) {
      // A move that failed shows where the wavelength would stand; there is no box for it.
      Expect(act.LineGone || act.Unsound(), "no move without a reason");
      ExpectTold(WithoutPrompts(act), 0);
    } else if (!BlankHolds()) {
      ExpectTold(WithoutPrompts(act), kBlankWanted);
    } else {
      Expect(act.LineGone, "no reading without a reason");
      ExpectTold(WithoutPrompts(act), kLost);
    }
  }
  /// The last test that was stored, opened again.
  void JudgeFile() override {
    Person().CloseAll();
    if (stored_.empty()) return;
    Person().Hands().File = Kept();
    Person().Choose(kOpen);
    const auto* const again = qobject_cast<const FrmTS*>(Person().Frame().ActiveForm());
    Expect(again && again->Document().DataCount() == static_cast<std::int32_t>(stored_.size()),
           "another number of points when the file is opened again");
    for (std::size_t i = 0; again && i < stored_.size(); ++i) {
      if (again->Document().DataCount() <= static_cast<std::int32_t>(i)) break;
      Expect(again->Document().Point(static_cast<std::int32_t>(i)) == stored_[i],
             "other points when the file is opened again");
    }
    Expect(again && again->Document().Option().FullEnergy == storedBlank_,
           "another blank when the file is opened again");
    Person().CloseAll();
    QFile::remove(Kept());
  }

 private:
  /// Where the last file is kept until it is opened again.
  QString Kept() { return Person().PathOf("kept.tis"); }
  static Act WithoutPrompts(Act act) {
    act.Told.removeAll(Words(kPutBlank));
    act.Told.removeAll(Words(kPutSample));
    return act;
  }

  std::int32_t reference_ = 0;
  std::vector<TSRecord> stored_;
  std::int32_t storedBlank_ = 0;
};

}  // namespace

std::unique_ptr<Script> MakeScript(Operator& person, std::uint64_t seed,
                                   const std::vector<std::string>& simulatorOptions) {
  switch (seed % 4) {
    case 0:
      return std::make_unique<QuantitationScript>(person, seed, simulatorOptions);
    case 1:
      person.Hands().File = person.PathOf("script.tis");
      return std::make_unique<KineticsScript>(person, seed, simulatorOptions);
    default:
      return std::make_unique<PhotometryScript>(person, seed, simulatorOptions);
  }
}

}  // namespace spectrane::campaign
