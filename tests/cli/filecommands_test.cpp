#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "cli/batchsupport.h"

namespace spectrane {
namespace {

using Json = nlohmann::ordered_json;

class FileCommands : public testing::Test {
 protected:
  std::string Path(const std::string& name) const { return folder_.Path(name); }
  std::string Written(const std::string& name, const std::string& bytes) const {
    WriteBytes(Path(name), bytes);
    return Path(name);
  }
  std::size_t FilesInFolder() const { return NamesIn(folder_.Path()); }
  /// `pack` of a document in a file of its own.
  BatchOutcome Pack(const std::string& document, const std::string& name = "out.bas") const {
    return Batch({"pack", Written("in.json", document), Path(name)});
  }
  TemporaryFolder folder_;
};

TEST_F(FileCommands, InfoTellsHeaderOptionAndCount) {
  const BatchOutcome outcome = Batch({"info", Written("a.bas", BasicFileBytes(2, 2))});
  EXPECT_EQ(outcome.Status, 0) << outcome.Err;
  EXPECT_EQ(outcome.Out,
            "{\"kind\":\"bas\",\"file_type\":11,"
            "\"header\":{\"Version\":\"1.62.0\",\"Author\":\"Kestu\",\"Contact\":\"Spectrane\","
            "\"Magic\":305419896},"
            "\"option\":{\"Version\":\"1.62.0\",\"Written\":\"2024-02-29  13:05:09\",\"RecordCount\":2},"
            "\"records\":2}\n");
}

TEST_F(FileCommands, DumpAddsTheRecordsWithTransAndAbs) {
  const std::string record = Long(50) + Long(100) + Long(0) + Double546() + Padded("\xB5g ", 256);
  const BatchOutcome outcome =
      Batch({"dump", Written("a.bas", HeaderBytes(11) + BasicOptionBytes(1) + record)});
  ASSERT_EQ(outcome.Status, 0) << outcome.Err;
  const Json json = Json::parse(outcome.Out);
  EXPECT_EQ(json["records"], 1);
  EXPECT_EQ(json["data"].dump(),
            "[{\"SampleEnergy\":50,\"ReferenceEnergy\":100,\"DarkEnergy\":0,\"Wavelength\":546.0,"
            "\"Note\":\"\u00B5g\",\"Trans\":50.0,\"Abs\":0.30102999566398114}]");
  std::vector<std::string> members;
  for (const auto& member : json.items()) members.push_back(member.key());
  EXPECT_EQ(members, (std::vector<std::string>{"kind", "file_type", "header", "option", "records", "data"}));
}

TEST_F(FileCommands, DumpOfNoRecordsIsAnEmptyList) {
  const BatchOutcome outcome = Batch({"dump", Written("a.bas", BasicFileBytes(0, 0))});
  ASSERT_EQ(outcome.Status, 0);
  EXPECT_EQ(Json::parse(outcome.Out)["data"].dump(), "[]");
}

TEST_F(FileCommands, FewerRecordsThanStatedShowInInfoAndAreRefusedByDump) {
  const std::string file = Written("a.bas", BasicFileBytes(2, 1000000000));
  const BatchOutcome info = Batch({"info", file});
  ASSERT_EQ(info.Status, 0) << info.Err;
  EXPECT_EQ(Json::parse(info.Out)["records"], 2);
  EXPECT_EQ(Json::parse(info.Out)["option"]["RecordCount"], 1000000000);
  ExpectRefused(Batch({"dump", file}), "a.bas", "has 2 of the 1000000000 records");
}

TEST_F(FileCommands, MoreRecordsThanStatedArePassedOver) {
  const BatchOutcome outcome = Batch({"dump", Written("a.bas", BasicFileBytes(3, 1) + "tail")});
  ASSERT_EQ(outcome.Status, 0);
  EXPECT_EQ(Json::parse(outcome.Out)["data"].size(), 1u);
}

struct RefusedRow {
  const char* Name;
  std::string Bytes;
  const char* Reason;
};

class FileCommandsRefused : public FileCommands, public testing::WithParamInterface<RefusedRow> {};

TEST_P(FileCommandsRefused, WithNameAndReason) {
  const std::string file = Written("a.bas", GetParam().Bytes);
  ExpectRefused(Batch({"info", file}), "a.bas", GetParam().Reason);
  ExpectRefused(Batch({"dump", file}), "a.bas", GetParam().Reason);
}

INSTANTIATE_TEST_SUITE_P(
    Files, FileCommandsRefused,
    testing::Values(
        RefusedRow{"Empty", "", "at byte 0"},
        RefusedRow{"CutInTheHeader", HeaderBytes(11).substr(0, 50), "at byte 50"},
        RefusedRow{"CutInTheOption", BasicFileBytes(0, 0).substr(0, 300), "at byte 300"},
        RefusedRow{"Foreign", std::string(600, 'x'), "not a data file"},
        RefusedRow{"WrongMagic", HeaderBytes(11, "Kestu", 5) + BasicOptionBytes(0), "not a data file"},
        RefusedRow{"UnknownKind", HeaderBytes(7) + std::string(1000, ' '), "unknown file type 7"},
        RefusedRow{"NegativeCount", BasicFileBytes(1, -1), "a number of records that makes no sense"}),
    NameOfRow<RefusedRow>);

TEST_F(FileCommands, WhatIsNoFileIsRefused) {
  ExpectRefused(Batch({"info", Path("none.bas")}), "none.bas", "no such file");
  ExpectRefused(Batch({"dump", Path("none.bas")}), "none.bas", "no such file");
  std::filesystem::create_directory(Path("dir.bas"));
  ExpectRefused(Batch({"info", Path("dir.bas")}), "dir.bas", "not a regular file");
  ASSERT_EQ(::mkfifo(Path("pipe.bas").c_str(), 0600), 0);
  ExpectRefused(Batch({"dump", Path("pipe.bas")}), "pipe.bas", "not a regular file");
  ExpectRefused(Batch({"pack", Path("pipe.bas"), Path("out.bas")}), "pipe.bas", "not a regular file");
  ExpectRefused(Batch({"pack", Path("dir.bas"), Path("out.bas")}), "dir.bas", "not a regular file");
  ExpectRefused(Batch({"pack", Path("none.json"), Path("out.bas")}), "none.json", "no such file");
  EXPECT_FALSE(std::filesystem::exists(Path("out.bas")));
}

TEST_F(FileCommands, ACommandsNameIsAFileToo) {
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(folder_.Path());
  Written("dump", BasicFileBytes(1, 1));
  const BatchOutcome outcome = Batch({"info", "dump"});
  std::filesystem::current_path(before);
  EXPECT_EQ(outcome.Status, 0) << outcome.Err;
}

TEST_F(FileCommands, ANumberThatIsNoneComesBackAsNull) {
  const std::string infinity = Bytes({0, 0, 0, 0, 0, 0, 0xF0, 0x7F});
  const std::string record = Long(50) + Long(100) + Long(0) + infinity + Padded("", 256);
  const BatchOutcome dump = Batch({"dump", Written("a.bas", HeaderBytes(11) + BasicOptionBytes(1) + record)});
  EXPECT_NE(dump.Out.find("\"Wavelength\":null"), std::string::npos);
  ASSERT_EQ(Pack(dump.Out).Status, 0);
  EXPECT_EQ(Batch({"dump", Path("out.bas")}).Out, dump.Out);
}

TEST_F(FileCommands, PackCountsTheRecordsItself) {
  const BatchOutcome outcome =
      Pack(R"({"kind":"bas","option":{"RecordCount":77,"Written":"w"},"data":[{},{"SampleEnergy":5}]})");
  ASSERT_EQ(outcome.Status, 0) << outcome.Err;
  EXPECT_EQ(outcome.Out, "{\"kind\":\"bas\",\"records\":2}\n");
  const std::string nothing = Long(0) + Long(0) + Long(0) + std::string(8, '\0') + Padded("", 256);
  std::string second = nothing;
  second.replace(0, 4, Long(5));
  EXPECT_EQ(ReadBytes(Path("out.bas")),
            HeaderBytes(11) + Padded("", 256) + Padded("w", 128) + Long(2) + nothing + second);
}

TEST_F(FileCommands, PackOfAKindAloneIsAnEmptyFile) {
  ASSERT_EQ(Pack(R"({"kind":"bas"})").Status, 0);
  EXPECT_EQ(ReadBytes(Path("out.bas")), HeaderBytes(11) + Padded("", 384) + Long(0));
}

TEST_F(FileCommands, PackTellsOfLostCharacters) {
  const BatchOutcome outcome = Pack("{\"kind\":\"bas\",\"data\":[{\"Note\":\"\u6BD4\"}]}");
  EXPECT_EQ(outcome.Status, 0);
  EXPECT_NE(outcome.Err.find("\"?\""), std::string::npos);
  EXPECT_EQ(ReadBytes(Path("out.bas")).substr(512, 2), "? ");
}

TEST_F(FileCommands, PackCutsLongTexts) {
  ASSERT_EQ(Pack(R"({"kind":"bas","data":[{"Note":")" + std::string(300, 'n') + "\"}]}").Status, 0);
  EXPECT_EQ(ReadBytes(Path("out.bas")).substr(512), std::string(256, 'n'));
}

TEST_F(FileCommands, PackRefusesAnExistingFileUnlessForced) {
  const std::string in = Written("in.json", R"({"kind":"bas"})");
  const std::string out = Written("out.bas", "old");
  ExpectRefused(Batch({"pack", in, out}), "out.bas", "exists already");
  EXPECT_EQ(ReadBytes(out), "old");
  std::filesystem::create_symlink("nowhere", Path("link.bas"));
  ExpectRefused(Batch({"pack", in, Path("link.bas")}), "link.bas", "exists already");
  for (const auto& words :
       {std::vector<std::string>{"pack", in, out, "--force"}, {"pack", "--force", in, out}}) {
    Written("out.bas", "old");
    EXPECT_EQ(Batch(words).Status, 0);
    EXPECT_EQ(ReadBytes(out).size(), 492u);
  }
  EXPECT_EQ(FilesInFolder(), 3u);
}

TEST_F(FileCommands, PackDoesNotReplaceWhatIsNoFile) {
  const std::string in = Written("in.json", R"({"kind":"bas"})");
  std::filesystem::create_directory(Path("dir.bas"));
  ExpectRefused(Batch({"pack", in, Path("dir.bas"), "--force"}), "dir.bas", "Is a directory");
  ASSERT_EQ(::mkfifo(Path("pipe.bas").c_str(), 0600), 0);
  ExpectRefused(Batch({"pack", in, Path("pipe.bas"), "--force"}), "pipe.bas", "not a regular file");
  ExpectRefused(Batch({"pack", in, Path("none/out.bas")}), "out.bas", "No such file or directory");
  EXPECT_EQ(FilesInFolder(), 3u);
}

TEST_F(FileCommands, AFullDiskLeavesTheOldFileAndNoHalfOne) {
  const std::string in = Written("in.json", Batch({"dump", Written("a.bas", BasicFileBytes(300, 300))}).Out);
  std::filesystem::create_directory(Path("disk"));
  if (::mount("tmpfs", Path("disk").c_str(), "tmpfs", 0, "size=64k") != 0) {
    GTEST_SKIP() << "mount is not permitted";
  }
  const std::string out = Written("disk/out.bas", std::string(1000, 'o'));
  const BatchOutcome forced = Batch({"pack", in, out, "--force"});
  const BatchOutcome fresh = Batch({"pack", in, Path("disk/new.bas")});
  const std::string kept = ReadBytes(out);
  const std::size_t names = NamesIn(Path("disk"));
  ::umount(Path("disk").c_str());
  ExpectRefused(forced, "out.bas", "No space left on device");
  ExpectRefused(fresh, "new.bas", "No space left on device");
  EXPECT_EQ(kept, std::string(1000, 'o'));
  EXPECT_EQ(names, 1u);
}

struct HostileRow {
  const char* Name;
  std::string Document;
  const char* Reason;
};

class HostileJson : public FileCommands, public testing::WithParamInterface<HostileRow> {};

TEST_P(HostileJson, IsRefusedWithoutAFile) {
  ExpectRefused(Pack(GetParam().Document), "in.json", GetParam().Reason);
  EXPECT_EQ(FilesInFolder(), 1u);
}

std::string Record(const std::string& member) {
  return R"({"kind":"bas","data":[{},{)" + member + "}]}";
}

INSTANTIATE_TEST_SUITE_P(
    Pack, HostileJson,
    testing::Values(
        HostileRow{"Empty", "", "not valid JSON"},
        HostileRow{"Cut", R"({"kind":"bas","da)", "not valid JSON"},
        HostileRow{"TwoDocuments", R"({"kind":"bas"}{})", "not valid JSON at byte 15"},
        HostileRow{"NoUtf8", "{\"kind\":\"bas\xFF\"}", "not valid JSON"},
        HostileRow{"BinaryFile", BasicFileBytes(1, 1), "not valid JSON"},
        HostileRow{"Array", "[]", "not a JSON object"}, HostileRow{"Null", "null", "not a JSON object"},
        HostileRow{"NoKind", "{}", "kind is missing"},
        HostileRow{"KindOfNumber", R"({"kind":11})", "kind is not a text"},
        HostileRow{"UnknownKind", R"({"kind":"b\nas"})", "unknown kind"},
        HostileRow{"DataObject", R"({"kind":"bas","data":{}})", "data is not an array"},
        HostileRow{"OptionArray", R"({"kind":"bas","option":[]})", "option is not an object"},
        HostileRow{"RecordOfNumber", R"({"kind":"bas","data":[5]})", "data[0] is not an object"},
        HostileRow{"TextForALong", Record(R"("SampleEnergy":"5")"),
                   "data[1].SampleEnergy is not a whole number"},
        HostileRow{"NullForALong", Record(R"("SampleEnergy":null)"),
                   "data[1].SampleEnergy is not a whole number"},
        HostileRow{"FractionForALong", Record(R"("SampleEnergy":5.5)"),
                   "data[1].SampleEnergy is not a whole number"},
        HostileRow{"LongTooLarge", Record(R"("DarkEnergy":2147483648)"), "data[1].DarkEnergy is too large"},
        HostileRow{"LongTooSmall", Record(R"("DarkEnergy":-2147483649)"), "data[1].DarkEnergy is too large"},
        HostileRow{"LongOf64Bits", Record(R"("DarkEnergy":18446744073709551615)"),
                   "data[1].DarkEnergy is too large"},
        HostileRow{"LongBeyond64Bits", Record(R"("DarkEnergy":1e30)"), "data[1].DarkEnergy is too large"},
        HostileRow{"Overflow", Record(R"("Wavelength":1e999)"), "a number that is too large"},
        HostileRow{"TextForADouble", Record(R"("Wavelength":"546")"), "data[1].Wavelength is not a number"},
        HostileRow{"BooleanForADouble", Record(R"("Wavelength":true)"), "data[1].Wavelength is not a number"},
        HostileRow{"NumberForAText", Record(R"("Note":5)"), "data[1].Note is not a text"},
        HostileRow{"DeepArrays", std::string(1000000, '['), "not valid JSON"},
        HostileRow{"DeepClosedArrays", std::string(1000000, '[') + std::string(1000000, ']'),
                   "not a JSON object"},
        HostileRow{"DeepInANote", Record("\"Note\":" + std::string(100000, '[') + std::string(100000, ']')),
                   "data[1].Note is not a text"}),
    NameOfRow<HostileRow>);

TEST_F(FileCommands, WholeNumbersMayHaveAPoint) {
  EXPECT_EQ(
      Pack(Record(R"("SampleEnergy":-5.0,"DarkEnergy":2147483647,"ReferenceEnergy":-2147483648)")).Status, 0);
  EXPECT_EQ(ReadBytes(Path("out.bas")).substr(768, 12), Long(-5) + Long(INT32_MIN) + Long(INT32_MAX));
}

TEST_F(FileCommands, UnknownMembersArePassedOver) {
  EXPECT_EQ(Pack(R"({"kind":"bas","x":[[1]],"option":{"y":2},"data":[{"Abs":"?","z":null}]})").Status, 0);
}

TEST_F(FileCommands, AHundredThousandUnknownMembersAreRead) {
  std::string document = R"({"kind":"bas")";
  for (int i = 0; i < 100000; ++i) document += ",\"k" + std::to_string(i) + "\":1";
  EXPECT_EQ(Pack(document + "}").Status, 0);
}

TEST_F(FileCommands, AMinusZeroKeepsItsSign) {
  for (const char* zero : {"-0", "-0.0", "0"}) {
    ASSERT_EQ(Pack(std::string(R"({"kind":"bas","data":[{"Wavelength":)") + zero + "}]}", "z.bas").Status, 0);
    EXPECT_EQ(ReadBytes(Path("z.bas")).substr(504, 8), DoubleBytes(zero[0] == '-' ? -0.0 : 0.0)) << zero;
    std::filesystem::remove(Path("z.bas"));
  }
}

TEST_F(FileCommands, PackHasNoStandardOutput) {
  const BatchOutcome outcome = Batch({"pack", Written("in.json", R"({"kind":"bas"})"), "-"});
  EXPECT_EQ(outcome.Status, 1);
  EXPECT_FALSE(std::filesystem::exists("-"));
}

TEST_F(FileCommands, ARefusalFromStandardInputNamesIt) {
  ExpectRefused(Batch({"pack", "-", Path("out.bas")}, "nonsense"), "standard input", "not valid JSON");
}

}  // namespace
}  // namespace spectrane
