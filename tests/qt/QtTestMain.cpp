#include <QApplication>

#include <gmock/gmock.h>

/// All tests of the program share one application object, as the toolkit wants it.
int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    ::testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
