#include <QApplication>
#include <QMessageBox>
#include <QProcess>
#include <QPushButton>
#include <QTemporaryDir>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include <gmock/gmock.h>

#include "linux/display/WindowModuleLoader.h"
#include "linux/files/LinuxFileQuery.h"
#include "ports/Alerts.h"
#include "ports/EventLoop.h"
#include "ports/window/Clipboard.h"
#include "qt/values/QtText.h"
#include "tests/qt/ModalDialog.h"
#include "tests/support/FakePlatform.h"

// The module as the installer uses it: loaded from a bundle, and seen through its interface.

namespace {

using namespace installer;
using testing::Contains;
using testing::HasSubstr;

class WindowModuleTest : public testing::Test {
  protected:
    WindowModuleTest() {
        const std::filesystem::path frameworks = bundleFolder() + "/Contents/Frameworks";
        std::filesystem::create_directories(frameworks);
        std::filesystem::create_symlink(WINDOW_MODULE, frameworks / "InstallerWindow.so");
        for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) ::unsetenv(name);
        // Else the bus library starts a bus for the new display, and leaks what it learns of it.
        ::setenv("DBUS_SESSION_BUS_ADDRESS", "disabled:", 1);
    }

    [[nodiscard]] std::string bundleFolder() const { return fromQt(folder.path()); }
    std::unique_ptr<WindowModule> load() {
        return loadWindowModule(bundleFolder(),
                                {.executablePath = bundleFolder() + "/Contents/MacOS/Installer",
                                 .bundle = platform.bundle,
                                 .files = platform.files,
                                 .log = platform.log,
                                 .openLink = [](const std::string&) {}});
    }
    /// The module has buttons of its own to press: the toolkit's are shared by the process.
    static std::size_t answerByPressing(WindowModule& module, int button) {
        const test::WhileModal<QMessageBox> user([&](QMessageBox& box) {
            box.findChildren<QPushButton*>().at(button)->click();
            return true;
        });
        return module.alerts().runModal(
            {"id", Alert::Style::warning, "Title", "Message", {"Yes", "No"}});
    }

    QTemporaryDir folder;
    test::FakePlatform platform;
};

TEST_F(WindowModuleTest, IsNotMadeWithoutADisplay) {
    EXPECT_EQ(load(), nullptr);
    EXPECT_THAT(platform.log.lines, Contains(HasSubstr("no display to show a window on")));
}

TEST_F(WindowModuleTest, IsNotMadeOnADisplayThatDoesNotAnswer) {
    ::setenv("DISPLAY", ":65000", 1);
    EXPECT_EQ(load(), nullptr);
    EXPECT_THAT(platform.log.lines, Contains(HasSubstr(":65000")));
}

TEST_F(WindowModuleTest, ShowsAlertsBeforeThereIsAWindow) {
    ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
    const auto module = load();
    ASSERT_NE(module, nullptr);
    EXPECT_EQ(answerByPressing(*module, 1), 1u);
    EXPECT_EQ(answerByPressing(*module, 0), 0u);
}

TEST_F(WindowModuleTest, RunsUntilTheLastWindowHasClosed) {
    ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
    const auto module = load();
    ASSERT_NE(module, nullptr);
    QWidget window;
    window.show();
    QTimer::singleShot(0, &window, [&window] { window.close(); });
    module->run();
    EXPECT_FALSE(window.isVisible());
}

TEST_F(WindowModuleTest, StaysAliveWhileAQueryGathersInItsLoop) {
    ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
    const auto module = load();
    ASSERT_NE(module, nullptr);
    for (int index = 0; index < 40; ++index) {
        std::filesystem::create_directories(bundleFolder() + "/" + std::to_string(index) + "/N");
    }
    const auto query = LinuxFileQueries(module->descriptors()).create();
    query->setNameLike("N");
    query->setSearchScopes({bundleFolder()});
    query->start();
    int ticks = 0;
    std::size_t foundAtFirstTick = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        if (++ticks == 1) foundAtFirstTick = query->resultCount();
    });
    timer.start(0);
    while (query->isGathering()) module->eventLoop().runUntilNow();
    EXPECT_EQ(query->resultCount(), 40U);
    EXPECT_GT(ticks, 0);
    EXPECT_LT(foundAtFirstTick, 40U);
}

TEST_F(WindowModuleTest, TakesTheToolkitsApplicationWithIt) {
    ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
    auto module = load();
    EXPECT_NE(qApp, nullptr);
    module.reset();
    EXPECT_EQ(qApp, nullptr);
}

TEST_F(WindowModuleTest, IsMadeOnARunningXServer) {
    QProcess server;
    server.start(QStringLiteral("Xvfb"), {QStringLiteral("-displayfd"), QStringLiteral("1"),
                                          QStringLiteral("-nolisten"), QStringLiteral("tcp")});
    while (!server.canReadLine() && server.waitForReadyRead()) {
    }
    const std::string display = ":" + server.readLine().trimmed().toStdString();
    ::setenv("DISPLAY", display.c_str(), 1);
    auto module = load();
    ASSERT_NE(module, nullptr);
    EXPECT_EQ(answerByPressing(*module, 1), 1u);
    module.reset();
    server.kill();
    server.waitForFinished();
}

}  // namespace
