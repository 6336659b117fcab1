// What the batch command writes while calls of the system fail below it: the file, its words and its status.

#include <QProcess>
#include <QProcessEnvironment>

#include <sys/resource.h>

#include "cli/processes.h"
#include "faults/write/faultcells.h"
#include "faults/write/wholefiles.h"

namespace spectrane::testing_faults {
namespace {

struct ProgramRow {
  const char* Name;
  /// Of the batch command; "IN" and "OUT" stand for the files.
  std::vector<std::string> Arguments;
  const char* Example;
  const char* Ending;
};

std::vector<ProgramRow> ProgramRows() {
  std::vector<ProgramRow> rows = {
      {"smooth", {"smooth", "--force", "IN", "OUT"}, "holmium.wls", ".wls"},
      {"derivative", {"derivative", "--force", "IN", "OUT"}, "holmium.wls", ".wls"},
      {"calc", {"calc", "--force", "sub", "IN", "IN", "OUT"}, "holmium.wls", ".wls"},
  };
  for (const char* const example : {"photometry.bas", "dye.qua", "enzyme.tis", "holmium.wls", "multi.mul",
                                    "nucleic.dna", "baseline.bsl", "holmium-processed.wls"})
    rows.push_back({example, {"pack", "--force", "JSON", "OUT"}, example, ""});
  for (const char* const ending : {".txt", ".xls", ".bmp", ".pdf", ".csv", ".jdx"})
    rows.push_back({ending, {"export", "--force", "IN", "OUT"}, "holmium.wls", ending});
  rows.push_back({"import_csv", {"import", "--force", "CSV", "OUT"}, "holmium.wls", ".wls"});
  return rows;
}

class ProgramFaults : public testing::TestWithParam<ProgramRow> {
 protected:
  struct End {
    Claim Told = Claim::Killed;
    std::string Out;
    std::string Err;
  };

  /// The batch command with a fault planned below the folder of its output.
  End Run(const std::vector<std::string>& arguments, const std::string& plan) {
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    const auto put = [&environment](const char* name, const std::string& value) {
      environment.insert(QString::fromLatin1(name), QString::fromStdString(value));
    };
    put("SPECTRANE_HOME", folder_.Path());
    put("LD_PRELOAD", FAILINGCALLS);
    put("SPECTRANE_FAILING_FOLDER", folder_.Path("target"));
    put("SPECTRANE_FAILING_CALLS", plan);
    put("SPECTRANE_FAILING_COUNTS", folder_.Path("counts"));
    std::filesystem::remove(folder_.Path("counts"));
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(SPECTRANE_BIN "/spectrane-cli"), testing_processes::Arguments(arguments));
    EXPECT_TRUE(process.waitForFinished(60000));
    End end;
    end.Out = process.readAllStandardOutput().toStdString();
    end.Err = process.readAllStandardError().toStdString();
    if (process.exitStatus() == QProcess::NormalExit)
      end.Told = process.exitCode() == 0 ? Claim::Saved : Claim::NotSaved;
    return end;
  }
  /// Calls of the last run, and whether its fault took place.
  Counts LastCounts(bool& happened) const {
    std::istringstream words(ReadBytes(folder_.Path("counts")));
    Counts counts = {};
    happened = false;
    words >> happened;
    for (int& count : counts) words >> count;
    return counts;
  }
  std::string Output(const std::vector<std::string>& arguments) {
    return Run(arguments, "open:0:0:once").Out;
  }

  TemporaryFolder folder_;
};

class ProgramLimits : public testing::Test {
 protected:
  TemporaryFolder folder_;
};

bool HasWordsOf(const std::string& text, int code) {
  return text.find(std::generic_category().message(code)) != std::string::npos;
}

TEST_P(ProgramFaults, D10_D11_E01_TheFileIsOldOrNewAndTheStatusTellsWhich) {
  const ProgramRow& row = GetParam();
  const std::string example = std::string(SPECTRANE_SOURCE "/examples/") + row.Example;
  const std::string ending = *row.Ending != '\0' ? row.Ending : example.substr(example.rfind('.'));
  std::filesystem::create_directory(folder_.Path("target"));
  SavedFile file = {folder_.Path("target"), folder_.Path("target/out" + ending), "old work", {}, {}, false};
  std::vector<std::string> arguments = row.Arguments;
  for (std::string& argument : arguments) {
    if (argument == "IN") argument = example;
    if (argument == "OUT") argument = file.Path;
    if (argument == "JSON") {
      argument = folder_.Path("in.json");
      WriteBytes(argument, Output({"dump", example}));
    }
    if (argument == "CSV") {
      argument = folder_.Path("in.csv");
      ASSERT_EQ(Run({"export", example, argument}, "open:0:0:once").Told, Claim::Saved);
    }
  }
  const auto run = [&](const std::string& plan) {
    file.PutOld();
    return Run(arguments, plan);
  };
  const End clean = run("open:0:0:once");
  ASSERT_EQ(clean.Told, Claim::Saved) << clean.Err;
  bool happened = false;
  const Counts counts = LastCounts(happened);
  ASSERT_GT(counts.at(static_cast<std::size_t>(Call::Rename)), 0) << "the calls are not seen";
  file.New = ReadBytes(file.Path);
  // The time of the moment stands in some of them.
  if (ending == ".pdf") {
    file.IsNew = IsWholePdf;
  } else {
    file.IsNew = [whole = WithoutTimes(file.New)](const std::string& bytes) {
      return WithoutTimes(bytes) == whole;
    };
  }
  const std::vector<Plan> plans = PlansFor(counts, Thorough());
  std::size_t kills = 0;
  for (const Plan& plan : plans) {
    SCOPED_TRACE(NameOf(plan));
    const bool kill = plan.Fault == failing_calls::kKill;
    kills += kill ? 1 : 0;
    const End end = run(NameOf(plan));
    EXPECT_EQ(end.Told == Claim::Killed, kill);
    ExpectOldOrNew(file, end.Told, kill);
    if (kill) continue;
    LastCounts(happened);
    EXPECT_TRUE(happened);
    EXPECT_FALSE(end.Told == Claim::Saved && MustFail(plan, counts));
    if (end.Told == Claim::Saved) {
      // How long a report is depends on the figures of its time.
      if (ending == ".pdf") {
        EXPECT_NE(end.Out.find("\"bytes\":" + std::to_string(ReadBytes(file.Path).size())),
                  std::string::npos);
      } else {
        EXPECT_EQ(end.Out, clean.Out);
      }
      EXPECT_EQ(end.Err, clean.Err);
    } else {
      EXPECT_EQ(end.Out, "");
      EXPECT_TRUE(HasWordsOf(end.Err, plan.Fault == failing_calls::kShort ? ENOSPC : plan.Fault)) << end.Err;
      EXPECT_EQ(std::count(end.Err.begin(), end.Err.end(), '\n'), 1) << end.Err;
    }
  }
  TellCells(std::string("spectrane-cli ") + row.Name, plans.size(), kills, counts);
}

// The limit of the size of a file kills a program that does not know better.
TEST_F(ProgramLimits, N04_D10_AFileThatMayNotGrowIsAFailedWrite) {
  const std::string path = folder_.Path("out.wls");
  WriteBytes(path, "old work");
  QProcess process;
  process.setChildProcessModifier([] {
    const rlimit limit{4096, 4096};
    if (::setrlimit(RLIMIT_FSIZE, &limit) != 0) ::_exit(99);
  });
  process.start(QStringLiteral(SPECTRANE_BIN "/spectrane-cli"),
                {QStringLiteral("smooth"), QStringLiteral("--force"),
                 QStringLiteral(SPECTRANE_SOURCE "/examples/holmium.wls"), QString::fromStdString(path)});
  ASSERT_TRUE(process.waitForFinished(60000));
  EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
  EXPECT_EQ(process.exitCode(), 1);
  EXPECT_EQ(process.readAllStandardError().toStdString(), "out.wls: File too large\n");
  EXPECT_EQ(ReadBytes(path), "old work");
  EXPECT_EQ(NamesIn(folder_.Path()), 1u);
}

INSTANTIATE_TEST_SUITE_P(Commands, ProgramFaults, testing::ValuesIn(ProgramRows()),
                         [](const testing::TestParamInfo<ProgramRow>& row) {
                           std::string name = row.param.Name;
                           std::replace_if(
                               name.begin(), name.end(), [](char c) { return c == '.' || c == '-'; }, '_');
                           return row.param.Arguments.front() + "_" + name;
                         });

}  // namespace
}  // namespace spectrane::testing_faults
