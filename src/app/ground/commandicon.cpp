#include "app/ground/commandicon.h"

#include <algorithm>
#include <array>
#include <QFile>

#include "app/ground/commands.h"
#include "app/ground/svgicon.h"

// A static library drops resources that nobody names. The macro wants the global namespace.
static void RegisterPictures() {
  Q_INIT_RESOURCE(icons);
}

namespace spectrane {
namespace {

struct Row {
  int Number;  ///< of the command
  const char* Name;
};

constexpr std::array kRows{
    Row{kNewFileGuide, "newGuide"},
    Row{kNewQua, "quantitation"},
    Row{kNewTS, "kinetics"},
    Row{kNewWLS, "wavelengthScan"},
    Row{kNewMulti, "multiWavelength"},
    Row{kNewDNA, "dna"},
    Row{kOpen, "open"},
    Row{kSave, "save"},
    Row{kSaveAs, "saveAs"},
    Row{kClose, "close"},
    Row{kCloseAll, "closeAll"},
    Row{kPrinterSetup, "printerSetup"},
    Row{kPrint, "print"},
    Row{kExit, "exit"},
    Row{kOutputPicture, "outputPicture"},
    Row{kOutputWorkbook, "outputWorkbook"},
    Row{kOutputText, "outputText"},
    Row{kNewBasic, "photometry"},
    Row{kProgramOption, "programOption"},
    Row{kConnect, "connect"},
    Row{kRelease, "release"},
    Row{kStartTest, "startTest"},
    Row{kStopTest, "stopTest"},
    Row{kTungstenLamp, "tungstenLamp"},
    Row{kDeuteriumLamp, "deuteriumLamp"},
    Row{kLampSwitchWavelength, "lampSwitch"},
    Row{kSetWavelength, "setWavelength"},
    Row{kDarkCurrent, "darkCurrent"},
    Row{kResetWavelength, "resetWavelength"},
    Row{kDeleteRecord, "deleteRecord"},
    Row{kSystemBaseline, "systemBaseline"},
    Row{kSetBlank, "setBlank"},
    Row{kTestOption, "testOption"},
    Row{kCopyPicture, "copyPicture"},
    Row{kZoomOut, "zoomOut"},
    Row{kZoomIn, "zoomIn"},
    Row{kZoomWindow, "zoomWindow"},
    Row{kSetupSlit, "slit"},
    Row{kSetupSampler, "sampler"},
    Row{kSearchPeak, "searchPeak"},
    Row{kPeakValueSetup, "peakSetup"},
    Row{kSpectrumCompare, "spectrumCompare"},
    Row{kSpectrumSmooth, "spectrumSmooth"},
    Row{kSpectrumAdd, "spectrumAdd"},
    Row{kSpectrumSubtraction, "spectrumSubtraction"},
    Row{kSpectrumMultiplication, "spectrumMultiplication"},
    Row{kSpectrumDivision, "spectrumDivision"},
    Row{kSpectrumDerivative, "spectrumDerivative"},
    Row{kMaxMinAverage, "maxMinAverage"},
    Row{kCascade, "cascade"},
    Row{kTileVertically, "tileVertically"},
    Row{kTileHorizontally, "tileHorizontally"},
    Row{kHelpBook, "helpBook"},
    Row{kAbout, "about"},
};

QIcon IconOf(const QString& name, SvgIconEngine::Coloring coloring) {
  RegisterPictures();
  return QIcon(new SvgIconEngine(name, coloring));  // the icon owns the engine
}

}  // namespace

QString CommandIconName(int command) {
  const auto row =
      std::find_if(kRows.begin(), kRows.end(), [command](const Row& r) { return r.Number == command; });
  return row == kRows.end() ? QString() : QString::fromLatin1(row->Name);
}

QIcon CommandIcon(int command) {
  const QString name = CommandIconName(command);
  if (name.isEmpty()) return {};
  return IconOf(QStringLiteral(":/icons/%1").arg(name), SvgIconEngine::Coloring::Palette);
}

QIcon ApplicationIcon() {
  return IconOf(QStringLiteral(":/icons/spectrane"), SvgIconEngine::Coloring::Own);
}

QPixmap Picture(const QString& name, QSize size, double devicePixelRatio) {
  RegisterPictures();
  const QString drawing = QStringLiteral(":/pictures/%1").arg(name);
  if (size.isEmpty() || devicePixelRatio <= 0) return {};
  const QSizeF fitting = DrawingSize(drawing).scaled(QSizeF(size), Qt::KeepAspectRatio);
  const QSize pixels = (fitting * devicePixelRatio).toSize().expandedTo(QSize(1, 1));
  QPixmap picture = QPixmap::fromImage(Drawing(drawing, pixels, nullptr));
  picture.setDevicePixelRatio(devicePixelRatio);
  return picture;
}

QByteArray FileTypeIcon(const QString& ending) {
  RegisterPictures();
  QFile file(ending.isEmpty() ? QStringLiteral(":/icons/spectrane.svg")
                              : QStringLiteral(":/filetypes/") + ending + QStringLiteral(".svg"));
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

}  // namespace spectrane
