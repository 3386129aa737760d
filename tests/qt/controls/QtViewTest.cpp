#include <QAccessible>
#include <QCoreApplication>
#include <QVBoxLayout>
#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "qt/controls/QtView.h"

namespace {

using namespace installer;

/// A view of the window "list" with a widget of a size hint of its own.
class Sized : public QWidget {
  public:
    Sized(QSize least, QSize wanted) : least_(least), wanted_(wanted) {}
    [[nodiscard]] QSize minimumSizeHint() const override { return least_; }
    [[nodiscard]] QSize sizeHint() const override { return wanted_; }

  private:
    QSize least_;
    QSize wanted_;
};

class QtViewTest : public testing::Test {
  protected:
    QWidget window;
    std::shared_ptr<QtView> parent = std::make_shared<QtView>(&window);

    std::shared_ptr<QtView> put(QWidget* widget) {
        auto view = std::make_shared<QtView>(widget);
        parent->addSubview(view);
        return view;
    }

    /// Places a row as the step list does: from the top, as wide as the list.
    QWidget* row(int number, double height, QSize wanted = {50, 20}) {
        auto* widget = new Sized(wanted, wanted);
        auto view = std::make_shared<QtView>(widget);
        view->setFrame({0, parent->size().height - height * (number + 1)},
                       {parent->size().width, height});
        parent->addSubview(view);
        return widget;
    }

    void resize(int width, int height) {
        window.show();
        window.resize(width, height);
        QCoreApplication::processEvents();
    }
};

TEST_F(QtViewTest, AViewKnowsWhereItWasPut) {
    auto* page = new QWidget;
    const auto view = std::make_shared<QtView>(page);
    EXPECT_EQ(view->superview(), nullptr);
    parent->addSubview(view);
    EXPECT_EQ(page->parentWidget(), &window);
    auto* other = new QWidget;
    view->superview()->addSubview(std::make_shared<QtView>(other));
    EXPECT_EQ(other->parentWidget(), &window);
    EXPECT_EQ(parent->superview(), nullptr);
}

TEST_F(QtViewTest, AHiddenViewStaysHiddenAndAShownOneAppears) {
    window.show();
    auto* hidden = new QWidget;
    const auto view = std::make_shared<QtView>(hidden);
    view->setHidden(true);
    parent->addSubview(view);
    EXPECT_FALSE(hidden->isVisible());
    view->setHidden(false);
    EXPECT_TRUE(hidden->isVisible());
    auto* shown = new QWidget;
    put(shown);
    EXPECT_TRUE(shown->isVisible());
}

TEST_F(QtViewTest, EveryPageFillsTheViewAtAnySize) {
    auto* first = new QWidget;
    auto* second = new QWidget;
    put(first);
    put(second)->setHidden(true);
    resize(300, 200);
    EXPECT_EQ(first->geometry(), QRect(0, 0, 300, 200));
    EXPECT_EQ(second->geometry(), QRect(0, 0, 300, 200));
}

TEST_F(QtViewTest, HiddenPagesCountForTheSize) {
    put(new Sized({100, 40}, {200, 80}));
    put(new Sized({60, 90}, {120, 180}))->setHidden(true);
    EXPECT_EQ(window.minimumSizeHint(), QSize(100, 90));
    EXPECT_EQ(window.sizeHint(), QSize(200, 180));
}

TEST_F(QtViewTest, AHiddenPageWithALayoutCountsToo) {
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    auto* inner = new QWidget;
    inner->setMinimumSize(321, 123);
    layout->addWidget(inner);
    put(page)->setHidden(true);
    EXPECT_GE(window.minimumSizeHint().width(), 321);
    EXPECT_GE(window.minimumSizeHint().height(), 123);
}

TEST_F(QtViewTest, APageIsPutIntoAViewOnce) {
    auto* page = new QWidget;
    const auto view = put(page);
    parent->addSubview(view);
    EXPECT_EQ(window.layout()->count(), 1);
}

TEST_F(QtViewTest, APageThatIsDestroyedLeavesItsPlace) {
    auto* page = new QWidget;
    put(page);
    delete page;
    EXPECT_EQ(window.layout()->count(), 0);
    EXPECT_EQ(window.minimumSizeHint(), QSize(0, 0));
}

TEST_F(QtViewTest, AViewIsNeverPutIntoItself) {
    auto* page = new QWidget;
    const auto view = put(page);
    view->addSubview(view);
    view->addSubview(parent);
    EXPECT_EQ(page->parentWidget(), &window);
    EXPECT_EQ(window.parentWidget(), nullptr);
}

TEST_F(QtViewTest, RowsStayAtTheTopAndSpanTheWidthHoweverTheWindowIsResized) {
    window.resize(180, 400);
    // Registered in this order, whatever their place.
    QWidget* fourth = row(3, 30);
    QWidget* first = row(0, 30);
    QWidget* second = row(1, 30);
    for (const QSize size : {QSize(180, 400), QSize(260, 700), QSize(180, 300)}) {
        resize(size.width(), size.height());
        EXPECT_EQ(first->geometry(), QRect(0, 0, size.width(), 30));
        EXPECT_EQ(second->geometry(), QRect(0, 30, size.width(), 30));
        EXPECT_EQ(fourth->geometry(), QRect(0, 90, size.width(), 30));
    }
}

TEST_F(QtViewTest, RowsAreReadAloudFromTheTopWhateverTheOrderOfTheirRegistration) {
    QWidget* fourth = row(3, 30);
    QWidget* first = row(0, 30);
    QWidget* third = row(2, 30);
    QWidget* second = row(1, 30);
    QAccessibleInterface* list = QAccessible::queryAccessibleInterface(&window);
    std::vector<QObject*> order;
    for (int child = 0; child < list->childCount(); ++child) {
        order.push_back(list->child(child)->object());
    }
    EXPECT_EQ(order, (std::vector<QObject*>{first, second, third, fourth}));
}

TEST_F(QtViewTest, AListIsAsWideAsItsWidestRowAndAsHighAsAll) {
    row(0, 30, {50, 20});
    row(2, 30, {170, 20});
    EXPECT_EQ(window.minimumSizeHint(), QSize(170, 90));
}

TEST_F(QtViewTest, ANarrowerFrameKeepsItsWidthAndIsMirroredFromRightToLeft) {
    window.resize(200, 100);
    auto* widget = new QWidget;
    put(widget)->setFrame({10, 60}, {40, 20});
    resize(200, 100);
    EXPECT_EQ(widget->geometry(), QRect(10, 20, 40, 20));
    window.setLayoutDirection(Qt::RightToLeft);
    window.layout()->invalidate();
    window.layout()->activate();
    EXPECT_EQ(widget->geometry(), QRect(150, 20, 40, 20));
}

TEST_F(QtViewTest, ALayoutOfTheViewsOwnIsKept) {
    auto* box = new QVBoxLayout(&window);
    auto* child = new QWidget;
    put(child);
    EXPECT_EQ(window.layout(), box);
    EXPECT_EQ(box->indexOf(child), 0);
}

}  // namespace
