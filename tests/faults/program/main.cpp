// The program under faults and over long times; dev/soak.sh starts it.
//   fault_campaign soak MINUTES [SEED]      a day at the instrument, again and again
//   fault_campaign scripts MINUTES [SEED]   scripts with faults, of this seed and those behind it
//   fault_campaign seeds COUNT [SEED [HASTE]]  the same, so many of them; HASTE is how many times faster the
//                                           program's clock runs at first, and a violation names it
//   fault_campaign quiet COUNT              the cable is pulled so often
#include <QApplication>
#include <QDir>

#include <clocale>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <string_view>

#include "app/ground/languagefont.h"
#include "faults/bench/campaign.h"
#include "faults/bench/soak.h"

namespace {

using namespace spectrane;

constexpr int kUsage = 2;

QtMessageHandler standardHandler = nullptr;

/// The plugin without a screen has the same remark to each window.
void LeaveOutRemarks(QtMsgType type, const QMessageLogContext& context, const QString& message) {
  if (!message.contains(QLatin1String("propagateSizeHints"))) standardHandler(type, context, message);
}

bool Tell(const campaign::CampaignResult& result) {
  std::printf("%d scripts, %d held, %d troubles, %lld exchanges, %d times too slow and run again\n",
              result.Scripts, result.Held, result.Troubles, static_cast<long long>(result.Exchanges),
              result.TooSlow);
  return result.AllHeld();
}

int Usage() {
  std::fputs("usage: fault_campaign soak|scripts|seeds|quiet MINUTES|COUNT [SEED [HASTE]]\n", stderr);
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
  const int haste = argc > 4 ? std::atoi(argv[4]) : campaign::kNominalHaste;
  if (haste < 1) return Usage();
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
  const bool hurries = form == "seeds" || form == "scripts";
  const campaign::Place place{QCoreApplication::applicationDirPath(), folder, hurries ? haste : 1};
  std::printf("seed %llu, folder %s\n", static_cast<unsigned long long>(seed), folder.toUtf8().constData());
  bool held = false;
  if (form == "soak") {
    held = campaign::Soak(place, amount, seed);
  } else if (form == "scripts") {
    held = Tell(campaign::RunScripts(place, seed, std::numeric_limits<int>::max(), amount));
  } else if (form == "seeds") {
    held = Tell(campaign::RunScripts(place, seed, static_cast<int>(amount), 1e9));
  } else if (form == "quiet") {
    held = campaign::PullToQuiet(place, static_cast<int>(amount));
  } else {
    return Usage();
  }
  if (held) QDir(folder).removeRecursively();
  return held ? EXIT_SUCCESS : EXIT_FAILURE;
}
