// The file modules and the settings, whoever calls them: files large enough for several writes.

#include <memory>

#include "base/folderlock.h"
#include "base/setting.h"
#include "base/windowsettings.h"
#include "faults/write/faultcells.h"
#include "files/allkinds.h"

namespace spectrane::testing_faults {
namespace {

/// A kind as these tests need it, whatever its structures are.
struct LargeKind {
  const char* Name;
  std::size_t RecordSize;
  FileFault (*Save)(const std::string& path, std::int32_t records);
};

template <typename OptionT, typename RecordT, const FileModule<OptionT, RecordT>& (*kModule)()>
LargeKind LargeKindOf() {
  return {kModule().Name, kModule().Record.Size, [](const std::string& path, std::int32_t count) {
            return SaveDataFile(kModule(), path, OptionT(), count, [](std::int32_t) { return RecordT(); });
          }};
}

std::vector<LargeKind> LargeKinds() {
  return {LargeKindOf<QuaOption, QuaRecord, QuaModule>(),
          LargeKindOf<TSOption, TSRecord, TSModule>(),
          LargeKindOf<WLSOption, WLSRecord, WLSModule>(),
          LargeKindOf<MultiOption, MultiRecord, MultiModule>(),
          LargeKindOf<DNAOption, DNARecord, DNAModule>(),
          LargeKindOf<BSLOption, BSLRecord, BSLModule>(),
          LargeKindOf<BasicOption, BasicRecord, BasicModule>(),
          LargeKindOf<WLSOption, WLS2Record, WLS2Module>()};
}

class KindFaults : public testing::TestWithParam<LargeKind> {
 protected:
  SavedFile InFolder(const std::string& name) const {
    return {folder_.Path(), folder_.Path(name), "what stood there before", {}, {}, false};
  }
  TemporaryFolder folder_;
};

TEST_P(KindFaults, D10_D11_ALargeFileStaysOldOrIsNew) {
  const SavedFile file = InFolder("large");
  // Three writes of what is gathered, and a rest.
  constexpr std::size_t kLength = 900'000;
  const auto records = static_cast<std::int32_t>(kLength / GetParam().RecordSize);
  std::string reason;
  TryAll(
      GetParam().Name, file, [] {},
      [&] {
        const FileFault fault = GetParam().Save(file.Path, records);
        reason = fault.Reason;
        return !fault;
      },
      [&](bool saved) { EXPECT_EQ(reason.empty(), saved) << reason; }, Thorough());
}

INSTANTIATE_TEST_SUITE_P(Kinds, KindFaults, testing::ValuesIn(LargeKinds()), NameOfRow<LargeKind>);

TEST(SettingFaults, C01_C07_D10_D11_TheSettingsFileStaysOldOrIsNew) {
  const TemporaryFolder folder;
  std::string old = "[Other]\r\nkept = as it is\r\n[A]\r\nk=1\r\n";
  for (int i = 0; i < 2000; ++i) old += "key " + std::to_string(i) + "=value\r\n";
  const SavedFile file = {folder.Path(), folder.Path("config.ini"), old, {}, {}, false};
  std::unique_ptr<Setting> settings;
  TryAll(
      "config.ini", file, [&] { settings = std::make_unique<Setting>(folder.Path()); },
      [&] { return settings->PutSetting("A", "k", "2"); },
      [&](bool saved) {
        EXPECT_EQ(settings->GetSetting("A", "k"), "2") << "in memory at least";
        EXPECT_EQ(settings->Problem().empty(), saved) << settings->Problem();
        // What could not be stored goes with the next write.
        EXPECT_TRUE(settings->PutSetting("B", "l", "3"));
        EXPECT_EQ(settings->Problem(), "");
        Setting fresh(folder.Path());
        EXPECT_EQ(fresh.GetSetting("A", "k"), "2");
        EXPECT_EQ(fresh.GetSetting("B", "l"), "3");
        EXPECT_EQ(fresh.GetSetting("Other", "kept"), "as it is");
      });
}

// A write that went on without the lock could undo what the other copy writes at that moment.
TEST(SettingFaults, C07_AProgramWithoutAFreeHandleWaitsForItsTurn) {
  const TemporaryFolder folder;
  WriteBytes(folder.Path("config.ini"), "[A]\nk=1\n");
  Setting settings(folder.Path());
  {
    const FolderLock other(folder.Path(), 0);
    ASSERT_TRUE(other.Held());
    failing_calls::Arm(folder.Path().c_str(), {Call::Open, 1, EMFILE, false});
    EXPECT_FALSE(settings.PutSetting("A", "k", "2"));
    failing_calls::Disarm();
    EXPECT_TRUE(failing_calls::Happened());
    EXPECT_EQ(ReadBytes(folder.Path("config.ini")), "[A]\nk=1\n");
  }
  EXPECT_TRUE(settings.PutSetting("B", "l", "3"));
  EXPECT_EQ(settings.Problem(), "");
  EXPECT_EQ(ReadBytes(folder.Path("config.ini")), "[A]\nk=2\n[B]\nl=3\n");
}

/// What an operator has set, none of it the default.
std::string OperatorsSettings(const std::string& folder) {
  WindowSettings mine;
  mine.Operator = "Marie";
  mine.Department = "Light";
  mine.PrecisionMode = 1;
  mine.PortSearchMode = 1;
  mine.PortID = 3;
  mine.BaselinePath = "/data/mine.bsl";
  std::filesystem::create_directory(folder);
  Setting settings(folder);
  EXPECT_TRUE(StoreSettings<WindowSettings>(settings, WindowSettingRows(), mine));
  return ReadBytes(settings.Path());
}

// A start that cannot read the file for a moment takes its defaults; they must not go into the file.
TEST(SettingFaults, C01_AStartThatCouldNotReadTheFileKeepsTheOperatorsValues) {
  const TemporaryFolder folder;
  const std::string mine = OperatorsSettings(folder.Path("mine"));
  std::size_t cells = 0;
  for (const Call call : {Call::Open, Call::Read}) {
    bool more = true;
    for (int nth = 1; more; ++nth) {
      for (const bool ever : {false, true}) {
        const Plan plan = {call, nth, EIO, ever};
        SCOPED_TRACE(NameOf(plan));
        WriteBytes(folder.Path("config.ini"), mine);
        failing_calls::Arm(folder.Path().c_str(), plan);
        Setting settings(folder.Path());
        WindowSettings window;
        LoadWindowSettings(settings, folder.Path(), window);
        failing_calls::Disarm();
        more = failing_calls::Happened();
        EXPECT_TRUE(settings.PutSetting("Other", "k", "1"));
        Setting again(folder.Path());
        WindowSettings stored;
        LoadWindowSettings(again, folder.Path(), stored);
        EXPECT_EQ(stored.Operator, "Marie");
        EXPECT_EQ(stored.Department, "Light");
        EXPECT_EQ(stored.PrecisionMode, 1);
        EXPECT_EQ(stored.PortSearchMode, 1);
        EXPECT_EQ(stored.PortID, 3);
        EXPECT_EQ(stored.BaselinePath, "/data/mine.bsl");
        ++cells;
      }
    }
  }
  std::cout << "cells of a start: " << cells << '\n';
  EXPECT_GT(cells, 4u);
}

}  // namespace
}  // namespace spectrane::testing_faults
