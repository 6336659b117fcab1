// The program under faults and over long times: fault_campaign soak MINUTES [SEED]. dev/soak.sh starts it.
#include <QApplication>
#include <QDir>

#include <clocale>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "app/ground/languagefont.h"
#include "faults/bench/soak.h"

namespace {

using namespace spectrane;

constexpr int kUsage = 2;

QtMessageHandler standardHandler = nullptr;

/// The plugin without a screen has the same remark to each window.
void LeaveOutRemarks(QtMsgType type, const QMessageLogContext& context, const QString& message) {
  if (!message.contains(QLatin1String("propagateSizeHints"))) standardHandler(type, context, message);
}

int Usage() {
  std::fputs("usage: fault_campaign soak MINUTES [SEED]\n", stderr);
  return kUsage;
}

}  // namespace

int main(int argc, char** argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
  if (argc < 3) return Usage();
  const std::string_view form = argv[1];
  const double amount = std::atof(argv[2]);
  const std::uint64_t seed = argc > 3 ? std::strtoull(argv[3], nullptr, 10) : 1;
  const QString folder = QDir::tempPath() + QStringLiteral("/campaign-%1").arg(getpid());
  QDir().mkpath(folder);
  for (const char* variable :
       {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME", "XDG_CACHE_HOME"}) {
    qputenv(variable, folder.toUtf8());
  }
  standardHandler = qInstallMessageHandler(LeaveOutRemarks);
  QApplication application(argc, argv);
  std::setlocale(LC_ALL, "C");
  SelectLanguage();
  const campaign::Place place{QCoreApplication::applicationDirPath(), folder};
  std::printf("seed %llu, folder %s\n", static_cast<unsigned long long>(seed), folder.toUtf8().constData());
  bool held = false;
  if (form == "soak") {
    held = campaign::Soak(place, amount, seed);
  } else {
    return Usage();
  }
  if (held) QDir(folder).removeRecursively();
  return held ? EXIT_SUCCESS : EXIT_FAILURE;
}
