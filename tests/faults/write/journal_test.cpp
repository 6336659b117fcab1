// What journals come to when calls of the system fail below them, and that none of them holds a run up.

#include <QTableView>

#include <map>
#include <optional>

#include "app/framefixture.h"
#include "app/ground/words.h"
#include "faults/write/faultcells.h"
#include "faults/write/willing.h"
#include "files/filesupport.h"
#include "modes/timescan/timescansettings.h"
#include "modes/windows/frmbasic.h"
#include "modes/windows/frmqua.h"
#include "modes/windows/frmts.h"

namespace spectrane::testing_faults {
namespace {

using namespace testing_windows;

using Rows = std::vector<BasicRecord>;

/// Documents whose journals lie in a folder of their own, beside the data file that the work began with.
class JournalFaults : public WindowFixture {
 protected:
  JournalFaults() {
    Desk.Journals = Folder.Path("journal");
    ConnectNow();
  }
  ~JournalFaults() override { Forget(); }

  void Forget() {
    failing_calls::Disarm();
    delete Window.data();
    Desk.Active = nullptr;
    Desk.JournalFaults.clear();
    std::filesystem::remove_all(Desk.Journals);
  }
  template <typename Form>
  Form& Open(Form* window) {
    Window = window;
    Desk.Active = window;
    return *window;
  }
  FrmBasic& Basic() { return dynamic_cast<FrmBasic&>(*Window); }
  void Arm(const Plan& plan) { failing_calls::Arm(Desk.Journals.c_str(), plan); }
  Rows Shown() {
    Rows rows;
    for (std::int32_t i = 0; i < Basic().Document().RecordCount(); ++i)
      rows.push_back(Basic().Document().Record(i));
    return rows;
  }
  /// What the journals in the folder say, as the next start would find them; nothing where there is none.
  std::optional<Rows> Kept() {
    std::map<std::string, std::string> files;
    for (const auto& each : std::filesystem::directory_iterator(Desk.Journals))
      files[each.path().string()] = ReadBytes(each.path().string());
    const std::string copy = Folder.Path("copy");
    std::filesystem::remove_all(copy);
    std::filesystem::create_directory(copy);
    for (const auto& [path, bytes] : files)
      WriteBytes(copy + "/" + std::filesystem::path(path).filename().string(), bytes);
    const std::vector<LeftJournal> left = TakeLeftJournals(copy);
    EXPECT_LE(left.size(), 1u);
    if (left.empty()) return std::nullopt;
    BasicOption option;
    Rows rows;
    EXPECT_TRUE(TakeJournal(BasicModule(), left[0].Content, option, rows));
    return rows;
  }

  /// The work of a while: what is measured, written and removed in a document that came from a file.
  std::vector<std::function<void()>> Work() {
    const auto select = [this](int row) {
      auto* const grid = Window->findChild<QTableView*>(QStringLiteral("DataGrid"));
      grid->setCurrentIndex(grid->model()->index(row, 0));
      return grid;
    };
    return {[this] { Window->mmuOperationRezero(); },
            [this] { Window->mmuStartTest(); },
            [select] {
              auto* const grid = select(0);
              grid->model()->setData(grid->model()->index(0, 5), QStringLiteral("by hand"));
            },
            [this, select] {
              select(1);
              Window->mmuDeleteReport();
            },
            [this] { Window->mmuStartTest(); },
            [this, select] {
              select(0);
              Window->mmuDeleteReport();
            },
            [this] { Window->mmuStartTest(); },
            [this] { Window->mmuStartTest(); }};
  }
  /// Opens the file, arms the fault, and works; `after` looks after each step.
  void WorkWith(const Plan& plan, const std::function<void()>& after) {
    Open(new FrmBasic(Desk));
    ASSERT_TRUE(Window->mmuOpenFile(PathOf("data.bas")));
    std::filesystem::create_directories(Desk.Journals);
    Arm(plan);
    for (const auto& step : Work()) {
      step();
      after();
    }
  }

  /// What a journal says that took nothing in from that call on: the document before the change whose write
  /// it is. It begins with a write, so one that cannot be opened or written for the first time says nothing.
  static std::optional<Rows> KeptBefore(const Plan& plan, const std::vector<Rows>& past) {
    if (plan.Which == Call::Open || plan.Nth == 1) return std::nullopt;
    return past.at(static_cast<std::size_t>(plan.Nth) - 1);
  }

  /// A process of its own that is killed there. It tells the rows that stand after each of its steps: no two
  /// processes measure the same energies.
  void ExpectKilledWith(const Plan& plan) {
    std::size_t steps = 0;
    const auto path = [this](std::size_t step) { return Folder.Path("step" + std::to_string(step)); };
    EXPECT_TRUE(KilledIn([&] { WorkWith(plan, [&] { WriteBytes(path(steps++), BytesOf(Shown())); }); }));
    std::vector<Rows> past;
    for (; std::filesystem::exists(path(past.size())); std::filesystem::remove(path(past.size() - 1)))
      past.push_back(RowsOf(ReadBytes(path(past.size()))));
    ASSERT_EQ(past.size(), plan.Which == Call::Open ? 1u : static_cast<std::size_t>(plan.Nth));
    EXPECT_EQ(Kept(), KeptBefore(plan, past));
  }
  /// Rows as a data file has them.
  static std::string BytesOf(const Rows& rows) {
    const std::size_t size = BasicModule().Record.Size;
    std::string bytes(rows.size() * size, '\0');
    bool lost = false;
    for (std::size_t i = 0; i < rows.size(); ++i)
      BasicModule().Record.Encode(&rows[i], reinterpret_cast<unsigned char*>(bytes.data()) + i * size, lost);
    EXPECT_FALSE(lost);
    return bytes;
  }
  static Rows RowsOf(const std::string& bytes) {
    Rows rows(bytes.size() / BasicModule().Record.Size);
    BasicModule().Record.Decode(reinterpret_cast<const unsigned char*>(bytes.data()), rows.data(),
                                rows.size());
    return rows;
  }

  QPointer<DocumentWindow> Window;
  Willing Person;
  FakeMainWindow Desk{Link, Settings, Display, Person, QString::fromStdString(Folder.Path())};
};

TEST_F(JournalFaults, D15_WhateverFailsTheWorkGoesOnAndTheJournalSaysWhatOnceWas) {
  const std::string file = BasicFileBytes(3, 3);
  WriteBytes(Folder.Path("data.bas"), file);
  std::vector<Rows> states;
  std::vector<int> writes;
  WorkWith({}, [&] {
    states.push_back(Shown());
    writes.push_back(failing_calls::CountOf(Call::Write));
  });
  const Counts counts = CountsNow();
  failing_calls::Disarm();
  ASSERT_EQ(Kept(), Shown());
  EXPECT_THAT(writes, testing::ElementsAre(0, 1, 2, 3, 4, 5, 6, 7)) << "one for each change";
  Forget();
  std::size_t cells = 0;
  std::size_t kills = 0;
  // What is cut is what a short write has left.
  std::vector<Plan> plans;
  for (const Plan& plan : PlansFor(counts, true)) {
    if (plan.Which == Call::Open || plan.Which == Call::Write) plans.push_back(plan);
  }
  for (const Plan& plan : plans) {
    SCOPED_TRACE(NameOf(plan));
    ++cells;
    std::vector<Rows> past;
    if (plan.Fault == failing_calls::kKill) {
      ++kills;
      ExpectKilledWith(plan);
      EXPECT_EQ(ReadBytes(Folder.Path("data.bas")), file);
      Forget();
      continue;
    }
    WorkWith(plan, [&] { past.push_back(Shown()); });
    EXPECT_TRUE(failing_calls::Happened());
    failing_calls::Disarm();
    ASSERT_EQ(past.size(), states.size());
    for (std::size_t i = 0; i < past.size(); ++i)
      EXPECT_EQ(past[i].size(), states[i].size()) << "the work goes on";
    const auto kept = Kept();
    if (plan.Ever) {
      EXPECT_EQ(kept, KeptBefore(plan, past)) << "what stood before the first one that failed";
    } else {
      EXPECT_EQ(kept, Shown()) << "the next change or the end of the run brings what was missed";
    }
    EXPECT_FALSE(Desk.JournalFaults.empty());
    EXPECT_EQ(ReadBytes(Folder.Path("data.bas")), file);
    EXPECT_TRUE(Window->isWindowModified());
    Forget();
  }
  std::cout << "cells of journals: " << cells << ", of them killed " << kills << '\n';
}

TEST_F(JournalFaults, D15_AShortWriteThatCannotBeCutOffHidesNothing) {
  WriteBytes(Folder.Path("data.bas"), BasicFileBytes(3, 3));
  for (const int write : {2, 3, 5}) {
    SCOPED_TRACE(write);
    WorkWith({Call::Write, write, failing_calls::kShort, false, true}, [] {});
    EXPECT_TRUE(failing_calls::Happened());
    EXPECT_GT(failing_calls::CountOf(Call::Cut), 0);
    failing_calls::Disarm();
    EXPECT_EQ(Kept(), Shown());
    Forget();
  }
}

/// The next start goes on in the same file, which ends in a torn entry.
TEST_F(JournalFaults, D15_ATornEndThatCannotBeCutOffHidesNoRowOfTheNextStart) {
  for (const bool ever : {false, true}) {
    SCOPED_TRACE(ever);
    Open(new FrmBasic(Desk));
    Window->mmuOperationRezero();
    for (int i = 0; i < 3; ++i) Window->mmuStartTest();
    const Rows before = Shown();
    std::string path;
    for (const auto& each : std::filesystem::directory_iterator(Desk.Journals)) path = each.path().string();
    const std::string bytes = ReadBytes(path);
    Forget();
    std::filesystem::create_directories(Desk.Journals);
    WriteBytes(path, bytes.substr(0, bytes.size() - 100));
    Arm({Call::Cut, 1, EIO, ever});
    std::vector<LeftJournal> left = TakeLeftJournals(Desk.Journals);
    ASSERT_EQ(left.size(), 1u);
    Open(new FrmBasic(Desk));
    ASSERT_TRUE(Window->BringBack(std::move(left[0])));
    ASSERT_EQ(Shown(), Rows(before.begin(), before.end() - 1));
    EXPECT_TRUE(failing_calls::Happened());
    Window->mmuOperationRezero();
    Window->mmuStartTest();
    ASSERT_EQ(Shown().size(), 3u);
    EXPECT_EQ(Kept(), Shown());
    Forget();
  }
}

/// A journal that cannot be removed must not bring a document back that was saved or given up.
TEST_F(JournalFaults, D15_AJournalThatCannotBeRemovedSaysNothing) {
  Open(new FrmBasic(Desk));
  std::filesystem::create_directories(Desk.Journals);
  Arm({Call::Remove, 1, EIO, true});
  Window->mmuOperationRezero();
  Window->mmuStartTest();
  EXPECT_EQ(Kept(), Shown());
  Person.Named = PathOf("saved.bas");
  ASSERT_TRUE(Window->mmuSaveFile());
  EXPECT_TRUE(failing_calls::Happened());
  EXPECT_EQ(Kept(), std::nullopt);
}

/// Records that were replaced so often that the file may be written anew.
class JournalTidying : public testing::Test {
 protected:
  bool Keep(JournalKeeper& keeper, bool mayTidy) {
    for (BasicRecord& record : Records) record.Wavelength += 1;
    return keeper.Keep(JournalImageOf(BasicModule(), BasicOption(), static_cast<std::int32_t>(Records.size()),
                                      [this](std::int32_t i) -> const BasicRecord& {
                                        return Records[static_cast<std::size_t>(i)];
                                      }),
                       0, mayTidy);
  }
  std::string Path() const { return folder_.Path("journal"); }

  Rows Records = Rows(2000, BasicRow(1, "row"));

 private:
  TemporaryFolder folder_;
};

TEST_F(JournalTidying, D15_WhateverFailsInItTheJournalSaysWhatIs) {
  for (const Plan& plan : std::vector<Plan>{{Call::Open, 1, ENOSPC, true},
                                            {Call::Write, 2, failing_calls::kShort, true},
                                            {Call::Write, 2, EIO, false},
                                            {Call::Sync, 1, EIO, false},
                                            {Call::Remove, 1, EIO, true}}) {
    SCOPED_TRACE(NameOf(plan));
    std::filesystem::remove_all(Path());
    JournalKeeper keeper(Path());
    std::filesystem::create_directory(Path());
    // The file that is there must be watched, too.
    failing_calls::Arm(Path().c_str(), {});
    for (int i = 0; i < 12; ++i) ASSERT_TRUE(Keep(keeper, false));
    const std::size_t size = keeper.Size();
    failing_calls::Plan counted = plan;
    counted.Nth += failing_calls::CountOf(plan.Which);
    failing_calls::Replan(counted);
    EXPECT_TRUE(Keep(keeper, true));
    EXPECT_TRUE(failing_calls::Happened());
    failing_calls::Disarm();
    if (plan.Which != Call::Remove) {
      EXPECT_GT(keeper.Size(), size) << "the one that was is still there";
    }
    Records.push_back(BasicRow(7, "next"));
    ASSERT_TRUE(Keep(keeper, false));
    std::filesystem::copy(Path(), Path() + "-copy", std::filesystem::copy_options::recursive);
    const std::vector<LeftJournal> left = TakeLeftJournals(Path() + "-copy");
    ASSERT_EQ(left.size(), 1u);
    BasicOption option;
    Rows rows;
    ASSERT_TRUE(TakeJournal(BasicModule(), left[0].Content, option, rows));
    EXPECT_EQ(rows, Records);
    std::filesystem::remove_all(Path() + "-copy");
  }
}

/// What a run asks of the system for its journal: an append is one write, and nothing waits for the disk.
class JournalCosts : public JournalFaults {
 protected:
  struct Costs {
    int Opens = 0;
    int Writes = 0;
    int Others = 0;
  };
  static Costs Now() {
    Costs costs;
    costs.Opens = failing_calls::CountOf(Call::Open);
    costs.Writes = failing_calls::CountOf(Call::Write);
    for (const Call call : {Call::Read, Call::Sync, Call::Rename, Call::Remove, Call::Cut})
      costs.Others += failing_calls::CountOf(call);
    return costs;
  }
  /// Runs it; looks at each yield inside of a run, and at its end, how many records there are.
  void Watch(const std::function<void()>& run, const std::function<int()>& records, int most) {
    const Costs before = Now();
    const int had = records();
    int looked = 0;
    const auto look = [&] {
      const Costs now = Now();
      EXPECT_EQ(now.Writes - before.Writes, std::max(records() - had, 0));
      EXPECT_EQ(now.Opens, before.Opens);
      EXPECT_EQ(now.Others, before.Others) << "waited for the disk";
      ++looked;
    };
    Loop.OnYield = [&] {
      if (Desk.RunDepth > 0) look();
    };
    run();
    Loop.OnYield = {};
    EXPECT_GT(looked, most);
    EXPECT_EQ(records() - had, most);
  }
};

TEST_F(JournalCosts, D15_ARowIsOneWriteAndNothingWaitsForTheDisk) {
  FrmBasic& window = Open(new FrmBasic(Desk));
  FitSampler({1, 2, 3, 4, 5, 6, 7, 8});
  Link.State.SamplerPresent = true;
  std::filesystem::create_directories(Desk.Journals);
  Arm({});
  Window->mmuOperationRezero();
  const auto rows = [&] { return window.Document().RecordCount(); };
  Window->mmuStartTest();
  ASSERT_EQ(rows(), 8);
  EXPECT_EQ(Now().Opens, 1);
  Watch([&] { Window->mmuStartTest(); }, rows, 8);
}

TEST_F(JournalCosts, D15_APointOfATimeScanIsOneWrite) {
  Settings.PutSetting(kTimeScanSection, "Start Second", "0");
  Settings.PutSetting(kTimeScanSection, "End Second", "5");
  Settings.PutSetting(kTimeScanSection, "Interval Second", "3");
  FrmTS& window = Open(new FrmTS(Desk));
  std::filesystem::create_directories(Desk.Journals);
  Arm({});
  Window->mmuOperationRezero();
  int looked = 0;
  Loop.OnYield = [&] {
    const int points = window.Document().DataCount();
    if (Desk.RunDepth == 0 || points < 1) return;
    EXPECT_EQ(Now().Writes, points);
    EXPECT_EQ(Now().Opens, 1);
    EXPECT_EQ(Now().Others, 0) << "waited for the disk";
    ++looked;
  };
  Window->mmuStartTest();
  Loop.OnYield = {};
  EXPECT_EQ(window.Document().DataCount(), 6);
  EXPECT_GE(looked, 5);
}

TEST_F(JournalCosts, D15_ASampleOfAQuantitationIsOneWrite) {
  Settings.PutSetting("Quantitative Measurement", "Curve Item", "2");
  Settings.PutSetting("Quantitative Measurement", "Fitting Line", "0");
  Settings.PutSetting("Quantitative Measurement", "Curve K1", "10");
  FrmQua& window = Open(new FrmQua(Desk));
  FitSampler({1, 2, 3, 4});
  Link.State.SamplerPresent = true;
  std::filesystem::create_directories(Desk.Journals);
  Arm({});
  Window->mmuOperationRezero();
  const auto rows = [&] { return window.Document().RecordCount(); };
  Window->mmuStartTest();
  ASSERT_EQ(rows(), 4);
  Watch([&] { Window->mmuStartTest(); }, rows, 4);
}

/// A file that is mostly replaced is written anew with the disk's word for it, but not while it measures.
TEST_F(JournalCosts, D15_ARunIsNotTheTimeForTidying) {
  std::filesystem::create_directories(Desk.Journals);
  std::string path;
  {
    JournalKeeper keeper(Desk.Journals);
    Rows rows(2000, BasicRow(1, "row"));
    for (int i = 0; i < 12; ++i) {
      for (BasicRecord& record : rows) record.Wavelength += 1;
      ASSERT_TRUE(keeper.Keep(
          JournalImageOf(
              BasicModule(), BasicOption(), static_cast<std::int32_t>(rows.size()),
              [&](std::int32_t at) -> const BasicRecord& { return rows[static_cast<std::size_t>(at)]; }),
          0, false));
    }
  }
  // The first two are the folder and the journal; what follows would be a new file.
  Arm({Call::Open, 3, ENOSPC, true});
  std::vector<LeftJournal> left = TakeLeftJournals(Desk.Journals);
  ASSERT_EQ(left.size(), 1u);
  FrmBasic& window = Open(new FrmBasic(Desk));
  ASSERT_TRUE(Window->BringBack(std::move(left[0])));
  ASSERT_TRUE(failing_calls::Happened());
  FitSampler({1, 2, 3});
  Link.State.SamplerPresent = true;
  Window->mmuOperationRezero();
  ASSERT_EQ(failing_calls::CountOf(Call::Sync), 0);
  failing_calls::Replan({});
  Watch([&] { Window->mmuStartTest(); }, [&] { return window.Document().RecordCount(); }, 3);
  EXPECT_EQ(failing_calls::CountOf(Call::Sync), 1) << "afterwards it is; opened " << Now().Opens;
  for (const auto& each : std::filesystem::directory_iterator(Desk.Journals))
    EXPECT_LT(each.file_size(), 2'000'000u);
}

/// The main window says it once.
class JournalRemarks : public FrameFixture {};

TEST_F(JournalRemarks, D15_AFaultIsSaidOnce) {
  for (const Plan& plan : std::vector<Plan>{{Call::Open, 1, EACCES, true},
                                            {Call::Write, 1, ENOSPC, true},
                                            {Call::Write, 2, EIO, false},
                                            {Call::Write, 2, failing_calls::kShort, true}}) {
    SCOPED_TRACE(NameOf(plan));
    Start();
    ConnectNow();
    auto& window = dynamic_cast<FrmBasic&>(*NewPhotometry());
    Choose(kSetBlank);
    std::filesystem::create_directories(Folder.Path("journal"));
    failing_calls::Arm(Folder.Path("journal").c_str(), plan);
    int told = 0;
    for (int row = 0; row < 5; ++row) {
      Main->Display().SetRemark({});
      Choose(kStartTest);
      if (Remark().starts_with("Unsaved work is not kept")) ++told;
    }
    EXPECT_TRUE(failing_calls::Happened());
    failing_calls::Disarm();
    EXPECT_EQ(told, 1);
    EXPECT_EQ(window.Document().RecordCount(), 5);
    Main.reset();
    std::filesystem::remove_all(Folder.Path("journal"));
  }
}

}  // namespace
}  // namespace spectrane::testing_faults
