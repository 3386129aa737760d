#include <QApplication>
#include <QListWidget>
#include <QTest>

#include <gtest/gtest.h>

#include "qt/controls/ListRowDelegate.h"
#include "qt/controls/RowHeight.h"

namespace {

using namespace installer;

TEST(RowHeightThatFits, IsTheNaturalOneWhileAllRowsFit) {
    EXPECT_EQ(rowHeightThatFits(500, 4, 40, 48), 48);
    EXPECT_EQ(rowHeightThatFits(192, 4, 40, 48), 48);
}

TEST(RowHeightThatFits, IsTheNaturalOneBeforeTheListHasAnArea) {
    EXPECT_EQ(rowHeightThatFits(0, 4, 40, 48), 48);
}

TEST(RowHeightThatFits, MakesAllRowsALittleLowerWhereTheyFitThen) {
    EXPECT_EQ(rowHeightThatFits(180, 4, 40, 48), 45);
}

TEST(RowHeightThatFits, LeavesNoPartOfARowAtTheListsEnd) {
    for (int area = 40; area < 600; ++area) {
        const int height = rowHeightThatFits(area, 20, 40, 48);
        const int shown = area / height;
        EXPECT_GE(height, 40) << area;
        ASSERT_GE(shown, 1) << area;
        // What is left is less than the blank edge of a row.
        EXPECT_LT(area - shown * height, shown) << area;
    }
}

TEST(RowHeightThatFits, ShowsAnotherRowRatherThanWideGaps) {
    EXPECT_EQ(rowHeightThatFits(164, 9, 36, 48), 41);
    for (int area = 3 * 36; area < 600; ++area) {
        EXPECT_LE(rowHeightThatFits(area, 20, 36, 48), 48) << area;
    }
}

TEST(RowHeightThatFits, IsNeverBelowTheLeastInAListThatIsTooLowForOneRow) {
    EXPECT_EQ(rowHeightThatFits(30, 3, 40, 48), 40);
}

class RowHeightFollowed : public testing::Test {
  protected:
    QListWidget list;

    RowHeightFollowed() {
        list.setItemDelegate(new ListRowDelegate(&list));
        new RowsFollowHeight(list);
        for (int row = 0; row < 9; ++row) {
            auto* item = new QListWidgetItem("Photoshop", &list);
            item->setData(ListRowDelegate::detailRole, "/Applications");
        }
        list.show();
    }

    void resizeTo(int height) {
        list.resize(300, height);
        QCoreApplication::processEvents();
    }

    /// The pixels of the last visible row that are below the list's lower edge.
    [[nodiscard]] int cutOff() const {
        const int area = list.viewport()->height();
        const QListWidgetItem* last = list.itemAt(5, area - 1);
        if (last == nullptr) return 0;
        const QRect row = list.visualItemRect(last);
        return row.bottom() + 1 - area;
    }
};

TEST_F(RowHeightFollowed, ARowIsShownWholeOrNotAtAllAtWhateverHeight) {
    for (int height = 90; height < 300; height += 7) {
        resizeTo(height);
        const int row = list.visualItemRect(list.item(0)).height();
        // A few pixels at the upper edge of the next row are blank.
        EXPECT_TRUE(cutOff() <= 0 || cutOff() >= row - 6) << height;
    }
}

}  // namespace
