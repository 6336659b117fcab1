// The man pages say what the programs say of themselves.
#include <gtest/gtest.h>

#include <algorithm>

#include <QFile>
#include <QMap>
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

/// One entry of a page: its heading, which is the line behind .TP, and the text below it as it is read.
struct Entry {
  QString Heading;
  QString Text;
};

/// The entries of a section, and what stands between them for all of them.
struct Section {
  QList<Entry> Entries;
  QString Common;
};

/// A line of the source as a reader sees it, without macro and quotes. Macros of two fonts set their words
/// without blanks between them.
QString Read(const QString& line) {
  static const QRegularExpression macro(QStringLiteral("^\\.([A-Z]+) ?(.*)$"));
  static const QRegularExpression word(QStringLiteral("\"([^\"]*)\"|(\\S+)"));
  const auto found = macro.match(line);
  if (!found.hasMatch()) return line;
  QStringList words;
  for (auto next = word.globalMatch(found.captured(2)); next.hasNext();) {
    const auto match = next.next();
    words.append(match.captured(match.lastCapturedIndex()));
  }
  return words.join(found.captured(1).size() > 1 ? QString() : QStringLiteral(" "));
}

Section SectionOf(const QString& page, const char* title) {
  Section section;
  const QString begin = QStringLiteral("\n.SH ") + QLatin1String(title) + u'\n';
  const qsizetype from = page.indexOf(begin);
  EXPECT_GE(from, 0) << title;
  const qsizetype behind = from + begin.size();
  const QStringList lines =
      page.mid(behind, page.indexOf(QStringLiteral("\n.SH "), behind) - behind).split(u'\n');
  bool inEntry = false;
  for (qsizetype i = 0; i < lines.size(); ++i) {
    if (lines[i] == QStringLiteral(".TP") && i + 1 < lines.size()) {
      section.Entries.append({Read(lines[++i]), {}});
      inEntry = true;
    } else if (lines[i] == QStringLiteral(".PP") || lines[i].startsWith(QStringLiteral(".SS"))) {
      inEntry = false;
    } else {
      (inEntry ? section.Entries.last().Text : section.Common) += Read(lines[i]) + u'\n';
    }
  }
  return section;
}

/// Whether `words` stand in a text with nothing in front of them or behind them that would make another word
/// of it.
bool Holds(const QString& text, const QString& words) {
  return text.contains(QRegularExpression(QStringLiteral("(?<![a-z0-9-])") +
                                          QRegularExpression::escape(words) +
                                          QStringLiteral("(?![a-z0-9-])")));
}

QStringList Found(const QString& text, const char* pattern) {
  QStringList all;
  for (auto match =
           QRegularExpression(QLatin1String(pattern), QRegularExpression::MultilineOption).globalMatch(text);
       match.hasNext();)
    all.append(match.next().captured(1));
  all.removeDuplicates();
  return all;
}

QStringList OptionsOf(const QString& usage) {
  return Found(usage, "^  (?:-\\w,)?(--[a-z][a-z0-9-]*)");
}

QStringList CommandsOf(const QString& usage) {
  const QString mark = QStringLiteral("Subcommands:");
  return usage.contains(mark) ? Found(usage.mid(usage.indexOf(mark)), "^  ([a-z][a-z0-9-]*)(?: |$)")
                              : QStringList();
}

QString UsageOf(const QString& command) {
  std::vector<std::string> words;
  for (const QString& word : command.split(u' ', Qt::SkipEmptyParts)) words.push_back(word.toStdString());
  words.push_back("--help");
  return QString::fromStdString(Batch(words).Out);
}

/// Every command that does something, as it is typed ("instrument probe"), with its usage.
QMap<QString, QString> CommandsBelow(const QString& group) {
  QMap<QString, QString> all;
  for (const QString& name : CommandsOf(UsageOf(group))) {
    const QString command = group.isEmpty() ? name : group + u' ' + name;
    const QString usage = UsageOf(command);
    if (CommandsOf(usage).isEmpty()) {
      all.insert(command, usage);
    } else {
      all.insert(CommandsBelow(command));
    }
  }
  return all;
}

bool IsEntryOf(const Entry& entry, const QString& command) {
  return entry.Heading == command || entry.Heading.startsWith(command + u' ');
}

TEST(ManPages, EachCommandOfTheBatchCommandHasOneEntryAndEachEntryACommand) {
  const QMap<QString, QString> commands = CommandsBelow({});
  ASSERT_GE(commands.size(), 20);
  const QList<Entry> entries = SectionOf(ManPage("spectrane-cli"), "COMMANDS").Entries;
  for (const QString& command : commands.keys()) {
    EXPECT_EQ(std::ranges::count_if(entries, [&](const Entry& entry) { return IsEntryOf(entry, command); }),
              1)
        << command.toStdString();
  }
  for (const Entry& entry : entries) {
    if (entry.Heading.startsWith(QStringLiteral("--"))) continue;
    EXPECT_TRUE(std::ranges::any_of(commands.keys(), [&](const QString& name) {
      return IsEntryOf(entry, name);
    })) << entry.Heading.toStdString();
  }
}

TEST(ManPages, TellEachOptionWhereItsCommandIsToldOrForAllOfThem) {
  const QString page = ManPage("spectrane-cli");
  const Section section = SectionOf(page, "COMMANDS");
  QString common = section.Common;
  for (const Entry& entry : section.Entries + SectionOf(page, "OPTIONS").Entries) {
    if (entry.Heading.startsWith(QStringLiteral("--"))) common += entry.Heading + u'\n' + entry.Text;
  }
  const QMap<QString, QString> commands = CommandsBelow({});
  QStringList known = OptionsOf(UsageOf({}));
  for (const auto& [command, usage] : commands.asKeyValueRange()) {
    QString told = common;
    for (const Entry& entry : section.Entries) {
      if (IsEntryOf(entry, command)) told += entry.Heading + u'\n' + entry.Text;
    }
    for (const QString& option : OptionsOf(usage))
      EXPECT_TRUE(Holds(told, option)) << command.toStdString() << ' ' << option.toStdString();
    known += OptionsOf(usage);
  }
  for (const QString& option : Found(page, "(?<![a-z0-9-])(--[a-z][a-z0-9-]*)"))
    EXPECT_TRUE(known.contains(option)) << "no command has " << option.toStdString();
}

struct UsageRow {
  const char* Program;
  int FewestOptions;
};

TEST(ManPages, EachOptionOfTheProgramsWithWindowsHasAnEntryAndEachEntryAnOption) {
  for (const UsageRow& row : {UsageRow{"spectrane", 2}, UsageRow{"spectrane-simulator", 20}}) {
    SCOPED_TRACE(row.Program);
    QProcess program;
    program.start(QStringLiteral(SPECTRANE_BIN "/") + QLatin1String(row.Program), {QStringLiteral("--help")});
    ASSERT_TRUE(program.waitForFinished(20000));
    const QStringList options = OptionsOf(QString::fromUtf8(program.readAllStandardOutput()));
    ASSERT_GE(options.size(), row.FewestOptions);
    QString headings;
    for (const Entry& entry : SectionOf(ManPage(row.Program), "OPTIONS").Entries)
      headings += entry.Heading + u'\n';
    for (const QString& option : options) EXPECT_TRUE(Holds(headings, option)) << option.toStdString();
    for (const QString& option : Found(headings, "(--[a-z][a-z0-9-]*)"))
      EXPECT_TRUE(options.contains(option)) << "it has no " << option.toStdString();
  }
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
