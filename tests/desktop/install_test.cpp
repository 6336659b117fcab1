// What `cmake --install` lays down, judged by the desktop's own checkers.

#include <gmock/gmock.h>

#include <filesystem>
#include <set>
#include <string>

#include "app/desktop/filetypes.h"
#include "desktopsupport.h"

namespace spectrane {
namespace {

namespace fs = std::filesystem;
using testing::Contains;
using testing::HasSubstr;

/// The name by which the desktop looks for the icon of a type.
std::string IconName(const FileAssociation& association) {
  std::string name = association.MimeType;
  name.replace(name.find('/'), 1, "-");
  return name;
}

/// The program installed into a folder, once for all cases.
class InstalledTree : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    folder_ = std::make_unique<ShortFolder>();
    install_ = RunTool(QStringLiteral("cmake"), {QStringLiteral("--install"), QStringLiteral(SPECTRANE_BUILD),
                                                 QStringLiteral("--prefix"), Q(Path(""))});
  }
  static void TearDownTestSuite() { folder_.reset(); }
  void SetUp() override { ASSERT_EQ(install_.ExitCode, 0) << install_.Output; }

  static std::string Path(const std::string& name) { return folder_->Path() + "/usr/" + name; }

  inline static std::unique_ptr<ShortFolder> folder_;
  inline static ToolResult install_;
};

TEST_F(InstalledTree, HoldsTheProgramsWithTheirManuals) {
  for (const char* program : {"spectrane", "spectrane-cli", "spectrane-simulator"}) {
    EXPECT_TRUE(fs::exists(Path(std::string("bin/") + program))) << program;
    EXPECT_TRUE(fs::exists(Path(std::string("share/man/man1/") + program + ".1"))) << program;
  }
}

TEST_F(InstalledTree, TheEntryStartsTheProgramByItsName) {
  const std::string file = Path("share/applications/org.spectrane.Spectrane.desktop");
  const std::string entry = ReadBytes(file);
  EXPECT_THAT(entry, HasSubstr("\nExec=\"spectrane\" %f\n"));
  EXPECT_THAT(entry, HasSubstr("\nIcon=org.spectrane.Spectrane\n"));
  if (!HasTool("desktop-file-validate")) GTEST_SKIP() << "desktop-file-validate is not installed";
  const ToolResult result = RunTool(QStringLiteral("desktop-file-validate"), {Q(file)});
  EXPECT_EQ(result.ExitCode, 0);
  EXPECT_EQ(result.Output, "");
}

TEST_F(InstalledTree, EachIconStandsWhereTheDesktopLooks) {
  const std::string theme = "share/icons/hicolor/";
  EXPECT_TRUE(fs::exists(Path(theme + "scalable/apps/org.spectrane.Spectrane.svg")));
  for (const FileAssociation& row : FileAssociations()) {
    const std::string drawing = theme + "scalable/mimetypes/" + IconName(row) + ".svg";
    EXPECT_TRUE(fs::exists(Path(drawing))) << drawing;
  }
  for (const char* size : {"16x16", "32x32", "48x48", "128x128", "256x256"}) {
    if (!fs::exists(std::string(SPECTRANE_PACKAGING) + "/icons/hicolor/" + size)) continue;
    EXPECT_TRUE(fs::exists(Path(theme + size + "/apps/org.spectrane.Spectrane.png"))) << size;
    for (const FileAssociation& row : FileAssociations()) {
      const std::string name = IconName(row);
      EXPECT_TRUE(fs::exists(Path(theme + size + "/mimetypes/" + name + ".png"))) << size << " " << name;
    }
  }
}

TEST_F(InstalledTree, HasAnExampleOfEachKindOfFile) {
  const fs::path examples = Path("share/doc/spectrane/examples");
  ASSERT_TRUE(fs::exists(examples / "README.md"));
  std::set<std::string> endings;
  for (const fs::directory_entry& file : fs::directory_iterator(examples))
    endings.insert(file.path().extension().string());
  for (const FileAssociation& row : FileAssociations()) EXPECT_THAT(endings, Contains(row.Extension));
}

TEST_F(InstalledTree, TheCatalogueNamesEachTypeAndEachProgram) {
  const std::string told = ReadBytes(Path("share/metainfo/org.spectrane.Spectrane.metainfo.xml"));
  for (const FileAssociation& row : FileAssociations())
    EXPECT_THAT(told, HasSubstr("<mediatype>" + std::string(row.MimeType) + "</mediatype>"));
  for (const fs::directory_entry& program : fs::directory_iterator(Path("bin")))
    EXPECT_THAT(told, HasSubstr("<binary>" + program.path().filename().string() + "</binary>"));
}

TEST_F(InstalledTree, TheTypesOfItsFilesAreTakenIn) {
  if (!HasTool("update-mime-database")) GTEST_SKIP() << "update-mime-database is not installed";
  const ScopedVariable searched("XDG_DATA_DIRS", Path("share").c_str());
  const ToolResult result = RunTool(QStringLiteral("update-mime-database"), {Q(Path("share/mime"))});
  EXPECT_EQ(result.ExitCode, 0);
  EXPECT_EQ(result.Output, "");
  const std::string globs = ReadBytes(Path("share/mime/globs2"));
  for (const FileAssociation& row : FileAssociations()) {
    EXPECT_THAT(globs, HasSubstr(std::string(row.MimeType) + ":*" + row.Extension));
  }
}

TEST_F(InstalledTree, TheSoftwareCatalogueFindsEntryAndIcon) {
  if (!HasTool("appstreamcli")) GTEST_SKIP() << "appstreamcli is not installed";
  // The checker looks below usr/ of the tree it is given.
  const ToolResult result =
      RunTool(QStringLiteral("appstreamcli"),
              {QStringLiteral("validate-tree"), QStringLiteral("--no-net"), Q(folder_->Path())});
  EXPECT_EQ(result.ExitCode, 0) << result.Output;
}

TEST_F(InstalledTree, TheRuleForAdaptersSortsBeforeTheOneThatGivesAccess) {
  const fs::path rules = Path("lib/udev/rules.d");
  ASSERT_TRUE(fs::exists(rules));
  for (const fs::directory_entry& rule : fs::directory_iterator(rules)) {
    EXPECT_LT(rule.path().filename().string(), "73-seat-late.rules");
    EXPECT_THAT(ReadBytes(rule.path().string()), HasSubstr("TAG+=\"uaccess\""));
  }
}

}  // namespace
}  // namespace spectrane
