#include "app/handbook.h"

#include <QApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QKeyEvent>
#include <QUrl>
#include <QWidget>

#include <algorithm>

#ifdef _WIN32
#include <QProcess>
#endif

#include "app/messageboxes.h"

namespace spectrane {
namespace {

constexpr HandbookRow kPages[] = {
    {"FrmMain", "main-window.html"},
    {"FrmNew", "main-window.html#new-file-guide"},
    {"FrmAbout", "main-window.html#about"},
    {"FrmOption", "program-options.html"},
    {"FrmOptionInformation", "program-options.html#information"},
    {"FrmOptionPrecision", "program-options.html#precision"},
    {"FrmOptionPort", "program-options.html#port"},
    {"FrmOptionStyle", "program-options.html#style"},

    {"FrmBasic", "photometry.html"},
    {"FrmBasicConfig", "photometry.html#options"},
    {"FrmQua", "quantitation.html"},
    {"FrmQuaConfig", "quantitation.html#options"},
    {"FrmTS", "kinetics.html"},
    {"FrmTSConfig", "kinetics.html#options"},
    {"FrmWLS", "wavelength-scan.html"},
    {"FrmWLSConfig", "wavelength-scan.html#options"},
    {"FrmPeakHeight", "wavelength-scan.html#peak-value-setup"},
    {"FrmMaxMinAverage", "wavelength-scan.html#max-min-average"},
    {"FrmMulti", "multi-wavelength.html"},
    {"FrmMultiConfig", "multi-wavelength.html#options"},
    {"FrmDNA", "dna-protein.html"},
    {"FrmDNAConfig", "dna-protein.html#options"},

    {"FrmWLSVer2", "processing.html#processed-files"},
    {"FrmSmooth", "processing.html#smooth"},
    {"FrmSmoothConfig", "processing.html#options"},
    {"FrmDev", "processing.html#derivative"},
    {"FrmDevConfig", "processing.html#options"},
    {"FrmCaculate", "processing.html#arithmetic"},
    {"FrmCaculateConfig", "processing.html#options"},
    {"FrmWLSCompare", "processing.html#compare"},
    {"FrmWLSCompareConfig", "processing.html#compare-options"},

    {"FrmBaseLine", "instrument.html#system-baseline"},
    {"FrmSetupWL", "instrument.html#set-wavelength"},
    {"FrmLampSwitch", "instrument.html#lamp-switch-wavelength"},
    {"FrmDarkEnergy", "instrument.html#dark-current"},
    {"FrmResetWaveLength", "instrument.html#reset-wavelength"},
    {"FrmSlip", "instrument.html#slit"},
    {"FrmAutoSampler", "instrument.html#sampler"},
    {"FrmSelectSampler", "instrument.html#sampler-position"},

    {"PrinterSetup", "printing.html#print"},
    {"ReportPreview", "printing.html#preview"},
    {kMessageBoxName, "messages.html"},
};

#ifdef _WIN32

/// The help file of other programs of the family, in the viewer that belongs to the system.
bool ShowCompiledHelp(const QString& applicationFolder) {
  const QString file = QDir::toNativeSeparators(applicationFolder + QStringLiteral("/help.chm"));
  return QFileInfo::exists(file) && QProcess::startDetached(QStringLiteral("hh.exe"), {file});
}

#else

// No other system has the viewer.
bool ShowCompiledHelp(const QString& /*applicationFolder*/) {
  return false;
}

#endif

}  // namespace

std::span<const HandbookRow> HandbookRows() {
  return kPages;
}

QString HandbookPageOf(const QWidget* widget) {
  for (; widget; widget = widget->parentWidget()) {
    const QString name = widget->objectName();
    const auto* const row = std::ranges::find_if(
        kPages, [&](const HandbookRow& each) { return name == QLatin1String(each.Window); });
    if (row == std::end(kPages)) continue;
    const int textId = widget->property(kBoxTextProperty).toInt();
    return QString::fromLatin1(row->Page) + (textId > 0 ? QStringLiteral("#text-%1").arg(textId) : QString());
  }
  return QString::fromLatin1(kHandbookFirstPage);
}

QStringList HandbookFolders(const QString& programFolder) {
  QStringList folders;
  for (const char* place : {"handbook", "../share/spectrane/handbook", "../share/doc/spectrane/handbook",
                            "../../../docs/handbook"}) {
    folders.append(QDir::cleanPath(programFolder + u'/' + QLatin1String(place)));
  }
  return folders;
}

QString ShowHandbook(const QString& page, const QStringList& folders, const QString& applicationFolder) {
  if (ShowCompiledHelp(applicationFolder)) return {};
  const QString file = page.section(u'#', 0, 0);
  const auto folder = std::ranges::find_if(
      folders, [&](const QString& each) { return QFileInfo(each + u'/' + file).isFile(); });
  if (folder == folders.end())
    return QStringLiteral("The handbook is not installed: no %1 in %2.")
        .arg(file, folders.join(QStringLiteral(", ")));
  QUrl address = QUrl::fromLocalFile(*folder + u'/' + file);
  address.setFragment(page.section(u'#', 1));
  if (QDesktopServices::openUrl(address)) return {};
  return QStringLiteral("No program shows the handbook. It stands in %1.").arg(address.toLocalFile());
}

DialogHelpKey::DialogHelpKey(QObject* parent, std::function<void(const QWidget*)> help)
    : QObject(parent), help_(std::move(help)) {
  qApp->installEventFilter(this);
}

bool DialogHelpKey::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress || !watched->isWidgetType()) return false;
  const auto* const key = static_cast<QKeyEvent*>(event);
  if (key->key() != Qt::Key_F1 || key->modifiers() != Qt::NoModifier) return false;
  const QWidget* const widget = static_cast<QWidget*>(watched);
  const QWidget* const modal = QApplication::activeModalWidget();
  if (!modal || widget->window() != modal) return false;
  help_(widget);
  return true;
}

}  // namespace spectrane
