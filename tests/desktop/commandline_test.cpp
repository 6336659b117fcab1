#include "app/desktop/commandline.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

#include "base/basesupport.h"

namespace spectrane {
namespace {

/// Relative names are those of the folder.
class CommandLine : public ::testing::Test {
 protected:
  CommandLine() { QDir::setCurrent(QString::fromStdString(folder_.Path())); }
  ~CommandLine() override { QDir::setCurrent(before_); }

 private:
  QString before_ = QDir::currentPath();
  TemporaryFolder folder_;
};

TEST_F(CommandLine, AWordWithADashIsAnOptionUnlessAFileHasThatName) {
  QFile file(QStringLiteral("-today.bas"));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  struct Row {
    const char* Words;
    const char* Wrong;
  };
  for (const Row& row :
       {Row{"spectrane", ""}, Row{"", ""}, Row{"spectrane today.bas", ""}, Row{"spectrane -today.bas", ""},
        Row{"spectrane -tomorrow.bas", "-tomorrow.bas"}, Row{"spectrane today.bas --halp", "--halp"},
        Row{"spectrane \"-x.bas\"", ""}, Row{"-spectrane", ""}, Row{"spectrane -", "-"}}) {
    const QStringList words = QString::fromLatin1(row.Words).split(u' ', Qt::SkipEmptyParts);
    EXPECT_EQ(WrongOption(words).toStdString(), row.Wrong) << row.Words;
  }
}

TEST_F(CommandLine, TheFirstWordIsTheFileWithoutTheQuotationMarksOfAnAssociation) {
  const QString here = QDir::currentPath() + u'/';
  const auto file = [](const QString& word) {
    return FileOfCommandLine({QStringLiteral("spectrane"), word});
  };
  EXPECT_EQ(file(QStringLiteral("today.bas")), here + QStringLiteral("today.bas"));
  EXPECT_EQ(file(QStringLiteral("\"to day.bas\"")), here + QStringLiteral("to day.bas"));
  EXPECT_EQ(file(QStringLiteral("\"")), here + u'"');
  EXPECT_EQ(file(QStringLiteral("\"\"")), QString());
  EXPECT_EQ(FileOfCommandLine({QStringLiteral("spectrane")}), QString());
}

}  // namespace
}  // namespace spectrane
