#include "app/ground/gridcopy.h"

#include <gtest/gtest.h>

#include <QItemSelectionModel>
#include <QStandardItemModel>

namespace spectrane {
namespace {

class GridCopy : public testing::Test {
 protected:
  GridCopy() {
    Model.setHorizontalHeaderLabels({QStringLiteral("Abs & more"), QStringLiteral("Note")});
    AddRow("0.100", "first");
    AddRow("-0.200", "second");
    AddRow("0.300", "third");
  }
  void AddRow(const char* number, const char* note) {
    auto* const figure = new QStandardItem(QString::fromUtf8(number));
    figure->setTextAlignment(Qt::AlignRight);
    Model.appendRow({figure, new QStandardItem(QString::fromUtf8(note))});
  }
  QString Line(int line) const { return GridMimeData(Model, {})->text().split(u'\n').value(line); }
  QString Html() const { return GridMimeData(Model, {})->html(); }

  QStandardItemModel Model;
};

TEST_F(GridCopy, HeadingsAndAllRowsWhenNoneIsSelected) {
  EXPECT_EQ(GridMimeData(Model, {})->text(),
            QStringLiteral("Abs & more\tNote\n0.100\tfirst\n-0.200\tsecond\n0.300\tthird\n"));
}

TEST_F(GridCopy, SelectedRowsInTheirOrderOnce) {
  QItemSelection selection;
  selection.select(Model.index(2, 0), Model.index(2, 0));
  selection.select(Model.index(0, 0), Model.index(0, 1));
  selection.append(QItemSelectionRange(Model.index(0, 1)));
  EXPECT_EQ(GridMimeData(Model, selection)->text(),
            QStringLiteral("Abs & more\tNote\n0.100\tfirst\n0.300\tthird\n"));
}

TEST_F(GridCopy, ATableOfTheSame) {
  const QString html = Html();
  EXPECT_TRUE(html.contains(QStringLiteral("<th>Abs &amp; more</th><th>Note</th>")));
  EXPECT_TRUE(html.contains(QStringLiteral("<td align=\"right\">-0.200</td>")));
  EXPECT_TRUE(html.contains(QStringLiteral(">second</td>")));
  EXPECT_EQ(html.count(QStringLiteral("<tr>")), 4);
}

TEST_F(GridCopy, WhatWouldBreakTheTableIsFlattened) {
  AddRow("1",
         "a\tb\nc\rd <i>&\xE2\x80\xA8"
         "e");
  EXPECT_EQ(Line(4), QStringLiteral("1\ta b c d <i>& e"));
  EXPECT_TRUE(Html().contains(QStringLiteral(">a b c d &lt;i&gt;&amp; e</td>")));
}

TEST_F(GridCopy, WhatLooksLikeAFormulaStaysText) {
  for (const char* note : {"=1+1", "+5", "@SUM(A1)", "-2+3", " =1"}) {
    Model.setRowCount(0);
    AddRow("1", note);
    EXPECT_EQ(Line(1), QStringLiteral("1\t'") + QString::fromUtf8(note)) << note;
    EXPECT_TRUE(Html().contains(QStringLiteral("mso-number-format:\"\\@\"'>") + QString::fromUtf8(note)))
        << note;
  }
}

TEST_F(GridCopy, ACellComesBackAsItStoodInTheGrid) {
  EXPECT_EQ(HeadingLine(Model), Line(0));
  for (const char* note : {"=1+1", "+5", "@SUM(A1)", "-2+3", " =1", "007", "-", "a=b", "'plain", "'", ""}) {
    Model.setRowCount(0);
    AddRow("-1.5", note);
    const QStringList cells = Line(1).split(u'\t');
    EXPECT_EQ(CellOfCopy(cells[0]), QStringLiteral("-1.5"));
    EXPECT_EQ(CellOfCopy(cells[1]), QString::fromUtf8(note));
  }
}

TEST_F(GridCopy, FiguresAndPlainTextsStayAsTheyAre) {
  for (const char* note : {"007", "-", "=", "a=b", ""}) {
    Model.setRowCount(0);
    AddRow("-1.5", note);
    EXPECT_EQ(Line(1), QStringLiteral("-1.5\t") + QString::fromUtf8(note)) << note;
  }
}

}  // namespace
}  // namespace spectrane
