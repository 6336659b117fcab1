#include "base/windowsettings.h"

#include <stdexcept>

#include "base/utf8path.h"

namespace spectrane {
namespace {

using W = WindowSettings;
using WindowRow = SettingRow<W>;

constexpr double kLargestWindow = 100'000;
constexpr std::int32_t kMinimised = 1;

template <int position>
bool& SamplerPosition(W& w) {
  return w.SamplerPositions[position];
}

const WindowRow kWindowRows[] = {
    {"Option", "Precise", [](W& w) -> std::int32_t& { return w.PrecisionMode; }, 0, 1},
    {"Option", "Auto Search", [](W& w) -> std::int32_t& { return w.PortSearchMode; }, 0, 1},
    {"Option", "Port ID", [](W& w) -> std::int32_t& { return w.PortID; }, 1, 8},
    // Misspelled since the first version; the files of all versions have it so.
    {"Option", "Opearator", [](W& w) -> std::string& { return w.Operator; }},
    {"Option", "Department", [](W& w) -> std::string& { return w.Department; }},
    {"Main Window", "Windows States", [](W& w) -> std::int32_t& { return w.WindowState; }, 0, 2},
    {"Main Window", "Windows Height", [](W& w) -> std::int32_t& { return w.WindowHeight; }, 1,
     kLargestWindow},
    {"Main Window", "Windows Width", [](W& w) -> std::int32_t& { return w.WindowWidth; }, 1, kLargestWindow},
    {"Main Window", "Menu Style", [](W& w) -> std::int32_t& { return w.MenuStyle; }, 0, 6},
    {"Main Window", "Main toolsbar", [](W& w) -> bool& { return w.MainToolbar; }},
    {"Main Window", "Operate toolsbar", [](W& w) -> bool& { return w.OperateToolbar; }},
    {"Main Window", "spectrum toolsbar", [](W& w) -> bool& { return w.SpectrumToolbar; }},
    {"Main Window", "data display toolsbar", [](W& w) -> bool& { return w.DataDisplayToolbar; }},
    {"Main Window", "Expand Button", [](W& w) -> bool& { return w.ExpandButton; }},
    {"Main Window", "TabWorkspace", [](W& w) -> bool& { return w.TabWorkspace; }},
    {"Main Window", "status toolsbar", [](W& w) -> bool& { return w.StatusToolbar; }},
    {"Main Window", "Big Icon", [](W& w) -> bool& { return w.BigIcon; }},
    {"File", "FilePath", [](W& w) -> std::string& { return w.FilePath; }},
    {"File", "Open File Path", [](W& w) -> std::string& { return w.OpenFilePath; }},
    {"New File", "File Type", [](W& w) -> std::int32_t& { return w.NewFileType; }, 1, 6},
    {"Base Line", "File Path", [](W& w) -> std::string& { return w.BaselinePath; }},
    {"Automatic Sampler", "Zero Position", [](W& w) -> std::int32_t& { return w.SamplerZeroPosition; }, 1, 8},
    {"Automatic Sampler", "1# Position", &SamplerPosition<1>},
    {"Automatic Sampler", "2# Position", &SamplerPosition<2>},
    {"Automatic Sampler", "3# Position", &SamplerPosition<3>},
    {"Automatic Sampler", "4# Position", &SamplerPosition<4>},
    {"Automatic Sampler", "5# Position", &SamplerPosition<5>},
    {"Automatic Sampler", "6# Position", &SamplerPosition<6>},
    {"Automatic Sampler", "7# Position", &SamplerPosition<7>},
    {"Automatic Sampler", "8# Position", &SamplerPosition<8>},
};

}  // namespace

std::span<const SettingRow<WindowSettings>> WindowSettingRows() {
  return kWindowRows;
}

const SettingRow<WindowSettings>& WindowSettingRow(std::string_view section, std::string_view key) {
  for (const WindowRow& row : kWindowRows) {
    if (SameName(row.Section, section) && SameName(row.Key, key)) return row;
  }
  throw std::out_of_range("no such setting: " + std::string(key));
}

bool LoadWindowSettings(Setting& settings, const std::string& applicationFolder, WindowSettings& window) {
  if (window.BaselinePath.empty()) {
    window.BaselinePath = Utf8FromPath(PathFromUtf8(applicationFolder) / "Baseline.bsl");
  }
  const bool stored = LoadSettings(settings, WindowSettingRows(), window);
  // A program that was closed as an icon comes up visible.
  if (window.WindowState == kMinimised) window.WindowState = 0;
  return stored;
}

bool StoreWindowSetting(Setting& settings, std::string_view section, std::string_view key,
                        WindowSettings& window) {
  return settings.PutSettings({StoredSetting(WindowSettingRow(section, key), window)});
}

}  // namespace spectrane
