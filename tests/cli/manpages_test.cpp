// The man pages say what the programs say of themselves.
#include <gtest/gtest.h>

#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>

#include "cli/batchsupport.h"

namespace spectrane {
namespace {

const QString kManFolder = QStringLiteral(SPECTRANE_SOURCE "/docs/man/");

/// The source of a page without its marks, so that "\-\-force" reads as it is typed.
QString ManPage(const char* name) {
  QFile file(kManFolder + QLatin1String(name) + QStringLiteral(".1"));
  EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name;
  QString text = QString::fromUtf8(file.readAll());
  return text.remove(QRegularExpression(QStringLiteral("\\\\f[BIR]|\\\\f\\[.*?\\]")))
      .replace(QStringLiteral("\\-"), QStringLiteral("-"));
}

/// What a usage lists: its options, "--help" and "--version" apart, and the commands below it.
QStringList Found(const QString& usage, const char* pattern) {
  QStringList all;
  for (auto match =
           QRegularExpression(QLatin1String(pattern), QRegularExpression::MultilineOption).globalMatch(usage);
       match.hasNext();)
    all.append(match.next().captured(1));
  all.removeDuplicates();
  return all;
}

QStringList OptionsOf(const QString& usage) {
  return Found(usage, "^  (?:-\\w,)?(--[a-z-]+)");
}

QStringList CommandsOf(const QString& usage) {
  const QString mark = QStringLiteral("Subcommands:");
  return usage.contains(mark) ? Found(usage.mid(usage.indexOf(mark)), "^  ([a-z]+) ") : QStringList();
}

void ExpectOptionsIn(const QString& page, const QString& usage) {
  for (const QString& option : OptionsOf(usage)) {
    const QRegularExpression word(QRegularExpression::escape(option) + QStringLiteral("(?![a-z-])"));
    EXPECT_TRUE(page.contains(word)) << option.toStdString();
  }
}

TEST(ManPages, TellEveryCommandAndOptionOfTheBatchCommand) {
  const QString page = ManPage("spectrane-cli");
  const auto help = [](std::vector<std::string> words) {
    words.push_back("--help");
    return QString::fromStdString(Batch(words).Out);
  };
  const QStringList commands = CommandsOf(help({}));
  ASSERT_GE(commands.size(), 15);
  for (const QString& command : commands) {
    EXPECT_TRUE(page.contains(QRegularExpression(QStringLiteral("^\\.[A-Z]+ ?\"?%1\\b|^%1 ").arg(command),
                                                 QRegularExpression::MultilineOption)))
        << command.toStdString();
    const QString usage = help({command.toStdString()});
    ExpectOptionsIn(page, usage);
    for (const QString& below : CommandsOf(usage)) {
      EXPECT_TRUE(page.contains(command + u' ' + below)) << below.toStdString();
      ExpectOptionsIn(page, help({command.toStdString(), below.toStdString()}));
    }
  }
}

TEST(ManPages, TellEveryOptionOfTheSimulator) {
  QProcess simulator;
  simulator.start(QStringLiteral(SPECTRANE_BIN "/spectrane-simulator"), {QStringLiteral("--help")});
  ASSERT_TRUE(simulator.waitForFinished(20000));
  const QString usage = QString::fromUtf8(simulator.readAllStandardOutput());
  ASSERT_GE(OptionsOf(usage).size(), 20);
  ExpectOptionsIn(ManPage("spectrane-simulator"), usage);
}

TEST(ManPages, AreSetWithoutAWarning) {
  const QString groff = QStandardPaths::findExecutable(QStringLiteral("groff"));
  if (groff.isEmpty()) GTEST_SKIP() << "no groff here";
  for (const char* name : {"spectrane", "spectrane-cli", "spectrane-simulator"}) {
    QProcess process;
    process.start(groff, {QStringLiteral("-man"), QStringLiteral("-ww"), QStringLiteral("-z"),
                          QStringLiteral("-Tutf8"), kManFolder + QLatin1String(name) + QStringLiteral(".1")});
    ASSERT_TRUE(process.waitForFinished(20000));
    EXPECT_EQ(process.exitCode(), 0);
    EXPECT_EQ(process.readAllStandardError().toStdString(), "") << name;
  }
}

}  // namespace
}  // namespace spectrane
