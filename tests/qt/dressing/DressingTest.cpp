#include <QImage>
#include <QLabel>
#include <QLineEdit>

#include "tests/qt/InterfaceTest.h"

namespace installer::test {
namespace {

class DressingTest : public InterfaceTest {
  protected:
    /// The first column of the widget's picture that is not its ground.
    static int firstColumn(QWidget& widget) {
        const QImage picture = widget.grab().toImage();
        const QColor ground = picture.pixelColor(picture.width() - 1, 0);
        for (int x = 0; x < picture.width(); ++x) {
            for (int y = 0; y < picture.height(); ++y) {
                if (picture.pixelColor(x, y) != ground) return x;
            }
        }
        return -1;
    }
};

TEST_F(DressingTest, AFieldWithoutAFrameBeginsWhereItsLabelDoes) {
    owner.values["path"] = std::string("HHHH");
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
    ASSERT_GE(firstColumn(named<QLabel>("label")), 0);
    EXPECT_EQ(firstColumn(named<QLineEdit>("field")), firstColumn(named<QLabel>("label")));
}

}  // namespace
}  // namespace installer::test
