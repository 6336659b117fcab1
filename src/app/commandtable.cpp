#include "app/commandtable.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <stdexcept>

#include "app/framecommands.h"
#include "app/ground/documentwindow.h"
#include "app/ground/reportprinter.h"

namespace spectrane {
namespace {

using When = EnabledWhen;
using D = DocumentWindow;
using F = FrameCommands;

/// Acts on windows of recorded spectra only.
void DeriveSpectrum(D& window) {
  const int type = window.CheckFileType();
  if (type == 3 || type == 12) window.mmuSpectrumDev();
}

// Start, Stop and Set Blank are on plain function keys, which a foot pedal can send.
const CommandRow kRows[] = {
    {kNewFileGuide, 102, When::NoRun, "Ctrl+N", false, [](F& f) { f.mmuFileNew(); }, nullptr},
    {kNewBasic, 121, When::Kind, "", false, [](F& f) { f.mmuNewFileBasic(); }, nullptr},
    {kNewQua, 104, When::Kind, "", false, [](F& f) { f.mmuNewFileQua(); }, nullptr},
    {kNewTS, 105, When::Kind, "", false, [](F& f) { f.mmuNewFileTS(); }, nullptr},
    {kNewWLS, 106, When::Kind, "", false, [](F& f) { f.mmuNewFileWLS(); }, nullptr},
    {kNewMulti, 107, When::Kind, "", false, [](F& f) { f.mmuNewFileMulti(); }, nullptr},
    {kNewDNA, 108, When::Kind, "", false, [](F& f) { f.mmuNewFileDNA(); }, nullptr},
    {kOpen, 109, When::NoRun, "Ctrl+O", false, [](F& f) { f.mmuFileOpen(); }, nullptr},
    {kSave, 110, When::Document, "Ctrl+S", false, nullptr, [](D& d) { d.mmuSaveFile(); }},
    {kSaveAs, 111, When::Document, "Ctrl+Shift+S", false, nullptr, [](D& d) { d.mmuSaveAsFile(); }},
    {kOutputPicture, 118, When::Document, "", false, nullptr, [](D& d) { d.mmuFileOutputBMP(); }},
    {kOutputWorkbook, 119, When::Document, "", false, nullptr, [](D& d) { d.mmuFileOutputXLS(); }},
    {kOutputText, 120, When::Document, "", false, nullptr, [](D& d) { d.mmuFileOutputTXT(); }},
    {kClose, 113, When::Children, "Ctrl+W;Ctrl+F4", false, [](F& f) { f.mmuFileCloseOne(); }, nullptr},
    {kCloseAll, 114, When::Children, "", false, [](F& f) { f.mmuFileCloseAll(); }, nullptr},
    {kPrinterSetup, 115, When::NoRun, "", false, [](F& f) { f.Printer().Setup(); }, nullptr},
    {kPrint, 116, When::Document, "Ctrl+P", false, nullptr, [](D& d) { d.PrintReport(); }},
    {kPrintPreview, 0, When::Document, "", false, nullptr, [](D& d) { d.PreviewReport(); }, "Print Preview"},
    {kExit, 117, When::Always, "Ctrl+Q", false, [](F& f) { f.Frame().close(); }, nullptr},

    {kMainBar, 202, When::Always, "", true, [](F& f) { f.ToggleBar(kMainBar); }, nullptr},
    {kOperateBar, 204, When::Always, "", true, [](F& f) { f.ToggleBar(kOperateBar); }, nullptr},
    {kSpectrumBar, 203, When::Always, "", true, [](F& f) { f.ToggleBar(kSpectrumBar); }, nullptr},
    {kDataViewBar, 205, When::Always, "", true, [](F& f) { f.ToggleBar(kDataViewBar); }, nullptr},
    {kExpandButton, 206, When::Always, "", true, [](F& f) { f.ToggleBar(kExpandButton); }, nullptr},
    {kTabWorkspace, 207, When::Always, "", true, [](F& f) { f.ToggleBar(kTabWorkspace); }, nullptr},
    {kStatusBar, 209, When::Always, "", true, [](F& f) { f.ToggleBar(kStatusBar); }, nullptr},
    {kBigIcon, 208, When::Always, "", true, [](F& f) { f.ToggleBar(kBigIcon); }, nullptr},
    {kResetLayout, 0, When::Always, "", false, [](F& f) { f.ResetLayout(); }, nullptr, "Reset Layout"},
    {kNextPane, 0, When::Always, "F6", false, [](F& f) { f.FocusNextPane(); }, nullptr, "Next Bar"},
    {kDataTable, 0, When::Always, "", true, [](F& f) { f.ToggleDataTable(); }, nullptr, "Data Table"},
    {kProgramOption, 210, When::NoRun, "Ctrl+,", false, [](F& f) { f.ShowOption(); }, nullptr},

    {kConnect, 302, When::NotConnected, "F9", false, [](F& f) { f.ConnectCommand(); }, nullptr},
    {kRelease, 303, When::Connected, "Shift+F9", false, [](F& f) { f.ReleaseCommand(); }, nullptr},
    {kStartTest, 304, When::ConnectedDocument, "F5", false, nullptr, [](D& d) { d.mmuStartTest(); }},
    {kStopTest, 305, When::Document, "F7", false, nullptr, [](D& d) { d.mmuStopTest(); }},
    {kDeleteRecord, 313, When::Document, "Ctrl+Del", false, nullptr, [](D& d) { d.mmuDeleteReport(); }},
    {kCopyPicture, 317, When::Document, "", false, nullptr, [](D& d) { d.CopyPicture(); }},
    {kZoomOut, 330, When::Document, "Ctrl+-", false, nullptr, [](D& d) { d.mmuZoomOut(); }},
    {kZoomIn, 331, When::Document, "Ctrl++;Ctrl+=", false, nullptr, [](D& d) { d.mmuZoomIn(); }},
    {kZoomWindow, 332, When::Document, "Ctrl+0", false, nullptr, [](D& d) { d.mmuZoomWindow(); }},
    {kSystemBaseline, 314, When::NoRun, "", false, [](F& f) { f.mmuBaseLine(); }, nullptr},
    {kSetBlank, 315, When::BlankTarget, "F8", false, [](F& f) { f.mmuOperationRezero(); }, nullptr},
    {kTungstenLamp, 306, When::NoRun, "", true, [](F& f) { f.SwitchLamp(kTungstenLamp); }, nullptr},
    {kDeuteriumLamp, 307, When::NoRun, "", true, [](F& f) { f.SwitchLamp(kDeuteriumLamp); }, nullptr},
    {kLampSwitchWavelength, 308, When::NoRun, "", false, [](F& f) { f.ShowTool(kLampSwitchWavelength); },
     nullptr},
    {kSetWavelength, 309, When::NoRun, "", false, [](F& f) { f.ShowTool(kSetWavelength); }, nullptr},
    {kDarkCurrent, 310, When::NoRun, "", false, [](F& f) { f.ShowTool(kDarkCurrent); }, nullptr},
    {kResetWavelength, 311, When::NoRun, "", false, [](F& f) { f.ShowTool(kResetWavelength); }, nullptr},
    {kSetupSlit, 1800, When::NoRun, "", false, [](F& f) { f.ShowTool(kSetupSlit); }, nullptr},
    {kSetupSampler, 1900, When::NoRun, "", false, [](F& f) { f.ShowTool(kSetupSampler); }, nullptr},
    {kTestOption, 316, When::Document, "F4", false, nullptr, [](D& d) { d.ShowConfigWindow(); }},

    {kSearchPeak, 402, When::Document, "", false, nullptr, [](D& d) { d.FindPeak(); }},
    {kPeakValueSetup, 403, When::Document, "", false, nullptr, [](D& d) { d.mmuSetPeakHeight(); }},
    {kSpectrumCompare, 404, When::NoRun, "", false, [](F& f) { f.CompareSpectra(); }, nullptr},
    {kSpectrumSmooth, 405, When::Document, "", false, [](F& f) { f.SmoothSpectrum(); }, nullptr},
    {kSpectrumAdd, 406, When::NoRun, "", false, [](F& f) { f.CombineSpectra(kSpectrumAdd); }, nullptr},
    {kSpectrumSubtraction, 407, When::NoRun, "", false, [](F& f) { f.CombineSpectra(kSpectrumSubtraction); },
     nullptr},
    {kSpectrumMultiplication, 408, When::NoRun, "", false,
     [](F& f) { f.CombineSpectra(kSpectrumMultiplication); }, nullptr},
    {kSpectrumDivision, 409, When::NoRun, "", false, [](F& f) { f.CombineSpectra(kSpectrumDivision); },
     nullptr},
    {kSpectrumDerivative, 410, When::Document, "", false, nullptr, &DeriveSpectrum},
    {kMaxMinAverage, 412, When::Document, "", false, nullptr, [](D& d) { d.ShowMaxMinAverageWindow(); }},

    {kCascade, 502, When::Children, "", false, [](F& f) { f.Arrange(kCascade); }, nullptr},
    {kTileVertically, 503, When::Children, "", false, [](F& f) { f.Arrange(kTileVertically); }, nullptr},
    {kTileHorizontally, 504, When::Children, "", false, [](F& f) { f.Arrange(kTileHorizontally); }, nullptr},

    {kHelpBook, 602, When::Always, "", false, [](F& f) { f.ShowHelpBook(); }, nullptr},
    {kHelpForWindow, 0, When::Always, "F1", false, [](F& f) { f.ShowHelpFor(f.ActiveForm()); }, nullptr,
     "Help for This Window"},
    {kAbout, 603, When::NoRun, "", false, [](F& f) { f.ShowAbout(); }, nullptr},
};

using Kind = MenuRow::Kind;

const MenuRow kMenus[] = {
    {Kind::Menu, 101},
    {Kind::Item, kNewFileGuide},
    {Kind::Submenu, 103},
    {Kind::NewFiles},
    {Kind::SubmenuEnd},
    {Kind::Item, kOpen},
    {Kind::Separator},
    {Kind::Item, kSave},
    {Kind::Item, kSaveAs},
    {Kind::Submenu, 112},
    {Kind::Item, kOutputPicture},
    {Kind::Item, kOutputWorkbook},
    {Kind::Item, kOutputText},
    {Kind::SubmenuEnd},
    {Kind::Separator},
    {Kind::Item, kClose},
    {Kind::Item, kCloseAll},
    {Kind::Separator},
    {Kind::Item, kPrinterSetup},
    {Kind::Item, kPrintPreview},
    {Kind::Item, kPrint},
    {Kind::RecentFiles},
    {Kind::Separator},
    {Kind::Item, kExit},

    {Kind::Menu, 201},
    {Kind::Item, kMainBar},
    {Kind::Item, kOperateBar},
    {Kind::Item, kSpectrumBar},
    {Kind::Item, kDataViewBar},
    {Kind::Item, kExpandButton},
    {Kind::Item, kTabWorkspace},
    {Kind::Item, kDataTable},
    {Kind::Item, kStatusBar},
    {Kind::Separator},
    {Kind::Item, kProgramOption},
    {Kind::Separator},
    {Kind::Item, kBigIcon},
    {Kind::Item, kNextPane},
    {Kind::Item, kResetLayout},

    {Kind::Menu, 301},
    {Kind::Item, kConnect},
    {Kind::Item, kRelease},
    {Kind::Separator},
    {Kind::Item, kStartTest},
    {Kind::Item, kStopTest},
    {Kind::Item, kDeleteRecord},
    {Kind::Separator},
    {Kind::Item, kCopyPicture},
    {Kind::Item, kZoomOut},
    {Kind::Item, kZoomIn},
    {Kind::Item, kZoomWindow},
    {Kind::Separator},
    {Kind::Item, kSystemBaseline},
    {Kind::Item, kSetBlank},
    {Kind::Separator},
    {Kind::Item, kTungstenLamp},
    {Kind::Item, kDeuteriumLamp},
    {Kind::Item, kLampSwitchWavelength},
    {Kind::Item, kSetWavelength},
    {Kind::Item, kDarkCurrent},
    {Kind::Item, kResetWavelength},
    {Kind::Item, kSetupSlit},
    {Kind::Item, kSetupSampler},
    {Kind::Separator},
    {Kind::Item, kTestOption},

    {Kind::Menu, 401},
    {Kind::Item, kSearchPeak},
    {Kind::Item, kPeakValueSetup},
    {Kind::Separator},
    {Kind::Item, kSpectrumCompare},
    {Kind::Item, kSpectrumSmooth},
    {Kind::Submenu, 411},
    {Kind::Item, kSpectrumAdd},
    {Kind::Item, kSpectrumSubtraction},
    {Kind::Item, kSpectrumMultiplication},
    {Kind::Item, kSpectrumDivision},
    {Kind::SubmenuEnd},
    {Kind::Item, kSpectrumDerivative},
    {Kind::Item, kMaxMinAverage},

    {Kind::Menu, 501},
    {Kind::Item, kCascade},
    {Kind::Item, kTileVertically},
    {Kind::Item, kTileHorizontally},

    {Kind::Menu, 601},
    {Kind::Item, kHelpBook},
    {Kind::Item, kHelpForWindow},
    {Kind::Item, kAbout},
};

/// `first`, the new documents, `then`.
template <std::size_t N, std::size_t M>
constexpr auto AroundNewFiles(const std::array<int, N>& first, const std::array<int, M>& then) {
  std::array<int, N + std::size(kNewFileCommands) + M> commands = {};
  auto at = std::ranges::copy(first, commands.begin()).out;
  at = std::ranges::copy(kNewFileCommands, at).out;
  std::ranges::copy(then, at);
  return commands;
}

constexpr auto kPopup = AroundNewFiles(std::array<int, 1>{kConnect}, std::array<int, 0>{});
constexpr auto kMainItems =
    AroundNewFiles(std::array<int, 1>{kNewFileGuide}, std::array<int, 3>{kOpen, kSave, kPrint});
constexpr int kSpectrumItems[] = {
    kSearchPeak,          kPeakValueSetup,         kSpectrumCompare,  kSpectrumSmooth,    kSpectrumAdd,
    kSpectrumSubtraction, kSpectrumMultiplication, kSpectrumDivision, kSpectrumDerivative};
constexpr int kOperateItems[] = {
    kConnect,      kRelease,     kStartTest,      kStopTest,      kZoomOut,
    kZoomIn,       kZoomWindow,  kTungstenLamp,   kDeuteriumLamp, kLampSwitchWavelength,
    kDeleteRecord, kCopyPicture, kSystemBaseline, kSetBlank,      kTestOption};

const BarRow kBars[] = {
    {kMainBar, "MainToolsbar", kMainItems},
    {kOperateBar, "OperateToolsbar", kOperateItems},
    {kSpectrumBar, "SpectrumToolsbar", kSpectrumItems},
};

}  // namespace

std::span<const CommandRow> CommandRows() {
  return kRows;
}

const CommandRow& CommandRowOf(int command) {
  for (const CommandRow& row : kRows) {
    if (row.Number == command) return row;
  }
  throw std::out_of_range("no such command");
}

std::span<const MenuRow> MenuRows() {
  return kMenus;
}

std::span<const int> PopupCommands() {
  return kPopup;
}

std::span<const BarRow> BarRows() {
  return kBars;
}

}  // namespace spectrane
