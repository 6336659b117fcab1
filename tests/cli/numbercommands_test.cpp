#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <clocale>
#include <cstdio>
#include <filesystem>
#include <thread>

#include "cli/batchsupport.h"
#include "cli/command.h"
#include "cli/jsontext.h"

namespace spectrane {
namespace {

using Words = std::vector<std::string>;

struct AnswerRow {
  const char* Name;
  Words Arguments;
  const char* Out;
};

class BatchAnswer : public testing::TestWithParam<AnswerRow> {};

TEST_P(BatchAnswer, IsOneJsonDocument) {
  const BatchOutcome outcome = Batch(GetParam().Arguments);
  EXPECT_EQ(outcome.Status, 0) << outcome.Err;
  EXPECT_EQ(outcome.Out, std::string(GetParam().Out) + "\n");
  EXPECT_EQ(outcome.Err, "");
}

INSTANTIATE_TEST_SUITE_P(
    Energy, BatchAnswer,
    testing::Values(
        AnswerRow{"Full", {"energy", "20000", "20000", "100"}, R"({"Trans":100.0,"Abs":0.0})"},
        AnswerRow{"Half", {"energy", "50", "100", "0"}, R"({"Trans":50.0,"Abs":0.30102999566398114})"},
        AnswerRow{"Dark", {"energy", "100", "20000", "100"}, R"({"Trans":0.0,"Abs":3.0})"},
        AnswerRow{"BelowDark", {"energy", "-5000", "20000", "100"}, R"({"Trans":-1.0,"Abs":3.0})"},
        AnswerRow{"BlankIsDark", {"energy", "5", "100", "100"}, R"({"Trans":-1.0,"Abs":3.0})"},
        AnswerRow{"DecimalsAreRounded", {"energy", "-.5", "100.4", "-1e-3"}, R"({"Trans":0.0,"Abs":3.0})"}),
    NameOfRow<AnswerRow>);

INSTANTIATE_TEST_SUITE_P(
    Format, BatchAnswer,
    testing::Values(AnswerRow{"Plain", {"format", "0.12345", "0.000"}, R"({"text":"0.123"})"},
                    AnswerRow{"Negative", {"format", "-0.3", "0.00"}, R"({"text":"-0.30"})"},
                    AnswerRow{"NegativeWithoutZero", {"format", "-.3", "0.00"}, R"({"text":"-0.30"})"},
                    AnswerRow{"NegativeExponent", {"format", "-1e1", "0.0"}, R"({"text":"-10.0"})"},
                    AnswerRow{"RoundsToZero", {"format", "-1e-9", "0.00"}, R"({"text":"0.00"})"},
                    AnswerRow{"Literals", {"format", "546", "0.0nm"}, R"({"text":"546.0nm"})"},
                    AnswerRow{"BlankInFront", {"format", "1.5", " 0.00"}, R"({"text":" 1.50"})"},
                    AnswerRow{"EmptyPattern", {"format", "1.5", ""}, R"({"text":""})"},
                    AnswerRow{"PatternLikeANumber", {"format", "0", "-.5"}, R"({"text":"-.5"})"},
                    AnswerRow{"PatternBehindTheDashes", {"format", "--", "-2", "#.0"}, R"({"text":"-2.0"})"},
                    AnswerRow{"PatternThatIsNoUtf8", {"format", "2", "0\xFF"}, "{\"text\":\"2\uFFFD\"}"}),
    NameOfRow<AnswerRow>);

struct WrongRow {
  const char* Name;
  Words Arguments;
};

class BatchWrong : public testing::TestWithParam<WrongRow> {};

TEST_P(BatchWrong, GetsTheUsage) {
  ExpectWrongUsage(Batch(GetParam().Arguments));
}

INSTANTIATE_TEST_SUITE_P(
    Usage, BatchWrong,
    testing::Values(
        WrongRow{"Nothing", {}}, WrongRow{"UnknownCommand", {"measure"}},
        WrongRow{"UnknownOption", {"--loud"}}, WrongRow{"OptionOfAnother", {"info", "a", "--force"}},
        WrongRow{"TooFew", {"energy", "1", "2"}}, WrongRow{"TooMany", {"energy", "1", "2", "3", "4"}},
        WrongRow{"Word", {"energy", "one", "2", "3"}}, WrongRow{"Nan", {"energy", "nan", "2", "3"}},
        WrongRow{"MinusNan", {"energy", "-nan", "2", "3"}}, WrongRow{"Infinity", {"format", "inf", "0"}},
        WrongRow{"NanToFormat", {"format", "NaN", "0"}}, WrongRow{"Empty", {"energy", "", "2", "3"}},
        WrongRow{"TooLarge", {"energy", "2147483648", "2", "3"}},
        WrongRow{"Overflow", {"format", "1e999", "0"}}, WrongRow{"Comma", {"format", "1,5", "0"}},
        WrongRow{"Hexadecimal", {"energy", "0x10", "2", "3"}},
        WrongRow{"TwoCommands", {"info", "a", "dump", "b"}}, WrongRow{"NoFile", {"info"}},
        WrongRow{"PackOfOne", {"pack", "a"}}),
    NameOfRow<WrongRow>);

TEST(BatchHelp, IsNoFault) {
  const BatchOutcome all = Batch({"--help"});
  EXPECT_EQ(all.Status, 0);
  EXPECT_EQ(all.Err, "");
  for (const char* word : {"energy", "format", "info", "dump", "pack", "fit", "conc"}) {
    EXPECT_NE(all.Out.find(std::string("\n  ") + word), std::string::npos) << word;
    const BatchOutcome one = Batch({word, "--help"});
    EXPECT_EQ(one.Status, 0);
    EXPECT_NE(one.Out.find(std::string("Usage: spectrane-cli ") + word), std::string::npos) << one.Out;
  }
}

TEST(BatchHelp, TellsTheVersion) {
  EXPECT_EQ(Batch({"--version"}).Out, "spectrane-cli 1.62.0\n");
  EXPECT_EQ(Batch({"--version"}).Status, 0);
}

TEST(BatchRefusal, StaysOneLineWithTheLastPartOfThePath) {
  EXPECT_STREQ(Refusal("/a/b\nc.bas", "so").what(), "b?c.bas: so");
  EXPECT_STREQ(Refusal("c.bas", "so").what(), "c.bas: so");
  EXPECT_STREQ(Refusal("/a/", "so").what(), "/a/: so");
}

TEST(JsonTextOf, ADoubleIsTheShortestDecimalThatReadsBack) {
  EXPECT_EQ(JsonText(Json(0.1)), "0.1");
  EXPECT_EQ(JsonText(Json(1.0)), "1.0");
  EXPECT_EQ(JsonText(Json(-0.0)), "-0.0");
  EXPECT_EQ(JsonText(Json(0.1 + 0.2)), "0.30000000000000004");
  EXPECT_EQ(JsonText(Json(1e300)), "1e+300");
  EXPECT_EQ(JsonText(Json(5e-324)), "5e-324");
  // The JSON library's own writer says 1179.0377533494309 here, one digit more.
  EXPECT_EQ(JsonText(Json(1179.037753349431)), "1179.037753349431");
}

TEST(JsonTextOf, WhatIsNoNumberIsNull) {
  EXPECT_EQ(JsonText(Json(std::numeric_limits<double>::quiet_NaN())), "null");
  EXPECT_EQ(JsonText(Json(-std::numeric_limits<double>::infinity())), "null");
}

TEST(JsonTextOf, TheOtherTypesAndNesting) {
  const Json json = {{"b", true}, {"a", {1, -2, nullptr}}, {"t", "\"\n\u00B5"}, {"o", Json::object()}};
  EXPECT_EQ(JsonText(json), "{\"b\":true,\"a\":[1,-2,null],\"t\":\"\\\"\\n\u00B5\",\"o\":{}}");
}

/// The program itself, by way of a shell.
BatchOutcome Program(const std::string& arguments, const std::string& environment = {}) {
  const std::string line = environment + " " + SPECTRANE_BIN + "/spectrane-cli " + arguments;
  std::FILE* const pipe = ::popen(line.c_str(), "r");
  BatchOutcome outcome;
  std::array<char, 4096> piece{};
  while (const std::size_t size = std::fread(piece.data(), 1, piece.size(), pipe)) {
    outcome.Out.append(piece.data(), size);
  }
  const int status = ::pclose(pipe);
  outcome.Status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  return outcome;
}

TEST(BatchProgram, AnswersOnItsStreams) {
  EXPECT_EQ(Program("energy 50 100 0 2>/dev/null").Out, "{\"Trans\":50.0,\"Abs\":0.30102999566398114}\n");
  EXPECT_EQ(Program("energy 50 100 0").Status, 0);
  const BatchOutcome refused = Program("info /no/such.bas 2>&1 >/dev/null");
  EXPECT_EQ(refused.Status, 1);
  EXPECT_EQ(refused.Out, "such.bas: no such file\n");
  EXPECT_EQ(Program("info 2>/dev/null").Status, 2);
  EXPECT_EQ(Program("info 2>/dev/null").Out, "");
}

TEST(BatchProgram, ReadsAnExample) {
  const std::string file = SPECTRANE_EXAMPLES "/dye.qua";
  for (const Words& words : {Words{"fit", file}, Words{"conc", file, "0.2", "-.5"}}) {
    std::string line;
    for (const std::string& word : words) line += word + " ";
    const BatchOutcome outcome = Program(line + "2>&1");
    EXPECT_EQ(outcome.Status, 0);
    EXPECT_EQ(outcome.Out, Batch(words).Out);
  }
}

class BatchProgramLocale : public testing::TestWithParam<const char*> {};

TEST_P(BatchProgramLocale, AnswersWithAPoint) {
  const std::string name = GetParam();
  const bool installed = std::setlocale(LC_ALL, name.c_str()) != nullptr;
  std::setlocale(LC_ALL, "C");
  if (!installed && name != "nonsense") GTEST_SKIP() << name << " is not installed";
  EXPECT_EQ(Program("format 1.5 0.00 2>&1", "LC_ALL=" + name).Out, "{\"text\":\"1.50\"}\n");
}

INSTANTIATE_TEST_SUITE_P(Locales, BatchProgramLocale,
                         testing::Values("C", "nonsense", "de_DE.UTF-8", "tr_TR.UTF-8"));

TEST(BatchProgram, AFullOutputIsNotDone) {
  const BatchOutcome outcome = Program("energy 50 100 0 2>&1 >/dev/full");
  EXPECT_EQ(outcome.Status, 1);
  EXPECT_EQ(outcome.Out, "standard output: cannot be written\n");
  EXPECT_EQ(Program("--help 2>&1 >/dev/full").Status, 1);
}

/// Starts the program with these descriptors as its streams; -1 leaves a stream closed.
pid_t StartProgram(const Words& arguments, const std::array<int, 3>& streams) {
  const std::string program = SPECTRANE_BIN "/spectrane-cli";
  std::vector<char*> argv = {const_cast<char*>(program.c_str())};
  for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
  argv.push_back(nullptr);
  const pid_t child = ::fork();
  if (child != 0) return child;
  for (int stream = 0; stream < 3; ++stream) {
    const int given = streams[static_cast<std::size_t>(stream)];
    if (given < 0) ::close(stream);
    if (given >= 0 && ::dup2(given, stream) < 0) ::_exit(99);
  }
  ::execv(program.c_str(), argv.data());
  ::_exit(98);
}

/// The exit status, or -1 when a signal ended the program.
int EndOf(pid_t child) {
  int status = 0;
  ::waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST(BatchProgram, ClosedStreamsAreHeldSoThatNoFileTakesTheirNumbers) {
  const TemporaryFolder folder;
  std::array<int, 2> in{};
  ASSERT_EQ(::pipe2(in.data(), O_CLOEXEC), 0);
  // Waits for its document with both output streams closed.
  const pid_t child = StartProgram({"pack", "-", folder.Path("a.bas")}, {in[0], -1, -1});
  const std::string descriptors = "/proc/" + std::to_string(child) + "/fd/";
  std::error_code code;
  for (const char* stream : {"1", "2"}) {
    std::filesystem::path held;
    for (int i = 0; i < 500 && held != "/dev/null"; ++i) {
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
      held = std::filesystem::read_symlink(descriptors + stream, code);
    }
    EXPECT_EQ(held, "/dev/null") << stream;
  }
  const std::string document = R"({"kind":"bas"})";
  EXPECT_EQ(::write(in[1], document.data(), document.size()), static_cast<ssize_t>(document.size()));
  ::close(in[1]);
  EXPECT_EQ(EndOf(child), 1) << "nobody has got the result";
  ::close(in[0]);
  EXPECT_GT(std::filesystem::file_size(folder.Path("a.bas")), 0u);
}

TEST(BatchProgram, AClosedInputIsAnEmptyOne) {
  const TemporaryFolder folder;
  std::array<int, 2> err{};
  ASSERT_EQ(::pipe2(err.data(), O_CLOEXEC), 0);
  EXPECT_EQ(EndOf(StartProgram({"pack", "-", folder.Path("a.bas")}, {-1, 1, err[1]})), 1);
  ::close(err[1]);
  std::array<char, 256> words{};
  EXPECT_GT(::read(err[0], words.data(), words.size() - 1), 0);
  EXPECT_STREQ(words.data(), "standard input: not valid JSON at byte 1\n");
  ::close(err[0]);
}

}  // namespace
}  // namespace spectrane
