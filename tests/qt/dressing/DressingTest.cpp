#include <QGuiApplication>
#include <QImage>
#include <QLabel>
#include <QLineEdit>

#include "tests/qt/InterfaceTest.h"

namespace installer::test {
namespace {

class DressingTest : public InterfaceTest {
  protected:
    ~DressingTest() override { QGuiApplication::setLayoutDirection(Qt::LeftToRight); }

    /// A label, and a field without a frame that cannot be changed, with the same path.
    void showPath() {
        owner.values["path"] = std::string("/HHHH");
        const std::string frameless = "<property name=\"frame\"><bool>false</bool></property>";
        const std::string readOnly = "<property name=\"readOnly\"><bool>true</bool></property>";
        show("QWidget", {},
             control("QLabel", "label", {{"textBinding", "path"}}) +
                 control("QLineEdit", "field", {{"textBinding", "path"}}, frameless + readOnly));
        for (const char* name : {"label", "field"}) {
            auto& widget = named<QWidget>(name);
            widget.setFocusPolicy(Qt::NoFocus);
            widget.resize(200, 30);
        }
    }

    /// Whether the column of the widget's picture shows more than its ground.
    static bool isWritten(const QImage& picture, int column) {
        for (int y = 1; y < picture.height(); ++y) {
            if (picture.pixelColor(column, y) != picture.pixelColor(column, 0)) return true;
        }
        return false;
    }
    static int firstColumn(QWidget& widget) {
        const QImage picture = widget.grab().toImage();
        int column = 0;
        while (column < picture.width() && !isWritten(picture, column)) ++column;
        return column;
    }
    static int lastColumn(QWidget& widget) {
        const QImage picture = widget.grab().toImage();
        int column = picture.width() - 1;
        while (column >= 0 && !isWritten(picture, column)) --column;
        return column;
    }
};

TEST_F(DressingTest, AFieldWithoutAFrameBeginsWhereItsLabelDoes) {
    showPath();
    ASSERT_LT(firstColumn(named<QLabel>("label")), 100);
    EXPECT_EQ(firstColumn(named<QLineEdit>("field")), firstColumn(named<QLabel>("label")));
}

TEST_F(DressingTest, APathStandsOnTheRightWhereReadingBeginsThere) {
    QGuiApplication::setLayoutDirection(Qt::RightToLeft);
    showPath();
    auto& field = named<QLineEdit>("field");
    EXPECT_GE(lastColumn(field), field.width() - 4);
}

}  // namespace
}  // namespace installer::test
