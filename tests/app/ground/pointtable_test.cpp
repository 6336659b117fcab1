#include "app/ground/pointtable.h"

#include <gtest/gtest.h>

#include <QSignalSpy>

namespace spectrane::testing_windows {
namespace {

class PointTableTest : public testing::Test {
 protected:
  QString Cell(int row, int column) const {
    return Table.data(Table.index(row, column), Qt::DisplayRole).toString();
  }
  PointTable Table{
      {{QStringLiteral("No."), {}, {}},
       {QStringLiteral("Twice"), [](std::int32_t point) { return QString::number(2 * point); }, {}}},
      nullptr};
};

TEST_F(PointTableTest, ShowsAllPointsNumberedFromOne) {
  Table.ShowAll(3);
  EXPECT_EQ(Table.rowCount(), 3);
  EXPECT_EQ(Table.columnCount(), 2);
  EXPECT_EQ(Cell(0, 0), QStringLiteral("1"));
  EXPECT_EQ(Cell(2, 0), QStringLiteral("3"));
  EXPECT_EQ(Cell(2, 1), QStringLiteral("4"));
  EXPECT_EQ(Table.headerData(1, Qt::Horizontal, Qt::DisplayRole).toString(), QStringLiteral("Twice"));
  EXPECT_EQ(Table.PointOf(2), 2);
  EXPECT_EQ(Table.PointOf(3), -1);
}

TEST_F(PointTableTest, ShowsSomePointsInTheirOrder) {
  Table.ShowSome({7, 4});
  EXPECT_EQ(Table.rowCount(), 2);
  EXPECT_EQ(Cell(0, 1), QStringLiteral("14"));
  EXPECT_EQ(Cell(1, 0), QStringLiteral("2"));
  EXPECT_EQ(Table.PointOf(1), 4);
}

TEST_F(PointTableTest, NoneOfSomeIsOneEmptyRow) {
  Table.ShowSome({});
  EXPECT_EQ(Table.rowCount(), 1);
  EXPECT_EQ(Cell(0, 0), QString());
  EXPECT_EQ(Cell(0, 1), QString());
  EXPECT_EQ(Table.PointOf(0), -1);
  Table.ShowAll(0);
  EXPECT_EQ(Table.rowCount(), 0);
}

TEST_F(PointTableTest, GrowsWithoutBeingReset) {
  Table.ShowAll(2);
  QSignalSpy inserted(&Table, &QAbstractItemModel::rowsInserted);
  QSignalSpy reset(&Table, &QAbstractItemModel::modelReset);
  Table.Grow(5);
  EXPECT_EQ(Table.rowCount(), 5);
  ASSERT_EQ(inserted.count(), 1);
  EXPECT_EQ(inserted[0][1].toInt(), 2);
  EXPECT_EQ(inserted[0][2].toInt(), 4);
  EXPECT_EQ(reset.count(), 0);
  Table.Grow(4);
  EXPECT_EQ(Table.rowCount(), 5) << "it never shrinks by growing";
  Table.ShowSome({1});
  Table.Grow(9);
  EXPECT_EQ(Table.rowCount(), 1) << "a list of some is no table of all";
}

}  // namespace
}  // namespace spectrane::testing_windows
