#pragma once

namespace spectrane {

/// Command numbers. The number of a command is the text number of its caption as well, the two setup dialogs
/// of slit and sampler apart.
enum Command : int {
  // File
  kNewFileGuide = 102,
  kNewQua = 104,
  kNewTS = 105,
  kNewWLS = 106,
  kNewMulti = 107,
  kNewDNA = 108,
  kOpen = 109,
  kSave = 110,
  kSaveAs = 111,
  kClose = 113,
  kCloseAll = 114,
  kPrinterSetup = 115,
  kPrint = 116,
  kExit = 117,
  kOutputPicture = 118,
  kOutputWorkbook = 119,
  kOutputText = 120,
  kNewBasic = 121,
  // View
  kMainBar = 202,
  kSpectrumBar = 203,
  kOperateBar = 204,
  kDataViewBar = 205,
  kExpandButton = 206,
  kTabWorkspace = 207,
  kBigIcon = 208,
  kStatusBar = 209,
  kProgramOption = 210,
  // Operate
  kConnect = 302,
  kRelease = 303,
  kStartTest = 304,
  kStopTest = 305,
  kTungstenLamp = 306,
  kDeuteriumLamp = 307,
  kLampSwitchWavelength = 308,
  kSetWavelength = 309,
  kDarkCurrent = 310,
  kResetWavelength = 311,
  kDeleteRecord = 313,
  kSystemBaseline = 314,
  kSetBlank = 315,
  kTestOption = 316,
  kCopyPicture = 317,
  kZoomOut = 330,
  kZoomIn = 331,
  kZoomWindow = 332,
  kSetupSlit = 334,
  kSetupSampler = 335,
  // Spectrum Process
  kSearchPeak = 402,
  kPeakValueSetup = 403,
  kSpectrumCompare = 404,
  kSpectrumSmooth = 405,
  kSpectrumAdd = 406,
  kSpectrumSubtraction = 407,
  kSpectrumMultiplication = 408,
  kSpectrumDivision = 409,
  kSpectrumDerivative = 410,
  kMaxMinAverage = 412,
  // Window
  kCascade = 502,
  kTileVertically = 503,
  kTileHorizontally = 504,
  // Help
  kHelpBook = 602,
  kAbout = 603,
  // Of this program alone, without a row in the text table.
  kResetLayout = 9001,
  kNextPane = 9002,
  kDataTable = 9003,
  kPrintPreview = 9004,
  kHelpForWindow = 9005,
};

/// New documents, one kind each, in the order of menus and bars.
inline constexpr int kNewFileCommands[] = {kNewBasic, kNewQua, kNewTS, kNewWLS, kNewMulti, kNewDNA};

}  // namespace spectrane
