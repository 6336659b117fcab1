#include <gmock/gmock.h>

#include <QDir>

#include <clocale>

#include "app/ground/guardedapplication.h"
#include "app/ground/languagefont.h"

namespace {

QtMessageHandler standardHandler = nullptr;

/// The plugin without a screen has the same remark to each window.
void LeaveOutRemarks(QtMsgType type, const QMessageLogContext& context, const QString& message) {
  if (!message.startsWith(QLatin1String("This plugin does not support")))
    standardHandler(type, context, message);
}

}  // namespace

// The platform's bus library keeps a block of its own to the end of the process. The toolkit's frames are
// built without exceptions: a fault that is thrown through one leaves what its guards count, 16 bytes for
// each object that was guarded. The object itself would be reported. Only the programs that throw such faults
// pass these over.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
#ifdef SPECTRANE_THROWS_THROUGH_TOOLKIT
  return "leak:libdbus-1.so\nleak:QtSharedPointer::ExternalRefCountData::getAndRef(QObject const*)";
#else
  return "leak:libdbus-1.so";
#endif
}

// Windows without a screen, unless one is asked for, and with no folder of the person who runs the tests.
int main(int argc, char** argv) {
  testing::InitGoogleMock(&argc, argv);
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  const QByteArray home = QByteArray::fromStdString(testing::TempDir()) + "/window-tests-home";
  for (const char* variable :
       {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME", "XDG_CACHE_HOME", "SPECTRANE_HOME"}) {
    qputenv(variable, home);
  }
  QDir().mkpath(QString::fromLocal8Bit(home));
  standardHandler = qInstallMessageHandler(LeaveOutRemarks);
  spectrane::GuardedApplication application(argc, argv);
  application.OnFault = [](const std::exception& fault) { ADD_FAILURE() << "not caught: " << fault.what(); };
  std::setlocale(LC_ALL, "C");
  spectrane::SelectLanguage();
  return RUN_ALL_TESTS();
}
