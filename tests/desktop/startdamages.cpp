#include "startdamages.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "base/basesupport.h"

namespace spectrane {
namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;

using Table = std::vector<StartDamage>;

void MakeOf(const std::string& path, const std::string& bytes) {
  fs::create_directories(fs::path(path).parent_path());
  WriteBytes(path, bytes);
}

/// A settings file with these bytes.
void AddText(Table& table, const std::string& name, std::string bytes) {
  table.push_back(
      {name, [bytes = std::move(bytes)](StartPlace& place) { WriteBytes(place.Config(), bytes); }});
}

/// The settings file that the program writes, with another value for each key; `only`: for the keys with this
/// in their name.
std::string WithValues(const std::string& written, const std::string& value, const std::string& only = {}) {
  std::istringstream lines(written);
  std::string text;
  for (std::string line; std::getline(lines, line);) {
    const std::size_t equals = line.find('=');
    const bool changes =
        equals != std::string::npos && line.substr(0, equals).find(only) != std::string::npos;
    text += (changes ? line.substr(0, equals + 1) + value : line) + "\n";
  }
  return text;
}

void AddValues(Table& table, const std::string& name, const std::string& value,
               const std::string& only = {}) {
  table.push_back({name, [value, only](StartPlace& place) {
                     WriteBytes(place.Config(), WithValues(place.Written, value, only));
                   }});
}

void AddVariable(Table& table, const std::string& name, const std::string& variable,
                 std::optional<std::string> value) {
  table.push_back({name, [=](StartPlace& place) { place.Environment[variable] = value; }});
}

std::string Repeated(const std::string& text, int count) {
  const std::size_t wanted = text.size() * static_cast<std::size_t>(count);
  std::string all = text;
  // By doubling: the sanitizers look at every step, and there are millions.
  while (all.size() < wanted) all += all;
  all.resize(wanted);
  return all;
}

void AddFileKinds(Table& table) {
  table.push_back({"C01_FolderMissing", [](StartPlace& place) { fs::remove_all(place.App()); }});
  AddText(table, "C01_Empty", "");
  table.push_back({"C01_Directory", [](StartPlace& place) { fs::create_directory(place.Config()); }});
  table.push_back({"C01_Unreadable", [](StartPlace& place) {
                     WriteBytes(place.Config(), place.Written);
                     ::chmod(place.Config().c_str(), 0);
                   }});
  table.push_back({"C01_ReadOnly", [](StartPlace& place) {
                     WriteBytes(place.Config(), place.Written);
                     ::chmod(place.Config().c_str(), 0400);
                     ::chmod(place.App().c_str(), 0500);
                   }});
  const auto link = [&table](const char* name, const char* target) {
    table.push_back({name, [=](StartPlace& place) { fs::create_symlink(target, place.Config()); }});
  };
  link("C01_LinkToNothing", "/nowhere/config.ini");
  link("C01_LinkToItself", "config.ini");
  link("C01_EndlessDevice", "/dev/zero");
  link("C01_FullDevice", "/dev/full");
  link("C01_EmptyDevice", "/dev/null");
  link("C01_LinkToAFolder", "/tmp");
  table.push_back({"C01_Pipe", [](StartPlace& place) { ::mkfifo(place.Config().c_str(), 0600); }});
  table.push_back({"C01_EightGigabytes", [](StartPlace& place) {
                     WriteBytes(place.Config(), place.Written);
                     fs::resize_file(place.Config(), std::uintmax_t{8} << 30);
                   }});
}

void AddTexts(Table& table) {
  table.push_back({"C02_ByteOrderMark",
                   [](StartPlace& place) { WriteBytes(place.Config(), "\xEF\xBB\xBF" + place.Written); }});
  const auto wide = [](const std::string& text, bool bigEndian) {
    std::string bytes = bigEndian ? "\xFE\xFF" : "\xFF\xFE";
    for (const char c : text) bytes += bigEndian ? std::string{'\0', c} : std::string{c, '\0'};
    return bytes;
  };
  table.push_back({"C02_WideLittleEndian",
                   [wide](StartPlace& place) { WriteBytes(place.Config(), wide(place.Written, false)); }});
  table.push_back({"C02_WideBigEndian",
                   [wide](StartPlace& place) { WriteBytes(place.Config(), wide(place.Written, true)); }});
  table.push_back({"C02_CarriageReturnsOnly", [](StartPlace& place) {
                     std::string text = place.Written;
                     for (char& c : text) c = c == '\n' ? '\r' : c;
                     WriteBytes(place.Config(), text);
                   }});
  table.push_back({"C02_ANulInTheMiddle", [](StartPlace& place) {
                     std::string text = place.Written;
                     text[text.size() / 2] = '\0';
                     WriteBytes(place.Config(), text);
                   }});
  AddText(table, "C02_AMegabyteInALine", "[Option]\nOpearator=" + std::string(1 << 20, 'a') + "\n");
  AddText(table, "C02_AMegabyteWithoutAMeaning", std::string(1 << 20, 'a'));
  std::string keys = "[Option]\n";
  for (int i = 0; i < 1000000; ++i) keys += "k" + std::to_string(i) + "=1\n";
  AddText(table, "C02_AMillionKeys", keys);
  AddText(table, "C02_AMillionSections", Repeated("[a]\n", 1000000));
  AddText(table, "C02_OneKeyAMillionTimes", "[Main Window]\n" + Repeated("Windows Height=5\n", 800000));
  AddText(table, "C02_UnclosedSection", "[Option\nPrecise=1\n[Main Window\nWindows Height=5\n");
  AddText(table, "C02_DoubledSections", Repeated("[Option]\nPrecise=1\n[option]\nPrecise=7\n", 50));
  AddText(table, "C02_DoubledKeys", "[Option]\nPrecise=1\nprecise=2\nPRECISE=abc\n");
  AddText(table, "C02_NoNames", "[]\n=x\n==\n[ ]\n = \n");
  AddText(table, "C02_BracketsOnly", std::string(100000, '['));
  AddText(table, "C02_HighBytes", std::string(4096, '\xFF'));
  AddText(table, "C02_NulsOnly", std::string(4096, '\0'));
  std::string noise;
  for (std::uint32_t i = 1; noise.size() < 65536; i = i * 1664525U + 1013904223U)
    noise += static_cast<char>(i >> 24);
  AddText(table, "C02_Noise", noise);
  AddText(table, "C02_SixteenMegabytes", Repeated("; a comment of a settings file\n", 540000));
  AddText(table, "C02_MoreThanSixteenMegabytes", Repeated("; a comment of a settings file\n", 560000));
}

void AddAllValues(Table& table) {
  const std::pair<const char*, std::string> values[] = {
      {"Word", "abc"},
      {"Nothing", ""},
      {"Comma", "1,5"},
      {"Huge", "1e400"},
      {"Negative", "-1"},
      {"Long", "99999999999"},
      {"SmallTrue", "true"},
      {"TrueAndABlank", "True "},
      {"Hexadecimal", "0x10"},
      {"NotANumber", "NaN"},
      {"Infinite", "inf"},
      {"Largest", "1e308"},
      {"OneTooMany", "2147483648"},
      {"Zero", "0"},
      {"Tiny", "5e-324"},
      {"Point", "."},
  };
  for (const auto& [name, value] : values) AddValues(table, "C03_"s + name + "Everywhere", value);
  for (const char* port : {"0", "9", "-1", "COM3", "2147483648", "1.5"}) {
    std::string name = "C04_Port"s + port;
    for (char& c : name) c = std::isalnum(static_cast<unsigned char>(c)) != 0 ? c : '_';
    AddText(table, name, "[Option]\nAuto Search=1\nPort ID="s + port + "\n");
  }
  for (const char* size : {"0", "-5", "1000000", "-2147483648", "1"}) {
    AddValues(table, "C05_WindowOf"s + (size[0] == '-' ? "Minus" + std::string(size + 1) : size), size,
              "Windows ");
  }
  for (const char* state : {"7", "-1", "1"}) {
    AddValues(table, "C05_State"s + (state[0] == '-' ? "Minus1" : state), state, "Windows States");
  }
  const std::pair<const char*, std::string> texts[] = {
      {"Most", std::string(255, 'x')},
      {"OneMore", std::string(256, 'x')},
      {"Signs", "= ; # [a] \"quoted\" 'x' = "},
      {"Greek", Repeated("\xCE\xBC", 255)},
      {"OldLetters", "\xB5\xC4\xE3\xFF"},
      {"FormatLetters", "%n%s%1%2%L1\\n\\x"},
      {"HalfACharacter", Repeated("\xE2\x82", 100)},
  };
  for (const auto& [name, value] : texts) AddValues(table, "C06_"s + name, value);
}

void AddTorn(Table& table) {
  table.push_back({"C07_HalfAFile", [](StartPlace& place) {
                     WriteBytes(place.Config(), place.Written.substr(0, place.Written.size() / 2));
                   }});
  table.push_back({"C07_ZerosOfTheOldLength", [](StartPlace& place) {
                     WriteBytes(place.Config(), std::string(place.Written.size(), '\0'));
                   }});
  table.push_back({"C07_LeftBehindByACrash", [](StartPlace& place) {
                     WriteBytes(place.Config(), place.Written);
                     for (int i = 0; i < 300; ++i)
                       WriteBytes(place.Config() + "." + std::to_string(i) + ".tmp", "x");
                   }});
  table.push_back({"C07_AnotherCopyWritesAllTheTime", [](StartPlace& place) {
                     const int folder = ::open(place.App().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
                     ::flock(folder, LOCK_EX);
                     place.AtEnd.push_back([folder] { ::close(folder); });
                   }});
  AddValues(table, "C08_PathsThatAreGone", "/nowhere/at/all", "Path");
  AddValues(table, "C08_PathOfADevice", "/dev/zero", "Path");
  AddText(table, "C08_ColourBelowZero", "[Color]\nBack=-1\n[Spectrum]\nColor 1=-1\nColor 2=4294967296\n");
  AddVariable(table, "C08_DecimalComma", "LC_ALL", "de_DE.UTF-8");
  AddVariable(table, "C08_Turkish", "LC_ALL", "tr_TR.UTF-8");
  AddVariable(table, "C08_UnknownLocale", "LC_ALL", "xx_YY.klingon");
}

/// A socket that nobody serves; `listens`: its owner lives and hangs.
void MakeSocket(StartPlace& place, bool listens) {
  fs::create_directories(fs::path(place.Socket()).parent_path());
  ::chmod(fs::path(place.Socket()).parent_path().c_str(), 0700);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::strncpy(address.sun_path, place.Socket().c_str(), sizeof(address.sun_path) - 1);
  const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  ASSERT_EQ(::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
  if (listens) ::listen(socket, 0);
  if (listens) {
    place.AtEnd.push_back([socket] { ::close(socket); });
  } else {
    ::close(socket);
  }
}

void AddHandover(Table& table) {
  const auto at = [&table](const char* name, std::string (StartPlace::*path)() const, auto make) {
    table.push_back({name, [=](StartPlace& place) {
                       const std::string where = (place.*path)();
                       fs::create_directories(fs::path(where).parent_path());
                       ::chmod(fs::path(where).parent_path().c_str(), 0700);
                       make(where);
                     }});
  };
  const auto file = [](const std::string& bytes) {
    return [bytes](const std::string& path) { MakeOf(path, bytes); };
  };
  const auto folder = [](const std::string& path) { fs::create_directory(path); };
  const auto pipe = [](const std::string& path) { ::mkfifo(path.c_str(), 0600); };
  const auto nowhere = [](const std::string& path) { fs::create_symlink("/nowhere/x", path); };
  table.push_back({"H01_SocketLeftByACrash", [](StartPlace& place) { MakeSocket(place, false); }});
  table.push_back({"H02_OwnerThatHangs", [](StartPlace& place) { MakeSocket(place, true); }});
  at("H01_FileInPlaceOfTheSocket", &StartPlace::Socket, file("x"));
  at("H01_FolderInPlaceOfTheSocket", &StartPlace::Socket, folder);
  at("H01_PipeInPlaceOfTheSocket", &StartPlace::Socket, pipe);
  at("H01_LinkInPlaceOfTheSocket", &StartPlace::Socket, nowhere);
  at("H01_EmptyLock", &StartPlace::Lock, file(""));
  at("H01_NoiseInTheLock", &StartPlace::Lock, file(std::string(1 << 20, '\xA5')));
  at("H01_LockOfADeadCopy", &StartPlace::Lock, file("999999\nspectrane\nthis-machine\n\n\n"));
  at("H01_LockOfThisProcess", &StartPlace::Lock, file(std::to_string(::getpid()) + "\nspectrane\n\n\n\n"));
  at("H01_LockOfNobody", &StartPlace::Lock, file("-1\n\n\n"));
  at("H01_LockIsAFolder", &StartPlace::Lock, folder);
  at("H01_LockIsAPipe", &StartPlace::Lock, pipe);
  at("H01_LockIsALink", &StartPlace::Lock, nowhere);
  table.push_back({"H06_OpenToOthers", [](StartPlace& place) { ::chmod(place.Runtime().c_str(), 0777); }});
  table.push_back({"H06_RuntimeFolderGone", [](StartPlace& place) { fs::remove_all(place.Runtime()); }});
  table.push_back(
      {"H06_OwnFolderIsAFile", [](StartPlace& place) { WriteBytes(place.Runtime() + "/spectrane", "x"); }});
  table.push_back({"H06_OwnFolderIsALink", [](StartPlace& place) {
                     fs::create_directory_symlink(place.Temporary(), place.Runtime() + "/spectrane");
                   }});
  AddVariable(table, "H06_NoRuntimeFolder", "XDG_RUNTIME_DIR", std::nullopt);
  AddVariable(table, "H06_RelativeRuntimeFolder", "XDG_RUNTIME_DIR", "run");
  AddVariable(table, "H06_TemporaryFolderGone", "TMPDIR", "/nowhere");
  table.push_back({"H06_LongTemporaryFolder", [](StartPlace& place) {
                     const std::string path = place.Temporary() + "/" + std::string(200, 't');
                     fs::create_directories(path);
                     place.Environment["TMPDIR"] = path;
                     place.Environment["XDG_RUNTIME_DIR"] = std::nullopt;
                   }});
  table.push_back({"H06_NoFolderAtAll", [](StartPlace& place) {
                     place.Environment["TMPDIR"] = "/nowhere";
                     place.Environment["XDG_RUNTIME_DIR"] = "/nowhere";
                   }});
}

/// The file of sizes and places, its lock, and the folder of the journals.
void AddLayout(Table& table) {
  table.push_back({"N01_LayoutIsAPipe", [](StartPlace& place) { ::mkfifo(place.Layout().c_str(), 0600); }});
  table.push_back({"N01_LockOfTheLayoutIsAPipe",
                   [](StartPlace& place) { ::mkfifo((place.Layout() + ".lock").c_str(), 0600); }});
  table.push_back({"N01_LayoutIsAFolder", [](StartPlace& place) { fs::create_directory(place.Layout()); }});
  table.push_back(
      {"N01_LayoutIsADevice", [](StartPlace& place) { fs::create_symlink("/dev/zero", place.Layout()); }});
  table.push_back({"N01_LayoutOfEightGigabytes", [](StartPlace& place) {
                     WriteBytes(place.Layout(), "[layout]\n");
                     fs::resize_file(place.Layout(), std::uintmax_t{8} << 30);
                   }});
  table.push_back({"N01_LayoutOfNoise",
                   [](StartPlace& place) { WriteBytes(place.Layout(), std::string(65536, '\xA5')); }});
  table.push_back({"N01_JournalFolderIsAPipe",
                   [](StartPlace& place) { ::mkfifo((place.App() + "/journal").c_str(), 0600); }});
  table.push_back({"N01_JournalIsAPipe", [](StartPlace& place) {
                     fs::create_directory(place.App() + "/journal");
                     ::mkfifo((place.App() + "/journal/1.journal").c_str(), 0600);
                   }});
}

void AddHomes(Table& table) {
  const auto home = [&table](const char* name, const char* variable, auto value) {
    table.push_back({name, [=](StartPlace& place) { place.Environment[variable] = value(place); }});
  };
  home("N01_ApplicationFolderDeepAndMissing", "SPECTRANE_HOME",
       [](StartPlace& p) { return p.App() + "/a/b/c"; });
  home("N01_ApplicationFolderIsAFile", "SPECTRANE_HOME", [](StartPlace& p) {
    WriteBytes(p.Root + "/file", "x");
    return p.Root + "/file";
  });
  home("N01_ApplicationFolderIsADevice", "SPECTRANE_HOME", [](StartPlace&) { return "/dev/null"s; });
  home("N01_ApplicationFolderCannotBeWritten", "SPECTRANE_HOME", [](StartPlace&) { return "/proc/self"s; });
  home("N01_RelativeApplicationFolder", "SPECTRANE_HOME", [](StartPlace&) { return "here"s; });
  home("N01_HomeIsAFile", "HOME", [](StartPlace& p) {
    WriteBytes(p.Root + "/file", "x");
    return p.Root + "/file";
  });
  AddVariable(table, "N01_NoApplicationFolder", "SPECTRANE_HOME", std::nullopt);
  AddVariable(table, "N01_HomeGone", "HOME", "/nowhere");
  table.push_back({"N01_NoVariablesAtAll", [](StartPlace& place) {
                     for (const char* name : {"SPECTRANE_HOME", "XDG_RUNTIME_DIR", "TMPDIR", "LANG", "USER"})
                       place.Environment[name] = std::nullopt;
                   }});
  home("N01_DataFolderIsAFile", "XDG_DATA_HOME", [](StartPlace& p) {
    WriteBytes(p.Root + "/file", "x");
    return p.Root + "/file";
  });
  home("N01_AThousandPorts", "SPECTRANE_PORTS", [](StartPlace&) { return Repeated("/dev/null:", 1000); });
  home("N01_PipeAsAPort", "SPECTRANE_PORTS", [](StartPlace& p) {
    ::mkfifo((p.Root + "/pipe").c_str(), 0600);
    return p.Root + "/pipe";
  });
  home("N01_FolderAsAPort", "SPECTRANE_PORTS", [](StartPlace& p) { return p.Root; });
}

}  // namespace

const std::vector<StartDamage>& StartDamages() {
  static const Table damages = [] {
    Table table;
    AddFileKinds(table);
    AddTexts(table);
    AddAllValues(table);
    AddTorn(table);
    AddHandover(table);
    AddLayout(table);
    AddHomes(table);
    const auto isOneOf = [](const std::string& name, std::initializer_list<std::string_view> parts) {
      return std::any_of(parts.begin(), parts.end(),
                         [&](std::string_view part) { return name.find(part) != std::string::npos; });
    };
    for (StartDamage& damage : table) {
      damage.AtThePort = isOneOf(damage.Name, {"C04_", "Ports", "AsAPort"});
      damage.OfRights = isOneOf(damage.Name, {"_Unreadable", "_ReadOnly", "CannotBeWritten"});
    }
    return table;
  }();
  return damages;
}

}  // namespace spectrane
