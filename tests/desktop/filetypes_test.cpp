#include "app/desktop/filetypes.h"

#include <algorithm>
#include <fstream>
#include <map>
#include <QDir>
#include <QElapsedTimer>

#include <QSettings>

#include "app/desktop/desktopfiles.h"
#include "base/applicationfolder.h"
#include "base/version.h"
#include "desktopsupport.h"
#include "files/datafile.h"

namespace spectrane {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

std::string LineOf(const std::string& text, const std::string& key) {
  const std::size_t at = text.find("\n" + key + "=");
  if (at == std::string::npos) return {};
  const std::size_t start = at + key.size() + 2;
  return text.substr(start, text.find('\n', start) - start);
}

/// All plain files below a folder with their content.
std::map<std::string, std::string> FilesBelow(const std::string& folder) {
  std::map<std::string, std::string> files;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    if (entry.is_regular_file())
      files[fs::relative(entry.path(), folder).string()] = ReadBytes(entry.path().string());
  }
  return files;
}

std::vector<DesktopIcon> SomeIcons() {
  std::vector<DesktopIcon> icons = {{"", 0, "<svg>program</svg>"}, {"", 48, "PNG program"}};
  for (const FileAssociation& row : FileAssociations()) {
    icons.push_back({row.Extension, 0, std::string("<svg>") + row.Extension + "</svg>"});
  }
  return icons;
}

/// A user's data folder of the test's own, and no tools to be found, so that nothing but the program's own
/// files appears in it.
class RegisterTest : public testing::Test {
 protected:
  TemporaryFolder folder_;
  ScopedVariable data_{"XDG_DATA_HOME", folder_.Path("data").c_str()};
  ScopedVariable path_{"PATH", folder_.Path("no-tools").c_str()};
  const std::string entry_ = folder_.Path("data/applications/org.spectrane.Spectrane.desktop");
  const std::string package_ = folder_.Path("data/mime/packages/org.spectrane.Spectrane.xml");
};

TEST(FileAssociationTest, SevenTypesWithTheirNamesIconsAndWords) {
  struct Row {
    const char* Extension;
    const char* TypeName;
    int Icon;
    const char* Description;
  };
  const Row expected[] = {
      {".tis", "TIS_File", 5, "Time Scan files"},        {".wls", "WLS_File", 7, "Wavelength scan files"},
      {".qua", "QUA_File", 4, "Quantitation files"},     {".mul", "MUL_File", 1, "Multi Wavelength files"},
      {".dna", "DNA_File", 0, "DNA/Protein Test files"}, {".bas", "BAS_File", 3, "Photometry files"},
      {".bsl", "BSL_File", 8, "System Baseline"},
  };
  ASSERT_THAT(FileAssociations(), SizeIs(std::size(expected)));
  for (std::size_t i = 0; i < std::size(expected); ++i) {
    const FileAssociation& row = FileAssociations()[i];
    EXPECT_STREQ(row.Extension, expected[i].Extension);
    EXPECT_STREQ(row.TypeName, expected[i].TypeName);
    EXPECT_EQ(row.IconIndex, expected[i].Icon) << row.Extension;
    EXPECT_EQ(DescriptionOf(row), expected[i].Description);
  }
}

TEST(RegistryTest, FourValuesForEachType) {
  const std::vector<RegistryValue> values = RegistryValues(QStringLiteral("/opt/a b/spectrane.exe"));
  ASSERT_THAT(values, SizeIs(28));
  const QString folder = QDir::toNativeSeparators(QStringLiteral("/opt/a b"));
  const QString program = QDir::toNativeSeparators(QStringLiteral("/opt/a b/spectrane.exe"));
  EXPECT_EQ(values[4].Key, QStringLiteral(".wls"));
  EXPECT_EQ(values[4].Value, QStringLiteral("WLS_File"));
  EXPECT_EQ(values[5].Key, QStringLiteral("WLS_File"));
  EXPECT_EQ(values[5].Value, QStringLiteral("Wavelength scan files"));
  EXPECT_EQ(values[6].Key, QStringLiteral("WLS_File/DefaultIcon"));
  EXPECT_EQ(values[6].Value, folder + QStringLiteral("\\icon.dll,7"));
  EXPECT_EQ(values[7].Key, QStringLiteral("WLS_File/shell/open/command"));
  EXPECT_EQ(values[7].Value, QStringLiteral("\"%1\" \"%2\"").arg(program, QStringLiteral("%1")));
}

TEST(RegistryTest, WritesOnlyWhatDiffers) {
  TemporaryFolder folder;
  QSettings classes(Q(folder.Path("classes.ini")), QSettings::IniFormat);
  const auto values = RegistryValues(QStringLiteral("/opt/spectrane"));
  EXPECT_TRUE(WriteRegistryValues(classes, values));
  EXPECT_EQ(classes.value(QStringLiteral(".bas/Default")).toString(), QStringLiteral("BAS_File"));
  EXPECT_EQ(classes.allKeys().size(), 28);
  EXPECT_FALSE(WriteRegistryValues(classes, values));
  classes.setValue(QStringLiteral("BAS_File/shell/open/command/Default"), QStringLiteral("other"));
  EXPECT_TRUE(WriteRegistryValues(classes, values));
  EXPECT_FALSE(WriteRegistryValues(classes, values));
}

struct PathRow {
  const char* Name;
  const char* Path;
  const char* Exec;
  const char* TryExec;
};

class DesktopEntryTest : public testing::TestWithParam<PathRow> {};

TEST_P(DesktopEntryTest, QuotesTheProgramPath) {
  const std::string entry = DesktopEntry(GetParam().Path, "spectrane");
  EXPECT_EQ(LineOf(entry, "Exec"), GetParam().Exec);
  EXPECT_EQ(LineOf(entry, "TryExec"), GetParam().TryExec);
}

INSTANTIATE_TEST_SUITE_P(
    Paths, DesktopEntryTest,
    testing::Values(
        PathRow{"Plain", "/usr/bin/spectrane", R"("/usr/bin/spectrane" %f)", "/usr/bin/spectrane"},
        PathRow{"Blank", "/opt/my lab/s", R"("/opt/my lab/s" %f)", "/opt/my lab/s"},
        PathRow{"QuotationMark", R"(/o/a"b)", R"("/o/a\\"b" %f)", R"(/o/a"b)"},
        PathRow{"Dollar", "/o/$HOME", R"("/o/\\$HOME" %f)", "/o/$HOME"},
        PathRow{"Backtick", "/o/`id`", R"("/o/\\`id\\`" %f)", "/o/`id`"},
        PathRow{"Backslash", R"(/o/a\b)", R"("/o/a\\\\b" %f)", R"(/o/a\\b)"},
        PathRow{"PercentSign", "/o/100%f", R"("/o/100%%f" %f)", "/o/100%f"},
        PathRow{"Umlaut", "/o/M\xc3\xbcller/s", "\"/o/M\xc3\xbcller/s\" %f", "/o/M\xc3\xbcller/s"}),
    [](const auto& row) { return std::string(row.param.Name); });

TEST(DesktopEntryTest, NoEntryForAPathWithALineEnd) {
  EXPECT_THAT(DesktopEntry("/o/a\nExec=rm", "s"), IsEmpty());
  EXPECT_THAT(DesktopEntry("", "s"), IsEmpty());
}

TEST(ThemePathTest, ProgramAndTypesHaveTheirPlaces) {
  EXPECT_EQ(ThemePath({"", 0, ""}), "scalable/apps/org.spectrane.Spectrane.svg");
  EXPECT_EQ(ThemePath({"", 128, ""}), "128x128/apps/org.spectrane.Spectrane.png");
  EXPECT_EQ(ThemePath({".wls", 48, ""}), "48x48/mimetypes/application-x-spectrane-wls.png");
  EXPECT_EQ(ThemePath({".xyz", 48, ""}), "");
}

TEST_F(RegisterTest, WritesEntryPackageAndIconsAndNothingElse) {
  RegisterFileTypes(QStringLiteral("/opt/spectrane"), SomeIcons());
  const auto files = FilesBelow(folder_.Path());
  EXPECT_THAT(files, SizeIs(2 + 2 + 7));
  EXPECT_EQ(files.at("data/icons/hicolor/48x48/apps/org.spectrane.Spectrane.png"), "PNG program");
  EXPECT_EQ(files.at("data/icons/hicolor/scalable/mimetypes/application-x-spectrane-qua.svg"),
            "<svg>.qua</svg>");
  EXPECT_EQ(ReadBytes(package_), MimePackage());
  EXPECT_EQ(ReadBytes(entry_),
            DesktopEntry("/opt/spectrane", QCoreApplication::applicationName().toStdString()));
  EXPECT_EQ(LineOf(ReadBytes(entry_), "StartupWMClass"), "desktop_tests");
}

TEST_F(RegisterTest, ASecondStartTouchesNothing) {
  RegisterFileTypes(QStringLiteral("/opt/spectrane"), SomeIcons());
  const auto past = fs::file_time_type::clock::now() - std::chrono::hours(1);
  for (const auto& file : FilesBelow(folder_.Path())) fs::last_write_time(folder_.Path(file.first), past);
  const auto theme = fs::last_write_time(folder_.Path("data/icons/hicolor"));
  RegisterFileTypes(QStringLiteral("/opt/spectrane"), SomeIcons());
  for (const auto& file : FilesBelow(folder_.Path())) {
    EXPECT_EQ(fs::last_write_time(folder_.Path(file.first)), past) << file.first;
  }
  EXPECT_EQ(fs::last_write_time(folder_.Path("data/icons/hicolor")), theme);
}

TEST_F(RegisterTest, WhatDiffersIsPutRightAndNothingElse) {
  RegisterFileTypes(QStringLiteral("/opt/spectrane"), SomeIcons());
  const std::string icon = folder_.Path("data/icons/hicolor/48x48/apps/org.spectrane.Spectrane.png");
  // As long as the right one.
  WriteBytes(icon, "png PROGRAM");
  fs::remove(package_);
  const auto past = fs::file_time_type::clock::now() - std::chrono::hours(1);
  fs::last_write_time(entry_, past);
  RegisterFileTypes(QStringLiteral("/opt/spectrane"), SomeIcons());
  EXPECT_EQ(ReadBytes(icon), "PNG program");
  EXPECT_EQ(ReadBytes(package_), MimePackage());
  EXPECT_EQ(fs::last_write_time(entry_), past);
}

TEST_F(RegisterTest, AMovedProgramRewritesItsEntry) {
  RegisterFileTypes(QStringLiteral("/opt/old/spectrane"), {});
  RegisterFileTypes(QStringLiteral("/opt/new/spectrane"), {});
  EXPECT_EQ(LineOf(ReadBytes(entry_), "Exec"), "\"/opt/new/spectrane\" %f");
}

// The package's program once wrote all of it for its user once more, where nothing took it away again.
TEST_F(RegisterTest, AProgramThatThePackageHasMadeKnownLeavesTheUsersDataAlone) {
  const std::string dirs = "relative:" + folder_.Path("nowhere") + ":" + folder_.Path("usr/share");
  const ScopedVariable places("XDG_DATA_DIRS", dirs.c_str());
  const QString program = QString::fromStdString(folder_.Path("usr/bin/spectrane"));
  fs::create_directories(folder_.Path("usr/bin"));
  fs::create_directories(folder_.Path("usr/share/applications"));
  const std::string known = folder_.Path("usr/share/applications/org.spectrane.Spectrane.desktop");
  WriteBytes(known, "[Desktop Entry]\n");
  RegisterFileTypes(program, SomeIcons());
  EXPECT_FALSE(fs::exists(folder_.Path("data")));
  // An entry that the user has hides that of the system.
  RegisterFileTypes(QStringLiteral("/opt/spectrane"), {});
  RegisterFileTypes(program, {});
  EXPECT_EQ(LineOf(ReadBytes(entry_), "TryExec"), program.toStdString());
  fs::remove_all(folder_.Path("data"));
  for (const char* elsewhere : {"/usr/share", ""}) {
    const ScopedVariable others("XDG_DATA_DIRS", elsewhere);
    RegisterFileTypes(program, {});
    EXPECT_TRUE(fs::exists(entry_)) << "no desktop looks where the package's entry stands";
    fs::remove_all(folder_.Path("data"));
  }
  fs::remove(known);
  RegisterFileTypes(program, {});
  EXPECT_TRUE(fs::exists(entry_));
}

TEST_F(RegisterTest, ARelativeDataFolderIsPassedOverForTheUsersOwn) {
  ScopedVariable data("XDG_DATA_HOME", "relative/data");
  ScopedVariable home("HOME", folder_.Path("home").c_str());
  RegisterFileTypes(QStringLiteral("/opt/spectrane"), {});
  EXPECT_TRUE(fs::exists(folder_.Path("home/.local/share/applications/org.spectrane.Spectrane.desktop")));
  EXPECT_FALSE(fs::exists("relative"));
}

TEST_F(RegisterTest, AUserWithoutAFolderStartsAllTheSame) {
  ScopedVariable data("XDG_DATA_HOME", nullptr);
  for (const char* home : {static_cast<const char*>(nullptr), "", "relative"}) {
    ScopedVariable variable("HOME", home);
    RegisterFileTypes(QStringLiteral("/opt/spectrane"), SomeIcons());
  }
  EXPECT_FALSE(fs::exists("relative"));
  EXPECT_FALSE(fs::exists(folder_.Path("data")));
}

TEST_F(RegisterTest, ObstaclesAreIgnoredAndTheRestIsDone) {
  // A file stands where the icons' folder belongs, a pipe where the package belongs.
  fs::create_directories(folder_.Path("data/mime/packages"));
  WriteBytes(folder_.Path("data/icons"), "in the way");
  ASSERT_EQ(::mkfifo(package_.c_str(), 0600), 0);
  RegisterFileTypes(QStringLiteral("/opt/spectrane"), SomeIcons());
  EXPECT_EQ(ReadBytes(folder_.Path("data/icons")), "in the way");
  EXPECT_TRUE(fs::is_fifo(package_));
  EXPECT_TRUE(fs::exists(entry_));
}

TEST_F(RegisterTest, ToolsAreStartedOnceAndAgainWhenTheirWorkIsMissing) {
  fs::create_directories(folder_.Path("no-tools"));
  // Each tool leaves a line in a log and makes what the real one makes.
  const auto makeTool = [&](const char* name, const char* made) {
    const std::string tool = folder_.Path("no-tools/") + name;
    WriteBytes(tool, "#!/bin/sh\necho " + std::string(name) + " \"$1\" >> '" + folder_.Path("log") +
                         "'\n: > \"$1/" + made + "\"\n");
    fs::permissions(tool, fs::perms::owner_all);
  };
  makeTool("update-mime-database", "mime.cache");
  makeTool("update-desktop-database", "mimeinfo.cache");
  const std::string mime = "update-mime-database " + folder_.Path("data/mime") + "\n";
  const std::string entries = "update-desktop-database " + folder_.Path("data/applications") + "\n";
  const auto made = [&](const char* path) { return fs::exists(folder_.Path(path)); };
  const auto log = [&] { return ReadBytes(folder_.Path("log")); };

  RegisterFileTypes(QStringLiteral("/opt/spectrane"), {});
  ASSERT_TRUE(
      WaitFor([&] { return made("data/mime/mime.cache") && made("data/applications/mimeinfo.cache"); }));
  EXPECT_TRUE(log() == mime + entries || log() == entries + mime) << log();

  RegisterFileTypes(QStringLiteral("/opt/spectrane"), {});
  fs::remove(folder_.Path("data/mime/mime.cache"));
  RegisterFileTypes(QStringLiteral("/opt/spectrane"), {});
  ASSERT_TRUE(WaitFor([&] { return made("data/mime/mime.cache"); }));
  EXPECT_TRUE(log() == mime + entries + mime || log() == entries + mime + mime) << log();
}

TEST_F(RegisterTest, AStartWithNothingToDoTakesNoTimeWorthSpeakingOf) {
  std::vector<DesktopIcon> icons;
  for (const int size : {0, 16, 32, 48, 128, 256}) {
    icons.push_back({"", size, std::string(20000, 'p')});
    for (const FileAssociation& row : FileAssociations()) {
      icons.push_back({row.Extension, size, std::string(20000, 'k')});
    }
  }
  QElapsedTimer timer;
  timer.start();
  RegisterFileTypes(QStringLiteral("/opt/spectrane"), icons);
  RecordProperty("first_start_us", std::to_string(timer.nsecsElapsed() / 1000));
  qint64 best = timer.nsecsElapsed();
  for (int i = 0; i < 5; ++i) {
    timer.start();
    RegisterFileTypes(QStringLiteral("/opt/spectrane"), icons);
    best = std::min(best, timer.nsecsElapsed());
  }
  RecordProperty("later_start_us", std::to_string(best / 1000));
  // Far above what it takes, so that a busy machine does not fail it; a wait for a tool would.
  EXPECT_LT(best, 50'000'000);
}

/// Registers into a folder and lets the desktop's own tools judge.
class DesktopToolsTest : public testing::Test {
 protected:
  TemporaryFolder folder_;
  ScopedVariable data_{"XDG_DATA_HOME", folder_.Path("data").c_str()};
};

TEST_F(DesktopToolsTest, TheEntryIsValid) {
  if (!HasTool("desktop-file-validate")) GTEST_SKIP() << "desktop-file-validate is not installed";
  for (const char* program : {"/usr/bin/spectrane", "/opt/my lab/100% $x \"y\"/s"}) {
    const std::string file = folder_.Path("org.spectrane.Spectrane.desktop");
    WriteBytes(file, DesktopEntry(program, "spectrane"));
    const ToolResult result = RunTool(QStringLiteral("desktop-file-validate"), {Q(file)});
    EXPECT_EQ(result.ExitCode, 0);
    EXPECT_EQ(result.Output, "") << program;
  }
}

TEST_F(DesktopToolsTest, FilesAreKnownByTheirHeaderAndThenByTheirEnding) {
  if (!HasTool("update-mime-database")) GTEST_SKIP() << "update-mime-database is not installed";
  if (!HasTool("gio")) GTEST_SKIP() << "gio is not installed";
  ScopedVariable dirs("XDG_DATA_DIRS", folder_.Path("data").c_str());
  const std::string mime = folder_.Path("data/mime");
  fs::create_directories(mime + "/packages");
  WriteBytes(mime + "/packages/org.spectrane.Spectrane.xml", MimePackage());
  // Another program's claim on the ending and on the content, as strong as such claims are elsewhere.
  WriteBytes(
      mime + "/packages/other.xml",
      "<?xml version=\"1.0\"?><mime-info xmlns=\"http://www.freedesktop.org/standards/shared-mime-info\">"
      "<mime-type type=\"application/x-other\"><comment>Other</comment>"
      "<magic priority=\"80\"><match type=\"string\" offset=\"0\" value=\"OTHER\"/>"
      "<match type=\"string\" offset=\"4\" value=\"" +
          VersionText() +
          "\"/></magic>"
          "<glob pattern=\"*.mul\"/></mime-type></mime-info>");
  const ToolResult update = RunTool(QStringLiteral("update-mime-database"), {Q(mime)});
  ASSERT_EQ(update.ExitCode, 0) << update.Output;
  EXPECT_EQ(update.Output, "");

  const auto typeOf = [&](const std::string& name, const std::string& bytes) {
    const std::string file = folder_.Path(name);
    WriteBytes(file, bytes);
    const ToolResult result = RunTool(
        QStringLiteral("gio"),
        {QStringLiteral("info"), QStringLiteral("-a"), QStringLiteral("standard::content-type"), Q(file)});
    const std::size_t at = result.Output.find("content-type: ");
    const std::size_t start = at + 14;
    return at == std::string::npos ? result.Output
                                   : result.Output.substr(start, result.Output.find('\n', start) - start);
  };
  const auto fileOf = [&](std::int32_t fileType) {
    const Block nothing{{}, 0, [](const void*, unsigned char*, bool&) {}, nullptr};
    const FileKind kind{"", fileType, nothing, kFileHeaderSize, nothing, 0};
    const std::string path = folder_.Path("made");
    fs::remove(path);
    int number = 0;
    EXPECT_TRUE(CreateDataFile(kind, path, number, nullptr));
    CloseDataFile(number);
    return ReadBytes(path) + std::string(200, '\0');
  };
  for (const FileAssociation& row : FileAssociations()) {
    for (const std::int32_t fileType : row.FileTypes) {
      if (fileType == 0) continue;
      EXPECT_EQ(typeOf("without-ending", fileOf(fileType)), row.MimeType) << fileType;
      EXPECT_EQ(typeOf(std::string("right") + row.Extension, fileOf(fileType)), row.MimeType);
    }
  }
  EXPECT_EQ(typeOf("foreign.mul", "OTHER and more"), "application/x-other");
  std::string leadingBlanks = fileOf(11);
  leadingBlanks.replace(20, 16, "           Kestu");
  EXPECT_EQ(typeOf("blanks", leadingBlanks), "application/x-spectrane-bas");
  std::string otherMagic = fileOf(11);
  otherMagic[100] = 0;
  EXPECT_EQ(typeOf("other-magic", otherMagic), "application/x-other");
  std::string otherAuthor = fileOf(11);
  otherAuthor[20] = 'k';
  EXPECT_EQ(typeOf("other-author", otherAuthor), "application/x-other");
  EXPECT_EQ(typeOf("no-such-kind", fileOf(7)), "application/x-other");
}

TEST_F(DesktopToolsTest, TheProgramIsOfferedForItsFiles) {
  for (const char* tool : {"update-mime-database", "update-desktop-database", "gio"}) {
    if (!HasTool(tool)) GTEST_SKIP() << tool << " is not installed";
  }
  ScopedVariable dirs("XDG_DATA_DIRS", folder_.Path("data").c_str());
  ScopedVariable config("XDG_CONFIG_HOME", folder_.Path("config").c_str());
  RegisterFileTypes(QStringLiteral("/bin/true"), SomeIcons());
  ASSERT_TRUE(WaitFor([&] {
    return fs::exists(folder_.Path("data/mime/mime.cache")) &&
           fs::exists(folder_.Path("data/applications/mimeinfo.cache"));
  }));
  for (const FileAssociation& row : FileAssociations()) {
    const ToolResult result =
        RunTool(QStringLiteral("gio"), {QStringLiteral("mime"), QString::fromUtf8(row.MimeType)});
    EXPECT_THAT(result.Output, HasSubstr("org.spectrane.Spectrane.desktop"));
  }
}

TEST_F(DesktopToolsTest, TheSoftwareCatalogueKnowsTheSameIdAndTypes) {
  const std::string file = std::string(SPECTRANE_PACKAGING) + "/linux/" + kDesktopId + ".metainfo.xml";
  const std::string text = ReadBytes(file);
  EXPECT_THAT(text, HasSubstr(std::string("<id>") + kDesktopId + "</id>"));
  EXPECT_THAT(text, HasSubstr(std::string(">") + kDesktopId + ".desktop</launchable>"));
  EXPECT_THAT(text, HasSubstr(std::string("<release version=\"") + SPECTRANE_VERSION + "\""));
  std::size_t types = 0;
  for (std::size_t at = text.find("<mediatype>"); at != std::string::npos;
       at = text.find("<mediatype>", at + 1))
    ++types;
  EXPECT_EQ(types, FileAssociations().size());
  for (const FileAssociation& row : FileAssociations()) {
    EXPECT_THAT(text, HasSubstr(std::string("<mediatype>") + row.MimeType + "</mediatype>"));
  }
  if (!HasTool("appstreamcli")) GTEST_SKIP() << "appstreamcli is not installed";
  const ToolResult result = RunTool(QStringLiteral("appstreamcli"),
                                    {QStringLiteral("validate"), QStringLiteral("--no-net"), Q(file)});
  EXPECT_EQ(result.ExitCode, 0) << result.Output;
}

}  // namespace
}  // namespace spectrane
