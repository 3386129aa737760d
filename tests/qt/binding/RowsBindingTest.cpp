#include <QAccessible>
#include <QListWidget>
#include <QMouseEvent>
#include <QTest>

#include "qt/controls/TickableRows.h"
#include "tests/qt/InterfaceTest.h"

namespace {

using namespace installer;
using namespace installer::test;
using testing::ElementsAre;
using testing::IsEmpty;

class RowsBindingTest : public InterfaceTest {
  protected:
    const std::vector<ListRow> hosts = {
        {.title = "Photoshop 2024", .detail = "/Applications/2024", .checked = true},
        {.title = "Photoshop CS6", .detail = "/Applications/<CS6>"},
    };

    void showHosts() {
        owner.values["hosts"] = hosts;
        show("QListWidget", {{"rowsBinding", "hosts"}, {"checkable", "true"}});
    }

    static QListWidget& list() { return shown<QListWidget>(); }

    static std::vector<std::string> titles() {
        std::vector<std::string> found;
        for (int row = 0; row < list().count(); ++row)
            found.push_back(fromQt(list().item(row)->text()));
        return found;
    }
};

TEST_F(RowsBindingTest, ShowsTheRowsWithTheirChecks) {
    showHosts();
    EXPECT_THAT(titles(), ElementsAre("Photoshop 2024", "Photoshop CS6"));
    EXPECT_EQ(list().item(0)->checkState(), Qt::Checked);
    EXPECT_EQ(list().item(1)->checkState(), Qt::Unchecked);
    EXPECT_THAT(owner.told, IsEmpty());
}

TEST_F(RowsBindingTest, TheSpaceBarTicksAndUnticksTheCurrentRow) {
    showHosts();
    list().setCurrentRow(1);
    QTest::keyClick(&list(), Qt::Key_Space);
    QTest::keyClick(&list(), Qt::Key_Space);
    EXPECT_THAT(owner.told, ElementsAre("row 1 of hosts on", "row 1 of hosts off"));
}

TEST_F(RowsBindingTest, AClickOnTheBoxTicksTheRow) {
    showHosts();
    list().resize(400, 200);
    const QRect row = list().visualItemRect(list().item(1));
    QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, {row.left() + 10, row.center().y()});
    EXPECT_THAT(owner.told, ElementsAre("row 1 of hosts on"));
}

TEST_F(RowsBindingTest, AClickAnywhereInARowTicksIt) {
    showHosts();
    list().resize(400, 200);
    const QRect row = list().visualItemRect(list().item(1));
    QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, row.center());
    QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, {row.right() - 3, row.top() + 3});
    EXPECT_THAT(owner.told, ElementsAre("row 1 of hosts on", "row 1 of hosts off"));
    QTest::mouseClick(list().viewport(), Qt::RightButton, {}, row.center());
    EXPECT_EQ(owner.told.size(), 2U);
}

TEST_F(RowsBindingTest, TwoFastClicksInARowTickAndUntickIt) {
    showHosts();
    list().resize(400, 200);
    const QPoint place = list().visualItemRect(list().item(1)).center();
    QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, place);
    QMouseEvent second(QEvent::MouseButtonDblClick, place, list().viewport()->mapToGlobal(place),
                       Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(list().viewport(), &second);
    QTest::mouseRelease(list().viewport(), Qt::LeftButton, {}, place);
    EXPECT_THAT(owner.told, ElementsAre("row 1 of hosts on", "row 1 of hosts off"));
}

TEST_F(RowsBindingTest, AClickInARowWithoutABoxOnlySelectsIt) {
    owner.values["hosts"] = hosts;
    show("QListWidget", {{"rowsBinding", "hosts"}});
    list().resize(400, 200);
    QTest::mouseClick(list().viewport(), Qt::LeftButton, {},
                      list().visualItemRect(list().item(1)).center());
    EXPECT_EQ(list().currentRow(), 1);
    EXPECT_THAT(owner.told, IsEmpty());
}

TEST_F(RowsBindingTest, ANameThatTurnsItselfAroundIsShownAsWhatItIs) {
    owner.values["hosts"] =
        std::vector<ListRow>{{.title = "Photo\u202Epohs", .detail = "/Applications/a\u2067b"}};
    show("QListWidget", {{"rowsBinding", "hosts"}});
    EXPECT_EQ(fromQt(list().item(0)->text()), "Photo‹U+202E›pohs");
    EXPECT_EQ(fromQt(list().item(0)->data(Qt::AccessibleDescriptionRole).toString()),
              "/Applications/a‹U+2067›b");
}

TEST_F(RowsBindingTest, EveryRowThatCanBeTickedHasAnIcon) {
    showHosts();
    list().setIconSize({32, 32});
    owner.change("hosts", std::vector<ListRow>{});
    owner.change("hosts", hosts);
    EXPECT_FALSE(list().item(0)->icon().isNull());
    EXPECT_EQ(list().visualItemRect(list().item(0)).height(),
              list().visualItemRect(list().item(1)).height());
}

TEST_F(RowsBindingTest, ARowShowsWhatTheOwnerMadeOfTheClick) {
    owner.acceptsChanges = false;
    showHosts();
    list().setCurrentRow(1);
    QTest::keyClick(&list(), Qt::Key_Space);
    EXPECT_EQ(list().item(1)->checkState(), Qt::Unchecked);
}

TEST_F(RowsBindingTest, OtherRowsTakeThePlaceOfThoseBefore) {
    showHosts();
    list().setCurrentRow(1);
    auto more = hosts;
    more.push_back({.title = "Another folder"});
    owner.change("hosts", more);
    EXPECT_THAT(titles(), ElementsAre("Photoshop 2024", "Photoshop CS6", "Another folder"));
    EXPECT_EQ(list().currentRow(), 1);
    owner.change("hosts", std::vector<ListRow>{{.title = "Only"}});
    EXPECT_THAT(titles(), ElementsAre("Only"));
    owner.change("hosts", PropertyValue{});
    EXPECT_EQ(list().count(), 0);
}

TEST_F(RowsBindingTest, TheOwnerMayTakeRowsAwayWhileOneIsTicked) {
    showHosts();
    owner.whenTicking = [this] {
        owner.change("hosts", std::vector<ListRow>{{.title = "Left", .checked = true}});
    };
    list().setCurrentRow(1);
    QTest::keyClick(&list(), Qt::Key_Space);
    EXPECT_THAT(titles(), ElementsAre("Left"));
    EXPECT_EQ(list().item(0)->checkState(), Qt::Checked);
}

TEST_F(RowsBindingTest, AnUnannouncedChangeIsSeenWhenTheListIsShownAgain) {
    showHosts();
    owner.values["hosts"] = std::vector<ListRow>{{.title = "Renamed"}};
    EXPECT_EQ(list().count(), 2);
    list().hide();
    list().show();
    EXPECT_THAT(titles(), ElementsAre("Renamed"));
}

TEST_F(RowsBindingTest, RowsOfOtherListsHaveNoBox) {
    owner.values["failed"] = hosts;
    show("QListWidget", {{"rowsBinding", "failed"}});
    EXPECT_FALSE(list().item(0)->data(Qt::CheckStateRole).isValid());
    list().setCurrentRow(0);
    QTest::keyClick(&list(), Qt::Key_Space);
    EXPECT_THAT(owner.told, IsEmpty());
}

TEST_F(RowsBindingTest, AScreenReaderIsToldTheNameAndTheFolder) {
    showHosts();
    QAccessibleInterface* row = QAccessible::queryAccessibleInterface(&list())->child(0);
    ASSERT_NE(row, nullptr);
    EXPECT_EQ(row->text(QAccessible::Name), "Photoshop 2024");
    EXPECT_EQ(row->text(QAccessible::Description), "/Applications/2024");
    EXPECT_TRUE(row->state().checkable);
    EXPECT_TRUE(row->state().checked);
}

TEST_F(RowsBindingTest, AScreenReaderSeesACheckBoxInARowWithABox) {
    TickableRows::tellScreenReaders();
    showHosts();
    QAccessibleInterface* const seen = QAccessible::queryAccessibleInterface(&list());
    ASSERT_EQ(seen->childCount(), list().count());
    QAccessibleInterface* const row = seen->child(0);
    EXPECT_EQ(row->role(), QAccessible::CheckBox);
    EXPECT_EQ(row->parent(), seen);
    EXPECT_EQ(seen->indexOfChild(row), 0);
    EXPECT_EQ(row->text(QAccessible::Name), "Photoshop 2024");
    EXPECT_EQ(row->text(QAccessible::Description), "/Applications/2024");
    EXPECT_TRUE(row->state().checked);
    row->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_FALSE(row->state().checked);
    EXPECT_EQ(list().item(0)->checkState(), Qt::Unchecked);
}

TEST_F(RowsBindingTest, ARowThatIsGoneIsNothingToAScreenReader) {
    TickableRows::tellScreenReaders();
    showHosts();
    QAccessibleInterface* const row = QAccessible::queryAccessibleInterface(&list())->child(1);
    ASSERT_TRUE(row->isValid());
    list().clear();
    EXPECT_FALSE(row->isValid());
    EXPECT_EQ(row->text(QAccessible::Name), "");
    EXPECT_TRUE(row->state().invalid);
    row->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
}

TEST_F(RowsBindingTest, TheToolTipIsTheWholeFolderAndNeverAPage) {
    showHosts();
    EXPECT_EQ(list().item(1)->toolTip(), "<span>/Applications/&lt;CS6&gt;</span>");
}

TEST_F(RowsBindingTest, ARowWithAFolderHasRoomForBothLines) {
    owner.values["rows"] = std::vector<ListRow>{{.title = "Title"}, {.title = "T", .detail = "d"}};
    show("QListWidget", {{"rowsBinding", "rows"}});
    const int title = list().visualItemRect(list().item(0)).height();
    const int both = list().visualItemRect(list().item(1)).height();
    EXPECT_GE(title, list().fontMetrics().height());
    EXPECT_GE(both - title, list().fontMetrics().height() * 3 / 4);
}

TEST_F(RowsBindingTest, TheSecondLineIsQuieterThanTheFirstAndBothArePainted) {
    owner.values["rows"] = std::vector<ListRow>{{.title = "MMMMMMMM", .detail = "MMMMMMMM"}};
    show("QListWidget", {{"rowsBinding", "rows"}});
    list().resize(300, 100);
    const QRect row = list().visualItemRect(list().item(0));
    const QImage seen = list().viewport()->grab().toImage();
    const auto darkest = [&](int from, int to) {
        int found = 255;
        for (int y = from; y < to; ++y) {
            for (int x = row.left(); x < row.right(); ++x) {
                found = std::min(found, seen.pixelColor(x, y).lightness());
            }
        }
        return found;
    };
    const int title = darkest(row.top(), row.center().y() - 2);
    const int detail = darkest(row.center().y() + 4, row.bottom());
    EXPECT_LT(title, 60);
    EXPECT_GT(detail, title + 40);
    EXPECT_LT(detail, 150);
}

TEST_F(RowsBindingTest, FromRightToLeftTheBoxStandsAtTheRight) {
    showHosts();
    list().setLayoutDirection(Qt::RightToLeft);
    list().resize(400, 200);
    const QRect row = list().visualItemRect(list().item(1));
    QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, {row.right() - 10, row.center().y()});
    EXPECT_THAT(owner.told, ElementsAre("row 1 of hosts on"));
}

}  // namespace
