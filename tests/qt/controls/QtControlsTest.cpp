#include <QApplication>
#include <memory>

#include <gtest/gtest.h>

#include "qt/controls/QtControls.h"
#include "qt/theme/ReadableColor.h"

namespace {

using namespace installer;

class QtControlsTextField : public testing::Test {
  protected:
    QLabel label;
    QtTextField field{&label};
};

TEST_F(QtControlsTextField, ShowsItsTextAsItIs) {
    field.setText("<b>Licence</b>");
    EXPECT_EQ(label.text(), "<b>Licence</b>");
    EXPECT_EQ(label.textFormat(), Qt::PlainText);
}

TEST_F(QtControlsTextField, TakesTheSystemsFontInEitherWeight) {
    field.setSystemFont(TextField::Weight::bold);
    EXPECT_TRUE(label.font().bold());
    EXPECT_EQ(label.font().pointSizeF(), QApplication::font().pointSizeF());
    field.setSystemFont(TextField::Weight::regular);
    EXPECT_FALSE(label.font().bold());
}

TEST_F(QtControlsTextField, KeepsRoomForTheBoldTextWhileItIsRegular) {
    field.setText("Running Programs");
    field.setSystemFont(TextField::Weight::bold);
    const int bold = label.sizeHint().width();
    field.setSystemFont(TextField::Weight::regular);
    EXPECT_LT(label.fontMetrics().horizontalAdvance(label.text()), bold);
    EXPECT_GE(label.minimumWidth(), bold);
    field.setText("Short");
    EXPECT_LT(label.minimumWidth(), bold);
}

TEST_F(QtControlsTextField, ShowsAColourThatCanBeReadAsItIs) {
    QPalette white;
    white.setColor(QPalette::Window, Qt::white);
    label.setPalette(white);
    field.setColor({0, 0, 0});
    EXPECT_EQ(label.palette().color(QPalette::WindowText), QColor(Qt::black));
    field.setColor({90, 90, 90});
    EXPECT_EQ(label.palette().color(QPalette::WindowText), QColor(90, 90, 90));
}

TEST_F(QtControlsTextField, DarkensAGreyThatIsTooLightForItsGround) {
    QPalette white;
    white.setColor(QPalette::Window, Qt::white);
    label.setPalette(white);
    field.setColor({128, 128, 128});
    const QColor grey = label.palette().color(QPalette::WindowText);
    EXPECT_GE(contrast(grey, Qt::white), 4.5);
    EXPECT_GT(grey.lightness(), 90);
}

TEST_F(QtControlsTextField, ItsColourFollowsItsGround) {
    const QColor dark(30, 30, 32);
    field.setColor({0, 0, 0});
    QPalette palette;
    palette.setColor(QPalette::Window, dark);
    label.setPalette(palette);
    EXPECT_GE(contrast(label.palette().color(QPalette::WindowText), dark), 7);
    palette.setColor(QPalette::Window, Qt::white);
    label.setPalette(palette);
    EXPECT_EQ(label.palette().color(QPalette::WindowText), QColor(Qt::black));
}

TEST_F(QtControlsTextField, ItsFontFollowsTheDesktops) {
    const QFont before = QApplication::font();
    QWidget row;
    auto* rowsLabel = new QLabel(&row);
    QtTextField rowsField(rowsLabel);
    rowsField.setSystemFont(TextField::Weight::bold);
    row.show();
    QFont large = before;
    large.setPointSizeF(21);
    QApplication::setFont(large);
    QCoreApplication::processEvents();
    EXPECT_EQ(rowsLabel->font().pointSizeF(), 21);
    EXPECT_TRUE(rowsLabel->font().bold());
    QApplication::setFont(before);
    QCoreApplication::processEvents();
}

TEST(QtControls, ActOnNothingWhenTheWindowIsGone) {
    auto label = std::make_unique<QLabel>();
    auto list = std::make_unique<QListWidget>();
    QtTextField field(label.get());
    QtImageView picture(label.get());
    QtListSelection selection(list.get());
    label.reset();
    list.reset();
    field.setText("x");
    field.setSystemFont(TextField::Weight::bold);
    field.setColor({});
    picture.setImage({"/nowhere.png"});
    selection.setSelectedRow(0);
    EXPECT_EQ(selection.selectedRow(), std::nullopt);
}

class QtControlsListSelection : public testing::Test {
  protected:
    void SetUp() override { list.addItems({"a", "b", "c"}); }
    QListWidget list;
    QtListSelection selection{&list};
};

TEST_F(QtControlsListSelection, SelectsOneRowOnly) {
    list.setSelectionMode(QAbstractItemView::ExtendedSelection);
    EXPECT_EQ(selection.selectedRow(), std::nullopt);
    list.selectAll();
    selection.setSelectedRow(2);
    EXPECT_EQ(selection.selectedRow(), 2U);
    EXPECT_EQ(list.selectedItems().size(), 1);
}

TEST_F(QtControlsListSelection, ARowThatDoesNotExistSelectsNone) {
    selection.setSelectedRow(1);
    selection.setSelectedRow(3);
    EXPECT_EQ(selection.selectedRow(), std::nullopt);
}

}  // namespace
