#include "app/ground/commandicon.h"

#include <algorithm>
#include <array>
#include <QFile>
#include <QPainter>
#include <QSvgRenderer>

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

QIcon IconOf(const QString& resource, SvgIconEngine::Coloring coloring) {
  RegisterPictures();
  return QIcon(new SvgIconEngine(resource, coloring));  // the icon owns the engine
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
  return IconOf(QStringLiteral(":/icons/%1.svg").arg(name), SvgIconEngine::Coloring::Palette);
}

QIcon ApplicationIcon() {
  return IconOf(QStringLiteral(":/icons/spectrane.svg"), SvgIconEngine::Coloring::Own);
}

QPixmap Picture(const QString& name, QSize size, double devicePixelRatio) {
  RegisterPictures();
  QSvgRenderer renderer;
  const QString resource = QStringLiteral(":/pictures/%1.svg").arg(name);
  if (size.isEmpty() || devicePixelRatio <= 0 || !QFile::exists(resource) || !renderer.load(resource))
    return {};
  const QSizeF fitting = QSizeF(renderer.defaultSize()).scaled(QSizeF(size), Qt::KeepAspectRatio);
  QPixmap picture((fitting * devicePixelRatio).toSize().expandedTo(QSize(1, 1)));
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  renderer.render(&painter, QRectF(QPointF(), QSizeF(picture.size())));
  painter.end();
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
