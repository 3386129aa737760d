#include <QAccessible>
#include <QApplication>
#include <QTest>
#include <QWidget>
#include <vector>

#include <gtest/gtest.h>

#include "qt/controls/Announcement.h"

namespace {

using namespace installer;

/// A window that the user looks at, and what is announced in it.
class AnnouncementTest : public testing::Test {
  protected:
    AnnouncementTest() {
        Announcement::tellScreenReaders();
        window.show();
        QApplication::setActiveWindow(&window);
    }

    /// The names of the notifications that are in the window now.
    [[nodiscard]] std::vector<QString> shown() {
        QApplication::processEvents();
        std::vector<QString> names;
        for (QObject* child : window.children()) {
            QAccessibleInterface* seen = QAccessible::queryAccessibleInterface(child);
            if (seen && seen->role() == QAccessible::Notification && !seen->state().invisible) {
                names.push_back(seen->text(QAccessible::Name));
            }
        }
        return names;
    }

    QWidget window;
};

TEST_F(AnnouncementTest, AppearsAsANotification) {
    Announcement::make(window, "Step 1");
    EXPECT_EQ(shown(), std::vector<QString>{"Step 1"});
}

TEST_F(AnnouncementTest, TheNextOneTakesItsPlace) {
    Announcement::make(window, "Step 1");
    EXPECT_EQ(shown().size(), 1U);
    Announcement::make(window, "Step 2");
    Announcement::make(window, "Step 3");
    EXPECT_EQ(shown(), std::vector<QString>{"Step 3"});
}

TEST_F(AnnouncementTest, NothingIsSaidInAWindowThatIsNotActive) {
    QWidget other;
    other.show();
    QApplication::setActiveWindow(&other);
    Announcement::make(window, "Step 1");
    EXPECT_TRUE(shown().empty());
}

}  // namespace
