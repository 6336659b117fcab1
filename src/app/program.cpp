#include "app/program.h"

#include <QLocale>

#include <clocale>
#include <csignal>
#include <cstdio>

#include "app/desktop/commandline.h"
#include "app/desktop/filetypes.h"
#include "app/desktop/handover.h"
#include "app/desktop/keepawake.h"
#include "app/frmmain.h"
#include "app/ground/commandicon.h"
#include "app/ground/guardedapplication.h"
#include "app/ground/languagefont.h"
#include "base/applicationfolder.h"
#include "base/version.h"
#include "link/exclusion.h"
#include "link/messageloop.h"
#include "link/portlist.h"
#include "link/shutdownsignals.h"

namespace spectrane {
namespace {

constexpr int kFailed = 1;

void RegisterOwnFileTypes() {
  std::vector<DesktopIcon> icons = {{{}, 0, FileTypeIcon({}).toStdString()}};
  for (const FileAssociation& each : FileAssociations()) {
    const QString ending = QString::fromLatin1(each.Extension).mid(1);
    icons.push_back({each.Extension, 0, FileTypeIcon(ending).toStdString()});
  }
  RegisterFileTypes(QCoreApplication::applicationFilePath(), icons);
}

int Run(GuardedApplication& application) {
  RegisterOwnFileTypes();
  SelectLanguage();
  QApplication::setFont(LanguageFont());
  const std::string folder = ApplicationFolder(QCoreApplication::applicationDirPath().toStdString());
  SteadyClock time;
  QtMessageLoop loop;
  const std::unique_ptr<Exclusion> turn = MakeNamedExclusion("ex_sim_sci");
  SerialPortList ports;
  Setting settings(folder);
  FrmMain frame({ports, time, loop, *turn, settings, folder, nullptr,
                 FileOfCommandLine(QCoreApplication::arguments())});
  application.OnFault = [&frame](const std::exception& fault) { frame.CommandEndedEarly(fault); };
  HandoverServer server;
  QObject::connect(&server, &HandoverServer::PathReceived, &frame, [&frame](const QString& path) {
    frame.ComeForward();
    frame.OpenLater(path);
  });
  KeepAwake awake;
  QObject::connect(&frame, &FrmMain::FirstPainted, &server, [&] {
    server.Listen();
    awake.Start();
  });
  // Boxes and dialogs that are open go as if they were cancelled, and the loop is left when what runs has
  // ended.
  const ShutdownSignals endSignals([&frame] {
    frame.StoreWindowState();
    frame.EndRuns();
    QCoreApplication::exit(0);
  });
  QObject::connect(&application, &QCoreApplication::aboutToQuit, &frame,
                   [&frame] { frame.LetGoOfInstrument(); });
  frame.ShowStored();
  const int status = application.exec();
  application.OnFault = nullptr;
  return status;
}

}  // namespace

int Main(int argc, char** argv) {
#ifndef _WIN32
  // A full quota and a reader that went away are write errors, told like any other.
  std::signal(SIGXFSZ, SIG_IGN);
  std::signal(SIGPIPE, SIG_IGN);
#endif
  if (const auto status = AnswerInWords(argc, argv)) return *status;
  QCoreApplication::setApplicationName(QStringLiteral("spectrane"));
  QCoreApplication::setApplicationVersion(QString::fromStdString(VersionText()));
  QGuiApplication::setDesktopFileName(QString::fromLatin1(kDesktopId));
  GuardedApplication application(argc, argv);
  // The toolkit takes the locale of the environment; numbers are read and written in one way only.
  std::setlocale(LC_ALL, "C");
  QLocale::setDefault(QLocale::c());
  if (const QString wrong = WrongOption(QCoreApplication::arguments()); !wrong.isEmpty()) {
    std::fprintf(stderr, "spectrane: there is no option %s; --help tells which there are\n",
                 wrong.toStdString().c_str());
    return kWrongUsage;
  }
  try {
    return Run(application);
  } catch (const std::exception& fault) {
    std::fprintf(stderr, "spectrane: %s\n", fault.what());
    return kFailed;
  }
}

}  // namespace spectrane
